// A direct digital synthesis chip as its three control pins see it.
#pragma once

#include <cstdint>
#include <optional>

namespace quorl {

enum class ChipPin {
  Select,  // IO UPDATE of an AD9951, FSYNC of an AD9835
  Data,
  Clock,
};

class SimulatedChip {
 public:
  virtual ~SimulatedChip() = default;
  // Puts a level on a pin. A level that the pin already has is no edge.
  virtual void SetPin(ChipPin pin, bool high) = 0;
  // Frequency at the output, Hz, with the clock error in it; empty while the chip gives no signal
  // (never programmed, reset, asleep, word 0).
  virtual std::optional<double> OutputHz() const = 0;
  // The tuning word that is in force.
  virtual std::uint32_t TuningWord() const = 0;
  // Error of the board's crystal in parts per million: positive is fast. At once in force.
  virtual void SetClockError(double partsPerMillion) = 0;
};

// Output of an accumulator of 32 bits: word x clock / 2^32, folded at half the clock as a sampled sine is.
std::optional<double> SynthesisedHz(std::uint32_t word, double clockHz);

}  // namespace quorl
