#include "recorder/files/WavReader.h"

#include <algorithm>

#include "recorder/files/LittleEndian.h"

namespace quorl {
namespace {

// Empty where the format is what `needs` tells; else what it is and what is needed.
std::string Misfit(const WavFormat& format, const WavNeeds& needs) {
  if (format.Tag != WavFormat::Pcm) {
    return "samples are coded in format " + std::to_string(format.Tag) + "; 16-bit PCM is needed";
  }
  if (format.Bits != 16) return "samples have " + std::to_string(format.Bits) + " bits; 16 are needed";
  if (format.Rate != static_cast<std::uint32_t>(needs.SampleRate)) {
    return "the sample rate is " + std::to_string(format.Rate) + " Hz; " + std::to_string(needs.SampleRate) +
           " Hz is needed";
  }
  if (format.Channels < 1 || format.Channels > needs.MaxChannels) {
    return "has " + std::to_string(format.Channels) + " channels; " +
           (needs.MaxChannels > 1 ? "1 to " + std::to_string(needs.MaxChannels) + " are" : "1 is") +
           " needed";
  }
  const int frameBytes = 2 * format.Channels;
  if (format.FrameBytes != frameBytes) {
    return "frames have " + std::to_string(format.FrameBytes) + " bytes; " + std::to_string(frameBytes) +
           " are needed";
  }
  return "";
}

Failure Fault(const OpenFile& file, int code, const std::string& text) {
  return Error{code, file.Name() + ": " + text};
}

Failure Check(const OpenFile& file, const WavLayout& layout, const WavNeeds& needs) {
  if (const std::string misfit = Misfit(layout.Format, needs); !misfit.empty()) {
    return Fault(file, SampleFault::Format, misfit);
  }
  if (Failure failure = ShortOfSamples(file, layout)) return failure;
  if (layout.DataBytes % layout.Format.FrameBytes != 0) {
    return Fault(file, SampleFault::OddLength,
                 "has " + std::to_string(layout.DataBytes) +
                     " bytes of samples; a whole number of frames of " +
                     std::to_string(layout.Format.FrameBytes) + " bytes is needed");
  }
  return {};
}

}  // namespace

WavReader::WavReader(std::unique_ptr<OpenFile> file, const WavLayout& layout)
    : file_(std::move(file)),
      channels_(layout.Format.Channels),
      frames_(layout.DataBytes / layout.Format.FrameBytes),
      left_(frames_),
      at_(layout.DataAt) {}

std::unique_ptr<WavReader> WavReader::Open(const Files& files, const std::string& path, const WavNeeds& needs,
                                           Failure& failure) {
  auto file = files.Open(path, OpenMode::Read, failure);
  if (failure) return nullptr;
  const auto layout = ReadWavLayout(*file, failure);
  if (!failure) failure = Check(*file, *layout, needs);
  return failure ? nullptr : std::unique_ptr<WavReader>(new WavReader(std::move(file), *layout));
}

int WavReader::Read(std::int16_t* interleaved, int frames, Failure& failure) {
  const std::int64_t frameBytes = 2 * channels_;
  const std::int64_t wanted = std::min<std::int64_t>(frames, left_);
  const std::int64_t got = file_->ReadAt(at_, interleaved, wanted * frameBytes, failure) / frameBytes;
  at_ += got * frameBytes;
  left_ -= got;
  if (got < wanted && !failure) {
    failure = Fault(*file_, SampleFault::TruncatedData,
                    "the file ends " + std::to_string(left_) +
                        " frames before the length that its header tells; a complete file is needed");
  }
  SwapFileOrder(interleaved, static_cast<std::size_t>(got * channels_));
  return static_cast<int>(got);
}

}  // namespace quorl
