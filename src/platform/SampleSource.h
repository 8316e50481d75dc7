// Where simulated captures come from and where simulated playback goes.
#pragma once

#include <cstdint>

namespace quorl {

// Endless source of stereo 16-bit frames at 48000 Hz: what a sound card's line input would deliver.
class SampleSource {
 public:
  virtual ~SampleSource() = default;
  // Fills 2 x `frames` interleaved samples: left, right, left, ...
  virtual void Render(std::int16_t* interleaved, int frames) = 0;
};

// Takes mono 16-bit samples at 48000 Hz: what the loudspeaker would hear.
class SampleSink {
 public:
  virtual ~SampleSink() = default;
  virtual void Accept(const std::int16_t* samples, int count) = 0;
};

}  // namespace quorl
