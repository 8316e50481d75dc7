// Rounding of real numbers to integers.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace quorl {

// Nearest integer, halves to the even neighbour. Saturates at the ends of 32 bits; NaN gives 0.
inline std::int32_t RoundHalfEven(double value) {
  constexpr double kMax = std::numeric_limits<std::int32_t>::max();
  constexpr double kMin = std::numeric_limits<std::int32_t>::min();
  if (std::isnan(value)) return 0;
  if (value >= kMax) return std::numeric_limits<std::int32_t>::max();
  if (value <= kMin) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(std::nearbyint(value));
}

// Integer part towards minus infinity. Saturates at the ends of 32 bits; NaN gives 0.
inline std::int32_t RoundDown(double value) {
  return RoundHalfEven(std::floor(value));
}

}  // namespace quorl
