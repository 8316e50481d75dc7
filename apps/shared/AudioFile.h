// A WAV file of what the loudspeaker would play.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "shared/PostedWav.h"
#include "state/PublicConstants.h"
#include "support/Error.h"

namespace quorl {

class AudioFile {
 public:
  // `files` and `worker` outlive the file.
  static std::unique_ptr<AudioFile> Create(Files& files, FileWorker& worker, const std::string& path,
                                           Failure& failure);

  // A block of SamplesPerEvent samples and the sound card's attenuation, hundredths of a decibel.
  void Take(const std::int16_t* block, std::int32_t attenuation);
  PostedWav& File() { return *file_; }

 private:
  explicit AudioFile(std::unique_ptr<PostedWav> file) : file_(std::move(file)) {}

  std::unique_ptr<PostedWav> file_;
  std::array<std::int16_t, SamplesPerEvent> scaled_{};
};

// Applies the sound card's attenuation, hundredths of a decibel below 0, to a block of SamplesPerEvent
// samples; `out` may be `block`.
void Attenuate(const std::int16_t* block, std::int32_t attenuation, std::int16_t* out);

}  // namespace quorl
