// What was tuned while a recording grew.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/Clock.h"
#include "recorder/files/RecordingHeader.h"

namespace quorl {

class TuningLog {
 public:
  explicit TuningLog(const RecordingFormat& format) : format_(format) {}

  // `dHz` is tuned as the frame behind `frames` comes. Less than 100 Hz leaves no trace.
  void Note(std::int32_t dHz, std::int64_t frames, const LocalTime& now);
  // The log of a recording of that many frames.
  std::vector<LogRecord> Closed(std::int64_t frames) const;

 private:
  std::int64_t At(std::int64_t frames) const { return format_.DataAt() + frames * format_.FrameBytes(); }

  RecordingFormat format_;
  std::vector<LogRecord> records_;
};

}  // namespace quorl
