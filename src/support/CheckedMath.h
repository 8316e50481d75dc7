// 32-bit signed arithmetic that tells an overflow instead of wrapping: every result is empty where the true
// value does not fit.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace quorl {

using CheckedInt32 = std::optional<std::int32_t>;

constexpr CheckedInt32 Narrow(std::int64_t value) {
  if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max()) {
    return {};
  }
  return static_cast<std::int32_t>(value);
}

// An empty operand gives an empty result, so that steps can be chained.
constexpr CheckedInt32 Add(CheckedInt32 a, CheckedInt32 b) {
  return a && b ? Narrow(std::int64_t{*a} + *b) : CheckedInt32{};
}
constexpr CheckedInt32 Subtract(CheckedInt32 a, CheckedInt32 b) {
  return a && b ? Narrow(std::int64_t{*a} - *b) : CheckedInt32{};
}
constexpr CheckedInt32 Multiply(CheckedInt32 a, CheckedInt32 b) {
  return a && b ? Narrow(std::int64_t{*a} * *b) : CheckedInt32{};
}
constexpr CheckedInt32 Absolute(CheckedInt32 a) {
  return a ? Narrow(*a < 0 ? -std::int64_t{*a} : std::int64_t{*a}) : CheckedInt32{};
}

// Quotient towards minus infinity; empty where `b` is 0.
constexpr CheckedInt32 DivideDown(std::int32_t a, std::int32_t b) {
  if (b == 0) {
    return {};
  }
  const std::int64_t quotient = std::int64_t{a} / b;
  const bool inexact = std::int64_t{a} % b != 0;
  return Narrow(inexact && (a < 0) != (b < 0) ? quotient - 1 : quotient);
}

// Nearest integer, halves to the even neighbour; empty for NaN too.
inline CheckedInt32 ToInt32(double value) {
  const double rounded = std::nearbyint(value);
  if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
        rounded <= std::numeric_limits<std::int32_t>::max())) {
    return {};
  }
  return static_cast<std::int32_t>(rounded);
}

}  // namespace quorl
