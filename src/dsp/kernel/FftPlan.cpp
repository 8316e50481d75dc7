#include "dsp/kernel/FftPlan.h"

#include <cmath>
#include <span>

namespace quorl {

namespace {

constexpr std::int32_t kWidestVector = 16;

std::int32_t TwiddleRun(const FftPass& pass) {
  return pass.Length / pass.Radix * (pass.Interleaved ? pass.Stride : 1);
}

}  // namespace

void FftPlan::Build(std::int32_t points, std::int32_t order, SampleBuffer& twiddles) {
  Points = points;
  PassCount = 0;
  std::int32_t stride = 1;
  // Radix 4 as long as it leaves something, and one last pass of what remains: that one needs no twiddles.
  for (std::int32_t bits = order; bits > 0;) {
    const std::int32_t take = bits <= 3 ? bits : 2;
    const bool interleaved = take == 2 && stride <= 4 && points >= 4 * kWidestVector;
    Passes[PassCount++] = {1 << take, points / stride, stride, interleaved, nullptr};
    stride <<= take;
    bits -= take;
  }
  const std::span passes(Passes, static_cast<std::size_t>(PassCount));
  std::size_t total = 0;
  for (const FftPass& pass : passes) {
    total += 2U * static_cast<std::size_t>((pass.Radix - 1) * TwiddleRun(pass));
  }
  twiddles.assign(total, 0.0F);
  float* next = twiddles.data();
  for (FftPass& pass : passes) {
    pass.Twiddles = next;
    const std::int32_t run = TwiddleRun(pass), repeat = run * pass.Radix / pass.Length;
    for (std::int32_t k = 1; k < pass.Radix; ++k) {
      for (std::int32_t i = 0; i < run; ++i) {
        const double angle = -2.0 * M_PI * static_cast<double>(i / repeat) * k / pass.Length;
        next[i] = static_cast<float>(std::cos(angle));
        next[run + i] = static_cast<float>(std::sin(angle));
      }
      next += 2 * run;
    }
  }
}

}  // namespace quorl
