// Raises chunks of 8000 or 24000 Hz to 48000 Hz: windowed-sinc low pass in polyphase form.
#pragma once

#include <array>
#include <cstdint>

#include "sim/Chunk.h"

namespace quorl {

class Interpolator {
 public:
  static constexpr int kTapsPerPhase = 29;
  // Samples of the chunk before that a chunk's interpolation reaches back to.
  static constexpr int kHistory = kTapsPerPhase - 1;

  // `framesPerChunk`: kSlowChunkFrames (flat to 3.4 kHz, images 70 dB down from 4.6 kHz on) or
  // kFastChunkFrames (flat to 10 kHz, images 70 dB down from 14 kHz on).
  explicit Interpolator(int framesPerChunk);

  // `input`: kHistory samples and then the chunk. `output`: kChunkFrames samples, of gain 1, a delay of half
  // the taps behind. DC comes out without ripple.
  void Run(const float* input, float* output) const;

 private:
  int frames_;
  std::array<float, std::size_t{kTapsPerPhase} * (kChunkFrames / kSlowChunkFrames)>
      taps_{};  // phase by phase
};

// Low pass under a Kaiser window, `count` (odd) taps of unit sum; `cutoff` is the -6 dB point as a fraction
// of the sampling rate, `beta` the window's parameter (7: stop band 70 dB down).
void DesignLowPass(double cutoff, double beta, int count, double* taps);

}  // namespace quorl
