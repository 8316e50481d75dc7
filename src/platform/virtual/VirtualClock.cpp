#include "platform/virtual/VirtualClock.h"

namespace quorl {

using std::chrono::microseconds;

LocalTime VirtualClock::Now() const {
  const auto moment = std::chrono::floor<std::chrono::milliseconds>(origin_ + microseconds{now_});
  const auto day = std::chrono::floor<std::chrono::days>(moment);
  const std::chrono::year_month_day date{day};
  const std::chrono::hh_mm_ss time{moment - day};
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(time.hours().count()),
          static_cast<int>(time.minutes().count()),
          static_cast<int>(time.seconds().count()),
          static_cast<int>(time.subseconds().count())};
}

void VirtualClock::Advance(microseconds step) {
  if (step.count() > 0) now_ += step.count();
}

void VirtualClock::SetNow(const LocalTime& time) {
  const std::chrono::year_month_day date{std::chrono::year{time.Year},
                                         std::chrono::month{static_cast<unsigned>(time.Month)},
                                         std::chrono::day{static_cast<unsigned>(time.Day)}};
  origin_ = std::chrono::local_days{date} + std::chrono::hours{time.Hour} +
            std::chrono::minutes{time.Minute} + std::chrono::seconds{time.Second} +
            std::chrono::milliseconds{time.Millisecond} - microseconds{now_};
}

}  // namespace quorl
