// A recording, or a pipe, as the receiver takes it: block by block.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "ReceiveOptions.h"
#include "platform/Files.h"
#include "recorder/files/SampleStream.h"

namespace quorl::cli {

class RecordingBlocks {
 public:
  // The input of the options. Null with `failure` set where it can't be read, or lacks what the model needs.
  static std::unique_ptr<RecordingBlocks> Open(const Files& files, const ReceiveOptions& options,
                                               Failure& failure);

  // How the input is called in messages.
  const std::string& Name() const { return name_; }
  // Frames in all, where that is known beforehand.
  std::optional<std::int64_t> Frames() const { return reader_->Frames(); }
  // Takes the next block, or the first `frames` of it, and returns how many frames came: fewer only at the
  // end or with `failure` set. What is missing is silence, and so is the right channel of one.
  int Next(Failure& failure, int frames = SamplesPerEvent);
  std::int16_t* Left() { return left_.data(); }
  const std::int16_t* Right() const { return right_.data(); }

 private:
  RecordingBlocks(std::unique_ptr<SampleReader> reader, std::string name)
      : reader_(std::move(reader)), name_(std::move(name)) {}

  std::unique_ptr<SampleReader> reader_;
  std::string name_;
  std::array<std::int16_t, std::size_t{2} * SamplesPerEvent> interleaved_{};
  std::array<std::int16_t, SamplesPerEvent> left_{}, right_{};
};

}  // namespace quorl::cli
