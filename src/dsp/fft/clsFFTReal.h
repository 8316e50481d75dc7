// FFT of a real signal: one complex transform of half the length and a last stage.
#pragma once

#include <cstdint>

#include "dsp/fft/clsFFT.h"

namespace quorl {

// Construct, FFTInit, then any number of transforms. A spectrum fills N real and N imaginary entries, the
// negative frequencies included. Arrays belong to the caller; inputs and outputs must not overlap. A call
// before FFTInit reports to the user and leaves the outputs alone.
class clsFFTReal {
 public:
  explicit clsFFTReal(KernelSettings& settings) : settings_(settings), halfFFT_(settings) {}

  bool IsInitialised = false;
  std::int32_t Points = 0;
  std::int32_t Order = 0;

  bool UseSPL() const { return useSPL_; }
  void SetUseSPL(bool use);

  // `numPoints`: a power of two from 2 to 32768; throws std::invalid_argument outside that range.
  void FFTInit(std::int32_t numPoints);

  // Forward transform of N real samples, no scaling.
  void FFT_Real_S_2(const float* samplesIn, float* realOut, float* imagOut);

  // The same with the last stage written out step by step and its rotation stepped by recurrence.
  void FFT_Real_S_2_VB(const float* samplesIn, float* realOut, float* imagOut);

  // Exact inverse of FFT_Real_S_2. Reads bins 0 .. N/2 only; destroys realIn and imagIn.
  void IFFT_Real_S_2(float* realIn, float* imagIn, float* samplesOut);

 private:
  KernelSettings& settings_;
  clsFFT halfFFT_;
  bool useSPL_ = false;
  SampleBuffer evenSamples_, oddSamples_;
  SampleBuffer cosines_, sines_;  // of the last stage: cos(2 pi k / N), -sin(2 pi k / N), k = 0 .. N/4
};

}  // namespace quorl
