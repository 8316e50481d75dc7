// The playback side of the sound card as the block pump sees it.
#pragma once

#include <cstdint>

#include "dsp/chain/ChainPorts.h"

namespace quorl {

class SoundOutput : public OutputLevel {
 public:
  // One block of SamplesPerEvent samples a channel into the output ring.
  virtual void Output(const std::int16_t* left, const std::int16_t* right) = 0;
};

// Heard by nobody.
class NoSoundOutput final : public SoundOutput {
 public:
  void SetOutputAttenuation(std::int32_t) override {}
  void Output(const std::int16_t*, const std::int16_t*) override {}
};

}  // namespace quorl
