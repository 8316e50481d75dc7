// The average over the last frames that calms a trace.
#pragma once

#include <array>
#include <cstdint>

#include "dsp/kernel/SampleBuffer.h"

namespace quorl {

// A frame's weight grows with its age: of S frames the oldest weighs S / S and the newest 1 / S, which gives
// the trace its slow rise. The divider, (S + 1) / 2, is the sum of the weights. What has not been there yet
// counts as 0.
class Smoothing {
 public:
  static constexpr std::int32_t kMostFrames = 24;

  // Memory for kMostFrames rows of `width` values in each of two channels.
  void Allocate(std::int32_t width);
  // 1 to kMostFrames, others become the nearest. Rows that were beyond the old count hold the frames that
  // were there.
  void SetCount(std::int32_t frames);
  std::int32_t Count() const { return count_; }

  // Takes `values` [n] as the newest row of `channel` (0, 1) and puts the average in their place. n up to the
  // width.
  void Average(int channel, float* values, std::int32_t n);
  // Forgets all rows.
  void Clear();

 private:
  struct History {
    SampleBuffer Rows;
    std::int32_t Newest = 0;
  };

  std::int32_t width_ = 0, count_ = 8;
  float divider_ = 4.5F;
  std::array<History, 2> histories_;
};

}  // namespace quorl
