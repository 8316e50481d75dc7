#include "shared/TuningLog.h"

#include <cstdlib>

#include "platform/CalendarDays.h"

namespace quorl {
namespace {

constexpr std::int64_t kLeastChange = 1000;  // dHz

}  // namespace

void TuningLog::Note(std::int32_t dHz, std::int64_t frames, const LocalTime& now) {
  if (!records_.empty()) {
    LogRecord& last = records_.back();
    if (std::abs(std::int64_t{dHz} - last.Freq) < kLeastChange) return;
    last.End = At(frames);
  }
  records_.push_back({DaysOf(now), dHz, At(frames), 0});
}

std::vector<LogRecord> TuningLog::Closed(std::int64_t frames) const {
  std::vector<LogRecord> log = records_;
  if (!log.empty()) log.back().End = At(frames) + 1;
  return log;
}

}  // namespace quorl
