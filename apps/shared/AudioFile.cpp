#include "shared/AudioFile.h"

#include <algorithm>

#include "support/Decibels.h"
#include "support/Rounding.h"

namespace quorl {

std::unique_ptr<AudioFile> AudioFile::Create(Files& files, FileWorker& worker, const std::string& path,
                                             Failure& failure) {
  auto file = PostedWav::Create(files, worker, path, RecordingFormat{}, failure);
  return file ? std::unique_ptr<AudioFile>(new AudioFile(std::move(file))) : nullptr;
}

void AudioFile::Take(const std::int16_t* block, std::int32_t attenuation) {
  Attenuate(block, attenuation, scaled_.data());
  file_->Take(scaled_.data(), nullptr);
}

void Attenuate(const std::int16_t* block, std::int32_t attenuation, std::int16_t* out) {
  if (attenuation >= 0) {
    if (out != block) std::copy_n(block, SamplesPerEvent, out);
    return;
  }
  const double gain = Ratio(attenuation / 100.0);
  std::transform(block, block + SamplesPerEvent, out, [gain](std::int16_t sample) {
    return static_cast<std::int16_t>(RoundHalfEven(gain * sample));
  });
}

}  // namespace quorl
