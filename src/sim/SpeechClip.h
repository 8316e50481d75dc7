// A spoken text, kept as analytic audio at 8000 Hz.
#pragma once

#include <vector>

#include "platform/Files.h"
#include "sim/Audio.h"
#include "support/Error.h"

namespace quorl {

// Plays from chunk 0 on; silence outside.
class SpeechClip final : public Audio {
 public:
  // `samples` are real audio at 8000 Hz; the Hilbert transform is made here, once.
  explicit SpeechClip(std::vector<float> samples);
  void Render(std::int64_t chunk, IqSpan out) const override;
  // Whole chunks that hold the clip.
  std::int64_t Chunks() const;

 private:
  std::vector<float> i_, q_;
};

// Reads a WAV of 8000 Hz, one channel, 8-bit mu-law (G.711). Peaks come out as they are, full scale is 1.
Failure DecodeSpeech(OpenFile& file, std::vector<float>& samples);

}  // namespace quorl
