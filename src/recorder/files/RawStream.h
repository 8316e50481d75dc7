// Headerless 16-bit little-endian samples on streams that somebody else owns, such as standard input.
#pragma once

#include <istream>
#include <ostream>
#include <string>

#include "recorder/files/SampleStream.h"

namespace quorl {

class RawReader final : public SampleReader {
 public:
  // Interleaved frames of `channels` samples. `name` stands in front of messages.
  RawReader(std::istream& in, std::string name, int channels)
      : in_(in), name_(std::move(name)), channels_(channels) {}

  int Channels() const override { return channels_; }
  std::optional<std::int64_t> Frames() const override { return {}; }
  int Read(std::int16_t* interleaved, int frames, Failure& failure) override;

 private:
  std::istream& in_;
  std::string name_;
  int channels_;
};

class RawWriter final : public SampleWriter {
 public:
  RawWriter(std::ostream& out, std::string name) : out_(out), name_(std::move(name)) {}

  Failure Write(const std::int16_t* samples, int count) override;
  Failure Commit() override;

 private:
  Failure Check();

  std::ostream& out_;
  std::string name_;
};

}  // namespace quorl
