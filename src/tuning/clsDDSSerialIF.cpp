#include "tuning/clsDDSSerialIF.h"

#include <algorithm>

#include "support/Product.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr std::int32_t kOpenHandle = 1;
constexpr char kChooseAnother[] = "Please Set valid COM port in Configuration, then Close and Restart";

}  // namespace

clsDDSSerialIF::clsDDSSerialIF(SerialPort& port, EventQueue& events, Dialogs& dialogs,
                               SettingsStore& settings)
    : port_(port), events_(events), dialogs_(dialogs), settings_(settings) {}

clsDDSSerialIF::~clsDDSSerialIF() {
  ClosePort();
  if (listening_) {
    port_.OnStatusChange([] {});
    port_.OnPresence({});
  }
}

void clsDDSSerialIF::Save() const {
  settings_.SaveSetting(Name, "PortNo", NumberText(PortNo));
  settings_.SaveSetting(Name, "WaitTime", NumberText(WaitTime));
}

void clsDDSSerialIF::RestoreSettings() {
  settings_.Read(Name, "PortNo", PortNo);
  PortNo = std::max(PortNo, 1);
  settings_.Read(Name, "WaitTime", WaitTime);
}

std::string clsDDSSerialIF::DevicePath(const std::string& portName) const {
  const auto number =
      ParseInt32(std::string_view(portName).substr(std::min<std::size_t>(3, portName.size())));
  const std::string usual = "/dev/ttyS" + (number && *number > 0 ? std::to_string(*number - 1) : portName);
  return settings_.GetSetting(Name, portName, usual);
}

bool clsDDSSerialIF::HasOwnDevice(const std::string& portName) const {
  return !settings_.GetSetting(Name, portName, "").empty();
}

std::int32_t clsDDSSerialIF::OpenPort(bool eventMode, bool tells) {
  EventMode = eventMode;
  if (hComm_ > 0) return hComm_;
  listening_ = true;
  port_.OnPresence([this](const Failure& vanished) { FollowPresence(vanished); });
  port_.OnStatusChange([this] {
    if (EventMode && OnComm) OnComm();
  });
  const std::string number = std::to_string(PortNo);
  const std::string name = EventMode ? "COM" + number : ("COM" + number + ":").substr(0, 4);
  const std::string complaint =
      EventMode ? "Unable to Open COM" + number + "\n" + kChooseAnother +
                      "\nclsDDSSerialIF.cls:clsDDSSerialIF:OpenPort:" + std::to_string(__LINE__)
                : Name + " : PollMode : Unable to Open COM" + number + "\n" + kChooseAnother;
  return OpenDevice(name, tells ? complaint : "");
}

std::int32_t clsDDSSerialIF::OpenDevice(const std::string& portName, const std::string& complaint) {
  openFailure_ = port_.Open(DevicePath(portName));
  if (openFailure_) {
    if (!complaint.empty()) {
      dialogs_.ShowMessage({.Text = complaint, .Title = kProductName});
    }
    return 0;
  }
  hComm_ = kOpenHandle;
  RestSignals();
  return hComm_;
}

void clsDDSSerialIF::RestSignals() {
  IOUPD(0);
  SDATA(0);
  SCLCK(0);
}

void clsDDSSerialIF::FollowPresence(const Failure& vanished) {
  vanished_ = vanished.has_value();
  if (!vanished_) RestSignals();
  if (OnPresence) OnPresence(vanished);
}

void clsDDSSerialIF::ClosePort() {
  if (hComm_ <= 0) return;
  port_.Close();
  vanished_ = false;
  if (!EventMode) hComm_ = 0;
}

void clsDDSSerialIF::IOUPD(int State) {
  port_.SetLine(SerialLine::Dtr, State < 1);
}
void clsDDSSerialIF::SDATA(int State) {
  port_.SetLine(SerialLine::Rts, State < 1);
}
void clsDDSSerialIF::SCLCK(int State) {
  port_.SetLine(SerialLine::Break, (State & 1) != 0);
}
void clsDDSSerialIF::StartSequence() {
  port_.SetLine(SerialLine::Break, true);
}
void clsDDSSerialIF::EndSequence() {
  port_.SetLine(SerialLine::Break, false);
}

int clsDDSSerialIF::Send(std::uint8_t ByteToSend) {
  if (hComm_ <= 0 || vanished_) return 1;
  Out8(ByteToSend);
  return 0;
}

void clsDDSSerialIF::ClockPulse() {
  SCLCK(1);
  Delay(WaitTime);
  SCLCK(0);
  Delay(WaitTime);
}

void clsDDSSerialIF::Out8(std::uint8_t ByteToSend) {
  SCLCK(0);
  Delay(WaitTime);
  for (int mask = 128; mask > 0; mask /= 2) {
    SDATA(ByteToSend & mask);
    ClockPulse();
  }
}

void clsDDSSerialIF::Out16(std::uint16_t WordToSend) {
  IOUPD(0);
  for (int mask = 32768; mask > 0; mask /= 2) {
    port_.SetLine(SerialLine::Rts, (WordToSend & mask) > 0);
    Delay(WaitTime);
    ClockPulse();
  }
  IOUPD(1);
}

void clsDDSSerialIF::Out32(std::int32_t WordToSend) {
  IOUPD(0);
  Delay(WaitTime);
  // Halving the signed mask keeps its sign bit, so it covers all places from the round's own upwards.
  for (std::int32_t mask = INT32_MIN; mask != 0; mask /= 2) {
    port_.SetLine(SerialLine::Rts, (WordToSend & mask) > 0);
    Delay(WaitTime);
    ClockPulse();
    Delay(WaitTime);
  }
  Delay(WaitTime);
  IOUPD(1);
  Delay(WaitTime);
}

void clsDDSSerialIF::Delay(double DELAYTIME) {
  if (DELAYTIME != 0) events_.Yield();
}

std::uint32_t clsDDSSerialIF::GetEncoderBits() const {
  return hComm_ > 0 ? port_.Status().value_or(0) : 0;
}

}  // namespace quorl
