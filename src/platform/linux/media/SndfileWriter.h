// A sound file, written by libsndfile beside its target.
#pragma once

#include <memory>
#include <string>

#include "platform/SoundFiles.h"
#include "platform/files/GrowingFile.h"
#include "platform/linux/media/SndfileHandle.h"

namespace quorl {

class SndfileWriter final : public SoundFileWriter {
 public:
  // Null with `failure` set where that can't be. `files` outlives the writer.
  static std::unique_ptr<SndfileWriter> Create(Files& files, const std::string& path,
                                               const SoundFileForm& form, Failure& failure);

  Failure Write(const std::int16_t* interleaved, int frames) override;
  Failure Commit() override;

 private:
  explicit SndfileWriter(std::unique_ptr<GrowingFile> file) : file_(std::move(file)) {}
  Failure Begin(const SoundFileForm& form);
  bool Tag(int which, const std::string& text);
  Failure Fault(const std::string& text) const {
    return Error{SoundFault::Refused, file_->Name() + ": " + text};
  }

  // What libsndfile asks of the file.
  static SF_VIRTUAL_IO Calls();
  sf_count_t Seek(sf_count_t offset, int whence);
  sf_count_t Put(const void* source, sf_count_t bytes);

  std::unique_ptr<GrowingFile> file_;
  std::int64_t at_ = 0, size_ = 0;
  Failure fault_;        // of the file, met in one of those calls
  SndfileHandle sound_;  // goes first, as it writes at its end
};

}  // namespace quorl
