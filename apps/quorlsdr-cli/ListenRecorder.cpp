#include "ListenRecorder.h"

#include "platform/CalendarDays.h"
#include "state/PublicConstants.h"

namespace quorl::cli {
namespace {

constexpr double kSettle = 2.0 / 86400.0;  // days: filters fill, the AGC finds its level

}  // namespace

std::string ListenRecorder::Misfit(const ListenFiles& files) {
  return files.Log && files.Output.empty() && files.RecordIF.empty()
             ? "--log: nothing is recorded; --output FILE is needed"
             : "";
}

Failure ListenRecorder::Open(const IFOrigin& origin) {
  Failure failure;
  if (!wanted_.Output.empty()) {
    audio_ = AudioFile::Create(machine_.Storage, machine_.Beside, wanted_.Output, failure);
    if (failure) return failure;
    if (wanted_.Log && !audio_->File().TakesLog()) {
      return Error{1, wanted_.Output + ": a pipe carries no tuning log; --log needs a file"};
    }
    if (wanted_.Log) audioLog_.emplace(audio_->File().Format());
  }
  if (!wanted_.RecordIF.empty()) {
    const RecordingFormat format{.Rate = FSampling,
                                 .Channels = origin.Model == SDRModel::IQXtalRX ? 2 : 1,
                                 .Bits = BitsPerSample,
                                 .IF = origin};
    captured_ = PostedWav::Create(machine_.Storage, machine_.Beside, wanted_.RecordIF, format, failure);
    if (captured_) capturedLog_.emplace(format);
  }
  return failure;
}

void ListenRecorder::SetLimits(const ListenTimes& times, std::int64_t mostBlocks) {
  times_ = times;
  mostBlocks_ = mostBlocks;
}

double ListenRecorder::Now() const {
  return DaysOf(machine_.Time.Now());
}

void ListenRecorder::Housekeeping(std::int32_t tuned) {
  const bool timed = times_.Start || times_.End;
  const double now = timed ? Now() : 0.0;
  open_ = (!times_.Start || now >= *times_.Start) && (!times_.End || now < *times_.End);
  if (!open_) return;
  if (audioLog_) audioLog_->Note(tuned, audio_->File().Frames(), machine_.Time.Now());
  if (capturedLog_) capturedLog_->Note(tuned, captured_->Frames(), machine_.Time.Now());
  if (audio_) audio_->File().Flush();
  if (captured_) captured_->Flush();
}

void ListenRecorder::TakeAudio(const std::int16_t* block, std::int32_t attenuation) {
  if (!open_ || HasEnough()) return;
  ++blocks_;
  if (audio_) audio_->Take(block, attenuation);
}

std::int32_t ListenRecorder::PlayerMode() const {
  return captured_ && open_ && !HasEnough() ? PlayerModes::Recording : 0;
}

std::int16_t ListenRecorder::AddIF(const std::int16_t* left, const std::int16_t* right, std::int32_t) {
  captured_->Take(left, right);
  return 0;
}

bool ListenRecorder::IsDue() const {
  return !times_.Start || Now() >= *times_.Start - kSettle;
}

bool ListenRecorder::IsDone() const {
  return HasEnough() || (times_.End && Now() >= *times_.End) || (audio_ && audio_->File().Fault()) ||
         (captured_ && captured_->Fault());
}

Failure ListenRecorder::End(PostedWav& file, const std::vector<LogRecord>* log) {
  return file.IsEmpty() ? std::nullopt : file.Close(log);
}

Failure ListenRecorder::Close() {
  Failure failure;
  if (audio_) {
    const auto log = audioLog_ ? audioLog_->Closed(audio_->File().Frames()) : std::vector<LogRecord>();
    failure = End(audio_->File(), audioLog_ ? &log : nullptr);
  }
  if (captured_) {
    const auto log = capturedLog_->Closed(captured_->Frames());
    const Failure other = End(*captured_, &log);
    if (!failure) failure = other;
  }
  return failure;
}

}  // namespace quorl::cli
