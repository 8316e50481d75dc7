// Local dates as numbers of days, for sums, comparisons and logs.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Clock.h"

namespace quorl {

// Days since 1899-12-30 00:00 with the time as a fraction; milliseconds are kept.
double DaysOf(const LocalTime& time);
// The nearest millisecond. Years 1 to 9999; what lies outside gives the nearest of these.
LocalTime TimeOfDays(double days);

// "2026-11-23 18:05:09", the nearest second.
std::string DateText(double days);
// The same read back, blanks around it allowed; empty where it is no date of the calendar.
std::optional<double> ParseDate(std::string_view text);

}  // namespace quorl
