#include "recorder/RecordQueue.h"

#include <algorithm>

namespace quorl {

void RecordQueue::Open(std::int32_t halfSamples) {
  half_ = halfSamples;
  fill_ = 0;
  filling_ = 0;
  full_ = false;
  samples_.assign(2 * static_cast<std::size_t>(halfSamples), 0);
}

void RecordQueue::Close() {
  std::vector<std::int16_t>().swap(samples_);
  half_ = fill_ = 0;
  full_ = false;
}

bool RecordQueue::Added(std::int32_t samples) {
  fill_ += samples;
  if (fill_ < half_) return false;
  fill_ = 0;
  ++filling_;
  full_ = true;
  return true;
}

bool RecordQueue::Add(const std::int16_t* samples, std::int32_t n) {
  std::copy_n(samples, n, Room());
  return Added(n);
}

bool RecordQueue::AddFrames(const std::int16_t* left, const std::int16_t* right, std::int32_t n) {
  std::int16_t* room = Room();
  for (std::int32_t k = 0; k < n; ++k) {
    *room++ = left[k];
    *room++ = right[k];
  }
  return Added(2 * n);
}

}  // namespace quorl
