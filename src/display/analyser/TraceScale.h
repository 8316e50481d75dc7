// From a line of values to the height at which each of them is drawn.
#pragma once

#include <cstdint>

#include "display/analyser/ModeSettings.h"

namespace quorl {

// Elements from First to Last, by Step, which is 1 or -1.
struct Sweep {
  std::int32_t First = 0, Last = 0, Step = 1;
  std::int32_t Count() const { return (Last - First) * Step + 1; }
};

// All work in place on kScopePoints + 1 elements, and no step goes beyond them whatever its count says.

// Channel gain (unless it is 1), then offset, over the window's elements.
void Prescale(const ChannelSettings& channel, std::int32_t startBin, std::int32_t stopBin, float* y);

// The steps of the frequency picture. They begin at the sweep's first element and run upwards whichever way
// it goes: sweeping upwards they meet all that is seen, sweeping downwards only the bin at the left edge.
void ScaleLinear(const ChannelSettings& channel, Sweep sweep, float* y);
// Logarithm of what is seen, never below 0; then a third of the scale and the gain.
void ScaleLog(const ChannelSettings& channel, float yScaleMax, Sweep sweep, float* y);

}  // namespace quorl
