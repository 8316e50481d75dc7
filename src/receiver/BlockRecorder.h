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

  // What it records or plays is the captured IF, in front of the chain.
  virtual bool IsIF() const = 0;
  // Overwrites `left` with the next `n` frames of the recording; returns their right channel, which stays
  // until the next call.
  virtual const std::int16_t* GetNextIF(std::int16_t* left, std::int32_t n) = 0;
  // Takes `n` captured frames for the file; 0 for success.
  virtual std::int16_t AddIF(const std::int16_t* left, const std::int16_t* right, std::int32_t n) = 0;
};

// Neither records nor plays.
class NoRecorder final : public BlockRecorder {
 public:
  bool IsPlaying() const override { return false; }
  std::int32_t PlayerMode() const override { return 0; }
  void GetNextSamples(std::int16_t*, std::int32_t) override {}
  std::int16_t AddSamples(const std::int16_t*, std::int32_t) override { return 0; }
  bool IsIF() const override { return false; }
  const std::int16_t* GetNextIF(std::int16_t* left, std::int32_t) override { return left; }
  std::int16_t AddIF(const std::int16_t*, const std::int16_t*, std::int32_t) override { return 0; }
};

}  // namespace quorl
