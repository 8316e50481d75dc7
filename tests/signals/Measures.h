// What tests measure in sound: the line at a frequency, loudness, decibels. Double precision, independent of
// the code under test. Samples are 48000 a second and of any number type.
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>
#include <ranges>

namespace quorl::test {

// dB of an amplitude ratio.
inline double Decibels(double ratio) {
  return 20.0 * std::log10(std::max(ratio, 1e-30));
}

// Phase that `hertz` turns in one sample.
inline double Radians(double hertz) {
  return 2.0 * std::numbers::pi * hertz / 48000.0;
}

// Hann: exact where every line in the span lies on a whole bin, two bins apart. Blackman: sidelobes 58 dB and
// more down, for lines some three bins apart, wherever they lie.
enum class Window { Hann, Blackman };

inline double WeightOf(Window window, double part) {
  const double x = 2.0 * std::numbers::pi * part;
  return window == Window::Hann ? 1.0 - std::cos(x) : 0.42 - 0.5 * std::cos(x) + 0.08 * std::cos(2.0 * x);
}

// Complex amplitude of the real line at `hertz`: a cosine of amplitude A that begins the span reads A.
template <std::ranges::random_access_range Samples>
std::complex<double> PhasorAt(const Samples& samples, double hertz, Window window = Window::Hann) {
  const auto count = static_cast<std::size_t>(std::ranges::size(samples));
  const std::complex<double> turn = std::polar(1.0, -Radians(hertz));
  std::complex<double> phase = 1.0, sum = 0.0;
  double weights = 0.0;
  for (std::size_t n = 0; n < count; ++n) {
    const double weight = WeightOf(window, static_cast<double>(n) / static_cast<double>(count));
    sum += weight * static_cast<double>(samples[n]) * phase;
    weights += weight;
    phase *= turn;
  }
  return weights > 0.0 ? 2.0 * sum / weights : 0.0;
}
template <std::ranges::random_access_range Samples>
double LineAt(const Samples& samples, double hertz, Window window = Window::Hann) {
  return std::abs(PhasorAt(samples, hertz, window));
}

// 0 for no samples.
template <std::ranges::sized_range Samples>
double RootMeanSquare(const Samples& samples) {
  double sum = 0.0;
  for (const auto sample : samples) sum += static_cast<double>(sample) * static_cast<double>(sample);
  return std::ranges::empty(samples) ? 0.0 : std::sqrt(sum / static_cast<double>(std::ranges::size(samples)));
}

}  // namespace quorl::test
