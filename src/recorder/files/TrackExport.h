// Tracks of a recording as files of their own, with frequency and date in their tags.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform/SoundFiles.h"
#include "platform/files/FileJob.h"
#include "recorder/files/RecordingHeader.h"
#include "recorder/files/Tracks.h"

namespace quorl {

struct TrackExportOrder {
  std::string Recording, Folder;  // the folder is made where it is missing
  SoundFileKind Kind = SoundFileKind::Wav;
  std::optional<std::size_t> Record;  // the log's number of the one that is wanted, from 0; else all
};

// Each file takes its name from RecordingName; nothing is overwritten. A track that reaches beyond the
// samples is cut there, one behind them left out. Files that were complete stay when the job is stopped or
// fails.
class TrackExport final : public FileJob {
 public:
  // `files` and `media` outlive the job.
  TrackExport(Files& files, const SoundFiles& media, TrackExportOrder order)
      : files_(files), media_(media), order_(std::move(order)) {}

  // Fails with one line also where there is nothing to export.
  Failure Step() override;
  bool IsDone() const override { return done_; }
  double Progress() const override;
  void Discard() override { writer_.reset(); }

  // Paths of the files that are complete; to be read between steps.
  const std::vector<std::string>& Written() const { return written_; }

 private:
  Failure Begin();
  Failure Choose(const Recording& recording);
  Failure OpenNext();
  Failure Piece();
  Failure Close();
  SoundFileForm FormOf(const Track& track) const;
  Failure Fault(const std::string& text) const {
    return Error{SoundFault::Refused, order_.Recording + ": " + text};
  }

  Files& files_;
  const SoundFiles& media_;
  TrackExportOrder order_;
  std::unique_ptr<OpenFile> file_;
  RecordingFormat format_;
  std::vector<Track> tracks_;  // those to be exported
  std::size_t next_ = 0;
  std::int64_t frame_ = 0, left_ = 0;  // of the track that is being written
  std::int64_t framesDone_ = 0, framesAll_ = 0;
  std::unique_ptr<SoundFileWriter> writer_;
  std::string path_;
  std::vector<std::int16_t> samples_;
  std::vector<std::string> written_;
  bool done_ = false;
};

}  // namespace quorl
