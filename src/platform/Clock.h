// Time, as the machine tells it.
#pragma once

#include <cstdint>

namespace quorl {

// Local calendar time, for labels and logs.
struct LocalTime {
  int Year = 1970, Month = 1, Day = 1;   // month and day count from 1
  int Hour = 0, Minute = 0, Second = 0;  // 24-hour clock
  int Millisecond = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  // Microseconds of a steady clock with an arbitrary origin: for intervals. Never steps back.
  virtual std::int64_t Microseconds() const = 0;
  virtual LocalTime Now() const = 0;
  // Microseconds since 1970-01-01 00:00 UTC; steps where somebody sets the clock.
  virtual std::int64_t UtcMicroseconds() const = 0;
};

}  // namespace quorl
