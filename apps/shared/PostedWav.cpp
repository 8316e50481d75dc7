#include "shared/PostedWav.h"

#include "state/PublicConstants.h"

namespace quorl {
namespace {

constexpr std::size_t kBlocksAtOnce = 16;
constexpr int kMostUnderWay = 4;  // the rest waits where it was taken

}  // namespace

std::unique_ptr<PostedWav> PostedWav::Create(Files& files, FileWorker& worker, const std::string& path,
                                             const RecordingFormat& format, Failure& failure) {
  auto writer = WavWriter::Create(files, path, format, failure);
  if (failure) return nullptr;
  return std::unique_ptr<PostedWav>(new PostedWav(worker, format, path, std::move(writer)));
}

PostedWav::PostedWav(FileWorker& worker, const RecordingFormat& format, std::string name,
                     std::unique_ptr<WavWriter> writer)
    : worker_(worker),
      calls_(worker),
      format_(format),
      name_(std::move(name)),
      writing_(std::make_shared<Writing>()) {
  writing_->Writer = std::move(writer);
  taken_.reserve(static_cast<std::size_t>(SamplesPerEvent) * static_cast<std::size_t>(format.Channels) *
                 kMostBlocks);
}

void PostedWav::Take(const std::int16_t* left, const std::int16_t* right) {
  if (fault_) return;
  const auto samples = static_cast<std::size_t>(SamplesPerEvent) * static_cast<std::size_t>(format_.Channels);
  if ((frames_ + SamplesPerEvent) * format_.FrameBytes() > WavWriter::MostDataBytes(format_)) {
    fault_ = Error{SampleFault::TooLong, name_ + ": a WAV file ends at 4 GB; what was taken by then is kept"};
  } else if (taken_.size() + samples > taken_.capacity()) {
    fault_ = Error{SampleFault::TooLong, name_ + ": the disk is too slow; what was taken by then is kept"};
  }
  if (fault_) return;
  frames_ += SamplesPerEvent;
  if (format_.Channels == 1) {
    taken_.insert(taken_.end(), left, left + SamplesPerEvent);
    return;
  }
  for (std::int32_t n = 0; n < SamplesPerEvent; ++n) {
    taken_.push_back(left[n]);
    taken_.push_back(right[n]);
  }
}

void PostedWav::Flush() {
  const std::size_t block =
      static_cast<std::size_t>(SamplesPerEvent) * static_cast<std::size_t>(format_.Channels);
  if (underWay_ < kMostUnderWay && taken_.size() >= block * kBlocksAtOnce) Post();
}

void PostedWav::Post() {
  ++underWay_;
  const auto write = [writing = writing_, samples = taken_] {
    if (!writing->Fault)
      writing->Fault = writing->Writer->Write(samples.data(), static_cast<int>(samples.size()));
    return writing->Fault;
  };
  taken_.clear();
  calls_.Make<Failure>(write, [this](Failure failure) {
    --underWay_;
    if (failure) fault_ = std::move(failure);
  });
}

Failure PostedWav::Close(const std::vector<LogRecord>* log) {
  if (!taken_.empty()) Post();
  worker_.Finish();
  if (writing_->Fault) return writing_->Fault;
  if (log != nullptr) writing_->Writer->SetLog(*log);
  if (Failure failure = writing_->Writer->Commit()) return failure;
  return fault_;
}

}  // namespace quorl
