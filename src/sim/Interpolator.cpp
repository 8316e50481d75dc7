#include "sim/Interpolator.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "sim/Convolve.h"

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

void Interpolator::Run(const float* input, float* output) const {
  // An AM carrier has nothing on one of its rails, and between sparks there is silence.
  if (std::all_of(input, input + kHistory + frames_, [](float sample) { return sample == 0.0F; })) {
    std::fill_n(output, kChunkFrames, 0.0F);
    return;
  }
  const int ratio = kChunkFrames / frames_;
  std::array<float, kFastChunkFrames> run;
  for (int phase = 0; phase < ratio; ++phase) {
    Convolve(taps_.data() + phase * kTapsPerPhase, kTapsPerPhase, input + kHistory, frames_, run.data());
    for (int n = 0; n < frames_; ++n) output[n * ratio + phase] = run[static_cast<std::size_t>(n)];
  }
}

}  // namespace quorl
