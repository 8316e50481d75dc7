// A recording, or a pipe, as the receiver takes it: block by block.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "ReceiveOptions.h"
#include "platform/Files.h"
#include "recorder/files/RecordingHeader.h"
#include "recorder/files/SampleStream.h"

namespace quorl::cli {

// Header and log of a file where this program has recorded it; empty for all else, such as a pipe. `failure`
// tells what is wrong with one of ours.
std::optional<Recording> ReadOwn(const Files& files, const std::string& path, Failure& failure);

class RecordingBlocks {
 public:
  // The input of the options, which take board and side from an IF recording. Null with `failure` set where
  // it can't be read, or lacks what the model needs.
  static std::unique_ptr<RecordingBlocks> Open(const Files& files, ReceiveOptions& options, Failure& failure);

  // How the input is called in messages.
  const std::string& Name() const { return name_; }
  // Frames in all, where that is known beforehand.
  std::optional<std::int64_t> Frames() const { return reader_->Frames(); }
  // Header and log, where this program has recorded it.
  const std::optional<Recording>& Own() const { return own_; }
  // Takes the next block, or the first `frames` of it, and returns how many frames came: fewer only at the
  // end or with `failure` set. What is missing is silence, and so is the right channel of one.
  int Next(Failure& failure, int frames = SamplesPerEvent);
  std::int16_t* Left() { return left_.data(); }
  const std::int16_t* Right() const { return right_.data(); }

 private:
  RecordingBlocks(std::unique_ptr<SampleReader> reader, std::string name, std::optional<Recording> own)
      : reader_(std::move(reader)), name_(std::move(name)), own_(std::move(own)) {}

  std::unique_ptr<SampleReader> reader_;
  std::string name_;
  std::optional<Recording> own_;
  std::array<std::int16_t, std::size_t{2} * SamplesPerEvent> interleaved_{};
  std::array<std::int16_t, SamplesPerEvent> left_{}, right_{};
};

}  // namespace quorl::cli
