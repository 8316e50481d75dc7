// What the block pump talks to: the recorder, the sound card and the timers that follow each block.
#pragma once

#include <cstdint>

#include "dsp/chain/ChainPorts.h"
#include "state/PublicConstants.h"

namespace quorl {

// The recorder as the pump sees it.
class BlockRecorder : public PlaybackState {
 public:
  // PlayerModes: recording, playing, or anything else for neither.
  virtual std::int32_t PlayerMode() const = 0;
  // Overwrites `block` with the next `n` samples of the recording.
  virtual void GetNextSamples(std::int16_t* block, std::int32_t n) = 0;
  // Takes `n` samples for the file; 0 for success.
  virtual std::int16_t AddSamples(const std::int16_t* block, std::int32_t n) = 0;
};

// The playback side of the sound card.
class SoundOutput : public OutputLevel {
 public:
  // One block of SamplesPerEvent samples a channel into the output ring.
  virtual void Output(const std::int16_t* left, const std::int16_t* right) = 0;
};

// Recorder that neither records nor plays.
class NoRecorder final : public BlockRecorder {
 public:
  bool IsPlaying() const override { return false; }
  std::int32_t PlayerMode() const override { return 0; }
  void GetNextSamples(std::int16_t*, std::int32_t) override {}
  std::int16_t AddSamples(const std::int16_t*, std::int32_t) override { return 0; }
};

}  // namespace quorl
