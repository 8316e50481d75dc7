#include "recorder/files/TrackExport.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "platform/CalendarDays.h"
#include "recorder/files/LittleEndian.h"
#include "recorder/files/RecordingName.h"

namespace quorl {
namespace {

constexpr std::int64_t kPieceFrames = 65536;

std::string ExactKilohertz(std::int32_t dhz) {
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "%.4f kHz", static_cast<double>(dhz) / 10000.0);
  return text.data();
}

}  // namespace

Failure TrackExport::Step() {
  if (!file_) return Begin();
  if (!writer_) return OpenNext();
  return left_ > 0 ? Piece() : Close();
}

double TrackExport::Progress() const {
  if (done_) return 1.0;
  return framesAll_ > 0 ? static_cast<double>(framesDone_) / static_cast<double>(framesAll_) : 0.0;
}

Failure TrackExport::Begin() {
  Failure failure;
  file_ = files_.Open(order_.Recording, OpenMode::Read, failure);
  if (failure) return failure;
  const RecordingRead read = ReadRecording(*file_);
  if (read.Fault) return read.Fault;
  if (!read.Own || read.Own->Log.empty())
    return Fault("has no tuning log; a recording with tracks is needed");
  format_ = read.Own->Format;
  failure = Choose(*read.Own);
  return failure ? failure : files_.MakeDirectory(order_.Folder);
}

Failure TrackExport::Choose(const Recording& recording) {
  bool found = false;
  for (const Track& track : TracksOf(recording)) {
    if (order_.Record && *order_.Record != track.Record) continue;
    found = true;
    if (track.Frames > 0) tracks_.push_back(track);
    framesAll_ += track.Frames;
  }
  if (!tracks_.empty()) return {};
  return Fault(found ? "what is wanted lies behind the last sample; a track with samples is needed"
                     : "has no such track; one of its list is needed");
}

SoundFileForm TrackExport::FormOf(const Track& track) const {
  return {order_.Kind,
          format_.Channels,
          format_.Rate,
          std::to_string(WholeKilohertz(track.Freq)) + " kHz",
          "Frequency " + ExactKilohertz(track.Freq),
          DateText(track.When)};
}

Failure TrackExport::OpenNext() {
  const Track& track = tracks_[next_];
  Failure failure;
  path_ = FreePath(files_, order_.Folder, RecordingName(track.When, track.Freq),
                   order_.Kind == SoundFileKind::Flac ? ".flac" : ".wav");
  writer_ = media_.Create(path_, FormOf(track), failure);
  frame_ = track.FirstFrame;
  left_ = track.Frames;
  return failure;
}

Failure TrackExport::Piece() {
  Failure failure;
  const std::int64_t frames = std::min(left_, kPieceFrames), bytes = frames * format_.FrameBytes();
  samples_.resize(static_cast<std::size_t>(frames * format_.Channels));
  const std::int64_t at = format_.DataAt() + frame_ * format_.FrameBytes();
  const std::int64_t got = file_->ReadAt(at, samples_.data(), bytes, failure);
  if (failure) return failure;
  if (got < bytes) return Fault("has become shorter while it was read; a complete recording is needed");
  SwapFileOrder(samples_.data(), samples_.size());
  frame_ += frames;
  left_ -= frames;
  framesDone_ += frames;
  return writer_->Write(samples_.data(), static_cast<int>(frames));
}

Failure TrackExport::Close() {
  const Failure failure = writer_->Commit();
  writer_.reset();
  if (failure) return failure;
  written_.push_back(path_);
  done_ = ++next_ == tracks_.size();
  return {};
}

}  // namespace quorl
