// What the block pump hears from the sound card.
#pragma once

#include <cstdint>

namespace quorl {

class SoundEvents {
 public:
  virtual ~SoundEvents() = default;
  // A captured block of `n` samples a channel. The arrays are the sound card's; the receiver may overwrite
  // them until the next block, and may keep the thread as long as it needs.
  virtual void SoundCard_DataReady(std::int16_t* samplesI, std::int16_t* samplesQ, std::int32_t n) = 0;
  // A block of `n` bytes is about to leave the output ring for the device: it begins at element `readPtr` of
  // `buffer` and may still be changed.
  virtual void SoundCard_DataOut(std::int16_t* buffer, std::int32_t readPtr, std::int32_t n) = 0;
};

}  // namespace quorl
