// Reads the journal of a recording: what was recorded and may not stand in the recording's own file.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "recorder/journal/JournalFormat.h"

namespace quorl {

// A half whose samples the journal holds.
struct HeldHalf {
  std::int64_t Half = 0;
  std::int32_t Samples = 0;  // from its beginning
  std::int64_t At = 0;       // byte of the journal
};

// What the journal tells of one file of the recording.
class JournalPart {
 public:
  JournalPart(const JournalHead& head, std::int32_t number, std::int64_t firstHalf)
      : Number(number), FirstHalf(firstHalf), head_(head) {}

  std::int32_t Number;
  std::int64_t FirstHalf;
  // Starts as the file holds them, losses taken off; Ends are not set.
  std::vector<LogRecord> Log;

  // The part that comes next and begins with this half. What is tuned from there on is its, and it begins
  // with the frequency in force.
  JournalPart Next(std::int64_t half);
  void NoteLost(std::int64_t half, std::int64_t bytes);
  void NoteWritten(std::int64_t half, std::int64_t bytes);
  bool IsLost(std::int64_t half) const;
  // Where the half stands in the file; never before the samples.
  std::int64_t PlaceOf(std::int64_t half) const;
  // Behind the last half that was written.
  std::int64_t WrittenTo() const;

 private:
  struct Loss {
    std::int64_t Half, Bytes;
  };

  JournalHead head_;
  std::vector<Loss> losses_;  // by number
  std::int64_t lostBytes_ = 0;
  std::int64_t lastWritten_ = -1, lastBytes_ = 0;
};

struct Journal {
  JournalHead Head;
  std::vector<JournalPart> Parts;  // at least one; numbers without gaps
  std::vector<HeldHalf> Held;      // by number; none that was lost

  JournalPart& PartOf(std::int64_t half);
};

// A torn event at the end is dropped. Empty with `failure` set where the file can't be read, and without
// where it is no journal or is damaged.
std::optional<Journal> ReadJournal(OpenFile& file, Failure& failure);

}  // namespace quorl
