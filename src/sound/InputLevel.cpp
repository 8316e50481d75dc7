#include "sound/InputLevel.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace quorl {

namespace {

constexpr double kSampleRate = 48000.0;
constexpr double kSilence = 2.0;       // root mean square: an open input of any sound card has more noise
constexpr double kSilentBeside = 0.1;  // of the other channel's: a pair differs by a decibel or two
constexpr double kAlike = 0.99;        // correlation; that of a pair in quadrature is 0

}  // namespace

void InputLevel::Take(const std::int16_t* left, const std::int16_t* right, std::int32_t n) {
  const double fall = std::pow(10.0, -kFall / 20.0 * n / kSampleRate);
  std::int64_t leftPeak = 0, rightPeak = 0;
  for (std::int32_t i = 0; i < n; ++i) {
    const std::int64_t l = left[i], r = right[i];
    leftPeak = std::max(leftPeak, std::abs(l));
    rightPeak = std::max(rightPeak, std::abs(r));
    moments_.Left += l;
    moments_.Right += r;
    moments_.LeftSquares += l * l;
    moments_.RightSquares += r * r;
    moments_.Products += l * r;
  }
  moments_.Samples += n;
  heard_ = true;
  peaks_[0] = std::max(double(leftPeak), peaks_[0] * fall);
  peaks_[1] = std::max(double(rightPeak), peaks_[1] * fall);
  if (static_cast<double>(moments_.Samples) < kSampleRate) return;
  fault_ = Judge(moments_);
  moments_ = {};
}

InputLevel::Fault InputLevel::Judge(const Moments& moments) {
  const auto samples = static_cast<double>(moments.Samples);
  const double left = static_cast<double>(moments.Left) / samples;
  const double right = static_cast<double>(moments.Right) / samples;
  // Without what a cheap input adds to every sample.
  const auto spread = [samples](std::int64_t sum, double a, double b) {
    return static_cast<double>(sum) / samples - a * b;
  };
  const double leftLevel = std::sqrt(std::max(spread(moments.LeftSquares, left, left), 0.0));
  const double rightLevel = std::sqrt(std::max(spread(moments.RightSquares, right, right), 0.0));
  if (std::max(leftLevel, rightLevel) < kSilence) return Fault::NoSignal;
  if (leftLevel < kSilentBeside * rightLevel) return Fault::LeftSilent;
  if (rightLevel < kSilentBeside * leftLevel) return Fault::RightSilent;
  const double correlation = spread(moments.Products, left, right) / (leftLevel * rightLevel);
  return std::abs(correlation) > kAlike ? Fault::Alike : Fault::None;
}

}  // namespace quorl
