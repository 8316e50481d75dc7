// A clock that moves only when it is told to.
#pragma once

#include <chrono>
#include <cstdint>

#include "platform/Clock.h"

namespace quorl {

// Microseconds() starts at 0. Calendar time starts at 2024-01-01 12:00:00 unless set and runs along with it.
class VirtualClock : public Clock {
 public:
  std::int64_t Microseconds() const override { return now_; }
  LocalTime Now() const override;
  // The calendar time is that of a place on the meridian.
  std::int64_t UtcMicroseconds() const override { return origin_.time_since_epoch().count() + now_; }

  // Steps the clock without running any timer: what a busy thread does. Negative steps are ignored.
  void Advance(std::chrono::microseconds step);
  // Sets the calendar time of this moment. The date must be a real one.
  void SetNow(const LocalTime& time);

 private:
  std::int64_t now_ = 0;
  std::chrono::local_time<std::chrono::microseconds> origin_ =
      std::chrono::local_days{std::chrono::year{2024} / 1 / 1} + std::chrono::hours{12};
};

}  // namespace quorl
