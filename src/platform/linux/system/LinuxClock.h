// Steady and wall clock of the machine.
#pragma once

#include "platform/Clock.h"

namespace quorl {

class LinuxClock : public Clock {
 public:
  std::int64_t Microseconds() const override;
  LocalTime Now() const override;
  std::int64_t UtcMicroseconds() const override;
};

}  // namespace quorl
