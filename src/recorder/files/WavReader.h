// Reads the samples of a WAV file block by block, in bounded memory whatever the file's length.
#pragma once

#include <memory>
#include <string>

#include "platform/Files.h"
#include "recorder/files/RiffReader.h"
#include "recorder/files/SampleStream.h"

namespace quorl {

// What a file must be to be taken.
struct WavNeeds {
  int SampleRate = 48000;  // Hz, exactly
  int MaxChannels = 2;     // 1 up to this many
};

// Takes RIFF/WAVE files with 16-bit PCM, plain or in the extensible format, with any chunks before "data".
// Bytes after the samples are left alone.
class WavReader final : public SampleReader {
 public:
  // Reads up to the first sample. Null with `failure` set where `path` doesn't hold what `needs` tells, or
  // less than its header promises, as far as that shows before reading (a pipe shows it at its end, by Read).
  static std::unique_ptr<WavReader> Open(const Files& files, const std::string& path, const WavNeeds& needs,
                                         Failure& failure);

  int Channels() const override { return channels_; }
  std::optional<std::int64_t> Frames() const override { return frames_; }
  int Read(std::int16_t* interleaved, int frames, Failure& failure) override;

 private:
  WavReader(std::unique_ptr<OpenFile> file, const WavLayout& layout);

  std::unique_ptr<OpenFile> file_;
  int channels_;
  std::int64_t frames_;
  std::int64_t left_;
  std::int64_t at_;
};

}  // namespace quorl
