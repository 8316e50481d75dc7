// A WAV file of what the loudspeaker would play.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "recorder/files/WavWriter.h"
#include "state/PublicConstants.h"
#include "support/Error.h"

namespace quorl {

// The file appears when Close succeeds; until then an old one of that name stays.
class AudioFile {
 public:
  // `files` outlives the file.
  static std::unique_ptr<AudioFile> Create(Files& files, const std::string& path, Failure& failure);

  // A block of SamplesPerEvent samples and the sound card's attenuation, hundredths of a decibel.
  void Take(const std::int16_t* block, std::int32_t attenuation);
  bool IsEmpty() const { return empty_; }  // nothing was taken: the old file may as well stay
  Failure Close();
  const Failure& Fault() const { return fault_; }  // what ended the writing

 private:
  explicit AudioFile(std::unique_ptr<WavWriter> writer) : writer_(std::move(writer)) {}

  std::unique_ptr<WavWriter> writer_;
  Failure fault_;
  bool empty_ = true;
  std::array<std::int16_t, SamplesPerEvent> scaled_{};
};

// Applies the sound card's attenuation, hundredths of a decibel below 0, to a block of SamplesPerEvent
// samples; `out` may be `block`.
void Attenuate(const std::int16_t* block, std::int32_t attenuation, std::int16_t* out);

}  // namespace quorl
