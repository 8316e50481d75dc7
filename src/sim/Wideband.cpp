#include "sim/Wideband.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace quorl {
namespace {

using Complex = std::complex<float>;

// Inverse transform in place, no scaling: decimation in time, radix 2. Size is a power of two.
void InverseTransform(Complex* data, int size) {
  for (int n = 1, reversed = 0; n < size; ++n) {
    int bit = size / 2;
    for (; (reversed & bit) != 0; bit /= 2) reversed ^= bit;
    reversed |= bit;
    if (n < reversed) std::swap(data[n], data[reversed]);
  }
  for (int length = 2; length <= size; length *= 2) {
    const double angle = 2.0 * std::numbers::pi / length;
    const std::complex<double> step(std::cos(angle), std::sin(angle));
    std::complex<double> twiddle = 1.0;
    for (int k = 0; k < length / 2; ++k, twiddle *= step) {
      const Complex factor(twiddle);
      for (int n = k; n < size; n += length) {
        const Complex odd = data[n + length / 2] * factor;
        data[n + length / 2] = data[n] - odd;
        data[n] += odd;
      }
    }
  }
}

// Sum of the word's four 16-bit fields around 0, variance 1.
float BellShaped(std::uint64_t word) {
  const auto field = [word](unsigned shift) { return static_cast<int>((word >> shift) & 0xFFFFU); };
  const int sum = field(0) + field(16) + field(32) + field(48) - 2 * 65535;
  return static_cast<float>(sum) * (std::numbers::sqrt3_v<float> / 65536.0F);
}

}  // namespace

void RenderNoise(std::uint64_t seed, std::int64_t chunk, IqSpan out) {
  const std::uint64_t base = HashOf(seed, static_cast<std::uint64_t>(chunk));
  for (int n = 0; n < out.Count; ++n) {
    const auto index = static_cast<std::uint64_t>(2 * n);
    out.I[n] = std::numbers::sqrt2_v<float> / 2.0F * BellShaped(HashOf(base, index));
    out.Q[n] = std::numbers::sqrt2_v<float> / 2.0F * BellShaped(HashOf(base, index + 1));
  }
}

void MulticarrierProgramme::MakeSymbol(std::int64_t symbol) {
  constexpr int kHalf = 103;
  constexpr std::array<int, 3> kPilots = {16, 48, 64};
  samples_.fill({});
  const float amplitude = 1.0F / std::sqrt(2.0F * kHalf);
  const std::uint64_t base = HashOf(seed_, static_cast<std::uint64_t>(symbol));
  for (int carrier = -kHalf; carrier <= kHalf; ++carrier) {
    if (carrier == 0) continue;
    const bool pilot = std::find(kPilots.begin(), kPilots.end(), carrier) != kPilots.end();
    const auto quarter = pilot ? 0 : HashOf(base, static_cast<std::uint64_t>(carrier + kHalf)) % 4;
    const float phase = std::numbers::pi_v<float> * (0.25F + 0.5F * static_cast<float>(quarter));
    samples_[static_cast<std::size_t>(carrier < 0 ? carrier + kTransform : carrier)] =
        std::polar(amplitude, phase);
  }
  InverseTransform(samples_.data(), kTransform);
  symbol_ = symbol;
}

void MulticarrierProgramme::Render(std::int64_t chunk, IqSpan out) {
  constexpr int kSymbol = kTransform + kGuard;
  const std::int64_t first = chunk * kFastChunkFrames;
  for (int n = 0; n < out.Count; ++n) {
    const std::int64_t at = first + n;
    if (at / kSymbol != symbol_) MakeSymbol(at / kSymbol);
    // The guard interval is the symbol's own end, sent ahead of it.
    const auto inSymbol = static_cast<int>(at % kSymbol);
    const Complex sample = samples_[static_cast<std::size_t>((inSymbol + kTransform - kGuard) % kTransform)];
    out.I[n] = sample.real();
    out.Q[n] = sample.imag();
  }
}

void BuzzProgramme::Render(std::int64_t chunk, IqSpan out) {
  RenderNoise(seed_, chunk, out);
  // Pairs of neighbours shape the noise to a few kilohertz; a chunk is one half wave of the mains.
  for (int n = out.Count - 1; n > 0; --n) {
    out.I[n] += out.I[n - 1];
    out.Q[n] += out.Q[n - 1];
  }
  for (int n = 0; n < out.Count; ++n) {
    const auto swell = static_cast<float>(std::sin(std::numbers::pi * (n + 0.5) / out.Count));
    const float gain = swell * swell * swell;
    out.I[n] *= gain;
    out.Q[n] *= gain;
  }
}

void SparkProgramme::Render(std::int64_t chunk, IqSpan out) {
  std::fill_n(out.I, out.Count, 0.0F);
  std::fill_n(out.Q, out.Count, 0.0F);
  const std::int64_t second = chunk / kChunksPerSecond;
  const bool burst = UnitHash(seed_, static_cast<std::uint64_t>(second / 2)) < 0.2;
  const auto index = static_cast<std::uint64_t>(chunk);
  if (!burst || UnitHash(seed_ + 1, index) < 0.2) return;
  const int begin = 40 + static_cast<int>(UnitHash(seed_ + 2, index) * 60.0);
  const double phase = 2.0 * std::numbers::pi * UnitHash(seed_ + 3, index);
  // Two opposite halves leave no line at the middle of the passband.
  constexpr std::array<float, 4> kShape = {1.0F, -0.9F, 0.4F, -0.2F};
  for (std::size_t n = 0; n < kShape.size(); ++n) {
    out.I[begin + static_cast<int>(n)] = kShape[n] * static_cast<float>(std::cos(phase));
    out.Q[begin + static_cast<int>(n)] = kShape[n] * static_cast<float>(std::sin(phase));
  }
}

}  // namespace quorl
