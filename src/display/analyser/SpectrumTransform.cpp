#include "display/analyser/SpectrumTransform.h"

#include <cmath>
#include <numbers>

#include "dsp/kernel/VectorKernel.h"

namespace quorl {

namespace {

// Terms of a cosine window, periodic in the block, so that a tone on a bin stays within the window's own
// lines: Hann, and the four-term window of 92 dB (Harris 1978).
constexpr std::array<std::array<double, 4>, 2> kTerms{
    {{0.5, -0.5, 0.0, 0.0}, {0.35875, -0.48829, 0.14128, -0.01168}}};

SampleBuffer CosineWindow(const std::array<double, 4>& terms) {
  SampleBuffer weights(kScopePoints);
  for (std::size_t k = 0; k < weights.size(); ++k) {
    const double angle = 2.0 * std::numbers::pi * static_cast<double>(k) / kScopePoints;
    double weight = 0.0;
    for (std::size_t term = 0; term < terms.size(); ++term)
      weight += terms[term] * std::cos(angle * static_cast<double>(term));
    weights[k] = static_cast<float>(weight / terms[0]);
  }
  return weights;
}

}  // namespace

void SpectrumTransform::Init() {
  FFTReal.FFTInit(kScopePoints);
  complexFFT_.FFTInit(kScopePoints);
  for (std::size_t k = 0; k < weights_.size(); ++k) weights_[k] = CosineWindow(kTerms[k]);
  for (SampleBuffer* buffer : {&SpectrumReal, &SpectrumImag, &weighedI_, &weighedQ_})
    buffer->assign(kScopePoints + 1, 0.0F);
}

const float* SpectrumTransform::Weigh(const float* samples, SpectrumWindow window, SampleBuffer& weighed) {
  if (window == SpectrumWindow::None) return samples;
  const SampleBuffer& weights = weights_[window == SpectrumWindow::Hann ? 0 : 1];
  Mpy_S_3(samples, weights.data(), weighed.data(), kScopePoints);
  return weighed.data();
}

void SpectrumTransform::Real(const float* samples, SpectrumWindow window, float* magnitudes) {
  FFTReal.FFT_Real_S_2(Weigh(samples, window, weighedI_), SpectrumReal.data(), SpectrumImag.data());
  PowerSpectrum_S_2(SpectrumReal.data(), SpectrumImag.data(), magnitudes, kScopeBins);
}

void SpectrumTransform::TwoSided(const float* samplesI, const float* samplesQ, SpectrumWindow window,
                                 float* magnitudes) {
  const float* i = Weigh(samplesI, window, weighedI_);
  const float* q = Weigh(samplesQ, window, weighedQ_);
  if (q != weighedQ_.data()) CopyVector_S(q, weighedQ_.data(), kScopePoints);
  Negate_S(weighedQ_.data(), kScopePoints);
  complexFFT_.FFT_S_2(i, weighedQ_.data(), SpectrumReal.data(), SpectrumImag.data());
  // The upper half of the transform holds the negative frequencies.
  const float* re = SpectrumReal.data();
  const float* im = SpectrumImag.data();
  PowerSpectrum_S_2(re + kScopeBins, im + kScopeBins, magnitudes, kScopeBins);
  PowerSpectrum_S_2(re, im, magnitudes + kScopeBins, kScopeBins);
}

}  // namespace quorl
