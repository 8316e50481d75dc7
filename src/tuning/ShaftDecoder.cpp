#include "tuning/ShaftDecoder.h"

#include <algorithm>
#include <cmath>

namespace quorl {
namespace {

// By code: the neighbours in the cycle 0, 1, 3, 2 of line states.
constexpr std::array<std::int8_t, 16> kDirections = {0, -1, 1, 0, 1, 0, 0, -1, -1, 0, 0, 1, 0, 1, -1, 0};

constexpr double kBase = 0.001;            // dHz
constexpr double kFirstInterval = 100000;  // microseconds
constexpr int kIntervalsInMean = 5;

struct Rate {
  std::int64_t From, To;  // mean interval, microseconds, both included
  double StepDivisor, GridDivisor;
};

// The first row that fits counts.
constexpr std::array<Rate, 9> kRates = {{
    {0, 999, 1, 1},
    {1000, 4999, 2, 10},
    {3000, 3999, 4, 100},
    {4000, 4999, 8, 1000},
    {5000, 5999, 10, 10},
    {6000, 6999, 20, 10},
    {7000, 7999, 40, 10},
    {8000, 8999, 80, 100},
    {9000, 12000, 100, 100},
}};
constexpr Rate kSlowest = {0, 0, 1000, 1000};

}  // namespace

int ShaftDecoder::Decode(std::uint32_t status) {
  // Off lines are the encoder's ones. Dividing the complement towards 0 turns two of the four states round.
  const int lines = (static_cast<std::int32_t>(~status) / 16) & 3;
  if (lines == lines_) return 0;
  code_ = lines_ * 4 | lines;
  lines_ = lines;
  return kDirections[static_cast<std::size_t>(code_)];
}

ShaftAutoRate::ShaftAutoRate() {
  ShaftIntervals.fill(kFirstInterval);
}

ShaftStep ShaftAutoRate::StepAfter(double microseconds) {
  std::shift_right(ShaftIntervals.begin(), ShaftIntervals.end(), 1);
  ShaftIntervals[0] = microseconds;
  double sum = 0;
  for (int i = 0; i < kIntervalsInMean; ++i) sum += ShaftIntervals[static_cast<std::size_t>(i)];
  const std::int64_t mean = std::llrint(sum) / kIntervalsInMean;
  const auto row = std::find_if(kRates.begin(), kRates.end(),
                                [mean](const Rate& rate) { return mean >= rate.From && mean <= rate.To; });
  const Rate& rate = row == kRates.end() ? kSlowest : *row;
  return {kBase / rate.StepDivisor, kBase / rate.GridDivisor};
}

}  // namespace quorl
