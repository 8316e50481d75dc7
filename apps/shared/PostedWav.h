// A WAV file that grows while the radio plays: samples are taken on the signal's thread and written beside
// it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/files/PostedFiles.h"
#include "recorder/files/WavWriter.h"
#include "support/Error.h"

namespace quorl {

// The file appears when Close succeeds; until then an old one of that name stays.
class PostedWav {
 public:
  // `files` and `worker` outlive the file. Null with `failure` set where `path` can't be written.
  static std::unique_ptr<PostedWav> Create(Files& files, FileWorker& worker, const std::string& path,
                                           const RecordingFormat& format, Failure& failure);
  ~PostedWav() { worker_.Finish(); }
  PostedWav(const PostedWav&) = delete;
  PostedWav& operator=(const PostedWav&) = delete;

  // A block of SamplesPerEvent frames; `right` is read where the format has two channels. Neither waits nor
  // allocates.
  void Take(const std::int16_t* left, const std::int16_t* right);
  // Sees to it that what was taken is written. For the time between two blocks; a disk that stands still for
  // longer than `kMostBlocks` is a fault.
  void Flush();
  static constexpr int kMostBlocks = 1024;

  std::int64_t Frames() const { return frames_; }  // taken so far
  bool IsEmpty() const { return frames_ == 0; }    // the old file may as well stay
  const RecordingFormat& Format() const { return format_; }
  // False for a pipe, which can't carry a log.
  bool TakesLog() const { return writing_->Writer->TakesLog(); }
  const Failure& Fault() const { return fault_; }  // what ended the writing
  // Waits for the disk, and puts `log` behind the samples where there is one. A file that has grown as long
  // as a file can is kept, and told.
  Failure Close(const std::vector<LogRecord>* log);

 private:
  // What the worker's thread uses.
  struct Writing {
    std::unique_ptr<WavWriter> Writer;
    Failure Fault;
  };

  PostedWav(FileWorker& worker, const RecordingFormat& format, std::string name,
            std::unique_ptr<WavWriter> writer);
  void Post();

  FileWorker& worker_;
  FileCalls calls_;
  RecordingFormat format_;
  std::string name_;
  std::shared_ptr<Writing> writing_;
  std::vector<std::int16_t> taken_;  // interleaved
  std::int64_t frames_ = 0;
  int underWay_ = 0;  // calls that are out
  Failure fault_;
};

}  // namespace quorl
