// The recorder as the block pump sees it.
#pragma once

#include <cstdint>

#include "dsp/chain/ChainPorts.h"

namespace quorl {

class BlockRecorder : public PlaybackState {
 public:
  // PlayerModes: recording, playing, or anything else for neither.
  virtual std::int32_t PlayerMode() const = 0;
  // Overwrites `block` with the next `n` samples of the recording.
  virtual void GetNextSamples(std::int16_t* block, std::int32_t n) = 0;
  // Takes `n` samples for the file; 0 for success.
  virtual std::int16_t AddSamples(const std::int16_t* block, std::int32_t n) = 0;
};

// Neither records nor plays.
class NoRecorder final : public BlockRecorder {
 public:
  bool IsPlaying() const override { return false; }
  std::int32_t PlayerMode() const override { return 0; }
  void GetNextSamples(std::int16_t*, std::int32_t) override {}
  std::int16_t AddSamples(const std::int16_t*, std::int32_t) override { return 0; }
};

}  // namespace quorl
