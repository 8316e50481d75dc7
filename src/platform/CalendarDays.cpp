#include "platform/CalendarDays.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "support/Text.h"

namespace quorl {
namespace {

using namespace std::chrono;

constexpr local_days kDayZero{year{1899} / December / 30};
constexpr local_days kFirst{year{1} / January / 1}, kLast{year{9999} / December / 31};
constexpr double kSecondsADay = 86400.0, kMillisecondsADay = kSecondsADay * 1000.0;

// Reads a number of exactly `digits` digits off the front, and the separator behind it.
bool Take(std::string_view& text, int digits, char separator, int& value) {
  const auto length = static_cast<std::size_t>(digits);
  const std::size_t taken = length + (separator == '\0' ? 0 : 1);
  if (text.size() < taken || (separator != '\0' && text[length] != separator)) return false;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + length, value);
  if (fault != std::errc{} || end != text.data() + length || value < 0) return false;
  text.remove_prefix(taken);
  return true;
}

}  // namespace

double DaysOf(const LocalTime& time) {
  const local_days day{year{time.Year} / month{static_cast<unsigned>(time.Month)} /
                       std::chrono::day{static_cast<unsigned>(time.Day)}};
  const double seconds = time.Hour * 3600.0 + time.Minute * 60.0 + time.Second + time.Millisecond / 1000.0;
  return static_cast<double>((day - kDayZero).count()) + seconds / kSecondsADay;
}

LocalTime TimeOfDays(double days) {
  const auto least = static_cast<double>((kFirst - kDayZero).count()),
             most = static_cast<double>((kLast - kDayZero).count()) + 1.0 - 1.0 / kMillisecondsADay;
  const double within = std::isfinite(days) ? std::clamp(days, least, most) : 0.0;
  const local_time<milliseconds> moment =
      kDayZero + milliseconds{static_cast<std::int64_t>(std::floor(within * kMillisecondsADay + 0.5))};
  const local_days day = floor<std::chrono::days>(moment);
  const year_month_day date{day};
  const hh_mm_ss<milliseconds> clock{moment - day};
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(clock.hours().count()),
          static_cast<int>(clock.minutes().count()),
          static_cast<int>(clock.seconds().count()),
          static_cast<int>(clock.subseconds().count())};
}

std::string DateText(double days) {
  const LocalTime t = TimeOfDays(std::floor(days * kSecondsADay + 0.5) / kSecondsADay);
  std::array<char, 80> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", t.Year, t.Month, t.Day, t.Hour,
                t.Minute, t.Second);
  return text.data();
}

std::optional<double> ParseDate(std::string_view text) {
  text = Trim(text);
  LocalTime t;
  const bool read = Take(text, 4, '-', t.Year) && Take(text, 2, '-', t.Month) && Take(text, 2, ' ', t.Day) &&
                    Take(text, 2, ':', t.Hour) && Take(text, 2, ':', t.Minute) &&
                    Take(text, 2, '\0', t.Second) && text.empty();
  const year_month_day date{year{t.Year}, month{static_cast<unsigned>(t.Month)},
                            day{static_cast<unsigned>(t.Day)}};
  if (!read || t.Year < 1 || !date.ok() || t.Hour > 23 || t.Minute > 59 || t.Second > 59) return {};
  return DaysOf(t);
}

}  // namespace quorl
