#include "platform/linux/media/SndfileWriter.h"

#include <algorithm>
#include <cstdio>

namespace quorl {

std::unique_ptr<SndfileWriter> SndfileWriter::Create(Files& files, const std::string& path,
                                                     const SoundFileForm& form, Failure& failure) {
  auto file = GrowingFile::Create(files, path, failure);
  if (failure) return nullptr;
  std::unique_ptr<SndfileWriter> writer(new SndfileWriter(std::move(file)));
  failure = writer->Begin(form);
  return failure ? nullptr : std::move(writer);
}

Failure SndfileWriter::Begin(const SoundFileForm& form) {
  // Sizes are put into the header at the end.
  if (file_->IsDirect()) return Fault("a pipe or device; a file on a disk is needed");
  SF_INFO info{};
  info.channels = form.Channels;
  info.samplerate = form.SampleRate;
  info.format = SF_FORMAT_PCM_16 | (form.Kind == SoundFileKind::Flac ? SF_FORMAT_FLAC : SF_FORMAT_WAV);
  SF_VIRTUAL_IO calls = Calls();
  sound_.reset(sf_open_virtual(&calls, SFM_WRITE, &info, this));
  const bool ready = sound_ && Tag(SF_STR_TITLE, form.Title) && Tag(SF_STR_COMMENT, form.Comment) &&
                     Tag(SF_STR_DATE, form.Date);
  if (fault_) return fault_;
  return ready ? Failure()
               : Fault("can't be made with " + std::to_string(form.Channels) + " channels at " +
                       std::to_string(form.SampleRate) + " Hz; other ones are needed");
}

bool SndfileWriter::Tag(int which, const std::string& text) {
  return text.empty() || sf_set_string(sound_.get(), which, text.c_str()) == SF_ERR_NO_ERROR;
}

Failure SndfileWriter::Write(const std::int16_t* interleaved, int frames) {
  const sf_count_t put = sf_writef_short(sound_.get(), interleaved, frames);
  if (fault_) return fault_;
  return put == frames ? Failure() : Fault(std::string("can't be encoded: ") + sf_strerror(sound_.get()));
}

Failure SndfileWriter::Commit() {
  sound_.reset();  // writes what it has kept, and the sizes
  return fault_ ? fault_ : file_->Commit();
}

SF_VIRTUAL_IO SndfileWriter::Calls() {
  return {[](void* writer) -> sf_count_t { return static_cast<SndfileWriter*>(writer)->size_; },
          [](sf_count_t offset, int whence, void* writer) {
            return static_cast<SndfileWriter*>(writer)->Seek(offset, whence);
          },
          [](void*, sf_count_t, void*) -> sf_count_t { return 0; },
          [](const void* source, sf_count_t bytes, void* writer) {
            return static_cast<SndfileWriter*>(writer)->Put(source, bytes);
          },
          [](void* writer) -> sf_count_t { return static_cast<SndfileWriter*>(writer)->at_; }};
}

sf_count_t SndfileWriter::Seek(sf_count_t offset, int whence) {
  const std::int64_t base = whence == SEEK_CUR ? at_ : whence == SEEK_END ? size_ : 0;
  return at_ = std::clamp<std::int64_t>(base + offset, 0, size_);
}

sf_count_t SndfileWriter::Put(const void* source, sf_count_t bytes) {
  if (fault_ || bytes <= 0) return 0;
  fault_ = file_->WriteAt(at_, source, bytes);
  if (fault_) return 0;
  at_ += bytes;
  size_ = std::max(size_, at_);
  return bytes;
}

}  // namespace quorl
