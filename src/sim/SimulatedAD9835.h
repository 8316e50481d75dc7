// AD9835: 16-bit command words, defer register, two frequency registers, sleep and reset.
//
// Source: the chip's data sheet (control words, addressing). The pins that choose a register are tied low on
// the board: FREQ0 is at work unless a command moves the choice to the serial port.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "sim/SimulatedChip.h"

namespace quorl {

class SimulatedAD9835 final : public SimulatedChip {
 public:
  explicit SimulatedAD9835(double clockHz) : clockHz_(clockHz) {}

  // Data is taken on the falling clock edge while FSYNC is low; the 16th bit carries the word out. Further
  // bits of the frame go nowhere, a frame that ends early is forgotten.
  void SetPin(ChipPin pin, bool high) override;
  std::optional<double> OutputHz() const override;
  std::uint32_t TuningWord() const override { return frequency_[SelectedFrequency()]; }
  void SetClockError(double partsPerMillion) override { clockError_ = partsPerMillion; }

  std::uint32_t FrequencyRegister(int index) const { return frequency_[static_cast<unsigned>(index)]; }
  std::uint16_t PhaseRegister(int index) const { return phase_[static_cast<unsigned>(index)]; }

 private:
  void TakeWord(std::uint16_t word);
  void LoadFrequency(unsigned address, std::uint8_t upper);
  unsigned SelectedFrequency() const { return serialSelects_ && selectsFrequency1_ ? 1U : 0U; }

  double clockHz_;
  double clockError_ = 0.0;
  std::array<std::uint32_t, 2> frequency_{};
  std::array<std::uint16_t, 4> phase_{};
  std::uint8_t defer_ = 0;
  // After power-up the chip stays silent until a word lets it run.
  bool asleep_ = true;
  bool reset_ = true;
  bool serialSelects_ = false;      // SELSRC
  bool selectsFrequency1_ = false;  // FREQ bit of the select commands
  bool select_ = true;
  bool data_ = true;
  bool clock_ = false;
  std::uint16_t word_ = 0;
  int bits_ = 0;
};

}  // namespace quorl
