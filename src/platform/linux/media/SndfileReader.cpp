#include "platform/linux/media/SndfileReader.h"

#include <algorithm>
#include <cstdio>

namespace quorl {

std::unique_ptr<SndfileReader> SndfileReader::Open(const Files& files, const std::string& path,
                                                   Failure& failure) {
  auto file = files.Open(path, OpenMode::Read, failure);
  if (failure) return nullptr;
  std::unique_ptr<SndfileReader> reader(new SndfileReader(std::move(file)));
  failure = reader->Begin();
  return failure ? nullptr : std::move(reader);
}

Failure SndfileReader::Begin() {
  const std::optional<std::int64_t> bytes = file_->Size();
  if (!bytes) return Fault(SoundFault::Unknown, "a pipe or device; a sound file on a disk is needed");
  if (*bytes == 0) return Fault(SoundFault::Unknown, "is empty; a sound file is needed");
  SF_VIRTUAL_IO calls = Calls();
  sound_.reset(sf_open_virtual(&calls, SFM_READ, &info_, this));
  if (fault_) return fault_;
  if (!sound_ || info_.channels < 1) {
    return Fault(SoundFault::Unknown,
                 "can't be read as sound; a sound file, such as WAV, FLAC, AIFF or Ogg, is needed");
  }
  return {};
}

int SndfileReader::Read(float* interleaved, int frames, Failure& failure) {
  const int got = static_cast<int>(sf_readf_float(sound_.get(), interleaved, frames));
  if (fault_) {
    failure = fault_;
  } else if (got < frames && sf_error(sound_.get()) != SF_ERR_NO_ERROR) {
    failure = Fault(SoundFault::Damaged, std::string("its sound can't be decoded (") +
                                             sf_strerror(sound_.get()) + "); a sound copy is needed");
  }
  return got;
}

SF_VIRTUAL_IO SndfileReader::Calls() {
  return {[](void* reader) -> sf_count_t {
            return static_cast<SndfileReader*>(reader)->file_->Size().value_or(0);
          },
          [](sf_count_t offset, int whence, void* reader) {
            return static_cast<SndfileReader*>(reader)->Seek(offset, whence);
          },
          [](void* destination, sf_count_t bytes, void* reader) {
            return static_cast<SndfileReader*>(reader)->Fetch(destination, bytes);
          },
          [](const void*, sf_count_t, void*) -> sf_count_t { return 0; },
          [](void* reader) -> sf_count_t { return static_cast<SndfileReader*>(reader)->at_; }};
}

sf_count_t SndfileReader::Seek(sf_count_t offset, int whence) {
  const std::int64_t size = file_->Size().value_or(0);
  const std::int64_t base = whence == SEEK_CUR ? at_ : whence == SEEK_END ? size : 0;
  // Damaged headers point anywhere.
  if (offset > size || offset < -size || base + offset < 0) return -1;
  return at_ = base + offset;
}

sf_count_t SndfileReader::Fetch(void* destination, sf_count_t bytes) {
  if (fault_ || bytes <= 0) return 0;
  const std::int64_t got = file_->ReadAt(at_, destination, bytes, fault_);
  at_ += got;
  return got;
}

}  // namespace quorl
