#include "sim/SimulatedAD9951.h"

namespace quorl {
namespace {

constexpr std::array<int, SimulatedAD9951::RegisterCount> kRegisterBytes = {4, 3, 2, 1, 4, 2};

constexpr std::uint32_t kPowerDownBits = 0xB0;  // CFR1: digital core, DAC, clock input

constexpr int kLowestMultiplier = 4, kHighestMultiplier = 20;

}  // namespace

void SimulatedAD9951::SetPin(ChipPin pin, bool high) {
  switch (pin) {
    case ChipPin::Data:
      data_ = high;
      return;
    case ChipPin::Clock:
      if (high && !clock_ && !select_) TakeBit(data_);
      clock_ = high;
      return;
    case ChipPin::Select:
      if (high && !select_) {
        active_ = buffered_;
        RestartSerialPort();
      }
      select_ = high;
      return;
  }
}

void SimulatedAD9951::RestartSerialPort() {
  byte_ = 0;
  bits_ = 0;
  bytesLeft_ = 0;
}

void SimulatedAD9951::TakeBit(bool bit) {
  const unsigned incoming = bit ? 1U : 0U;
  const unsigned shifted =
      LeastSignificantFirst() ? (byte_ >> 1U) | (incoming << 7U) : (byte_ << 1U) | incoming;
  byte_ = static_cast<std::uint8_t>(shifted);
  if (++bits_ < 8) return;
  bits_ = 0;
  TakeByte(byte_);
}

void SimulatedAD9951::TakeByte(std::uint8_t byte) {
  const unsigned address = instruction_ & 0x1FU;
  if (bytesLeft_ == 0) {
    instruction_ = byte;
    const unsigned next = byte & 0x1FU;
    bytesLeft_ = next < RegisterCount ? kRegisterBytes[next] : 0;
    bytesDone_ = 0;
    value_ = 0;
    return;
  }
  value_ = LeastSignificantFirst() ? value_ | (static_cast<std::uint32_t>(byte) << (8 * bytesDone_))
                                   : (value_ << 8U) | byte;
  ++bytesDone_;
  const bool isRead = (instruction_ & 0x80U) != 0;
  if (--bytesLeft_ == 0 && !isRead) buffered_[address] = value_;
}

std::optional<double> SimulatedAD9951::SystemClockHz() const {
  const double crystal = referenceHz_ * (1.0 + clockError_ * 1e-6);
  const int multiplier = static_cast<int>((active_[Cfr2] >> 3U) & 0x1FU);
  if (multiplier < kLowestMultiplier || multiplier > kHighestMultiplier) return crystal;
  const double multiplied = crystal * multiplier;
  const bool upperRange = (active_[Cfr2] & 0x4U) != 0;
  const double lowest = upperRange ? 250e6 : 100e6;
  const double highest = upperRange ? 400e6 : 250e6;
  if (multiplied < lowest || multiplied > highest) return {};
  return multiplied;
}

std::optional<double> SimulatedAD9951::OutputHz() const {
  if ((active_[Cfr1] & kPowerDownBits) != 0) return {};
  const std::optional<double> clock = SystemClockHz();
  return clock ? SynthesisedHz(active_[Ftw0], *clock) : std::nullopt;
}

}  // namespace quorl
