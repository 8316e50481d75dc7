#include "configuration/FirstStart.h"

#include <algorithm>

#include "config/Inks.h"
#include "configuration/FieldTexts.h"
#include "interaction/PanelColours.h"
#include "interaction/PanelTexts.h"
#include "state/PublicConstants.h"
#include "support/Product.h"
#include "support/Text.h"

namespace quorl {

namespace {

constexpr const char* kDialog = "frmFirstStart";
constexpr const char *kBoardKey = "Board", *kModelKey = "SDRModelNo";
constexpr const char *kNone = "none", *kLater = "later", *kChosen = "chosen";
constexpr std::int32_t kAD9951Clock = 360096000, kAD9835Clock = 50000000;  // Hz
constexpr int kParallel = 0, kSerial = 1;                                  // places in optIF
constexpr const char *kSerialSection = "DDSSerialIF", *kParallelSection = "DDSParallelIF";

constexpr std::array<const char*, SDRModelNames.size() + 1> kBoards{
    "AD9951 on a serial port. Its signal comes in on the left channel.",
    "AD9835 on a serial or a parallel port. Its signal comes in on the left channel.",
    "AD9951 on a serial port. I and Q come in on both channels.",
    "AD9951 on a serial port. Its signal comes in on the left channel.",
    "The demo plays a simulated band; a board can be chosen later in the configuration."};
constexpr int kNoBoardPlace = static_cast<int>(SDRModelNames.size());

std::string Name(const char* control) {
  return std::string(kDialog) + "." + control;
}

// Chooses the entry of that name, else the first.
void List(ComboBox& box, const std::vector<std::string>& names, const std::string& wanted) {
  box.SetItems(names);
  const auto found = std::find(names.begin(), names.end(), wanted);
  const auto index = found == names.end() ? 0 : static_cast<int>(found - names.begin());
  if (!names.empty()) box.SetListIndex(index);
}

}  // namespace

KnownBoard ReadKnownBoard(const SettingsStore& store) {
  const std::string known = store.GetSetting(kMainSection, kBoardKey, "");
  if (EqualsNoCase(known, kNone)) return KnownBoard::None;
  if (EqualsNoCase(known, kLater)) return KnownBoard::Later;
  return store.GetSetting(kMainSection, kModelKey, "").empty() ? KnownBoard::Unasked : KnownBoard::Chosen;
}

void StoreKnownBoard(SettingsStore& store, KnownBoard board) {
  store.SaveSetting(kMainSection, kBoardKey,
                    board == KnownBoard::None    ? kNone
                    : board == KnownBoard::Later ? kLater
                                                 : kChosen);
}

std::int32_t BoardClock(std::int32_t SDRModelNo) {
  return TuningChain::TakesParallel(SDRModelNo) ? kAD9835Clock : kAD9951Clock;
}

// A store that was never told a clock has that of the other chip, with which an AD9951 can't be tuned at all.
bool LacksClock(const SettingsStore& store, std::int32_t SDRModelNo) {
  double clock = 0;
  store.Read(ChipSection(SDRModelNo), "ClkIn", clock);
  return clock <= 0 || (!TuningChain::TakesParallel(SDRModelNo) && clock <= kAD9835Clock);
}

void StoreClock(SettingsStore& store, std::int32_t SDRModelNo) {
  if (LacksClock(store, SDRModelNo))
    store.SaveSetting(ChipSection(SDRModelNo), "ClkIn", NumberText(BoardClock(SDRModelNo)));
}

const char* ChipSection(std::int32_t SDRModelNo) {
  return TuningChain::TakesParallel(SDRModelNo) ? "DDSAD9835" : "DDSAD9951";
}

void StoreAnswers(SettingsStore& store, const FirstStartAnswers& answers) {
  if (answers.SDRModelNo == FirstStartAnswers::kNoBoard) return StoreKnownBoard(store, KnownBoard::None);
  StoreKnownBoard(store, KnownBoard::Chosen);
  const auto save = [&store](const char* key, std::int32_t value) {
    store.SaveSetting(kMainSection, key, NumberText(value));
  };
  save(kModelKey, answers.SDRModelNo);
  save("VFO1.IFType", answers.IFType);
  if (answers.Capture > 0) {
    save("CurrentCaptureDevice", answers.Capture);
    store.SaveSetting(kMainSection, "CurrentCaptureDeviceName", answers.CaptureName);
  }
  if (answers.Playback > 0) {
    save("CurrentPlaybackDevice", answers.Playback);
    store.SaveSetting(kMainSection, "CurrentPlaybackDeviceName", answers.PlaybackName);
  }
  if (answers.PortNo > 0) store.SaveSetting(kSerialSection, "PortNo", NumberText(answers.PortNo));
  if (!answers.PortPath.empty())
    store.SaveSetting(kSerialSection, "COM" + std::to_string(answers.PortNo), answers.PortPath);
  if (answers.IFType == InterfaceType::Parallel)
    store.SaveSetting(kParallelSection, "PortAddress", NumberText(std::int32_t{answers.PortAddress}));
  StoreClock(store, answers.SDRModelNo);
}

FirstStartAnswers ReadAnswers(const SettingsStore& store) {
  FirstStartAnswers answers;
  const auto inRange = [&store](const char* section, const char* key, std::int32_t least, std::int32_t most,
                                std::int32_t otherwise) {
    std::int32_t value = otherwise;
    store.Read(section, key, value);
    return value >= least && value <= most ? value : otherwise;
  };
  if (ReadKnownBoard(store) != KnownBoard::None)
    answers.SDRModelNo = inRange(kMainSection, kModelKey, 0, kNoBoardPlace - 1, answers.SDRModelNo);
  answers.IFType = inRange(kMainSection, "VFO1.IFType", 0, 1, answers.IFType);
  answers.PortNo = inRange(kSerialSection, "PortNo", 1, ComPorts::kCount, answers.PortNo);
  answers.PortAddress =
      static_cast<std::uint16_t>(inRange(kParallelSection, "PortAddress", 0, 0xFFFF, answers.PortAddress));
  store.Read(kMainSection, "CurrentCaptureDeviceName", answers.CaptureName);
  store.Read(kMainSection, "CurrentPlaybackDeviceName", answers.PlaybackName);
  return answers;
}

FirstStart::FirstStart(ControlRegistry& registry, FirstStartMachine machine, LevelLinks links)
    : Form(registry, kDialog),
      optBoard(registry, Name("optBoard"), kNoBoardPlace + 1),
      lblBoard(registry, Name("lblBoard")),
      optIF(registry, Name("optIF"), 2),
      lblIF(registry, Name("lblIF")),
      cboComPort(registry, Name("cboComPort")),
      txtPortAddress(registry, Name("txtPortAddress")),
      lblPort(registry, Name("lblPort")),
      cboCapDevices(registry, Name("cboCapDevices")),
      Level(registry, kDialog, machine.Sound, machine.Queue, std::move(links)),
      cboPlayDevices(registry, Name("cboPlayDevices")),
      cmdRefresh(registry, Name("cmdRefresh")),
      cmdStart(registry, Name("cmdStart")),
      cmdSkip(registry, Name("cmdSkip")),
      machine_(machine) {
  NameControls();
  Connect();
  Form.Visible = false;
}

void FirstStart::NameControls() {
  Form.Caption = std::string(kProductName) + " - First start";
  for (int i = 0; i < kNoBoardPlace; ++i) optBoard(i).Caption = SDRModelNames[static_cast<std::size_t>(i)];
  optBoard(kNoBoardPlace).Caption = "No board";
  SetTexts(optIF, InterfaceTypeTexts);
  optIF(kParallel).Caption = "Parallel";
  optIF(kSerial).Caption = "Serial";
  for (int i = 0; i < optBoard.Count(); ++i) optBoard(i).ToolTip = kBoards[static_cast<std::size_t>(i)];
  lblBoard.AccessibleName = "About the board";
  lblIF.AccessibleName = "About the interface";
  lblPort.AccessibleName = "About the port";
  cboComPort.AccessibleName = "Serial port";
  cboComPort.ToolTip = "The port that the board is connected to";
  txtPortAddress.AccessibleName = "Port address";
  txtPortAddress.ToolTip = "Such as &H378, 0x378 or 888: the first printer port";
  cboCapDevices.AccessibleName = "Sound input";
  cboCapDevices.ToolTip = "The input that the board's signal comes in by";
  cboPlayDevices.AccessibleName = "Sound output";
  cboPlayDevices.ToolTip = "Where the radio is heard";
  cmdRefresh.Caption = "Look &again";
  cmdRefresh.ToolTip = "For ports and sound devices that have been plugged in since";
  cmdSkip.Caption = "Not &now";
  cmdSkip.ToolTip = "The configuration asks again when you want it to";
}

void FirstStart::Connect() {
  Form.KeyDown = [this](const Key& key) {
    if (key.Code == Key::Escape) cmdSkip_Click();
  };
  optBoard.Click = [this] {
    if (!TuningChain::TakesParallel(Model())) optIF.Press(kSerial);
    ShowChoice();
  };
  optIF.Click = [this] { ShowChoice(); };
  cboCapDevices.Click = [this] { Level.ChooseInput(cboCapDevices.ListIndex() + 1); };
  cboPlayDevices.Click = [this] { Level.ChooseOutput(cboPlayDevices.ListIndex() + 1); };
  txtPortAddress.Change = [this] { txtPortAddress.Fault = std::string(); };
  cmdRefresh.Click = [this] { ListDevices(Answers()); };
  cmdStart.Click = [this] { cmdStart_Click(); };
  cmdSkip.Click = [this] { cmdSkip_Click(); };
}

void FirstStart::Open(const FirstStartAnswers& answers) {
  optBoard.Press(answers.SDRModelNo < 0 ? kNoBoardPlace : answers.SDRModelNo);
  optIF.Press(answers.IFType == InterfaceType::Parallel && TuningChain::TakesParallel(Model()) ? kParallel
                                                                                               : kSerial);
  txtPortAddress.SetValue(AddressText(answers.PortAddress));
  ListDevices(answers);
  Form.Visible = true;
  ShowChoice();
}

void FirstStart::ListDevices(const FirstStartAnswers& answers) {
  ports_.Refresh(machine_.Interface(), machine_.Ports.List());
  portNumbers_.clear();
  std::vector<std::string> ports;
  int chosen = 0;
  for (int number = 1; number <= ComPorts::kCount; ++number) {
    if (!ports_.IsThere(number)) continue;
    if (number == answers.PortNo) chosen = static_cast<int>(ports.size());
    ports.push_back(ports_.Names()[static_cast<std::size_t>(number) - 1]);
    portNumbers_.push_back(number);
  }
  cboComPort.SetItems(ports);
  if (!ports.empty()) cboComPort.SetListIndex(chosen);
  List(cboCapDevices, machine_.Sound.CaptureDeviceNames(), answers.CaptureName);
  List(cboPlayDevices, machine_.Sound.PlaybackDeviceNames(), answers.PlaybackName);
  Level.ChooseInput(cboCapDevices.ListIndex() + 1);
  Level.ChooseOutput(cboPlayDevices.ListIndex() + 1);
  ShowChoice();
}

std::int32_t FirstStart::Model() const {
  return optBoard.Pressed() == kNoBoardPlace ? FirstStartAnswers::kNoBoard : optBoard.Pressed();
}

void FirstStart::ShowChoice() {
  PaintButtons(optBoard, optBoard.Pressed());
  PaintButtons(optIF, optIF.Pressed());
  lblBoard.Caption = kBoards[static_cast<std::size_t>(std::max(optBoard.Pressed(), 0))];
  optIF(kParallel).Enabled = TuningChain::TakesParallel(Model());
  optIF(kSerial).Enabled = HasBoard();
  lblIF.Caption =
      HasBoard() && !TuningChain::TakesParallel(Model()) ? "This board takes the serial one only." : "";
  ShowPort();
  cboCapDevices.Enabled = HasBoard();
  Level.ChooseBoard(Model());
  Level.Show(IsOpen() && HasBoard());
  cmdStart.Caption = HasBoard() ? "&Start the radio" : "&Start the demo";
}

void FirstStart::ShowPort() {
  cboComPort.Visible = IsSerial();
  txtPortAddress.Visible = !IsSerial();
  cboComPort.Enabled = HasBoard() && !portNumbers_.empty();
  txtPortAddress.Enabled = HasBoard();
  const bool missing = HasBoard() && IsSerial() && portNumbers_.empty();
  lblPort.ForeColour = missing ? kWrongInk : kNoColour;
  lblPort.Caption = missing ? "No serial port: plug in the adapter and look again." : "";
}

FirstStartAnswers FirstStart::Answers() const {
  FirstStartAnswers answers;
  answers.SDRModelNo = Model();
  answers.IFType = IsSerial() ? InterfaceType::Serial : InterfaceType::Parallel;
  if (const int chosen = cboComPort.ListIndex(); chosen >= 0) {
    answers.PortNo = portNumbers_[static_cast<std::size_t>(chosen)];
    answers.PortPath = ports_.NewPath(answers.PortNo);
  }
  answers.PortAddress = ParseAddress(txtPortAddress.Value()).value_or(answers.PortAddress);
  answers.Capture = cboCapDevices.ListIndex() + 1;
  answers.CaptureName = cboCapDevices.Text();
  answers.Playback = cboPlayDevices.ListIndex() + 1;
  answers.PlaybackName = cboPlayDevices.Text();
  return answers;
}

void FirstStart::Close() {
  Form.Visible = false;
  Level.Show(false);
}

void FirstStart::cmdStart_Click() {
  if (HasBoard() && !IsSerial() && !ParseAddress(txtPortAddress.Value())) {
    txtPortAddress.Fault = "A port address is 0 to 65535, such as &H378, 0x378 or 888.";
    return;
  }
  Close();
  OnDone(Answers());
}

void FirstStart::cmdSkip_Click() {
  Close();
  OnSkip();
}

}  // namespace quorl
