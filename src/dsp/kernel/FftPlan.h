// How the kernel runs one complex FFT: the passes of a self-sorting transform and their twiddles.
#pragma once

#include <cstdint>

#include "dsp/kernel/SampleBuffer.h"

namespace quorl {

// One pass: `Radix` points at distance `Length` / `Radix`, over `Stride` interleaved sub-transforms.
struct FftPass {
  std::int32_t Radix = 0;   // 2, 4 or 8
  std::int32_t Length = 0;  // of the sub-transforms before the pass
  std::int32_t Stride = 0;
  // The stride is shorter than a vector: vectors run over sub-transforms and p together.
  bool Interleaved = false;
  // Twiddles exp(-2 pi i p k / Length), k = 1 .. Radix-1, each as Length/Radix cosines, then as many sines;
  // each entry stands Stride times in an interleaved pass.
  const float* Twiddles = nullptr;
};

// Passes of one transform length. Plain data that is only read, so one plan serves any number of transforms.
struct FftPlan {
  static constexpr std::int32_t kMaxPasses = 8;

  std::int32_t Points = 0;
  std::int32_t PassCount = 0;
  FftPass Passes[kMaxPasses];

  // Plans `points` = 2^order, order 0 to 16. `twiddles` is sized and filled here, in double precision before
  // the rounding, and must live as long as the plan.
  void Build(std::int32_t points, std::int32_t order, SampleBuffer& twiddles);
};

}  // namespace quorl
