#include "dsp/fft/clsFFTReal.h"

#include <cmath>

#include "dsp/kernel/VectorKernel.h"

namespace quorl {

void clsFFTReal::SetUseSPL(bool use) {
  useSPL_ = use;
  settings_.UseSPL = use;
}

void clsFFTReal::FFTInit(std::int32_t numPoints) {
  halfFFT_.FFTInit(numPoints / 2);
  Points = numPoints;
  Order = halfFFT_.Order + 1;
  const auto count = static_cast<std::size_t>(Points);
  evenSamples_.assign(count + 1, 0.0F);
  oddSamples_.assign(count + 1, 0.0F);
  cosines_.resize(count / 4 + 1);
  sines_.resize(count / 4 + 1);
  for (std::size_t k = 0; k < cosines_.size(); ++k) {
    const double angle = 2.0 * M_PI * static_cast<double>(k) / static_cast<double>(Points);
    cosines_[k] = static_cast<float>(std::cos(angle));
    sines_[k] = static_cast<float>(-std::sin(angle));
  }
  IsInitialised = true;
}

void clsFFTReal::FFT_Real_S_2(const float* samplesIn, float* realOut, float* imagOut) {
  if (!halfFFT_.CheckInitialised()) return;
  DeInterlace_S_2(samplesIn, evenSamples_.data(), oddSamples_.data(), Points);
  halfFFT_.FFT_S_2(evenSamples_.data(), oddSamples_.data(), realOut, imagOut);
  FFT_Real_S_1(realOut, imagOut, Points, cosines_.data(), sines_.data());
}

void clsFFTReal::FFT_Real_S_2_VB(const float* samplesIn, float* realOut, float* imagOut) {
  if (!halfFFT_.CheckInitialised()) return;
  DeInterlace_S_2(samplesIn, evenSamples_.data(), oddSamples_.data(), Points);
  halfFFT_.FFT_S_2(evenSamples_.data(), oddSamples_.data(), realOut, imagOut);

  const std::int32_t half = Points / 2;
  float* r = realOut;
  float* x = imagOut;
  for (std::int32_t i = 1; i < Points / 4; ++i) {
    const std::int32_t mirror = half - i, upper = i + half, upperMirror = mirror + half;
    r[upper] = (x[i] + x[mirror]) / 2;
    r[upperMirror] = r[upper];
    x[upper] = -(r[i] - r[mirror]) / 2;
    x[upperMirror] = -x[upper];
    r[i] = (r[i] + r[mirror]) / 2;
    r[mirror] = r[i];
    x[i] = (x[i] - x[mirror]) / 2;
    x[mirror] = -x[i];
  }
  r[Points * 3 / 4] = x[Points / 4];
  r[half] = x[0];
  x[Points * 3 / 4] = 0;
  x[half] = 0;
  x[Points / 4] = 0;
  x[0] = 0;

  const double angle = 3.14159265358979 / half;
  const auto stepRe = static_cast<float>(std::cos(angle)), stepIm = static_cast<float>(-std::sin(angle));
  float re = 1.0F, im = 0.0F;
  for (std::int32_t i = 0; i < half; ++i) {
    const std::int32_t upper = i + half;
    const float turnedRe = re * r[upper] - im * x[upper], turnedIm = re * x[upper] + im * r[upper];
    r[upper] = r[i] - turnedRe;
    x[upper] = x[i] - turnedIm;
    r[i] += turnedRe;
    x[i] += turnedIm;
    const float nextRe = stepRe * re - stepIm * im;
    im = im * stepRe + stepIm * re;
    re = nextRe;
  }
}

void clsFFTReal::IFFT_Real_S_2(float* realIn, float* imagIn, float* samplesOut) {
  if (!halfFFT_.CheckInitialised()) return;
  IFFT_Real_S_1(realIn, imagIn, Points, cosines_.data(), sines_.data());
  // With real and imaginary parts exchanged on both sides a forward transform is an inverse one.
  halfFFT_.FFT_S_2(imagIn, realIn, oddSamples_.data(), evenSamples_.data());
  InterlaceScaled_S_2(1.0F / static_cast<float>(Points), evenSamples_.data(), oddSamples_.data(), samplesOut,
                      Points);
}

}  // namespace quorl
