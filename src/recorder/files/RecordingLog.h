// The tuning log of a recording: which frequency was tuned from which position of the file to which, and
// when.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quorl {

struct LogRecord {
  double When = 0.0;       // local time, days as of DaysOf
  std::int32_t Freq = 0;   // dHz
  std::int64_t Start = 0;  // bytes in the file, from 0
  std::int64_t End = 0;    // behind the last byte; of the last record one more

  bool operator==(const LogRecord&) const = default;
};

// What a trailer begins with.
inline constexpr std::string_view kLogTag = "QUORL";
// A record takes this many bytes of a trailer.
inline constexpr std::int64_t kLogRecordBytes = 124;

// The trailer: the tag, then each character of the log's text and a zero byte behind it. Records without a
// frequency are left out.
std::string MakeTrailer(const std::vector<LogRecord>& log);

// Takes a trailer's bytes behind the tag, in pieces of any length, and gives its records. Fields that it
// doesn't know it passes over; numbers and dates that are none read as 0.
class LogUnpacker {
 public:
  // No recording holds more: what comes behind is passed over.
  static constexpr std::size_t kMostRecords = 1'000'000;

  void Take(std::string_view bytes);
  // All records that were closed; one that is cut off at the end is none.
  std::vector<LogRecord> Records;

 private:
  void TakeCharacter(char character);
  void CloseField();

  LogRecord record_;
  std::string field_;
  bool skip_ = false;  // the next byte is the zero behind a character
};

// The record that holds the position, counted from 0; -1 where none does. The first of several.
int FindRecord(const std::vector<LogRecord>& log, std::int64_t position);

}  // namespace quorl
