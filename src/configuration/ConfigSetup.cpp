#include "configuration/ConfigSetup.h"

#include <array>

#include "configuration/FieldTexts.h"

namespace quorl {

namespace {

// A straight cable; the board reads its clock from the transmitter's line.
constexpr std::array<const char*, 7> kSerialWiring{"PC(DB9)        RX(DB9)", "RTS(7)   --->  SDIO(7)",
                                                   "TXD(3)   --->  SCLK(3)", "DTR(4)   --->  IOUPD/FSYNC(4)",
                                                   "0V(5)    <-->  0V(5)",   "CTS(8)   <---  Encoder",
                                                   "DSR(6)   <---  Encoder"};

// A table is read line by line.
void NameWires(const std::string& port, ControlArray<Label>& lines) {
  for (int i = 0; i < lines.Count(); ++i)
    lines(i).AccessibleName = port + (i == 0 ? ", plugs" : ", wire " + std::to_string(i));
}

}  // namespace

ConfigSetup::ConfigSetup(ControlRegistry& registry, frmConfig& config, ConfigSetupLinks links)
    : Level(registry, kConfigForm, links.Sound, links.Queue, links.Level),
      First(registry,
            {links.Sound, links.Ports,
             [&chain = links.Chain]() -> const clsDDSSerialIF& { return chain.SerialIF(); }, links.Queue},
            links.Level),
      frSerialWiring(registry, ConfigName("frSerialWiring")),
      lblSerialWiring(registry, ConfigName("lblSerialWiring"), static_cast<int>(kSerialWiring.size())),
      config_(config),
      links_(std::move(links)) {
  NameWires("Serial port", lblSerialWiring);
  NameWires("Parallel port", config_.Interface.lblWiring);
  config_.lblAbout.AccessibleName = "About the program";
  frSerialWiring.Caption = "Serial Port to RX Wiring";
  for (int i = 0; i < lblSerialWiring.Count(); ++i)
    lblSerialWiring(i).Caption = kSerialWiring[static_cast<std::size_t>(i)];
  First.OnDone = [this](const FirstStartAnswers& answers) { Fill(answers); };
  for (Control* control : std::initializer_list<Control*>{
           &config_.Form, &config_.frConfigs(ConfigPage::Sound), &config_.Sound.cboCapDevices,
           &config_.Sound.cboPlayDevices, &config_.Receiver.cboSDRModel})
    following_.push_back(control->OnChanged.Listen([this] { Follow(); }));
}

void ConfigSetup::Follow() {
  Level.ChooseBoard(config_.Receiver.cboSDRModel.ListIndex());
  Level.ChooseInput(config_.Sound.cboCapDevices.ListIndex() + 1);
  Level.ChooseOutput(config_.Sound.cboPlayDevices.ListIndex() + 1);
  // One page listens at a time.
  Level.Show(config_.Form.Visible() && config_.frConfigs(ConfigPage::Sound).Visible() && !First.IsOpen());
  if (!config_.Form.Visible() && First.IsOpen()) First.Close();
}

void ConfigSetup::NoteBlock(const std::int16_t* left, const std::int16_t* right, std::int32_t n) {
  Level.NoteBlock(left, right, n);
  First.Level.NoteBlock(left, right, n);
}

void ConfigSetup::LetGo() {
  Level.LetGo();
  First.Level.LetGo();
}

void ConfigSetup::Close() {
  First.Close();
  Level.Show(false);
}

FirstStartAnswers ConfigSetup::Present() const {
  FirstStartAnswers present;
  present.SDRModelNo = config_.Receiver.cboSDRModel.ListIndex();
  present.IFType = config_.Interface.optIF.Pressed() == InterfaceChoice::Parallel ? InterfaceType::Parallel
                                                                                  : InterfaceType::Serial;
  present.PortNo = config_.Interface.cboComPort.ListIndex() + 1;
  present.PortAddress = ParseAddress(config_.Interface.txtPortAddress.Value()).value_or(present.PortAddress);
  present.CaptureName = config_.Sound.cboCapDevices.Text();
  present.PlaybackName = config_.Sound.cboPlayDevices.Text();
  return present;
}

void ConfigSetup::Ask() {
  Level.Show(false);
  First.Open(Present());
}

void ConfigSetup::Fill(const FirstStartAnswers& answers) {
  if (answers.SDRModelNo == FirstStartAnswers::kNoBoard) {
    StoreKnownBoard(links_.Store, KnownBoard::None);
    config_.lblConfigMessage.Caption = "The program starts with the demo from the next time on.";
    return;
  }
  StoreKnownBoard(links_.Store, KnownBoard::Chosen);
  config_.Receiver.cboSDRModel.SetListIndex(answers.SDRModelNo);
  if (LacksClock(links_.Store, answers.SDRModelNo))
    config_.Receiver.txtDDSClkin.SetValue(HertzText(BoardClock(answers.SDRModelNo)));
  const bool parallel = answers.IFType == InterfaceType::Parallel;
  config_.Interface.optIF.Press(parallel ? InterfaceChoice::Parallel : InterfaceChoice::Serial);
  if (answers.PortNo > 0) config_.Interface.cboComPort.SetListIndex(answers.PortNo - 1);
  if (parallel) config_.Interface.txtPortAddress.SetValue(AddressText(answers.PortAddress));
  if (answers.Capture > 0) config_.Sound.cboCapDevices.SetListIndex(answers.Capture - 1);
  if (answers.Playback > 0) config_.Sound.cboPlayDevices.SetListIndex(answers.Playback - 1);
  config_.lblConfigMessage.Caption = "The answers are in the fields: Apply takes them.";
}

}  // namespace quorl
