// Where the window of the oscilloscope begins in the block.
#pragma once

#include <cstdint>

namespace quorl {

// First and last element that is seen.
struct TraceWindow {
  std::int32_t Start = 0, Stop = 0;
};

// Channel 1: begins at the largest sample from which `displayWidth` samples still fit into the block
// [kScopePoints]. `window` stays where none does.
TraceWindow TriggerOnChannel1(const float* samples, std::int32_t displayWidth, TraceWindow window);

// Channel 2: the largest sample of the present window, as its place within that window, is the next
// beginning, as long as `userWidth` samples (StopX - StartX) fit behind it.
TraceWindow TriggerOnChannel2(const float* samples, std::int32_t userWidth, TraceWindow window);

}  // namespace quorl
