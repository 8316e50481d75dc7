// What must be written to the files of an unsaved recording so that they are whole. Planning only reads.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "recorder/journal/JournalReader.h"
#include "recorder/journal/RecordingParts.h"

namespace quorl {

// One file of the recording. Done from the top downwards, and once more from the top where that was broken
// off, it comes out the same.
struct FilePlan {
  struct Piece {
    HeldHalf From;        // in the journal
    std::int64_t At = 0;  // in the file
  };

  std::string Path;
  RecordingFormat Format;
  bool Mends = false;         // else the file is whole, and all below is only told
  std::int64_t Keep = 0;      // bytes of header and samples that the file holds; what is behind goes
  bool Cuts = true;           // else only the header is put right, and the log behind the samples stays
  std::vector<Piece> Pieces;  // come in
  std::int64_t End = 0;       // bytes of header and samples then, whole frames
  bool HasLog = false;        // a trailer of this log follows
  std::vector<LogRecord> Log;
  std::string FinishedAs;  // the file's name afterwards; empty: as it is

  std::int64_t Frames() const { return (End - Format.DataAt()) / Format.FrameBytes(); }
};

struct MendPlan {
  std::vector<FilePlan> Files;  // in the order of the parts
  bool HasJournal = false;      // goes when all is done
  bool LogLost = false;         // a file is mended by its length alone, for want of a sound journal
  Failure Fault;                // something can't be read; nothing is planned then
};

MendPlan PlanMending(const Files& files, const RecordingParts& parts);

}  // namespace quorl
