// Times on one core that a part of the program keeps, measured beside the ratios.
#pragma once

#include <algorithm>
#include <ctime>
#include <functional>
#include <vector>

namespace quorl {

struct Budget {
  const char* What;
  double Milliseconds, Limit;
};

// Processor seconds of one call, the quickest of some short runs of `calls`.
inline double SecondsOf(const std::function<void()>& work, int calls = 24) {
  double best = 1.0;
  for (int run = 0; run < 8; ++run) {
    const std::clock_t begin = std::clock();
    for (int call = 0; call < calls; ++call) work();
    best = std::min(best, double(std::clock() - begin) / CLOCKS_PER_SEC / calls);
  }
  return best;
}

std::vector<Budget> MeasureWaterfall();
std::vector<Budget> MeasureMemories();
std::vector<Budget> MeasureRecorder();

}  // namespace quorl
