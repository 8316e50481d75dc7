#include "display/analyser/Trigger.h"

#include <algorithm>

#include "display/analyser/ScopeBand.h"
#include "dsp/kernel/VectorKernel.h"

namespace quorl {

TraceWindow TriggerOnChannel1(const float* samples, std::int32_t displayWidth, TraceWindow window) {
  const std::int32_t limit = kScopePoints - displayWidth - 1;
  const std::int32_t peak = MaxIndex_S(samples, std::min(limit, kScopePoints));
  if (peak > limit) return window;
  return {peak, std::min(peak - 1 + displayWidth, kScopePoints - 1)};
}

TraceWindow TriggerOnChannel2(const float* samples, std::int32_t userWidth, TraceWindow window) {
  const std::int32_t span = window.Stop - window.Start;
  const std::int32_t peak = MaxIndex_S(samples + window.Start, span);
  if (peak > kScopePoints + 1 - userWidth) return window;
  return {peak, std::min(peak + span, kScopePoints - 1)};
}

}  // namespace quorl
