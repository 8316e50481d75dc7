// Writes a WAV file with 16-bit PCM that replaces its target whole, or leaves it as it was.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/files/GrowingFile.h"
#include "recorder/files/RecordingHeader.h"
#include "recorder/files/SampleStream.h"

namespace quorl {

class WavWriter final : public SampleWriter {
 public:
  // `format` with 16 bits; an IF recording's LIST chunk comes first. Null with `failure` set where `path`
  // can't be written. Without a Commit nothing is left behind. `files` outlives the writer.
  static std::unique_ptr<WavWriter> Create(Files& files, const std::string& path,
                                           const RecordingFormat& format, Failure& failure);
  // `channels` 1 or 2, `sampleRate` in Hz.
  static std::unique_ptr<WavWriter> Create(Files& files, const std::string& path, int channels,
                                           int sampleRate, Failure& failure) {
    return Create(files, path, {sampleRate, channels, 16, {}}, failure);
  }

  // Bytes of samples that a file takes, whole frames.
  static std::int64_t MostDataBytes(const RecordingFormat& format);
  // `count` samples, interleaved; refused where they would go beyond the 4 GB that a WAV file can hold.
  Failure Write(const std::int16_t* samples, int count) override;
  // The tuning log that Commit puts behind the samples. What is no file (TakesLog) gets none: its reader
  // would take the log for samples.
  void SetLog(const std::vector<LogRecord>& log) { trailer_ = MakeTrailer(log); }
  bool TakesLog() const { return !file_->IsDirect(); }
  // Puts the sizes into the header; a pipe keeps the "length unknown" that its header began with.
  Failure Commit() override;
  // The file that grows beside the target; empty where the target is written directly.
  const std::string& Temporary() const { return file_->Temporary(); }

 private:
  WavWriter(std::unique_ptr<GrowingFile> file, const RecordingFormat& format)
      : file_(std::move(file)), format_(format) {}

  std::unique_ptr<GrowingFile> file_;
  RecordingFormat format_;
  std::string trailer_;
  std::int64_t bytes_ = 0;
};

}  // namespace quorl
