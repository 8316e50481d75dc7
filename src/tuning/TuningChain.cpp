#include "tuning/TuningChain.h"

#include <algorithm>
#include <array>
#include <utility>

#include "support/Product.h"
#include "support/Text.h"
#include "tuning/TuningError.h"
#include "tuning/clsAD9835.h"
#include "tuning/clsAD9951.h"

namespace quorl {
namespace {

enum class Chip { AD9951, AD9835 };

struct Board {
  const char* VFOName;
  Chip Driver;
  std::int32_t IFFrequency;  // Hz
  bool AutoUpdate;
};

constexpr double kTuneStep = 1000;  // dHz
constexpr Board kDRT1 = {"VFO1.DRT1", Chip::AD9951, 45000000, true};
constexpr Board kElektorDRM = {"VFO1.ElektorDRM", Chip::AD9835, 455000, false};
constexpr Board kRXIQ = {"VFO1.RXIQ", Chip::AD9951, 45000000, true};

constexpr char kAD9951Section[] = "DDSAD9951", kAD9835Section[] = "DDSAD9835";
constexpr char kSerialSection[] = "DDSSerialIF", kParallelSection[] = "DDSParallelIF";
constexpr std::int32_t kNoInterface = -1;

const Board& BoardOf(std::int32_t SDRModelNo) {
  return SDRModelNo == 0 ? kDRT1 : SDRModelNo == 1 ? kElektorDRM : kRXIQ;
}

// With its stored settings, and no chip.
std::shared_ptr<clsVFO> MakeVFO(SettingsStore& settings, const Board& board) {
  auto vfo = std::make_shared<clsVFO>(settings);
  vfo->Name = board.VFOName;
  vfo->SetCalibOffset(0);
  vfo->SetIFFrequency(board.IFFrequency);
  vfo->HiSideLO = true;
  vfo->OscMultiplier = 1;
  vfo->SetTuneStep(kTuneStep);
  vfo->AutoUpdate = board.AutoUpdate;
  vfo->RestoreSettings();
  return vfo;
}

}  // namespace

TuningChain::TuningChain(TuningMachine machine, SettingsStore::LogSink log)
    : machine_(machine),
      log_(std::move(log)),
      vfo_(std::make_shared<clsVFO>(machine.Settings)),
      tuner_(std::make_unique<Tuner>(vfo_)) {
  MakeInterfaces();
}

void TuningChain::MakeInterfaces() {
  serial_ =
      std::make_shared<clsDDSSerialIF>(machine_.Serial, machine_.Events, machine_.Boxes, machine_.Settings);
  parallel_ = std::make_shared<clsDDSParallelIF>(machine_.Printer, machine_.Events, machine_.Settings);
  serial_->Name = kSerialSection;
  parallel_->Name = kParallelSection;
}

void TuningChain::Release() {
  vfo_->OscType.reset();
  driver_.reset();
  connect_ = {};
  // The old port lets go of its lines before the new one takes them.
  serial_.reset();
  MakeInterfaces();
}

void TuningChain::Log(const std::string& line) const {
  if (log_) log_(line);
}

void TuningChain::Tell(const std::string& text, MessageIcon icon) {
  Log(text);
  machine_.Boxes.ShowMessage({.Text = text, .Title = kProductName, .Icon = icon});
}

bool TuningChain::OpenInterface(std::int32_t interfaceType, bool shaftEncoder, bool tellsPort) {
  serial_->RestoreSettings();
  parallel_->RestoreSettings();
  if (interfaceType == InterfaceType::Serial) return OpenSerial(shaftEncoder, tellsPort);
  if (interfaceType == InterfaceType::Parallel) return CheckParallel();
  Tell("Unknown DDSIFType specified in Registry - Check DDSIFType key - No interface initialised",
       MessageIcon::None);
  return false;
}

bool TuningChain::OpenSerial(bool shaftEncoder, bool tells) {
  serial_->OnPresence = [this](const Failure& vanished) { FollowPort(vanished); };
  const bool open = serial_->OpenPort(shaftEncoder, tells) > 0;
  if (const Failure& failure = serial_->OpenFailure()) {
    Log("COM" + std::to_string(serial_->PortNo) + ": " + failure->Text);
  }
  return open;
}

bool TuningChain::CheckParallel() {
  const Failure failure = machine_.Printer.Check(parallel_->PortAddress);
  if (failure) Tell(failure->Text, MessageIcon::Warning);
  return !failure;
}

void TuningChain::FollowPort(const Failure& vanished) {
  const std::string port = "COM" + std::to_string(serial_->PortNo) + ": ";
  if (vanished) {
    Log(port + vanished->Text);
    machine_.Boxes.ShowNotice({.Text = port + vanished->Text + ". Tuning has no effect until it is back.",
                               .Title = kProductName,
                               .Icon = MessageIcon::Warning});
    return;
  }
  Log(port + "The serial port is back");
  if (driver_) tuner_->Revive();
}

std::shared_ptr<Oscillator> TuningChain::CreateAD9951(std::int32_t interfaceType) {
  auto driver = std::make_shared<clsAD9951>(machine_.Settings, machine_.Boxes);
  driver->Name = kAD9951Section;
  connect_ = [this, chip = driver.get()](std::int32_t type) {
    chip->IFHandler = type == InterfaceType::Serial ? serial_ : nullptr;
  };
  if (interfaceType != InterfaceType::Serial) {
    Log(driver->Name + ": this chip can only be tuned over the serial interface - No interface initialised");
  }
  if (const auto failure = driver->RestoreSettings()) Log(failure->Text);
  return driver;
}

std::shared_ptr<Oscillator> TuningChain::CreateAD9835() {
  auto driver = std::make_shared<clsAD9835>(machine_.Settings, machine_.Boxes);
  driver->Name = kAD9835Section;
  connect_ = [this, chip = driver.get()](std::int32_t type) {
    if (type == InterfaceType::Serial) {
      chip->IFHandler = serial_;
    } else if (type == InterfaceType::Parallel) {
      chip->IFHandler = parallel_;
    } else {
      chip->IFHandler = nullptr;
    }
  };
  return driver;
}

void TuningChain::CreateVFO(std::int32_t SDRModelNo, std::int32_t interfaceType,
                            std::optional<std::int32_t> tuned) {
  const Board& board = BoardOf(SDRModelNo);
  model_ = SDRModelNo;
  vfo_ = MakeVFO(machine_.Settings, board);
  vfo_->DDSInterfaceType = interfaceType;
  // Still without a chip: noted, and nothing is sent.
  if (tuned) vfo_->SetTunedFrequency(*tuned);
  tuner_ = std::make_unique<Tuner>(vfo_);
  driver_ = board.Driver == Chip::AD9951 ? CreateAD9951(interfaceType) : CreateAD9835();
  connect_(interfaceType);
  vfo_->OscType = driver_;
  if (const auto failure = driver_->Initialise()) Log(failure->Text);

  fault_ = ClockFault();
  if (fault_) Log(fault_->Text);
}

Failure TuningChain::ClockFault() const {
  if (!driver_ || driver_->MaxFreq / 10 > vfo_->IFFrequency()) return {};
  return Fail(TuningError::Overflow,
              driver_->Name + ": a clock of " + NumberText(driver_->ClkIn()) +
                  " Hz is too low for this board, half of it must lie above the IF of " +
                  NumberText(vfo_->IFFrequency()) +
                  " Hz - set the board's DDS clock in the configuration, or as ClkIn in section [" +
                  driver_->Name + "] of the settings file");
}

bool TuningChain::TakesParallel(std::int32_t SDRModelNo) {
  return BoardOf(SDRModelNo).Driver == Chip::AD9835;
}

BoardValues TuningChain::InUse() const {
  return {vfo_->IFFrequency(), vfo_->HiSideLO, vfo_->AutoUpdate, driver_ ? driver_->ClkIn() : 0};
}

BoardValues TuningChain::Stored(std::int32_t SDRModelNo) const {
  const Board& board = BoardOf(SDRModelNo);
  const auto vfo = MakeVFO(machine_.Settings, board);
  const char* section = board.Driver == Chip::AD9951 ? kAD9951Section : kAD9835Section;
  // Boards of one chip share its clock.
  const double clock = driver_ && driver_->Name == section
                           ? driver_->ClkIn()
                           : Oscillator::StoredClkIn(machine_.Settings, section);
  return {vfo->IFFrequency(), vfo->HiSideLO, vfo->AutoUpdate, clock};
}

bool TuningChain::IsIdle() const {
  return !tuner_->IsWorking() && !vfo_->IsStepping() && !(driver_ && driver_->IsSending());
}

void TuningChain::Connect(std::int32_t interfaceType) {
  if (connect_) connect_(interfaceType);
  vfo_->DDSInterfaceType = interfaceType;
}

bool TuningChain::ReopenSerial(std::int32_t portNo, bool shaftEncoder, bool tells) {
  const double waitTime = serial_->WaitTime;
  const std::int32_t type = vfo_->DDSInterfaceType;
  // Nobody holds the old one any more when the new one takes the port.
  if (connect_) connect_(kNoInterface);
  serial_.reset();
  serial_ =
      std::make_shared<clsDDSSerialIF>(machine_.Serial, machine_.Events, machine_.Boxes, machine_.Settings);
  serial_->Name = kSerialSection;
  serial_->PortNo = portNo;
  serial_->WaitTime = waitTime;
  if (connect_) connect_(type);
  return OpenSerial(shaftEncoder, tells);
}

void TuningChain::Save() const {
  if (!driver_) return;
  vfo_->SaveSettings();
  driver_->Save();
  serial_->Save();
  parallel_->Save();
}

}  // namespace quorl
