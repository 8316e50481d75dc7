// Times on one core that a part of the program keeps, measured beside the ratios.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

namespace quorl {

struct Budget {
  const char* What;
  double Milliseconds, Limit;
};

// Seconds of one call, the quickest of some short runs of `calls`.
inline double SecondsOf(const std::function<void()>& work, int calls = 24) {
  double best = 1.0;
  for (int run = 0; run < 8; ++run) {
    const auto begin = std::chrono::steady_clock::now();
    for (int call = 0; call < calls; ++call) work();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    best = std::min(best, time.count() / calls);
  }
  return best;
}

std::vector<Budget> MeasureWaterfall();

}  // namespace quorl
