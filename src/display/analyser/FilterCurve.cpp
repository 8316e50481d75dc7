#include "display/analyser/FilterCurve.h"

#include "display/analyser/ScopeBand.h"
#include "dsp/fft/clsFFTReal.h"
#include "dsp/kernel/VectorKernel.h"

namespace quorl {

FilterCurve::FilterCurve() {
  for (SampleBuffer* buffer : {&lin_, &log_, &decibels_, &work_, &imag_})
    buffer->assign(kScopePoints + 1, 0.0F);
}

void FilterCurve::TakeDecibels() {
  Log10_S_2(lin_.data(), decibels_.data(), kScopeBins);
  Mpy_S_1(20.0F, decibels_.data(), kScopeBins);
  decibels_[kScopeBins] = decibels_[kScopeBins - 1];
}

void FilterCurve::LoadTaps(clsFFTReal& transform, const float* taps, bool logMode, float yScaleMax) {
  if (!transform.IsInitialised) return;
  constexpr float kLogScaleMax = 12.0F;
  const float scale = logMode ? kLogScaleMax : yScaleMax;
  CopyVector_S(taps, work_.data(), kScopePoints);
  Mpy_S_1(scale, work_.data(), kScopePoints);
  transform.FFT_Real_S_2(work_.data(), log_.data(), imag_.data());
  PowerSpectrum_S_2(log_.data(), imag_.data(), lin_.data(), kScopeBins);
  ZeroVector_S(lin_.data() + kScopeBins, kScopePoints + 1 - kScopeBins);
  Mpy_S_1(1.0F / scale, lin_.data(), kScopeBins);
  TakeDecibels();
  Mpy_S_1(scale, lin_.data(), kScopeBins);
  Add_S_1(1.01F, lin_.data(), kScopeBins);
  Log10_S_2(lin_.data(), log_.data(), kScopeBins);
  ZeroVector_S(log_.data() + kScopeBins, kScopePoints + 1 - kScopeBins);
  Mpy_S_1(yScaleMax * (logMode ? 0.89F : 0.9F), log_.data(), kScopeBins);
}

void FilterCurve::LoadMagnitudes(const float* magnitudes) {
  CopyVector_S(magnitudes, lin_.data(), kScopePoints);
  Log10_S_2(lin_.data(), log_.data(), kScopePoints);
  Mpy_S_1(20.0F, log_.data(), kScopePoints);
  TakeDecibels();
}

}  // namespace quorl
