// What the block pump notes of the last blocks for the statistics read-outs.
#pragma once

#include <array>
#include <cstdint>

#include "state/PublicConstants.h"

namespace quorl {

// Statistics of the last blocks: largest samples before and after the chain, duration in microseconds. Filled
// while PerfStatsOn.
struct PumpStatistics {
  std::array<std::int16_t, StatisticsRingSize> PeakInRing{}, PeakOutRing{};
  std::array<std::int32_t, StatisticsRingSize> PumpTimeRing{};
  std::int32_t PeakInIndex = 0, PeakOutIndex = 0, PumpTimeIndex = 0;
};

}  // namespace quorl
