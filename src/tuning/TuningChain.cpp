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

const Board& BoardOf(std::int32_t SDRModelNo) {
  return SDRModelNo == 0 ? kDRT1 : SDRModelNo == 1 ? kElektorDRM : kRXIQ;
}

}  // namespace

TuningChain::TuningChain(TuningMachine machine, SettingsStore::LogSink log)
    : machine_(machine),
      log_(std::move(log)),
      serial_(
          std::make_shared<clsDDSSerialIF>(machine.Serial, machine.Events, machine.Boxes, machine.Settings)),
      parallel_(std::make_shared<clsDDSParallelIF>(machine.Printer, machine.Events, machine.Settings)),
      vfo_(std::make_shared<clsVFO>(machine.Settings)),
      tuner_(std::make_unique<Tuner>(vfo_)) {
  serial_->Name = "DDSSerialIF";
  parallel_->Name = "DDSParallelIF";
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
  driver->Name = "DDSAD9951";
  if (interfaceType == InterfaceType::Serial) {
    driver->IFHandler = serial_;
  } else {
    Log(driver->Name + ": this chip can only be tuned over the serial interface - No interface initialised");
  }
  if (const auto failure = driver->RestoreSettings()) Log(failure->Text);
  return driver;
}

std::shared_ptr<Oscillator> TuningChain::CreateAD9835(std::int32_t interfaceType) {
  auto driver = std::make_shared<clsAD9835>(machine_.Settings, machine_.Boxes);
  driver->Name = "DDSAD9835";
  if (interfaceType == InterfaceType::Serial) {
    driver->IFHandler = serial_;
  } else if (interfaceType == InterfaceType::Parallel) {
    driver->IFHandler = parallel_;
  }
  return driver;
}

void TuningChain::CreateVFO(std::int32_t SDRModelNo, std::int32_t interfaceType) {
  const Board& board = BoardOf(SDRModelNo);
  vfo_ = std::make_shared<clsVFO>(machine_.Settings);
  tuner_ = std::make_unique<Tuner>(vfo_);
  driver_ = board.Driver == Chip::AD9951 ? CreateAD9951(interfaceType) : CreateAD9835(interfaceType);
  vfo_->OscType = driver_;
  if (const auto failure = driver_->Initialise()) Log(failure->Text);

  vfo_->Name = board.VFOName;
  vfo_->SetCalibOffset(0);
  vfo_->SetIFFrequency(board.IFFrequency);
  vfo_->HiSideLO = true;
  vfo_->OscMultiplier = 1;
  vfo_->SetTuneStep(kTuneStep);
  vfo_->AutoUpdate = board.AutoUpdate;
  vfo_->DDSInterfaceType = interfaceType;
  vfo_->RestoreSettings();

  fault_ = {};
  if (driver_->MaxFreq / 10 <= vfo_->IFFrequency()) {
    fault_ = Fail(TuningError::Overflow,
                  driver_->Name + ": a clock of " + NumberText(driver_->ClkIn()) +
                      " Hz is too low for this board, half of it must lie above the IF of " +
                      NumberText(vfo_->IFFrequency()) + " Hz - set ClkIn in section [" + driver_->Name +
                      "] of the settings file to the board's DDS clock");
    Log(fault_->Text);
  }
}

void TuningChain::Save() const {
  if (!driver_) return;
  vfo_->SaveSettings();
  driver_->Save();
  serial_->Save();
  parallel_->Save();
}

}  // namespace quorl
