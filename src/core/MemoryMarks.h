// The memories as names and shaded spans over the spectrum.
#pragma once

#include "display/scope/ScopeMarks.h"
#include "memories/BandPlan.h"

namespace quorl {

// Adds the presets and sub-bands between two frequencies, Hz. `plan` may be null.
void MemoryMarks(const BandPlan* plan, double low, double high, ScopeMarks& marks);

}  // namespace quorl
