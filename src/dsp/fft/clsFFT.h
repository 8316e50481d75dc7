// Complex FFT of one length over split real and imaginary arrays of 32-bit floats.
#pragma once

#include <cstdint>
#include <vector>

#include "dsp/kernel/FftPlan.h"
#include "dsp/kernel/KernelSettings.h"
#include "dsp/kernel/SampleBuffer.h"

namespace quorl {

// Construct, FFTInit, then any number of transforms. Bin k of a spectrum of N points is frequency k / N of
// the sampling rate, negative frequencies from N/2 up. Arrays belong to the caller and must not overlap.
class clsFFT {
 public:
  static constexpr std::int32_t kMaxPoints = 16384;

  explicit clsFFT(KernelSettings& settings) : settings_(settings) {}

  bool IsInitialised = false;
  std::int32_t Points = 0;
  std::int32_t Order = 0;

  bool UseSPL() const { return useSPL_; }
  // Keeps the flag and hands it to the settings that all objects share.
  void SetUseSPL(bool use);

  // Computes the tables for `numPoints`, a power of two from 1 to 16384; throws std::invalid_argument outside
  // that range. May be called again with another length.
  void FFTInit(std::int32_t numPoints);

  // Forward transform of `Points` elements, no scaling.
  void FFT_S_2(const float* realIn, const float* imagIn, float* realOut, float* imagOut);

  // Inverse by conjugation, scaled by 1 / (Points + 1). All arrays hold Points + 1 elements; negates imagIn.
  void IFFT_S_2(const float* realIn, float* imagIn, float* realOut, float* imagOut);

  // The textbook radix-2 transform with its rotations stepped by recurrence in 32-bit floats: the measure
  // that the running transform is held against.
  void FFTReference(const float* realIn, const float* imagIn, float* realOut, float* imagOut) const;

  // Tells the user where FFTInit is still due; true where it is done.
  bool CheckInitialised() const;

  // The low `order` bits of `value` in reverse order.
  static std::int32_t ReverseBits(std::int32_t value, std::int32_t order);

 private:
  KernelSettings& settings_;
  bool useSPL_ = false;
  std::vector<std::int32_t> bitReverseTable_;
  std::vector<float> cosTable_;  // entry L: cosine of the rotation of stage L
  std::vector<float> sinTable_;  // its negated sine
  SampleBuffer twiddles_, workReal_, workImag_;
  FftPlan plan_;
};

}  // namespace quorl
