// Test signals on the 12 kHz IF, and how strong one frequency is in what came out.
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <span>
#include <vector>

namespace quorl::test {

inline std::int16_t Quantise(double value) {
  return static_cast<std::int16_t>(std::lrint(value));
}

inline double TurnsAt(double hertz, std::size_t n) {
  return 2.0 * std::numbers::pi * hertz * static_cast<double>(n) / 48000.0;
}

inline std::vector<std::int16_t> Tone(double hertz, double level, std::size_t count) {
  std::vector<std::int16_t> samples(count);
  for (std::size_t n = 0; n < count; ++n) samples[n] = Quantise(level * std::cos(TurnsAt(hertz, n)));
  return samples;
}

// A carrier on the IF's centre with 50 percent of modulation by `hertz`.
inline std::vector<std::int16_t> AMSignal(double hertz, double level, std::size_t count) {
  std::vector<std::int16_t> samples(count);
  for (std::size_t n = 0; n < count; ++n) {
    samples[n] = Quantise(level * (1.0 + 0.5 * std::cos(TurnsAt(hertz, n))) * std::cos(TurnsAt(12000.0, n)));
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

// Amplitude of the line at `hertz`, under a Hann window.
inline double LineAt(std::span<const std::int16_t> samples, double hertz) {
  double re = 0.0, im = 0.0, weights = 0.0;
  for (std::size_t n = 0; n < samples.size(); ++n) {
    const double position = static_cast<double>(n) / static_cast<double>(samples.size());
    const double weight = 1.0 - std::cos(2.0 * std::numbers::pi * position);
    re += weight * samples[n] * std::cos(TurnsAt(hertz, n));
    im += weight * samples[n] * std::sin(TurnsAt(hertz, n));
    weights += weight;
  }
  return 2.0 * std::hypot(re, im) / weights;
}

}  // namespace quorl::test
