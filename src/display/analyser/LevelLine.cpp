#include "display/analyser/LevelLine.h"

#include <algorithm>
#include <cmath>

#include "dsp/kernel/VectorKernel.h"

namespace quorl {

void LevelLine::Take(const float* line, const ScopeBand& band) {
  const std::int32_t bins = band.Bins();
  float* logs = band.Ascending ? levels_.data() : logs_.data();
  Log10_S_2(line, logs, bins);
  Mpy_S_1(20.0F, logs, bins);
  Add_S_1(static_cast<float>(-band.FullScale()), logs, bins);
  count_ = static_cast<std::size_t>(bins) + 1;
  if (band.Ascending) {
    levels_[count_ - 1] = levels_[count_ - 2];
  } else {
    levels_[0] = logs_[static_cast<std::size_t>(bins) - 1];
    std::reverse_copy(logs_.begin(), logs_.begin() + bins, levels_.begin() + 1);
  }
}

void PeakLine::Take(std::span<const float> levels, double seconds, PeakHolding holding) {
  constexpr float kHold = 2.0F, kFallPerSecond = 20.0F;
  if (count_ != levels.size()) {
    count_ = levels.size();
    std::copy(levels.begin(), levels.end(), peaks_.begin());
    std::fill(ages_.begin(), ages_.end(), 0.0F);
    return;
  }
  const auto elapsed = static_cast<float>(seconds);
  const float fall = holding == PeakHolding::Falling ? kFallPerSecond * elapsed : 0.0F;
  float* peaks = peaks_.data();
  float* ages = ages_.data();
  for (std::size_t k = 0; k < count_; ++k) {
    const float age = ages[k] + elapsed, fallen = age > kHold ? peaks[k] - fall : peaks[k];
    const bool higher = levels[k] >= fallen;
    peaks[k] = higher ? levels[k] : fallen;
    ages[k] = higher ? 0.0F : age;
  }
}

void LevelFit::Take(std::span<const float> levels, double lift) {
  if (levels.empty()) return;
  const auto end = std::copy(levels.begin(), levels.end(), sorted_.begin());
  const auto middle = sorted_.begin() + (end - sorted_.begin()) / 2;
  std::nth_element(sorted_.begin(), middle, end);
  frames_[next_] = {lift + MaxValue_S(levels.data(), static_cast<std::int32_t>(levels.size())),
                    lift + static_cast<double>(*middle)};
  next_ = (next_ + 1) % kFrames;
  count_ = std::min(count_ + 1, kFrames);
}

LevelFit::Ends LevelFit::Fit() const {
  constexpr double kMargin = 6.0;
  if (count_ == 0) return {};
  std::array<double, kFrames> medians{};
  double peak = -1000.0;
  for (std::size_t k = 0; k < count_; ++k) {
    const Frame& frame = frames_[(next_ + kFrames - 1 - k) % kFrames];
    peak = std::max(peak, frame.Peak);
    medians[k] = frame.Median;
  }
  const auto middle = medians.begin() + static_cast<std::ptrdiff_t>(count_ / 2);
  std::nth_element(medians.begin(), middle, medians.begin() + static_cast<std::ptrdiff_t>(count_));
  return Nearest(std::round(peak + kMargin), std::round(*middle - kMargin));
}

LevelFit::Ends LevelFit::Nearest(double top, double floor) {
  const auto clamped = [](double value, double low, double high) {
    return value > low ? std::min(value, high) : low;  // what is no number becomes the low end
  };
  Ends ends;
  ends.Top = clamped(top, kLowestTop, kHighestTop);
  ends.Floor = clamped(floor, kLowestFloor, std::min(kHighestFloor, ends.Top - kLeastRange));
  return ends;
}

}  // namespace quorl
