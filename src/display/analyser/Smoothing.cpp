#include "display/analyser/Smoothing.h"

#include <algorithm>

#include "dsp/kernel/VectorKernel.h"

namespace quorl {

void Smoothing::Allocate(std::int32_t width) {
  width_ = width;
  for (History& history : histories_)
    history.Rows.assign(static_cast<std::size_t>(kMostFrames) * static_cast<std::size_t>(width), 0.0F);
}

void Smoothing::SetCount(std::int32_t frames) {
  count_ = std::clamp<std::int32_t>(frames, 1, kMostFrames);
  divider_ = 0.0F;
  for (std::int32_t i = 1; i <= count_; ++i) divider_ += static_cast<float>(i) / static_cast<float>(count_);
}

void Smoothing::Average(int channel, float* values, std::int32_t n) {
  // The rows are a ring: ageing moves the place of the newest one instead of their contents.
  History& history = histories_[static_cast<std::size_t>(channel)];
  history.Newest = (history.Newest + kMostFrames - 1) % kMostFrames;
  const auto row = [&](std::int32_t age) {
    return history.Rows.data() + static_cast<std::ptrdiff_t>((history.Newest + age) % kMostFrames) * width_;
  };
  CopyVector_S(values, row(0), n);
  ZeroVector_S(row(0) + n, width_ - n);
  constexpr std::int32_t kStretch = 256;  // sums that stay in the nearest cache while the rows pass
  for (std::int32_t begin = 0; begin < n; begin += kStretch) {
    const std::int32_t length = std::min(kStretch, n - begin);
    float* sums = values + begin;
    ZeroVector_S(sums, length);
    for (std::int32_t age = 0; age < count_; ++age) {
      const float weight = static_cast<float>(age + 1) / static_cast<float>(count_) / divider_;
      const float* old = row(age) + begin;
      for (std::int32_t k = 0; k < length; ++k) sums[k] += weight * old[k];
    }
  }
}

void Smoothing::Clear() {
  for (History& history : histories_) std::fill(history.Rows.begin(), history.Rows.end(), 0.0F);
}

}  // namespace quorl
