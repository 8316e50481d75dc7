// What stands where in the band: names at frequencies, and spans between two.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quorl {

struct FrequencyMark {
  double Hertz = 0;
  std::string Text;
};

struct FrequencySpan {
  double Low = 0, High = 0;  // Hz
  std::string Text;
};

struct ScopeMarks {
  std::vector<FrequencyMark> Marks;
  std::vector<FrequencySpan> Spans;
};

// Adds what lies between two frequencies, Hz.
using MarkSource = std::function<void(double low, double high, ScopeMarks& marks)>;

}  // namespace quorl
