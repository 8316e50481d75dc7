#include "shared/AudioFile.h"

#include <algorithm>

#include "support/Decibels.h"
#include "support/Rounding.h"

namespace quorl {

std::unique_ptr<AudioFile> AudioFile::Create(Files& files, const std::string& path, Failure& failure) {
  auto writer = WavWriter::Create(files, path, 1, FSampling, failure);
  return writer ? std::unique_ptr<AudioFile>(new AudioFile(std::move(writer))) : nullptr;
}

void AudioFile::Take(const std::int16_t* block, std::int32_t attenuation) {
  if (fault_) return;
  empty_ = false;
  Attenuate(block, attenuation, scaled_.data());
  fault_ = writer_->Write(scaled_.data(), SamplesPerEvent);
}

Failure AudioFile::Close() {
  return fault_ ? fault_ : writer_->Commit();
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
