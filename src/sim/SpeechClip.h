// A spoken text, kept as analytic audio at 8000 Hz.
#pragma once

#include <string>
#include <string_view>
#include <vector>

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

// Reads a WAV of 8000 Hz, one channel, 8-bit mu-law (G.711). `content` is the whole file, `name` stands in
// the message. Peaks come out as they are, full scale is 1.
Failure DecodeSpeech(std::string_view content, const std::string& name, std::vector<float>& samples);

}  // namespace quorl
