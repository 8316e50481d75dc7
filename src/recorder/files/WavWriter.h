// Writes a WAV file with 16-bit PCM that replaces its target whole, or leaves it as it was.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/files/GrowingFile.h"
#include "recorder/files/SampleStream.h"

namespace quorl {

class WavWriter final : public SampleWriter {
 public:
  // `channels` 1 or 2, `sampleRate` in Hz. Null with `failure` set where `path` can't be written. Without a
  // Commit nothing is left behind. `files` outlives the writer.
  static std::unique_ptr<WavWriter> Create(Files& files, const std::string& path, int channels,
                                           int sampleRate, Failure& failure);

  // `count` samples, interleaved; refused where they would go beyond the 4 GB that a WAV file can hold.
  Failure Write(const std::int16_t* samples, int count) override;
  // Puts the sizes into the header; a pipe keeps the "length unknown" that its header began with.
  Failure Commit() override;
  // The file that grows beside the target; empty where the target is written directly.
  const std::string& Temporary() const { return file_->Temporary(); }

 private:
  WavWriter(std::unique_ptr<GrowingFile> file, int channels, int sampleRate)
      : file_(std::move(file)), channels_(channels), sampleRate_(sampleRate) {}
  std::array<unsigned char, 44> Header(std::uint32_t dataBytes) const;

  std::unique_ptr<GrowingFile> file_;
  int channels_;
  int sampleRate_;
  std::int64_t bytes_ = 0;
};

}  // namespace quorl
