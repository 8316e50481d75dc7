#include "sim/Convolve.h"

namespace quorl {
namespace {

// Four lanes: a processor that naps between blocks takes longer to wake its wider ones than they save here.
constexpr int kLanes = 4;
using Lanes = float __attribute__((vector_size(kLanes * 4)));
using LanesAt = float __attribute__((vector_size(kLanes * 4), aligned(4), may_alias));

}  // namespace

void Convolve(const float* taps, int count, const float* newest, int frames, float* output) {
  constexpr int kSums = 4;  // that stay in registers while the taps go by
  int n = 0;
  for (; n + kSums * kLanes <= frames; n += kSums * kLanes) {
    Lanes sum0{}, sum1{}, sum2{}, sum3{};
    for (int k = 0; k < count; ++k) {
      const auto* from = reinterpret_cast<const LanesAt*>(newest + n - k);
      sum0 += taps[k] * from[0];
      sum1 += taps[k] * from[1];
      sum2 += taps[k] * from[2];
      sum3 += taps[k] * from[3];
    }
    auto* to = reinterpret_cast<LanesAt*>(output + n);
    to[0] = sum0;
    to[1] = sum1;
    to[2] = sum2;
    to[3] = sum3;
  }
  for (; n < frames; ++n) {
    output[n] = 0.0F;
    for (int k = 0; k < count; ++k) output[n] += taps[k] * newest[n - k];
  }
}

}  // namespace quorl
