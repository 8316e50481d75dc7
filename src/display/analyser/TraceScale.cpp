#include "display/analyser/TraceScale.h"

#include <algorithm>

#include "display/analyser/ScopeBand.h"
#include "dsp/kernel/VectorKernel.h"

namespace quorl {

namespace {

std::int32_t CountWithin(std::int32_t first, std::int32_t count) {
  return std::min(count, kScopePoints + 1 - first);
}

}  // namespace

void Prescale(const ChannelSettings& channel, std::int32_t startBin, std::int32_t stopBin, float* y) {
  const std::int32_t count = CountWithin(startBin, stopBin - startBin + 1);
  if (channel.Gain != 1.0F) Mpy_S_1(channel.Gain, y + startBin, count);
  Add_S_1(channel.Offset, y + startBin, count);
}

void ScaleLinear(const ChannelSettings& channel, Sweep sweep, float* y) {
  const std::int32_t count = CountWithin(sweep.First, sweep.Count() + 1);
  Add_S_1(channel.Offset, y + sweep.First, count);
  Mpy_S_1(channel.Gain, y + sweep.First, count);
}

void ScaleLog(const ChannelSettings& channel, float yScaleMax, Sweep sweep, float* y) {
  const std::int32_t lowest = std::min(sweep.First, sweep.Last);
  Log10_S_2(y + lowest, y + lowest, sweep.Count());
  LowThresh_S_1(y + lowest, 0, 0.0F, sweep.Count());
  const std::int32_t count = CountWithin(sweep.First, sweep.Count() + 1);
  Add_S_1(yScaleMax / 3.0F, y + sweep.First, count);
  Mpy_S_1(channel.Gain, y + sweep.First, count);
}

}  // namespace quorl
