// AD9951: serial registers behind buffers that an IO update takes over, clock multiplier, 32-bit accumulator.
//
// Source: the chip's data sheet (serial control port, control function registers). The board ties IO SYNC to
// the update line, so that each frame between two updates starts with an instruction byte even if the frame
// before it was cut short.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "sim/SimulatedChip.h"

namespace quorl {

class SimulatedAD9951 final : public SimulatedChip {
 public:
  enum Register { Cfr1 = 0, Cfr2, Asf, Arr, Ftw0, Pow0, RegisterCount };

  // `referenceHz` is the crystal's frequency before the chip's own multiplier.
  explicit SimulatedAD9951(double referenceHz) : referenceHz_(referenceHz) {}

  // Data is taken on the rising clock edge while the update line is low; its rising edge is the IO update.
  void SetPin(ChipPin pin, bool high) override;
  std::optional<double> OutputHz() const override;
  std::uint32_t TuningWord() const override { return active_[Ftw0]; }
  void SetClockError(double partsPerMillion) override { clockError_ = partsPerMillion; }

  // A register as the chip works with it (`Active`), or as last written and not yet taken over.
  std::uint32_t Active(Register index) const { return active_[index]; }
  std::uint32_t Buffered(Register index) const { return buffered_[index]; }
  // After multiplier and clock error, Hz; empty where the multiplier's oscillator can't reach it: its ranges
  // are 100 to 250 MHz, and 250 to 400 MHz with the range bit set.
  std::optional<double> SystemClockHz() const;

 private:
  void TakeBit(bool bit);
  void TakeByte(std::uint8_t byte);
  void RestartSerialPort();
  bool LeastSignificantFirst() const { return (active_[Cfr1] & 0x100U) != 0; }

  double referenceHz_;
  double clockError_ = 0.0;
  std::array<std::uint32_t, RegisterCount> buffered_{};
  std::array<std::uint32_t, RegisterCount> active_{};
  bool select_ = true;
  bool data_ = true;
  bool clock_ = false;

  std::uint8_t byte_ = 0;  // bits that have come in of the byte under way
  int bits_ = 0;
  std::uint8_t instruction_ = 0;
  std::uint32_t value_ = 0;  // data bytes that have come in of the register under way
  int bytesDone_ = 0;
  int bytesLeft_ = 0;  // 0: the next byte is an instruction
};

}  // namespace quorl
