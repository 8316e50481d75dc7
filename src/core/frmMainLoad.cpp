// The second half of the start: every object, control and setting of the panel, step by step.
#include <algorithm>
#include <exception>

#include "core/frmMain.h"
#include "interaction/SpokenNames.h"
#include "platform/Dialogs.h"
#include "sound/FindDevice.h"
#include "support/Product.h"

namespace quorl {

namespace {

constexpr const char* kLoad = "Form_Load";

constexpr int kTuneInterval = 50, kUnseenTuneInterval = 500, kVFOUpdateInterval = 1000, kShaftInterval = 30,
              kClockInterval = 500;

constexpr int kMuteKey = 'M';

constexpr int kExtendedSize = 0, kStandardSize = 1, kCompactSize = 2, kFullSize = 3;

}  // namespace

bool frmMain::Form_Load() {
  try {
    LoadSteps();
  } catch (const std::exception& error) {
    ReportLoadError(error.what());
    return false;
  }
  return true;
}

void frmMain::ReportLoadError(const std::string& text) {
  const std::string place = std::string(kFrameTag) + kLoad;
  machine_.Boxes.ShowMessage({.Text = place + ":" + std::to_string(loadStep_) +
                                      "\nCode=0\nDescription=" + text + "\nSource=" + kProductName,
                              .Title = "Error",
                              .Icon = MessageIcon::Critical});
  log_.AddLog(place + "Error:" + std::to_string(loadStep_) + ",Code=0,Description=" + text +
              ",Source=" + kProductName);
}

void frmMain::LoadSteps() {
  const auto step = [this](const std::string& text) {
    ++loadStep_;
    Log(kLoad, text);
  };
  PublicVars& vars = radio_->Rx.Vars;
  step(":Start");
  step(":Resizing");
  CreateForm();
  step(":Restoring SDR Colour Settings from Registry");
  for (const ColourSetting& colour : kColourSettings) {
    store_.ReadColour(kMainSection, colour.Key, scheme_.*colour.Field);
  }
  step(":Making Form Visible");
  CreateControls();
  store_.Read(kMainSection, "WindowWidth", stored_.WindowWidth);
  store_.Read(kMainSection, "WindowHeight", stored_.WindowHeight);
  OnForm();
  step(":Setting Colour Scheme");
  step(":Initialising MouseOverS");
  step(":Initialising 7Segment Display Tuning");
  step(":Initialising dialtuner");
  for (const int index : kScrollableStartOrder) {
    if (kScrollableStarts[static_cast<std::size_t>(index)].Label == nullptr) continue;
    const bool late = index == CtlIndex::IFHi || index == CtlIndex::IFLo || index == CtlIndex::SpectrumSmooth;
    step((late ? ":Initialising ctlArray(" : ":Initialising CtlArray(") + std::to_string(index) + ")");
    if (index == CtlIndex::NB) {
      step(":Initialising sldNB");
      step(":Initialising dialNB");
    }
    if (index == CtlIndex::OutVol) {
      step(":Initialising dialOutVol");
      step(":Initialising sldOutVolume");
    }
  }
  step(":New QUORLDX8");
  radio_->CreateSoundCard();
  step(":New clsFFTReal");
  step(":Initialising FFTReal");
  step(" : Initialising Interface Objects");
  CreateTuningRoad();
  step(":Initialising sldAGCAttack");
  agc_->InitialiseSlider(agc_->sldAGCAttack, CtlIndex::AGCAttack);
  step(":Initialising sldAGCDecay");
  agc_->InitialiseSlider(agc_->sldAGCDecay, CtlIndex::AGCDecay);
  for (std::int32_t mode = 0; mode < FilterModeCount; ++mode) {
    step(":Initialising Variable Filter Default Values (" + std::to_string(mode) + ")");
  }
  filter_->optFilter.Press(vars.CurrentFilterMode);
  demod_->optMode.Press(vars.CurrentDemodMode);
  for (std::int32_t mode = AGCPreset::Fast; mode <= AGCPreset::Slow; ++mode) {
    step(":Initialising Variable AGC Default Values (" + std::to_string(mode) + ")");
  }
  agc_->chkAGC.SetValue(vars.AGCON);
  agc_->optAGC.Press(vars.AGCMode);
  agc_->chkAGC_Click();
  step(":Initialising Variable IF Filter Default Values (0)");
  vars.CurrentIFFilterMode = IFFilterMode::Manual;
  vars.IFFilterActive = false;
  step(":Initialising NotchFilter Default Values");
  notch_->InitialiseDefaults();
  step(":Restoring SDR Settings");
  RestoreSettings();
  radio_->VFO()->AutoUpdate = stored_.AutoDDSRefresh;
  smeter_->NoiseFloor = static_cast<float>(stored_.NoiseFloor) / 100000.0F;
  smeter_->DrawSMeterScale();
  step(":Initialising SoundCard Object");
  InitialiseSoundCard();
  ApplySettings();
  step(":Set OutputLevel Attenuator to PublicVars.OutputAttenuation");
  RestoreVolume();
  filter_->ShowDefaults();
  step(":Call modWheelMouse.init");
  step(":Set up default values in the AGC delayline");
  radio_->Rx.Agc.FillDelayLine();
  step(":Call MouseOverS.lblFilterHi_Wheel");
  filter_->lblFilterHi_Wheel();
  step(":Call MouseOverS.lblFilterLo_Wheel");
  filter_->lblFilterLo_Wheel();
  step(":Call tmrPerfStats_Timer");
  ConnectHousekeeping();
  radio_->Housekeeping();
  RestMeters();
  step(":Enable Power Butons");
  for (int i = 0; i < optPwr_->Count(); ++i) (*optPwr_)(i).Enabled = true;
  EnableTimers();
  step(":Initialise the Tuning Step Selector Drop Down List");
  tuning_->FillTuningSteps();
  NameControls(registry_);
  step(":Call DarkenControls");
  scrollables_->DarkenControls();
  colours_->ReColour();
  colours_->UnFocusFrames();
  if (stored_.AutoStartSDR) optPwr_->Press(0);
  loading_ = false;
}

void frmMain::CreateControls() {
  scrollables_ = std::make_unique<ScrollableControls>(scheme_);
  colours_ = std::make_unique<PanelColours>(registry_, scheme_, *scrollables_);
  CreateTuningPanel();
  CreateReceptionPanels();
}

void frmMain::CreateForm() {
  form_ = std::make_unique<Picture>(registry_, "frmMain");
  form_->Caption = kProductName;
  form_->KeyDown = [this](const Key& key) { Form_KeyDown(key); };
  form_->KeyUp = [this](const Key& key) {
    if (tuning_) Raise(tuning_->picFreqDisp.KeyUp, key);
  };
  form_->MouseMove = [this] { colours_->Form_MouseMove(); };
  frPwr_ = std::make_unique<Frame>(registry_, "frPwr");
  optPwr_ = std::make_unique<OptionGroup>(registry_, "optPwr", static_cast<int>(PowerTexts.size()));
  SetTexts(*optPwr_, PowerTexts);
  for (int i = 0; i < optPwr_->Count(); ++i) (*optPwr_)(i).Enabled = false;
  optPwr_->Press(1);
  PaintPower();
  optPwr_->Click = [this](int index) { optPwr_Click(index); };
  frDispMode_ = std::make_unique<Frame>(registry_, "frDispMode");
  optDisplaySize_ =
      std::make_unique<OptionGroup>(registry_, "optDisplaySize", static_cast<int>(DisplaySizeTexts.size()));
  SetTexts(*optDisplaySize_, DisplaySizeTexts);
  optDisplaySize_->Click = [this](int index) { PaintButtons(*optDisplaySize_, index); };
}

void frmMain::Form_KeyDown(const Key& key) {
  if (tuning_->TuneByKey(key)) return;
  if (key.Code == kMuteKey && !key.With.Ctrl && !key.With.Alt) {
    volume_->chkMute.UserClick();
  } else if (tuning_->cboTuningSteps.Visible()) {
    Raise(tuning_->cboTuningSteps.KeyDown, key);
  } else if (scrollables_->ActiveCtl() == CtlIndex::Frequency) {
    Raise(tuning_->picFreqDisp.KeyDown, key);
  } else {
    scrollables_->KeyDown(key);
  }
}

void frmMain::CreateTuningPanel() {
  TuningPanelLinks links;
  links.ActivateDisplay = [this] { scrollables_->Point(CtlIndex::Frequency); };
  links.ReviveDisplay = [this] { scrollables_->Revive(CtlIndex::Frequency); };
  links.DisplayIsActive = [this] { return scrollables_->ActiveCtl() == CtlIndex::Frequency; };
  links.SetLowSideLO = [this](bool low) { radio_->Rx.SetLowSideLO(low); };
  links.ShowOscillator = [this](const std::string& text) {
    if (stats_) stats_->lblStatsVal(StatsPanel::kLO).Caption = text;
  };
  tuning_ = std::make_unique<TuningPanel>(registry_, machine_.Queue, machine_.Time, radio_->Rx.Vars, links);
  scrollables_->BindKeys(CtlIndex::Frequency, tuning_->picFreqDisp);
  colours_->Add(tuning_->frFreqCtl);
  colours_->AddRepaint([this] {
    const ScrollableControl& digits = (*scrollables_)(CtlIndex::Frequency);
    tuning_->SetColours({digits.NormalColour, digits.FocusColour, scheme_.SDRLabelColour,
                         scheme_.SDRTuningColour, scheme_.SDRFrameFocusColour});
  });
}

void frmMain::CreateReceptionPanels() {
  Receiver& receiver = radio_->Rx;
  const PanelContext context{registry_, *scrollables_, *colours_, receiver,
                             [this] { machine_.Queue.Yield(); }};
  ifFilter_ = std::make_unique<IFFilterPanel>(context);
  filter_ = std::make_unique<FilterPanel>(context);
  demod_ = std::make_unique<DemodPanel>(context);
  notch_ = std::make_unique<NotchPanel>(context);
  nb_ = std::make_unique<NBPanel>(context);
  agc_ = std::make_unique<AGCPanel>(context);
  volume_ = std::make_unique<VolumePanel>(context);
  volume_->OnMute = [this](bool muted) { radio_->SetMuted(muted); };
  bfo_ = std::make_unique<BFOPanel>(context);
  stats_ = std::make_unique<StatsPanel>(registry_, receiver.Vars, receiver.Pump.Statistics);
  smeter_ = std::make_unique<SMeterPanel>(registry_, receiver.Vars);
  colours_->Add(*frPwr_);
  colours_->Add(*frDispMode_);
}

void frmMain::CreateTuningRoad() {
  PublicVars& vars = radio_->Rx.Vars;
  store_.Read(kMainSection, "VFO1.IFType", stored_.IFType);
  store_.Read(kMainSection, "EnableShaftEncoder", tuning_->ShaftEnabled);
  store_.Read(kMainSection, "SDRModelNo", vars.SDRModelNo);
  const bool open = radio_->CreateTuning(
      store_, stored_.IFType, tuning_->ShaftEnabled, [this](const std::string& line) { log_.AddLog(line); },
      false);
  if (!open && stored_.IFType == InterfaceType::Serial) {
    const Error fault = radio_->Tuning().SerialIF().OpenFailure().value_or(Error{});
    machine_.Boxes.ShowMessage(
        {.Text = "Unable to open Serial Interface COM" + std::to_string(radio_->Tuning().SerialIF().PortNo) +
                 "\n" + kFrameTag + kLoad + ":" + std::to_string(loadStep_) +
                 "\nError Code=" + std::to_string(fault.Code) + "\nError Desc=" + fault.Text,
         .Title = kProductName,
         .Icon = MessageIcon::Warning});
  }
  if (const Failure& fault = radio_->Tuning().Fault()) {
    machine_.Boxes.ShowMessage({.Text = fault->Text, .Title = kProductName, .Icon = MessageIcon::Warning});
  }
  stored_.AutoDDSRefresh = radio_->VFO()->AutoUpdate;  // the board's own, unless the store holds another
  tuning_->SetTuner(&radio_->Tuning().Tune());
  tuning_->SetEncoder(&radio_->Tuning().SerialIF());
  // Ticked before its handler first runs, so that the stored side stays.
  tuning_->chkTuneLo.SetValue(!radio_->VFO()->HiSideLO);
}

// Finds the stored devices among those that are there now.
void frmMain::ChooseDevices() {
  QUORLDX8& card = radio_->SoundCard();
  card.RefreshDevices();
  std::vector<std::string> names;
  card.GetPlayDeviceNames(names);
  card.CurrentPlaybackDevice =
      FindDevice(names, stored_.CurrentPlaybackDeviceName, stored_.CurrentPlaybackDevice);
  card.GetCapDeviceNames(names);
  card.CurrentCaptureDevice =
      FindDevice(names, stored_.CurrentCaptureDeviceName, stored_.CurrentCaptureDevice);
}

void frmMain::InitialiseSoundCard() {
  radio_->SetSoundFormat(stored_.ShortDelay);
  ChooseDevices();
  machine_.Sound.OnDeviceLost([this](const Error& error) {
    if (on_) optPwr_->Press(1);
    radio_->SoundCard().ReleaseDevices();  // opened anew, wherever it is then, when the power goes on
    log_.AddLog(error.Text);
    machine_.Boxes.ShowMessage({.Text = error.Text, .Title = kProductName, .Icon = MessageIcon::Warning});
  });
}

void frmMain::ApplySettings() {
  int size = kStandardSize;
  if (stored_.ExtendedDisplay) size = kExtendedSize;
  if (stored_.CompactDisplay) size = kCompactSize;
  if (stored_.FullDisplay) size = kFullSize;
  optDisplaySize_->Press(size);
  tuning_->chkTuneLo_Click();
  stats_->chkPerfStatsOn.SetValue(stored_.PerfStatsOn != 0);
  stats_->chkPerfStatsOn_Click();
}

void frmMain::RestoreVolume() {
  const ScrollableControl& control = (*scrollables_)(CtlIndex::OutVol);
  scrollables_->SetValue(CtlIndex::OutVol, std::clamp(static_cast<float>(stored_.LastOutputVolume),
                                                      control.MinValue, control.MaxValue));
}

void frmMain::ConnectHousekeeping() {
  radio_->BeforeFilters = [this] {
    smeter_->Update();
    stats_->Update();
  };
  radio_->AfterFilters = [this](bool peakMoved) {
    if (peakMoved) notch_->ShowPeak();
    if (const clsVFO* vfo = radio_->VFO()) stats_->ShowOscOut(vfo->OscOut);
  };
}

void frmMain::SetSeen(bool seen) {
  if (!loading_ && !unloaded_) tuning_->tmrTune.SetInterval(seen ? kTuneInterval : kUnseenTuneInterval);
}

void frmMain::EnableTimers() {
  struct Start {
    const char* Text;
    Timer& Which;
    int Interval;
  };
  for (const Start& start : {Start{":Enable TmrTune", tuning_->tmrTune, kTuneInterval},
                             Start{":Enable TmrVFOUpdate", tuning_->tmrVFOUpdate, kVFOUpdateInterval},
                             Start{":Enable TmrShaft", tuning_->tmrShaft, kShaftInterval},
                             Start{":Enable TmrClock", tuning_->tmrClock, kClockInterval}}) {
    Log(kLoad, start.Text);
    start.Which.SetInterval(start.Interval);
    start.Which.SetEnabled(true);
  }
  StartSaving();
}

}  // namespace quorl
