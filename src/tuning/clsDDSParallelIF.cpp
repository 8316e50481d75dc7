#include "tuning/clsDDSParallelIF.h"

#include "support/Text.h"

namespace quorl {
namespace {

constexpr std::uint8_t kData = 1, kClock = 2, kSelect = 4;

}  // namespace

clsDDSParallelIF::clsDDSParallelIF(PrinterPort& port, EventQueue& events, SettingsStore& settings)
    : port_(port), events_(events), settings_(settings) {}

void clsDDSParallelIF::Save() const {
  settings_.SaveSetting(Name, "PortAddress", NumberText(std::int32_t{PortAddress}));
  settings_.SaveSetting(Name, "WaitTime", NumberText(WaitTime));
  settings_.SaveSetting(Name, "NonInverting", FlagText(NonInverting));
}

void clsDDSParallelIF::RestoreSettings() {
  std::int32_t address = PortAddress;
  settings_.Read(Name, "PortAddress", address);
  if (address >= 0 && address <= UINT16_MAX) PortAddress = static_cast<std::uint16_t>(address);
  settings_.Read(Name, "WaitTime", WaitTime);
  NonInverting = ParseFlag(settings_.GetSetting(Name, "NonInverting", "False")).value_or(NonInverting);
}

bool clsDDSParallelIF::IsPositive(int state) const {
  const int flag = state > 0 ? 1 : state;
  return (NonInverting ? ~flag : flag) > 0;
}

void clsDDSParallelIF::SendDataBit(int bit) {
  const std::uint8_t data = IsPositive(bit) ? std::uint8_t{0} : kData;
  Write(kSelect | data);
  Write(static_cast<std::uint8_t>(kSelect | kClock | data));
  Delay(WaitTime);
  Write(kSelect | data);
  Delay(WaitTime);
}

void clsDDSParallelIF::SCLCK(int) {
  Write(0);
}

void clsDDSParallelIF::SetClock() {
  Delay(WaitTime);
  Write(0);
  Delay(WaitTime);
}

void clsDDSParallelIF::IOUPD(int State) {
  Write(IsPositive(State) ? std::uint8_t{0} : kSelect);
}

void clsDDSParallelIF::SetFSync(int state) {
  Delay(WaitTime);
  IOUPD(state);
  Delay(WaitTime);
}

void clsDDSParallelIF::Out8(std::uint8_t ByteToSend) {
  for (int mask = 128; mask > 0; mask /= 2) SendDataBit(ByteToSend & mask);
}

int clsDDSParallelIF::Send(std::uint8_t ByteToSend) {
  Out8(ByteToSend);
  return 0;
}

void clsDDSParallelIF::Out16(std::uint16_t WordToSend) {
  SetClock();
  SetFSync(1);
  for (int mask = 32768; mask > 0; mask /= 2) SendDataBit(WordToSend & mask);
  SetFSync(0);
}

void clsDDSParallelIF::Out32(std::uint32_t WordToSend) {
  SetClock();
  SetFSync(1);
  for (std::uint32_t mask = 0x80000000; mask > 0; mask /= 2) {
    SendDataBit(static_cast<int>(WordToSend & mask & 0xFFFF));
  }
  SetFSync(0);
}

void clsDDSParallelIF::StartSequence() {
  Delay(WaitTime);
  SetFSync(1);
}

void clsDDSParallelIF::EndSequence() {
  Delay(WaitTime);
  SetFSync(0);
}

void clsDDSParallelIF::Delay(double DELAYTIME) {
  if (DELAYTIME != 0) events_.Yield();
}

}  // namespace quorl
