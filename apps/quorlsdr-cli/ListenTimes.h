// When a recording of `listen` begins and ends.
#pragma once

#include <optional>
#include <string>

namespace quorl::cli {

// A local time of a day, or of every day.
struct Moment {
  double Days = 0.0;  // as of DaysOf; below 1 without a date
  bool HasDate = false;
};

// "HH:MM" or "YYYY-MM-DD HH:MM"; refused where it is neither.
Moment ParseMoment(const std::string& option, const std::string& text);

// Local times, as of DaysOf. Empty: at once, and until it is stopped.
struct ListenTimes {
  std::optional<double> Start, End;
};

// The next times that fit, after `now`; a time of day that shows right now is this one. A start that has
// passed records the rest. `misfit` tells what can't be.
ListenTimes PlaceTimes(const std::optional<Moment>& start, const std::optional<Moment>& end, double now,
                       std::string& misfit);

}  // namespace quorl::cli
