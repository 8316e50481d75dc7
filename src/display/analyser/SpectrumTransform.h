// From a block of samples to the magnitudes of its spectrum.
#pragma once

#include <array>

#include "display/analyser/ScopeBand.h"
#include "dsp/fft/clsFFTReal.h"
#include "dsp/kernel/SampleBuffer.h"

namespace quorl {

// Weights of the samples before the transform, scaled to a mean of 1: a tone on a bin reads the same with
// each of them. A tone half-way between two bins reads 3.9, 1.4 and 0.8 dB less.
enum class SpectrumWindow { None, Hann, BlackmanHarris };

// Construct, Init, then any number of lines. Inputs hold kScopePoints samples. Sine of amplitude A on a bin:
// A x kScopePoints / 2 in a real line, A x kScopePoints in a two-sided one.
class SpectrumTransform {
 public:
  explicit SpectrumTransform(KernelSettings& settings) : FFTReal(settings), complexFFT_(settings) {}

  void Init();
  bool Ready() const { return FFTReal.IsInitialised; }

  // Bins 0 .. kScopeBins - 1.
  void Real(const float* samples, SpectrumWindow window, float* magnitudes);
  // Of I - jQ: kScopePoints bins from minus half the sampling rate up.
  void TwoSided(const float* samplesI, const float* samplesQ, SpectrumWindow window, float* magnitudes);

  clsFFTReal FFTReal;
  SampleBuffer SpectrumReal, SpectrumImag;

 private:
  const float* Weigh(const float* samples, SpectrumWindow window, SampleBuffer& weighed);

  clsFFT complexFFT_;
  std::array<SampleBuffer, 2> weights_;  // Hann, Blackman-Harris
  SampleBuffer weighedI_, weighedQ_;
};

}  // namespace quorl
