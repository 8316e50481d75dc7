// A sound file, read by libsndfile through an open file of the machine.
#pragma once

#include <memory>
#include <string>

#include "platform/Files.h"
#include "platform/SoundFiles.h"
#include "platform/linux/media/SndfileHandle.h"

namespace quorl {

class SndfileReader final : public SoundFileReader {
 public:
  // Null with `failure` set where that can't be.
  static std::unique_ptr<SndfileReader> Open(const Files& files, const std::string& path, Failure& failure);

  int Channels() const override { return info_.channels; }
  int SampleRate() const override { return info_.samplerate; }
  std::int64_t Frames() const override { return info_.frames; }
  int Read(float* interleaved, int frames, Failure& failure) override;

 private:
  explicit SndfileReader(std::unique_ptr<OpenFile> file) : file_(std::move(file)) {}
  Failure Begin();
  Failure Fault(int code, const std::string& text) const { return Error{code, file_->Name() + ": " + text}; }

  // What libsndfile asks of the file.
  static SF_VIRTUAL_IO Calls();
  sf_count_t Seek(sf_count_t offset, int whence);
  sf_count_t Fetch(void* destination, sf_count_t bytes);

  std::unique_ptr<OpenFile> file_;
  std::int64_t at_ = 0;
  Failure fault_;  // of the file, met in one of those calls
  SF_INFO info_{};
  SndfileHandle sound_;
};

}  // namespace quorl
