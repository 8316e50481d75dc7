// What the benchmarks tell: rows of one table.
#pragma once

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

namespace quorl {

struct Row {
  std::string Group, What;
  double Value;
  const char* Unit;
  double Limit = 0.0;  // 0: none
  bool AtLeast = false;

  bool Kept() const { return Limit == 0.0 || (AtLeast ? Value >= Limit : Value <= Limit); }
};

// A line each: group, what, value, unit, limit, separated by tabs. True where all limits are kept.
inline bool Print(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    std::printf("%s\t%s\t%.4g\t%s\t", row.Group.c_str(), row.What.c_str(), row.Value, row.Unit);
    if (row.Limit != 0.0)
      std::printf("%s %g%s", row.AtLeast ? ">=" : "<=", row.Limit, row.Kept() ? "" : " MISSED");
    std::printf("\n");
  }
  return std::all_of(rows.begin(), rows.end(), [](const Row& row) { return row.Kept(); });
}

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
inline double MillisecondsOf(const std::function<void()>& work, int calls = 24) {
  return 1000.0 * SecondsOf(work, calls);
}

std::vector<Row> MeasureWaterfall();
std::vector<Row> MeasureMemories();
std::vector<Row> MeasureRecorder();
std::vector<Row> MeasureTuning();

}  // namespace quorl
