// Hilbert transformer in the time domain, and the delay that matches it.
#pragma once

#include <cstdint>
#include <vector>

#include "dsp/kernel/SampleBuffer.h"

namespace quorl {

// An antisymmetric FIR filter under a Hamming window; every second tap is zero. Load first; then one object
// runs sTransform on a stream and another one sDelaySamples on the same stream, which gives a pair 90 degrees
// apart. Counts are at most the loaded block size and above Nzeros.
class clHilbert {
 public:
  std::int32_t Delay = 0;   // group delay, samples
  std::int32_t Nzeros = 0;  // filter length
  float sGain = 1.0F;       // make-up factor of sTransform: gain one at a quarter of the sampling rate

  // Sizes the object and computes the coefficients.
  void Load(std::int32_t nzeros, std::int32_t blockSize);

  // `count` samples in and out, Delay samples behind the input.
  void sTransform(const float* samplesIn, float* samplesOut, std::int32_t count);
  void sDelaySamples(const float* samplesIn, float* samplesOut, std::int32_t count);
  void DelaySamples(const double* samplesIn, double* samplesOut, std::int32_t count);

  // Copies of `count` coefficients out and in; single and double sets do not follow each other.
  void GetCoefs(double* coefficients, std::int32_t count) const;
  void sGetCoefs(float* coefficients, std::int32_t count) const;
  void sSetCoefs(const float* coefficients, std::int32_t count);
  void dSetCoefs(const double* coefficients, std::int32_t count);

  // Fills coefficients[1 .. numPoints-1] of the ideal transformer under a Hamming window, centred on
  // numPoints/2, without the factor 2/pi; `gain` is what it makes of a tone at a quarter of the sampling
  // rate.
  static void CalcCoefficients(std::int32_t numPoints, double* coefficients, double& gain);

 private:
  std::vector<double> dCoefs_;
  SampleBuffer sCoefs_;
  SampleBuffer sHistory_;  // Nzeros samples of the last block, then the current block
  std::vector<double> dDelayLine_;
  std::vector<float> sDelayLine_;
};

}  // namespace quorl
