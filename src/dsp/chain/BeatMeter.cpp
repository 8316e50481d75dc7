#include "dsp/chain/BeatMeter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorl {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kPassEdge = 3000;     // Hz, half of the rate that is left
constexpr double kWindowWidth = 0.14;  // standard deviation of the window, in its length
constexpr float kOverNoise = 40.0F;    // a carrier's power over the median of all bins

}  // namespace

BeatMeter::BeatMeter(KernelSettings& settings)
    : fft_(settings),
      keptReal_(kPoints),
      keptImaginary_(kPoints),
      window_(kPoints),
      inReal_(kPoints),
      inImaginary_(kPoints),
      outReal_(kPoints),
      outImaginary_(kPoints) {
  fft_.FFTInit(kPoints);
  const double middle = (kTaps - 1) / 2.0;
  double sum = 0;
  for (std::size_t k = 0; k < kTaps; ++k) {
    const double x = static_cast<double>(k) - middle;
    const double phase = 2 * kPi * kPassEdge / FSampling * x;
    const double hann = 0.5 + 0.5 * std::cos(kPi * x / (middle + 1));
    taps_[k] = static_cast<float>(std::sin(phase) / phase * hann);
    sum += taps_[k];
  }
  for (float& tap : taps_) tap = static_cast<float>(tap / sum);
  // In decibels a tone's line through this window is a parabola, so that three bins give its very top.
  for (std::int32_t k = 0; k < kPoints; ++k) {
    const double x = (k - (kPoints - 1) / 2.0) / (kWindowWidth * kPoints);
    window_[static_cast<std::size_t>(k)] = static_cast<float>(std::exp(-x * x / 2));
  }
  powers_.reserve(kPoints);
}

void BeatMeter::SetActive(bool active) {
  if (active && !active_) Restart();
  active_ = active;
}

void BeatMeter::Restart() {
  next_ = heard_ = 0;
}

// The IF's centre is a quarter of the sampling rate: mixing it to 0 Hz is a change of signs and channels.
void BeatMeter::Take(const std::int16_t* i, const std::int16_t* q) {
  if (!active_) return;
  std::copy(real_.end() - kHistory, real_.end(), real_.begin());
  std::copy(imaginary_.end() - kHistory, imaginary_.end(), imaginary_.begin());
  for (std::size_t n = 0; n < SamplesPerEvent; ++n) {
    const float a = i[n];
    const float b = q != nullptr ? -static_cast<float>(q[n]) : 0.0F;
    float& re = real_[kHistory + n];
    float& im = imaginary_[kHistory + n];
    switch (n % 4) {
      case 0:
        re = a, im = b;
        break;
      case 1:
        re = b, im = -a;
        break;
      case 2:
        re = -a, im = -b;
        break;
      default:
        re = -b, im = a;
    }
  }
  Thin();
}

void BeatMeter::Thin() {
  for (std::size_t at = 0; at < SamplesPerEvent; at += kStep) {
    float re = 0, im = 0;
    for (std::size_t k = 0; k < kTaps; ++k) {
      re += taps_[k] * real_[at + k];
      im += taps_[k] * imaginary_[at + k];
    }
    Keep(re, im);
  }
}

void BeatMeter::Keep(float real, float imaginary) {
  keptReal_[static_cast<std::size_t>(next_)] = real;
  keptImaginary_[static_cast<std::size_t>(next_)] = imaginary;
  next_ = (next_ + 1) % kPoints;
  heard_ = std::min(heard_ + 1, kPoints);
}

void BeatMeter::Transform() {
  for (std::int32_t k = 0; k < kPoints; ++k) {
    const auto from = static_cast<std::size_t>((next_ + k) % kPoints);
    const auto to = static_cast<std::size_t>(k);
    inReal_[to] = window_[to] * keptReal_[from];
    inImaginary_[to] = window_[to] * keptImaginary_[from];
  }
  fft_.FFT_S_2(inReal_.data(), inImaginary_.data(), outReal_.data(), outImaginary_.data());
}

float BeatMeter::PowerAt(std::int32_t bin) const {
  const auto at = static_cast<std::size_t>((bin + kPoints) % kPoints);
  return outReal_[at] * outReal_[at] + outImaginary_[at] * outImaginary_[at];
}

std::optional<double> BeatMeter::Offset() {
  if (!active_ || heard_ < kPoints) return {};
  Transform();
  constexpr double kHertzPerBin = double(FSampling) / kStep / kPoints;
  constexpr auto kBins = static_cast<std::int32_t>(kReach / kHertzPerBin);
  std::int32_t peak = 0;
  powers_.clear();
  for (std::int32_t bin = -kBins; bin <= kBins; ++bin) {
    powers_.push_back(PowerAt(bin));
    if (powers_.back() > PowerAt(peak)) peak = bin;
  }
  const float top = PowerAt(peak);
  const auto middle = powers_.begin() + static_cast<std::ptrdiff_t>(powers_.size() / 2);
  std::nth_element(powers_.begin(), middle, powers_.end());
  if (top <= kOverNoise * *middle || top <= 0) return {};
  const double below = std::log(std::max(PowerAt(peak - 1), 1e-9F));
  const double above = std::log(std::max(PowerAt(peak + 1), 1e-9F));
  const double here = std::log(top);
  return kHertzPerBin * (peak + (above - below) / (2 * (2 * here - above - below)));
}

}  // namespace quorl
