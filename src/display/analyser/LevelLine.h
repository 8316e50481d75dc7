// A spectrum line as levels, in the order in which the picture shows it.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "display/analyser/ScopeBand.h"
#include "dsp/kernel/SampleBuffer.h"

namespace quorl {

// dB below a full-scale sine, element 0 at the left edge of the whole band: one element more than there are
// bins, as the picture's right edge is one. Where that edge, or the left one of a mirrored line, would lie
// half the sampling rate up, the highest bin there is takes its place.
class LevelLine {
 public:
  LevelLine() : levels_(kScopePoints + 1, 0.0F), logs_(kScopePoints + 1, 0.0F) {}

  void Take(const float* line, const ScopeBand& band);
  void Clear() { count_ = 0; }
  // Empty before the first line and after Clear.
  std::span<const float> Levels() const { return {levels_.data(), count_}; }

 private:
  SampleBuffer levels_, logs_;
  std::size_t count_ = 0;
};

// How the highest level of each bin is kept.
enum class PeakHolding { Off, Falling, Staying };

// Holds for 2 s and then falls by 20 dB a second, or stays.
class PeakLine {
 public:
  PeakLine() : peaks_(kScopePoints + 1, 0.0F), ages_(kScopePoints + 1, 0.0F) {}

  // `levels` came `seconds` after the last ones.
  void Take(std::span<const float> levels, double seconds, PeakHolding holding);
  void Clear() { count_ = 0; }
  std::span<const float> Peaks() const { return {peaks_.data(), count_}; }

 private:
  SampleBuffer peaks_, ages_;
  std::size_t count_ = 0;
};

// Ends of the level scale that suit what the last two seconds have shown.
class LevelFit {
 public:
  struct Ends {
    double Top = 0, Floor = -120;  // dB
  };
  static constexpr double kLowestTop = -60, kHighestTop = 20, kLowestFloor = -160, kHighestFloor = -20,
                          kLeastRange = 10;
  static constexpr std::size_t kFrames = 47;  // 2 s of blocks

  LevelFit() : sorted_(kScopePoints + 1) {}

  // A frame's levels as they are drawn, those that are seen.
  void Take(std::span<const float> levels, double lift);
  void Clear() { count_ = 0; }
  std::size_t Frames() const { return count_; }
  // Whole decibels: 6 above the peak, 6 below the median. The default ends before the first frame.
  Ends Fit() const;
  // The nearest ends that a scale can have.
  static Ends Nearest(double top, double floor);

 private:
  struct Frame {
    double Peak = 0, Median = 0;
  };
  std::array<Frame, kFrames> frames_{};
  std::size_t count_ = 0, next_ = 0;
  std::vector<float> sorted_;
};

}  // namespace quorl
