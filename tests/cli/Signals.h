// Test signals on the 12 kHz IF.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "signals/Measures.h"

namespace quorl::test {

inline std::int16_t Quantise(double value) {
  return static_cast<std::int16_t>(std::lrint(value));
}

inline std::vector<std::int16_t> Tone(double hertz, double level, std::size_t count) {
  std::vector<std::int16_t> samples(count);
  for (std::size_t n = 0; n < count; ++n)
    samples[n] = Quantise(level * std::cos(Radians(hertz) * static_cast<double>(n)));
  return samples;
}

// A carrier on the IF's centre with 50 percent of modulation by `hertz`.
inline std::vector<std::int16_t> AMSignal(double hertz, double level, std::size_t count) {
  std::vector<std::int16_t> samples(count);
  for (std::size_t n = 0; n < count; ++n) {
    samples[n] = Quantise(level * (1.0 + 0.5 * std::cos(Radians(hertz) * static_cast<double>(n))) *
                          std::cos(Radians(12000.0) * static_cast<double>(n)));
  }
  return samples;
}

// Left and right as one stream.
inline std::vector<std::int16_t> Interleave(const std::vector<std::int16_t>& left,
                                            const std::vector<std::int16_t>& right) {
  std::vector<std::int16_t> both(2 * left.size());
  for (std::size_t n = 0; n < left.size(); ++n) {
    both[2 * n] = left[n];
    both[2 * n + 1] = right[n];
  }
  return both;
}

}  // namespace quorl::test
