// The second half of the start: every object, control and setting of the panel, step by step.
#include <exception>

#include "core/MemoryMarks.h"
#include "core/frmMain.h"
#include "interaction/SpokenNames.h"
#include "platform/Dialogs.h"
#include "support/Product.h"

namespace quorl {

namespace {

constexpr const char* kLoad = "Form_Load";

constexpr int kTuneInterval = 50, kUnseenTuneInterval = 500, kVFOUpdateInterval = 1000, kShaftInterval = 30,
              kClockInterval = 500, kSubBandsInterval = 300;

constexpr int kMuteKey = 'M';

constexpr int kCompactSize = 2;  // place in optDisplaySize

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
  step(":Start");
  step(":Resizing");
  formed_ = true;
  step(":Restoring SDR Colour Settings from Registry");
  early_.Read(store_);
  OnColours(scheme_);
  step(":Creating SpectrumAnalyser Object");
  scope_.Create(store_);
  step(":Making Form Visible");
  OnForm();
  step(":Setting Colour Scheme");
  step(":Creating Wavfile Object");
  step(":Positioning Presets");
  step(":Initialising MouseOverS");
  step(":Initialising 7Segment Display Tuning");
  step(":Initialising dialtuner");
  for (const int index : kScrollableStartOrder) {
    if (index == CtlIndex::PicScope) {
      step(":Initialising ctlArray(PicScopeIndex)");
      continue;
    }
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
  step(":Initialising cboBandSelect");
  memories_.FillBandSelect();
  step(":Initialising optSubBand");
  step(":Initialising optPreset");
  step(":New QUORLDX8");
  radio_.SoundCard().RefreshDevices();
  step(":New clsFFTReal");
  step(":Initialising FFTReal");
  radio_.Rx.InitialiseFFTReal();
  step(" : Initialising Interface Objects");
  MakeTuning();
  step(":Initialising sldAGCAttack");
  agc_.InitialiseSlider(agc_.sldAGCAttack, CtlIndex::AGCAttack);
  step(":Initialising sldAGCDecay");
  agc_.InitialiseSlider(agc_.sldAGCDecay, CtlIndex::AGCDecay);
  step(":Initialising SpectrumAnalyser");
  scope_.Initialise();
  radio_.Rx.Tap.Analyser = &scope_.SpectrumAnalyser;
  for (std::int32_t mode = 0; mode < FilterModeCount; ++mode) {
    step(":Initialising Variable Filter Default Values (" + std::to_string(mode) + ")");
  }
  for (std::int32_t mode = AGCPreset::Fast; mode <= AGCPreset::Slow; ++mode) {
    step(":Initialising Variable AGC Default Values (" + std::to_string(mode) + ")");
  }
  step(":Initialising Variable IF Filter Default Values (0)");
  step(":Initialising NotchFilter Default Values");
  notch_.InitialiseDefaults();
  step(":Restoring SDR Settings");
  RestoreSettings();
  step(":Initialising SoundCard Object");
  InitialiseSoundCard();
  ApplyStored();
  step(":Set OutputLevel Attenuator to PublicVars.OutputAttenuation");
  volume_.Restore();
  filter_.ShowDefaults();
  step(":Select Band in use last time");
  memories_.SelectLast();
  volume_.Restore();  // the last one heard, not that of the memory
  step(":Set the last tuned frequency for Spectrum Analyser");
  scope_.TakeTunedFrequency();
  step(":Call modWheelMouse.init");
  step(":Set up default values in the AGC delayline");
  radio_.Rx.Agc.FillDelayLine();
  step(":Call MouseOverS.lblFilterHi_Wheel");
  filter_.lblFilterHi_Wheel();
  step(":Call MouseOverS.lblFilterLo_Wheel");
  filter_.lblFilterLo_Wheel();
  step(":Initialise WavFile Object");
  recorder_.Initialise();
  step(":Call tmrPerfStats_Timer");
  radio_.Housekeeping();
  RestMeters();
  step(":Enable Power Butons");
  for (int i = 0; i < optPwr_.Count(); ++i) optPwr_(i).Enabled = true;
  EnableTimers();
  step(":Initialise the Tuning Step Selector Drop Down List");
  tuning_.FillTuningSteps();
  NameControls(registry_);
  step(":Call DarkenControls");
  scrollables_.DarkenControls();
  colours_.ReColour();
  colours_.UnFocusFrames();
  scope_.EnableTimer();
  if (stored_.AutoStartSDR) optPwr_.Press(0);
  loading_ = false;
  offer_.Look();
  timer_.Start();
  StartRemote();
}

// The radio goes on where nobody can connect.
void frmMain::StartRemote() {
  const Failure failure = server_.Follow(remote_);
  if (remote_.On) log_.AddLog("Remote control: " + server_.StateText());
  if (!failure) return;
  machine_.Boxes.ShowMessage({.Text = failure->Text, .Title = kProductName, .Icon = MessageIcon::Warning});
}

void frmMain::ConnectForm() {
  form_.Caption = kProductName;
  form_.KeyDown = [this](const Key& key) { Form_KeyDown(key); };
  form_.KeyUp = [this](const Key& key) { Raise(tuning_.picFreqDisp.KeyUp, key); };
  form_.MouseMove = [this] { colours_.Form_MouseMove(); };
  SetTexts(optPwr_, PowerTexts);
  for (int i = 0; i < optPwr_.Count(); ++i) optPwr_(i).Enabled = false;
  optPwr_.Press(1);
  PaintPower();
  optPwr_.Click = [this](int index) { optPwr_Click(index); };
  SetTexts(optDisplaySize_, DisplaySizeTexts);
  optDisplaySize_.Click = [this](int index) {
    PaintButtons(optDisplaySize_, index);
    scope_.SetRoom(index != kCompactSize);
  };
}

// Where no value is being turned, the keys that turn one tune, if the listener wants that.
bool frmMain::IsTuningKey(const Key& key) {
  if (!tuning_.KBDSupport || !TuningPanel::TurnsFrequency(key) || scrollables_.ActiveCtl() != CtlIndex::None)
    return false;
  scrollables_.Point(CtlIndex::Frequency);
  return true;
}

// A digit begins a frequency, where it can't be meant for a value.
bool frmMain::TypesFrequency(const Key& key) {
  if (entry_.IsOpen()) {
    entry_.TypeKey(key);
    return true;
  }
  const int active = scrollables_.ActiveCtl();
  const bool free = active == CtlIndex::None || active == CtlIndex::Frequency || scope_.Pointer.IsOver();
  return free && entry_.Open(key);
}

void frmMain::Form_KeyDown(const Key& key) {
  if (TypesFrequency(key)) return;
  const bool tunes = tuning_.KBDSupport || scrollables_.ActiveCtl() == CtlIndex::Frequency;
  if (tunes && tuning_.TuneByKey(key)) return;
  if (key.Code == kMuteKey && !key.With.Ctrl && !key.With.Alt) {
    volume_.chkMute.UserClick();
  } else if (tuning_.cboTuningSteps.Visible()) {
    Raise(tuning_.cboTuningSteps.KeyDown, key);
  } else if (scrollables_.ActiveCtl() == CtlIndex::Frequency || IsTuningKey(key)) {
    Raise(tuning_.picFreqDisp.KeyDown, key);
  } else {
    scrollables_.KeyDown(key);
  }
}

TuningPanelLinks frmMain::LinksOfTuning() {
  TuningPanelLinks links;
  links.ActivateDisplay = [this] { scrollables_.Point(CtlIndex::Frequency); };
  links.ReviveDisplay = [this] { scrollables_.Revive(CtlIndex::Frequency); };
  links.DisplayIsActive = [this] { return scrollables_.ActiveCtl() == CtlIndex::Frequency; };
  links.TypeFrequency = [this](const Key& key) { return TypesFrequency(key); };
  links.ScopePeriodic = [this] { scope_.Periodic(); };
  links.SetLowSideLO = [this](bool low) { radio_.Rx.SetLowSideLO(low); };
  links.StoreTuneStep = [this](std::int32_t dHz) { memories_.StoreTuneStep(dHz); };
  links.TellRecorder = [this](std::int32_t dHz) { wavFile_.NewLogRecord(dHz); };
  links.ShowOscillator = [this](const std::string& text) {
    stats_.lblStatsVal(StatsPanel::kLO).Caption = text;
  };
  return links;
}

ScopePanelLinks frmMain::LinksOfScope() {
  ScopePanelLinks links;
  links.Wanted = [this] { return radio_.Tuning().Tune().Wanted(); };
  links.TuneTo = [this](std::int32_t dHz) { radio_.Tuning().Tune().MoveTo(dHz); };
  links.StepByRate = [this](int direction) { tuning_.StepByRate(direction); };
  links.TakeStep = [this](double dHz) { tuning_.TakeStep(dHz); };
  links.TuneStep = [this] { return radio_.VFO().TuneStep(); };
  links.IsPlaying = [this] { return wavFile_.PlayerMode() == PlayerModes::Playing && !wavFile_.IsIF(); };
  return links;
}

MemoryLinks frmMain::LinksOfMemories() {
  MemoryLinks links;
  links.Tune = [this](std::int32_t dHz) { radio_.Tuning().Tune().MoveTo(dHz); };
  links.Tuned = [this] { return radio_.Tuning().Tune().Wanted(); };
  links.ShowStepLock = [this] { tuning_.imgTuneStepLock.Visible = radio_.VFO().TuneStepLock; };
  links.SetTuningRate = [this](std::int32_t index) { tuning_.SetTuningRate(index, true); };
  links.TellRecorder = [this](std::int32_t hertz) { wavFile_.NewLogRecord(hertz * 10); };
  links.LauncherIsBusy = [this] { return dream_.RunDreamBusy; };
  links.Changed = [this] { scope_.Marks.Refresh(true); };
  links.Splash = [this](const std::string&, bool visible) { OnSplash(visible); };
  return links;
}

RecorderLinks frmMain::LinksOfRecorder() {
  RecorderLinks links;
  links.PressPower = [this](bool on) { optPwr_.Press(on ? 0 : 1); };
  links.IsOn = [this] { return on_; };
  links.IsSoundLent = [this] { return handOver_.IsSoundReleased(); };
  links.ShowMemories = [this](bool shown) { memories_.frPresets.Visible = shown; };
  links.Changed = [this] {
    ApplyPace();
    FollowDeck();
  };
  links.TimerState = [this] { return timer_.State(); };
  links.Log = [this](const std::string& line) { log_.AddLog(line); };
  links.Media = &machine_.Media;
  return links;
}

void frmMain::ConnectRecorder() {
  offer_.Log = [this](const std::string& line) { log_.AddLog(line); };
  offer_.OnAdopted = [this] { recorder_.ShowState(); };
  wavFile_.DefaultDirectory = options_.SoundFolder;
  wavFile_.TunedFrequency = [this] { return radio_.Tuning().Tune().Wanted(); };
  wavFile_.Origin = [this] { return IFOrigin{radio_.Rx.Vars.SDRModelNo, radio_.Rx.Vars.LowSideLO}; };
}

// An IF recording that plays takes the antenna's place; one that pauses, ends or goes gives it back.
void frmMain::FollowDeck() {
  const bool plays =
      on_ && !config_.IsApplying() && wavFile_.PlayerMode() == PlayerModes::Playing && wavFile_.IsIF();
  const bool sameFile = wavFile_.HasFile() && wavFile_.FileName == playedFile_;
  playedFile_ = wavFile_.FileName;
  if (!plays || !sameFile) played_.End();
  if (!sameFile) played_.Forget();
  if (!plays) return;
  played_.Begin(*wavFile_.Playing().IF, 0);
  played_.Follow(wavFile_.Log(), wavFile_.PlayPosition() - 1);
}

void frmMain::ConnectScope() {
  scope_.Marks.Source = [this](double low, double high, ScopeMarks& marks) {
    MemoryMarks(memories_.Plan(), low, high, marks);
  };
  notch_.ShowNotch = [this](bool shown) { scope_.ShowNotch(shown); };
  radio_.OnBlockOut = [this] { scope_.BlockOut(); };
}

void frmMain::ConnectColours() {
  scrollables_.BindKeys(CtlIndex::Frequency, tuning_.picFreqDisp);
  for (Frame* frame : {&tuning_.frFreqCtl, &frPwr_, &frDispMode_}) colours_.Add(*frame);
  colours_.AddRepaint([this] { OnColours(scheme_); });
  colours_.AddRepaint([this] { recorder_.ShowState(); });
  colours_.AddRepaint([this] {
    const ScrollableControl& digits = scrollables_(CtlIndex::Frequency);
    tuning_.SetColours({digits.NormalColour, digits.FocusColour, scheme_.SDRLabelColour,
                        scheme_.SDRTuningColour, scheme_.SDRFrameFocusColour});
  });
}

void frmMain::LetGoOfTuning() {
  tuning_.SetEncoder(nullptr);
  tuning_.SetTuner(nullptr);
  entry_.SetTuner(nullptr);
}

void frmMain::TakeTuning() {
  tuning_.SetTuner(&radio_.Tuning().Tune());
  entry_.SetTuner(&radio_.Tuning().Tune());
  tuning_.SetEncoder(&radio_.Tuning().SerialIF());
}

void frmMain::MakeTuning() {
  LetGoOfTuning();
  Raise(options_.OnBoard, radio_.Rx.Vars.SDRModelNo);
  TellTuningFaults(radio_.CreateTuning(stored_.IFType, tuning_.ShaftEnabled, false));
  TakeTuning();
  // Ticked before its handler first runs, so that the stored side stays.
  tuning_.chkTuneLo.SetValue(!radio_.VFO().HiSideLO);
}

void frmMain::TellTuningFaults(bool open) {
  const auto tell = [this](const std::string& text) {
    machine_.Boxes.ShowMessage({.Text = text, .Title = kProductName, .Icon = MessageIcon::Warning});
  };
  if (!open && stored_.IFType == InterfaceType::Serial) {
    const clsDDSSerialIF& serial = radio_.Tuning().SerialIF();
    const Error fault = serial.OpenFailure().value_or(Error{});
    tell("Unable to open Serial Interface COM" + std::to_string(serial.PortNo) + "\n" + kFrameTag + kLoad +
         ":" + std::to_string(loadStep_) + "\nError Code=" + std::to_string(fault.Code) +
         "\nError Desc=" + fault.Text);
  }
  if (const Failure& fault = radio_.Tuning().Fault()) tell(fault->Text);
}

void frmMain::InitialiseSoundCard() {
  radio_.SetSoundFormat(radio_.ShortDelay);
  radio_.ChooseDevices();
  machine_.Sound.OnDeviceLost([this](const Error& error) {
    // A level meter's device is none of the radio's.
    const bool own = on_ ? radio_.SoundCard().HasLostDevice() : radio_.SoundCard().Prepared();
    if (!own) return log_.AddLog(error.Text);
    if (on_) optPwr_.Press(1);
    radio_.SoundCard().ReleaseDevices();  // opened anew, wherever it is then, when the power goes on
    log_.AddLog(error.Text);
    machine_.Boxes.ShowMessage({.Text = error.Text, .Title = kProductName, .Icon = MessageIcon::Warning});
  });
}

void frmMain::ApplyStored() {
  optDisplaySize_.Press(wantedSize_);
  scope_.Apply();
  tuning_.chkTuneLo_Click();
  stats_.chkPerfStatsOn_Click();
}

void frmMain::ConnectHousekeeping() {
  // Whoever moves the receiver to the other side takes the oscillator along.
  following_ = radio_.Rx.Changed.Listen([this](ReceiverPart part) {
    if (part == ReceiverPart::Side) tuning_.chkTuneLo.SetValue(radio_.Rx.Vars.LowSideLO);
  });
  radio_.Rx.OnModeChange = [this] { handOver_.ModeChanged(); };
  played_.OnChange = [this](bool plays) { memories_.SetHeld(plays); };
  radio_.BeforeFilters = [this] {
    smeter_.Update();
    stats_.Update();
    recorder_.Housekeep();
    FollowDeck();
  };
  radio_.AfterFilters = [this](bool peakMoved) {
    if (peakMoved) notch_.ShowPeak();
    stats_.ShowOscOut(radio_.VFO().OscOut);
  };
}

void frmMain::SetSeen(bool seen) {
  if (unloaded_) return;
  seen_ = seen;
  scope_.SetSeen(seen);
  ApplyPace();
}

// A recording's log is as exact as the timer that tells it the frequency.
void frmMain::ApplyPace() {
  const int interval = seen_ || recorder_.IsRecording() ? kTuneInterval : kUnseenTuneInterval;
  if (!loading_ && tuning_.tmrTune.Interval() != interval) tuning_.tmrTune.SetInterval(interval);
}

void frmMain::EnableTimers() {
  struct Start {
    const char* Text;
    Timer& Which;
    int Interval;
  };
  for (const Start& start : {Start{":Enable TmrTune", tuning_.tmrTune, kTuneInterval},
                             Start{":Enable TmrVFOUpdate", tuning_.tmrVFOUpdate, kVFOUpdateInterval},
                             Start{":Enable TmrShaft", tuning_.tmrShaft, kShaftInterval},
                             Start{":Enable TmrClock", tuning_.tmrClock, kClockInterval},
                             Start{":Enable TmrSubBands", memories_.tmrSubBands, kSubBandsInterval}}) {
    Log(kLoad, start.Text);
    start.Which.SetInterval(start.Interval);
    start.Which.SetEnabled(true);
  }
  StartSaving();
}

}  // namespace quorl
