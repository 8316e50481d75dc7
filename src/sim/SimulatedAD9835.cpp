#include "sim/SimulatedAD9835.h"

namespace quorl {

void SimulatedAD9835::SetPin(ChipPin pin, bool high) {
  switch (pin) {
    case ChipPin::Data:
      data_ = high;
      return;
    case ChipPin::Clock:
      if (!high && clock_ && !select_ && bits_ < 16) {
        word_ = static_cast<std::uint16_t>((word_ << 1U) | (data_ ? 1U : 0U));
        if (++bits_ == 16) TakeWord(word_);
      }
      clock_ = high;
      return;
    case ChipPin::Select:
      if (high != select_) bits_ = 0;
      select_ = high;
      return;
  }
}

void SimulatedAD9835::TakeWord(std::uint16_t word) {
  const unsigned command = word >> 12U;
  const unsigned address = (word >> 8U) & 0xFU;
  const auto lower = static_cast<std::uint8_t>(word & 0xFFU);
  if ((command & 0xCU) == 0xCU) {
    asleep_ = (word & 0x2000U) != 0;
    reset_ = (word & 0x1000U) != 0;
    const bool clear = (word & 0x0800U) != 0;
    if (clear) serialSelects_ = false;
    return;
  }
  if ((command & 0xCU) == 0x8U) {
    serialSelects_ = (word & 0x1000U) != 0;
    return;
  }
  switch (command) {
    case 0x0:
      phase_[(address >> 1U) & 3U] = static_cast<std::uint16_t>(((lower & 0xFU) << 8U) | defer_);
      return;
    case 0x1:
    case 0x3:
      defer_ = lower;
      return;
    case 0x2:
      LoadFrequency(address, lower);
      return;
    case 0x5:
    case 0x6:
      selectsFrequency1_ = (word & 0x0800U) != 0;
      return;
    default:
      return;  // 4 selects a phase register, which no frequency depends on; 7 is reserved
  }
}

// Sixteen bits at a time: the byte of this word above the byte that waits in the defer register.
void SimulatedAD9835::LoadFrequency(unsigned address, std::uint8_t upper) {
  std::uint32_t& target = frequency_[(address >> 2U) & 1U];
  const std::uint32_t half = (static_cast<std::uint32_t>(upper) << 8U) | defer_;
  const bool upperHalf = (address & 2U) != 0;
  target = upperHalf ? (target & 0x0000FFFFU) | (half << 16U) : (target & 0xFFFF0000U) | half;
}

std::optional<double> SimulatedAD9835::OutputHz() const {
  if (asleep_ || reset_) return {};
  return SynthesisedHz(TuningWord(), clockHz_ * (1.0 + clockError_ * 1e-6));
}

}  // namespace quorl
