// Writes the journal of a recording, so that what is recorded survives a program that dies.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/FileWorker.h"
#include "platform/files/PostedFiles.h"
#include "recorder/journal/JournalFormat.h"

namespace quorl {

// All calls belong to the event queue's thread and return at once; the disk is written by `worker`, in the
// order of the calls, and of others given to the same worker. Samples that wait for the disk are bounded:
// what a disk that stands still for longer can't take is not journalled.
class JournalWriter {
 public:
  // `files` and `worker` outlive the writer. `path` is the journal's.
  JournalWriter(Files& files, FileWorker& worker, std::string path);

  // Runs once a recording: the journal can't be written. It ends, and no torn one stays.
  std::function<void(const Error&)> OnFault;

  // Makes the file anew. Before the first sample, and after the making of the recording's temporary file was
  // given to the same worker: an old file must not meet a new journal.
  void Begin(const JournalHead& head);
  // Frequency, time and Start as in the file of the part that is filled now; the End doesn't matter.
  void NoteLog(const LogRecord& record);
  // `count` samples more of this half, behind `offset` of it that were noted before.
  void NoteSamples(std::int64_t half, std::int32_t offset, const std::int16_t* samples, std::int32_t count);
  // The half stands in the file: `samples` of it, below 0 for all.
  void NoteWritten(std::int64_t half, std::int32_t samples = -1);
  // The half will never stand there: log positions behind it move down by `bytes`, those within it to its
  // start, noted already or not.
  void NoteLost(std::int64_t half, std::int64_t bytes);
  // A new part begins with this half, before the finished one is renamed. Records that were noted before and
  // start from there on are its, and so is the frequency in force; what is noted later counts from its begin.
  void NotePart(std::int32_t part, std::int64_t half);
  // The file is closed whole: the journal goes.
  void Remove();

 private:
  class Disk;

  void Post(std::function<Failure(Disk&)> work, std::int64_t samples = 0);
  void NoteEvent(const JournalEvent& event);

  Files& files_;
  std::string path_;
  JournalHead head_;
  std::shared_ptr<Disk> disk_;             // used by the worker alone; null while nothing is journalled
  std::shared_ptr<std::int64_t> waiting_;  // samples on their way to the disk
  FileCalls calls_;
};

}  // namespace quorl
