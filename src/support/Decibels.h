// Amplitude ratios as decibels, and back.
#pragma once

#include <cmath>

namespace quorl {

// 20 log10 of `ratio`; 0 where there is no logarithm, so that a read-out of silence stays a number.
inline double Decibels(double ratio) {
  return ratio > 0.0 && std::isfinite(ratio) ? 20.0 * std::log10(ratio) : 0.0;
}

// The amplitude ratio of that many decibels.
inline double Ratio(double decibels) {
  return std::pow(10.0, decibels / 20.0);
}

}  // namespace quorl
