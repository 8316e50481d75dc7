// The disk's side of a recording: takes its halves in order and writes each when the one before has ended.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/EventQueue.h"
#include "platform/files/PostedFiles.h"
#include "recorder/files/RecordingHeader.h"
#include "recorder/journal/JournalWriter.h"
#include "recorder/journal/RecordingParts.h"

namespace quorl {

struct RecordingLimits {
  std::int32_t HalfSamples = 0;  // of a whole half on the disk, all channels together
  std::int64_t MostBytes = 0;    // of one part, log included
  std::int64_t MostFrames = 0;   // of one part
};

// The recording grows in a temporary file. Where that would become too long, it is finished, gets a number
// behind its name, and the recording goes on in a next one. A half that can't be written is lost: the next
// one takes its place, and all positions of the log behind it move down.
class RecordingWriter {
 public:
  // Halves that may wait for the disk.
  static constexpr int kMostWaiting = 4;
  // Between two looks at a disk that is awaited.
  static constexpr std::chrono::milliseconds kDiskWait{10};

  // Everything outlives the writer, `log` is what the recording's log is kept in.
  RecordingWriter(Files& files, FileWorker& worker, EventQueue& queue, std::vector<LogRecord>& log,
                  const RecordingParts& names);

  std::function<void()> OnWritten = [] {};  // a half has been written, or lost
  std::function<void(std::int32_t part)> OnPart = [](std::int32_t) {};
  std::function<void(const Error&)> OnJournalFault = [](const Error&) {};

  // Waits, as Finish does, while the queue brings other events.
  Failure Open(const RecordingFormat& format, const RecordingLimits& limits);
  bool IsOpen() const { return file_ != nullptr; }
  bool HasRoom() const { return static_cast<int>(waiting_.size()) < kMostWaiting; }

  // More of a half, behind `offset` samples of it that were told before: for the journal.
  void Follow(std::int64_t half, std::int32_t offset, const std::int16_t* samples, std::int32_t count);
  // A half to be written; there must be room. The last one of a recording may be short.
  void Write(std::int64_t half, std::vector<std::int16_t> samples);
  // A half that never got here.
  void Lose(std::int64_t half);
  // From here on, `samples` behind the recording's begin, this is tuned.
  void NoteTuning(std::int32_t freq, double when, std::int64_t samples);

  // Writes what waits, then log and header, and closes the file; then the journal goes. With a failure the
  // file stays open, for another try.
  Failure Finish();
  // Closes the file as it is, and the journal with it.
  void Abandon();
  // What was the last fault; told once.
  Failure TakeFault();

  std::int64_t FileBytes() const { return position_; }  // of the current part, without its trailer
  std::int64_t Frames() const { return frames_; }       // written, of all parts
  std::int64_t PartFrames() const;                      // written, of the current part
  std::int32_t Parts() const { return part_ - 1; }      // that are finished and wait under their numbers
  const RecordingFormat& Format() const { return format_; }

 private:
  struct Half {
    std::int64_t Number = 0;
    std::int64_t Length = 0;  // bytes
    std::string Bytes;
    bool Lost = false;
  };

  void WriteNext();
  void Written(const Failure& failure);
  void LoseFirst();
  bool IsPartFull(std::int64_t bytes) const;
  void TurnPart();

  Files& files_;
  EventQueue& queue_;
  FileCalls calls_;
  JournalWriter journal_;
  std::vector<LogRecord>& log_;
  const RecordingParts& names_;
  RecordingFormat format_;
  std::shared_ptr<OpenFile> file_;
  std::deque<Half> waiting_;
  bool busy_ = false;
  Failure fault_;
  RecordingLimits limits_;
  std::int64_t position_ = 0;  // where the next half goes, from 0
  std::int64_t frames_ = 0;
  std::int64_t base_ = 0;  // bytes of the recording that lie in finished parts, or are lost
  std::int32_t part_ = 1;
  std::int32_t notedPart_ = 1;  // in the journal
};

}  // namespace quorl
