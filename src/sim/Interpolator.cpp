#include "sim/Interpolator.h"

#include <cmath>
#include <numbers>
#include <numeric>

namespace quorl {
namespace {

// Modified Bessel function of the first kind, order 0, by its power series.
double BesselI0(double x) {
  double term = 1.0, sum = 1.0;
  for (int k = 1; k < 40; ++k) {
    term *= (x / (2.0 * k)) * (x / (2.0 * k));
    sum += term;
  }
  return sum;
}

}  // namespace

void DesignLowPass(double cutoff, double beta, int count, double* taps) {
  const double centre = (count - 1) / 2.0;
  for (int n = 0; n < count; ++n) {
    const double x = n - centre;
    const double sinc =
        x == 0.0 ? 2.0 * cutoff : std::sin(2.0 * std::numbers::pi * cutoff * x) / (std::numbers::pi * x);
    const double ratio = x / (centre + 1.0);
    taps[n] = sinc * BesselI0(beta * std::sqrt(1.0 - ratio * ratio)) / BesselI0(beta);
  }
  const double sum = std::accumulate(taps, taps + count, 0.0);
  for (int n = 0; n < count; ++n) taps[n] /= sum;
}

Interpolator::Interpolator(int framesPerChunk) : frames_(framesPerChunk) {
  const int ratio = kChunkFrames / frames_;
  const int count = ratio * kTapsPerPhase;
  // One tap less than the phases hold keeps the filter odd and so its delay a whole number of samples.
  std::array<double, kTapsPerPhase*(kChunkFrames / kSlowChunkFrames)> design{};
  DesignLowPass(0.5 / ratio, 7.0, count - 1, design.data());
  for (int phase = 0; phase < ratio; ++phase) {
    double sum = 0.0;
    for (int k = 0; k < kTapsPerPhase; ++k) sum += design[static_cast<std::size_t>(phase + ratio * k)];
    // Each phase has unit gain at DC by itself: a carrier gets no images of the lower rate.
    for (int k = 0; k < kTapsPerPhase; ++k) {
      taps_[static_cast<std::size_t>(phase * kTapsPerPhase + k)] =
          static_cast<float>(design[static_cast<std::size_t>(phase + ratio * k)] / sum);
    }
  }
}

template <int Frames>
void Interpolator::RunPhases(const float* input, float* output) const {
  constexpr int kRatio = kChunkFrames / Frames;
  std::array<float, Frames> sum{};
  for (int phase = 0; phase < kRatio; ++phase) {
    sum.fill(0.0F);
    for (int k = 0; k < kTapsPerPhase; ++k) {
      const float tap = taps_[static_cast<std::size_t>(phase * kTapsPerPhase + k)];
      const float* from = input + kHistory - k;
      for (int n = 0; n < Frames; ++n) sum[static_cast<std::size_t>(n)] += tap * from[n];
    }
    for (int n = 0; n < Frames; ++n) output[n * kRatio + phase] = sum[static_cast<std::size_t>(n)];
  }
}

void Interpolator::Run(const float* input, float* output) const {
  if (frames_ == kSlowChunkFrames)
    RunPhases<kSlowChunkFrames>(input, output);
  else
    RunPhases<kFastChunkFrames>(input, output);
}

}  // namespace quorl
