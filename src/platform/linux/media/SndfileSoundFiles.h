// Sound files by libsndfile, rates by libsamplerate, over the files of any machine.
#pragma once

#include "platform/Files.h"
#include "platform/SoundFiles.h"

namespace quorl {

class SndfileSoundFiles : public SoundFiles {
 public:
  // `files` outlives this object and what it opens.
  explicit SndfileSoundFiles(Files& files) : files_(files) {}

  std::unique_ptr<SoundFileReader> Open(const std::string& path, Failure& failure) const override;
  std::unique_ptr<SoundFileWriter> Create(const std::string& path, const SoundFileForm& form,
                                          Failure& failure) const override;
  std::unique_ptr<RateConverter> Convert(int from, int to, Failure& failure) const override;

 private:
  Files& files_;
};

}  // namespace quorl
