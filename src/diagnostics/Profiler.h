// Stop watch for the block pump and for the speed of the tuning knob.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Clock.h"

namespace quorl {

class Profiler {
 public:
  // `clock` is used as long as the profiler lives.
  explicit Profiler(const Clock& clock) : clock_(clock) {}

  void Start() { StartTiming(); }
  void StartTiming() { start_ = clock_.Microseconds(); }
  // Reads the time since the last start; the watch runs on.
  void StopTiming();
  // StopTiming, then the time as a text for people, in milliseconds: "1,234.567 ms".
  std::string Stopp();

  // What StopTiming read last: steps of the counter, and microseconds.
  std::int64_t ElapsedTicks() const { return elapsed_; }
  double ElapsedTime() const;
  // Steps of the counter in a second.
  std::int64_t CPUFreq() const { return 1000000; }

 private:
  const Clock& clock_;
  std::int64_t start_ = 0;
  std::int64_t elapsed_ = 0;
};

}  // namespace quorl
