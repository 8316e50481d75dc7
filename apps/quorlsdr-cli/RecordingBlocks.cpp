#include "RecordingBlocks.h"

#include <algorithm>
#include <iostream>

#include "recorder/files/RawStream.h"
#include "recorder/files/WavReader.h"

namespace quorl::cli {

std::optional<Recording> ReadOwn(const Files& files, const std::string& path, Failure& failure) {
  if (files.Kind(path) != FileKind::Regular) return {};
  const auto file = files.Open(path, OpenMode::Read, failure);
  if (!file) return {};
  RecordingRead read = ReadRecording(*file);
  failure = std::move(read.Fault);
  return std::move(read.Own);
}

std::unique_ptr<RecordingBlocks> RecordingBlocks::Open(const Files& files, ReceiveOptions& options,
                                                       Failure& failure) {
  const bool piped = options.Input == "-";
  std::string name = piped ? "standard input" : options.Input;
  std::unique_ptr<SampleReader> reader;
  std::optional<Recording> own;
  if (piped) {
    reader = std::make_unique<RawReader>(std::cin, name, options.Channels);
  } else {
    reader = WavReader::Open(files, options.Input, WavNeeds{FSampling, 2}, failure);
    if (!failure) own = ReadOwn(files, options.Input, failure);
    if (failure) return {};
  }
  if (own && own->Format.IF) TakeOrigin(*own->Format.IF, options);
  if (options.SDRModelNo == SDRModel::IQXtalRX && reader->Channels() != 2) {
    failure = Error{SampleFault::Format, name + ": has 1 channel; model iq needs I and Q in 2 channels"};
    return {};
  }
  return std::unique_ptr<RecordingBlocks>(
      new RecordingBlocks(std::move(reader), std::move(name), std::move(own)));
}

int RecordingBlocks::Next(Failure& failure, int frames) {
  const int got = reader_->Read(interleaved_.data(), frames, failure);
  if (failure) return 0;
  const auto channels = static_cast<std::size_t>(reader_->Channels());
  for (std::size_t frame = 0; frame < static_cast<std::size_t>(got); ++frame) {
    left_[frame] = interleaved_[frame * channels];
    if (channels == 2) right_[frame] = interleaved_[2 * frame + 1];
  }
  std::fill(left_.begin() + got, left_.end(), std::int16_t{0});
  std::fill(right_.begin() + got, right_.end(), std::int16_t{0});
  return got;
}

}  // namespace quorl::cli
