#include "ListenTimes.h"

#include <algorithm>
#include <cmath>

#include "OptionText.h"
#include "platform/CalendarDays.h"

namespace quorl::cli {
namespace {

constexpr double kMinute = 1.0 / 1440.0;
constexpr double kHalfSecond = 0.5 / 86400.0;  // beyond what a number of days rounds

// The first time from `after` on that the moment comes; one that has a date comes once.
double NextOf(const Moment& moment, double after) {
  if (moment.HasDate) return moment.Days;
  const double today = std::floor(after) + moment.Days;
  return today < after ? today + 1.0 : today;
}

std::string MinuteText(double days) {
  return DateText(days).substr(0, 16);
}

}  // namespace

Moment ParseMoment(const std::string& option, const std::string& text) {
  constexpr const char* kAnyDay = "1899-12-30 ";  // day 0
  if (const auto days = ParseDate(kAnyDay + text + ":00"); days && text.size() == 5) return {*days, false};
  if (const auto days = ParseDate(text + ":00"); days && text.size() == 16) return {*days, true};
  Refuse(option, "'" + text + "' doesn't fit; HH:MM or \"YYYY-MM-DD HH:MM\", local time, is needed");
}

ListenTimes PlaceTimes(const std::optional<Moment>& start, const std::optional<Moment>& end, double now,
                       std::string& misfit) {
  ListenTimes times;
  if (start) times.Start = NextOf(*start, now - kMinute + kHalfSecond);
  const double begin = std::max(now, times.Start.value_or(now));
  if (end) times.End = NextOf(*end, begin + kHalfSecond);
  if (times.End && *times.End <= begin) {
    misfit = *times.End <= now
                 ? "--end: " + MinuteText(*times.End) + " has passed; a time to come is needed"
                 : "--end: " + MinuteText(*times.End) + " doesn't lie behind --start, " + MinuteText(begin);
  }
  return times;
}

}  // namespace quorl::cli
