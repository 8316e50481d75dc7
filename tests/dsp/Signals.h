// Test signals and measures, in double precision and independent of the code under test.
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <numbers>
#include <random>
#include <span>
#include <vector>

#include "dsp/kernel/SampleBuffer.h"
#include "signals/Measures.h"

namespace quorl::test {

using ComplexVector = std::vector<std::complex<double>>;

// Uniform noise of -limit to limit, the same on every run.
inline SampleBuffer RandomFloats(std::size_t count, float limit, unsigned seed) {
  std::mt19937 generator(seed);
  std::uniform_real_distribution<float> uniform(-limit, limit);
  SampleBuffer values(count);
  for (float& v : values) v = uniform(generator);
  return values;
}

// Textbook transform, straight from the definition.
inline ComplexVector DirectTransform(const ComplexVector& in) {
  ComplexVector out(in.size());
  for (std::size_t k = 0; k < in.size(); ++k) {
    for (std::size_t n = 0; n < in.size(); ++n) {
      out[k] +=
          in[n] * std::polar(1.0, -2.0 * std::numbers::pi * double(k * n % in.size()) / double(in.size()));
    }
  }
  return out;
}

// The same by halving, for lengths that the definition is too slow for.
inline ComplexVector FastTransform(const ComplexVector& in) {
  const std::size_t n = in.size();
  if (n == 1) return in;
  ComplexVector even(n / 2), odd(n / 2), out(n);
  for (std::size_t k = 0; k < n / 2; ++k) {
    even[k] = in[2 * k];
    odd[k] = in[2 * k + 1];
  }
  even = FastTransform(even);
  odd = FastTransform(odd);
  for (std::size_t k = 0; k < n / 2; ++k) {
    const auto turned = odd[k] * std::polar(1.0, -2.0 * std::numbers::pi * double(k) / double(n));
    out[k] = even[k] + turned;
    out[k + n / 2] = even[k] - turned;
  }
  return out;
}

// Level of (got - expected) against expected, dB.
template <typename Got>
double ErrorDecibels(const Got& got, const ComplexVector& expected) {
  double error = 0.0, power = 0.0;
  for (std::size_t k = 0; k < expected.size(); ++k) {
    error += std::norm(got(k) - expected[k]);
    power += std::norm(expected[k]);
  }
  return Decibels(std::sqrt(error / power));
}

// `taps` run over `in`, from the definition; the input is zero before its start.
inline std::vector<double> DirectFir(std::span<const double> taps, std::span<const float> in) {
  std::vector<double> out(in.size());
  for (std::size_t n = 0; n < in.size(); ++n) {
    for (std::size_t k = 0; k < taps.size() && k <= n; ++k) out[n] += taps[k] * double(in[n - k]);
  }
  return out;
}

// Response of `taps` at `hertz`.
inline std::complex<double> ResponseAt(std::span<const double> taps, double hertz) {
  std::complex<double> sum = 0.0;
  for (std::size_t k = 0; k < taps.size(); ++k) sum += taps[k] * std::polar(1.0, -Radians(hertz) * double(k));
  return sum;
}

}  // namespace quorl::test
