// The response of a filter as the frequency picture draws it.
#pragma once

#include <cstdint>

#include "dsp/kernel/SampleBuffer.h"

namespace quorl {

class clsFFTReal;

class FilterCurve {
 public:
  FilterCurve();

  // The curve of a filter with these taps [kScopePoints], at heights that suit a scale up to `yScaleMax`: the
  // logarithm of a magnitude of at least 1.01 never falls below 0.
  void LoadTaps(clsFFTReal& transform, const float* taps, bool logMode, float yScaleMax);
  // The curve of these magnitudes [kScopePoints].
  void LoadMagnitudes(const float* magnitudes);

  // kScopePoints + 1 elements, by bin of a real line. Heights of the linear and of the logarithmic picture,
  // and decibels for the level view.
  const float* Lin() const { return lin_.data(); }
  const float* Log() const { return log_.data(); }
  const float* Decibels() const { return decibels_.data(); }

 private:
  void TakeDecibels();

  SampleBuffer lin_, log_, decibels_;
  SampleBuffer work_, imag_;
};

}  // namespace quorl
