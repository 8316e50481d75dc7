// Writes a WAV file with 16-bit PCM that replaces its target whole, or leaves it as it was.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "recorder/ReplacingFile.h"
#include "recorder/SampleStream.h"

namespace quorl {

class WavWriter final : public SampleWriter {
 public:
  // `channels` 1 or 2, `sampleRate` in Hz. Null with `failure` set where `path` can't be written. Without a
  // Commit nothing is left behind.
  static std::unique_ptr<WavWriter> Create(const std::string& path, int channels, int sampleRate,
                                           Failure& failure);

  // `count` samples, interleaved; refused where they would go beyond the 4 GB that a WAV file can hold.
  Failure Write(const std::int16_t* samples, int count) override;
  // Puts the sizes into the header; a pipe keeps the "length unknown" that its header began with.
  Failure Commit() override;
  // The file that grows beside the target; empty where the target is written directly.
  const std::filesystem::path& Temporary() const { return file_->Temporary(); }

 private:
  WavWriter(std::unique_ptr<ReplacingFile> file, int channels, int sampleRate)
      : file_(std::move(file)), channels_(channels), sampleRate_(sampleRate) {}
  Failure WriteHeader(std::uint32_t dataBytes);
  Failure Check() const;

  std::unique_ptr<ReplacingFile> file_;
  int channels_;
  int sampleRate_;
  std::int64_t bytes_ = 0;
};

}  // namespace quorl
