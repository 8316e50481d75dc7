// Start and end of the program.
#include "core/frmMain.h"

#include "platform/Dialogs.h"
#include "platform/InstanceLock.h"
#include "platform/files/GrowingFile.h"
#include "support/Product.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr const char* kInitialize = "Form_Initialize";
constexpr int kUnloadInterval = 10;  // ms between two looks at a load that the end waits for

}  // namespace

frmMain::frmMain(Machine machine, SettingsStore& store, LogBook& log, StartOptions options)
    : boxes_(machine.Boxes),
      machine_{machine.Queue,  machine.Time,    boxes_,           machine.Storage,
               machine.Beside, machine.Media,   machine.Instance, machine.Sound,
               machine.Serial, machine.Printer, machine.Programs, machine.Network},
      store_(store),
      log_(log),
      options_(std::move(options)),
      wavFile_(DeckMachine(), options_.ApplicationFolder),
      offer_(wavFile_, DeckMachine(), options_.ApplicationFolder),
      radio_(machine_, store, wavFile_, [&log](const std::string& line) { log.AddLog(line); }),
      played_(radio_.Rx, radio_.Tuning()),
      logPanel_(registry_, log),
      form_(registry_, "frmMain"),
      frPwr_(registry_, "frPwr"),
      frDispMode_(registry_, "frDispMode"),
      optPwr_(registry_, "optPwr", static_cast<int>(PowerTexts.size())),
      optDisplaySize_(registry_, "optDisplaySize", static_cast<int>(DisplaySizeTexts.size())),
      scrollables_(scheme_),
      colours_(registry_, scheme_, scrollables_),
      context_{registry_, scrollables_, colours_, radio_.Rx, [this] { machine_.Queue.Yield(); }},
      tuning_(registry_, machine_.Queue, machine_.Time, radio_.Rx.Vars, LinksOfTuning()),
      entry_(registry_),
      ifFilter_(context_),
      filter_(context_),
      demod_(context_),
      decoderNote_(context_),
      notch_(context_),
      nb_(context_),
      agc_(context_),
      volume_(context_),
      bfo_(context_),
      stats_(registry_, radio_.Rx.Vars, radio_.Rx.Pump.Statistics),
      smeter_(registry_, radio_.Rx.Vars),
      scope_(context_, machine_.Queue, machine_.Time, LinksOfScope()),
      memories_(context_, {machine_.Storage, machine_.Beside, machine_.Queue, machine_.Boxes, machine_.Time},
                LinksOfMemories()),
      recorder_(context_, DeckMachine(), wavFile_, LinksOfRecorder()),
      timer_(wavFile_, DeckMachine(), LinksOfTimer()),
      timerPanel_(registry_, timer_, wavFile_, machine_.Time, LinksOfTimerPanel()),
      dream_({machine_.Queue, machine_.Time, machine_.Boxes, machine_.Storage, machine_.Programs},
             options_.ApplicationFolder, LinksOfDream()),
      handOver_(machine_.Queue, dream_, LinksOfHandOver()),
      steered_(radio_, LinksOfSteered()),
      server_(machine_.Network, machine_.Queue, machine_.Time, steered_),
      calibrate_(registry_, radio_.Tuning(), radio_.Rx, machine_.Queue),
      config_(registry_, LinksOfConfig()),
      setup_(registry_, config_, LinksOfSetup()),
      tmrSaveSettings_(machine_.Queue, [this] { SaveNow(); }),
      tmrUnload_(machine_.Queue, [this] { Form_Unload(); }) {
  logPanel_.frmLog.Visible = false;
  volume_.OnMute = [this](bool muted) { radio_.SetMuted(muted); };
  ConnectForm();
  ConnectColours();
  ConnectHousekeeping();
  ConnectScope();
  ConnectRecorder();
  ConnectSetup();
  AddSettings();
}

WavFileMachine frmMain::DeckMachine() const {
  return {machine_.Storage, machine_.Beside, machine_.Queue, machine_.Boxes, machine_.Time};
}

frmMain::~frmMain() {
  Form_Unload();
}

void frmMain::Log(const char* routine, const std::string& text) {
  log_.AddLog(std::string(kFrameTag) + routine + text);
}

bool frmMain::Form_Initialize() {
  const bool trace = options_.CommandLine.find("trace") != std::string::npos;
  logPanel_.frmLog.Visible = trace;
  if (machine_.Instance.Acquire(store_.Path())) {
    machine_.Boxes.ShowMessage(
        {.Text = std::string(kProductName) + " is already running", .Title = kProductName});
    return false;
  }
  log_.Start(trace);
  store_.SetLog([&log = log_](const std::string& line) { log.AddLog(line); });
  OnSplash(true);
  if (const Failure failure = store_.Load()) {
    machine_.Boxes.ShowMessage({.Text = failure->Text, .Title = kProductName, .Icon = MessageIcon::Warning});
  }
  if (options_.Defaults) options_.Defaults(store_);
  Log(kInitialize, " : Start");
  Log(kInitialize, " : QUORL.INIT");
  INIT();
  Log(kInitialize, " : PublicVars.SDRColourSchemes.Defaults");
  scheme_.Defaults();
  Log(kInitialize, ":Initialising BandPlans");
  if (!FindBandPlans()) {
    OnSplash(false);
    return false;
  }
  Log(kInitialize, ":Initialising Digital Filter Objects");
  radio_.Rx.InitialiseFilters();
  Log(kInitialize, ":Creating Profiler Object");
  Log(kInitialize, ":Initialising Tuning Step Array");
  OnSplash(false);
  Log(kInitialize, ":Load Main Form");
  if (!Form_Load()) return false;
  Log(kInitialize, ":End");
  return true;
}

// The outside vector library is not looked for: the kernel's own routines are faster on what runs this
// program.
void frmMain::INIT() {
  KernelSettings& kernel = radio_.Rx.Settings;
  kernel.SPLAvailable = kernel.UseSPL = false;
  kernel.Report = [this](const std::string& text) {
    machine_.Boxes.ShowMessage({.Text = text, .Title = kProductName});
  };
}

bool frmMain::FindBandPlans() {
  constexpr std::string_view kEnding = ".bpl";
  const std::string& folder = options_.ApplicationFolder;
  for (const std::string& file : machine_.Storage.List(folder, std::string(kEnding))) {
    Log(kInitialize, ":Processing " + file);
    RemoveLeftovers(machine_.Storage, folder + "/" + file);
    memories_.AddPlan(folder + "/" + file, file.substr(0, file.size() - kEnding.size()));
  }
  if (!memories_.BandPlans.empty()) return true;
  Log(kInitialize, ":No BandPlans found in " + folder);
  machine_.Boxes.ShowMessage({.Text = "No Bandplan (.bpl) files found - You must have at least 1 Bandplan \n"
                                      "Please Re-Install Application or find a .BPL file",
                              .Title = std::string(kProductName) + " - No Bandplan found",
                              .Icon = MessageIcon::Critical});
  return false;
}

void frmMain::optPwr_Click(int index) {
  log_.AddLog("optPwr_click : Start Arg=" + std::to_string(index));
  const bool closes = index == 2 && !switching_;
  if (index < 2) {
    SwitchPower(index == 0);
  } else if (!closes) {
    optPwr_.Press(powerWanted_ ? 0 : 1);
  }
  log_.AddLog("optPwr_click : End");
  if (closes) OnClose();
}

void frmMain::RemoveCaption(bool removed) {
  if (removed == captionRemoved_) return;
  captionRemoved_ = removed;
  OnCaption(!removed);
}

// A click that comes while the power is being switched is carried out when that is done.
void frmMain::SwitchPower(bool on) {
  powerWanted_ = on;
  if (switching_) return;
  ScopedFlag guard(switching_);
  FollowPower();
}

void frmMain::FollowPower() {
  while (on_ != powerWanted_) powerWanted_ ? PowerOn() : PowerOff();
}

void frmMain::PowerOn() {
  on_ = true;
  PaintPower();
  RemoveCaption(stored_.FormCaptionOffOnPwrOn);
  FollowDeck();
  radio_.Rx.FilterMaker.MakeFilters();
  optPwr_(2).Enabled = false;
  scope_.SetPower(true);
  if (handOver_.KeepsSound()) return radio_.SoundCard().ReleaseDevices();
  if (!radio_.SoundCard().Prepared()) ChooseDevices();
  StartSound();
}

void frmMain::StartSound() {
  const Failure failure = radio_.Start();
  if (!failure) return;
  LogSoundFailure(*failure);
  // What can't be opened has been told, but not what was open and doesn't start. The panel goes back to Off
  // and stays tunable.
  if (radio_.SoundCard().Prepared()) {
    radio_.SoundCard().ReleaseDevices();
    machine_.Boxes.ShowMessage({.Text = failure->Text, .Title = kProductName, .Icon = MessageIcon::Warning});
  }
  optPwr_.Press(1);
}

void frmMain::LogSoundFailure(const Error& failure) {
  log_.AddLog("The sound does not start: " + failure.Text + ". " + radio_.DeviceText() + ", " +
              std::to_string(radio_.SoundCard().FSampling) + " Hz");
}

// The button in force is dark green or dark red, the other one is lit.
void frmMain::PaintPower() {
  optPwr_(0).BackColour = on_ ? 0x00C000 : 0x00FF00;
  optPwr_(1).BackColour = on_ ? 0x0000FF : 0x0000C0;
  recorder_.ShowState();
}

// Who switches from far away can't answer a box: it stands at the panel, and holds up neither him nor others.
SteeredRadioLinks frmMain::LinksOfSteered() {
  return {.IsOn = [this] { return on_; },
          .SwitchPower =
              [this](bool on) {
                const ScopedFlag unattended(boxes_.Unattended);
                optPwr_.Press(on ? 0 : 1);
              },
          .SignalLevel = [this] { return smeter_.SignalLevel; }};
}

// A radio that is off shows nothing of what it last heard.
void frmMain::RestMeters() {
  smeter_.Rest();
  stats_.Rest();
}

void frmMain::PowerOff() {
  radio_.Stop();
  on_ = false;
  scope_.SetPower(false);
  PaintPower();
  RestMeters();
  optPwr_(2).Enabled = true;
  RemoveCaption(false);
  played_.End();
  SaveNow();
}

void frmMain::Form_Unload() {
  if (unloaded_ || !formed_) return;
  // A load or a save that this was called from can only go on when this has returned.
  const bool waits = memories_.IsLoading() || wavFile_.IsBusy() || config_.IsUnderWay();
  tmrUnload_.SetInterval(kUnloadInterval);
  tmrUnload_.SetEnabled(waits);
  if (waits) return;
  server_.Stop();
  calibrate_.Leave();
  timer_.Stop();
  handOver_.Stop();
  config_.Stop();
  setup_.Close();
  radio_.tmrPerfStats.SetEnabled(false);
  scope_.Stop();
  radio_.Stop();
  radio_.SoundCard().ReleaseDevices();
  machine_.Sound.OnDeviceLost([](const Error&) {});
  memories_.tmrSubBands.SetEnabled(false);
  wavFile_.Finish();
  played_.End();
  if (!loading_) {
    memories_.Finish();
    SaveSettings();
  }
  unloaded_ = true;
  LetGoOfTuning();
  radio_.Rx.Tap.Analyser = nullptr;
  dream_.End();
  radio_.Tuning().Save();
  radio_.ReleaseTuning();
  machine_.Beside.Finish();  // an older state never lands on the last one
  if (const Failure failure = store_.Save()) {
    log_.AddLog(failure->Text);
    machine_.Boxes.ShowMessage({.Text = failure->Text, .Title = kProductName, .Icon = MessageIcon::Warning});
  }
}

}  // namespace quorl
