// A modulated signal around 0 Hz: what a transmitter would put on its carrier frequency.
#pragma once

#include <cstdint>

#include "sim/Chunk.h"

namespace quorl {

class Programme {
 public:
  virtual ~Programme() = default;
  // kSlowChunkFrames (a signal within +-3.6 kHz) or kFastChunkFrames (within +-10 kHz); never changes.
  virtual int FramesPerChunk() const { return kSlowChunkFrames; }
  // Writes the chunk. Amplitude 1 is the station's level: the carrier of AM, the peak of a voice, the key
  // down, the mean power of a multicarrier. `chunk` is not negative. The same chunk is always the same
  // signal.
  virtual void Render(std::int64_t chunk, IqSpan out) = 0;
};

}  // namespace quorl
