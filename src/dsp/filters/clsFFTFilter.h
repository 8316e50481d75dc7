// A long FIR filter run by fast convolution (overlap-add), block by block, and its design.
#pragma once

#include <cstdint>
#include <vector>

#include "dsp/fft/clsFFT.h"
#include "dsp/fft/clsFFTReal.h"

namespace quorl {

// The creator sets SegmentSize (2 x Points), FSampling, edges and flags, calls init, then MakeFilter. One
// object serves one stream: it keeps the tail of the last block. MakeFilter leaves that tail alone, so that a
// change of filter is a seam in one block and no silence. With 2048 points a filter has 2047 taps and a group
// delay of 1023 samples.
class clsFFTFilter {
 public:
  explicit clsFFTFilter(KernelSettings& settings);

  std::int32_t Points = 0;       // samples per block, a power of two
  std::int32_t Order = 0;        // log2 of Points
  std::int32_t SegmentSize = 0;  // transform length
  std::int32_t FSampling = 0;    // Hz
  std::int32_t FLow = 0;         // Hz, band edges; MakeFilter clamps them to 0 .. FSampling / 2
  double FLRadians = 0.0;        // radians per sample, set by MakeFilter
  std::int32_t FHigh = 0;
  double FHRadians = 0.0;
  std::int32_t WindowType = 2;  // 0 rectangular, 1 Hamming, 2 Blackman; read by init
  std::int32_t FNotch = 0;      // these three are carried for their owner
  double FNotchRadians = 0.0;
  std::int32_t NotchBW = 0;
  double HzPerBin = 0.0;     // set by init
  std::int32_t BinFLow = 0;  // set by MakeFilter
  std::int32_t BinFHigh = 0;
  std::int32_t BinFCount = 0;
  bool QPhase = false;  // the quadrature (90 degrees) twin of the band pass
  bool NormaliseGain = false;
  bool IsInitialised = false;
  bool Active = false;      // the owner's switch
  bool BandReject = false;  // band stop instead of band pass

  bool UseSPL() const { return useSPL_; }
  void SetUseSPL(bool use);

  // Products of a spectrum [SegmentSize] with the filter's: class loop, separate output, in place.
  void Filter_S_Cart_2_VB(const float* inI, const float* inQ, float* outI, float* outQ) const;
  void Filter_S_Cart_2(const float* inI, const float* inQ, float* outI, float* outQ) const;
  void Filter_S_Cart_1(float* realInOut, float* imagInOut) const;
  // The same in polar form: magnitudes multiply, phases (radians) add. The filter's own polar form covers the
  // first Points bins; the bins above leave as zero magnitude.
  void Filter_S_Polar_2(const float* magIn, const float* phaseIn, float* magOut, float* phaseOut) const;
  void Filter_S_Polar_1(float* magnitudes, float* phases) const;

  // The whole step on one block, in place: entries 0 .. Points-1 in and out; room for 2 x Points.
  void Filter_FFT_S_1(float* samplesInOut);

  // Sizes the object for `numPoints` samples a block; computes the window of WindowType.
  void init(std::int32_t numPoints);
  // Designs from the properties and transforms. Not while a block is being filtered.
  void MakeFilter();

  // Copies of the coefficients: time domain [Points], spectrum [SegmentSize; _D Points], polar [Points].
  void GetFilterCoeffs_F_S(float* magnitudes, float* phases) const;
  void GetFilterCoeffs_T_S(float* taps) const;
  void GetFilterTCoeffs_D(double* taps) const;
  void GetFilterTCoeffs_S(float* taps) const;
  void GetFilterFCoeffs_D(double* re, double* im) const;
  void GetFilterFCoeffs_S(float* re, float* im) const;
  void GetFilterPCoeffs_S(float* magnitudes, float* phases) const;
  // Time coefficients and Cartesian spectra carry the other forms along; polar ones stand alone.
  void PutFilterPCoeffs_S(const float* magnitudes, const float* phases);
  void PutFilterTCoeffs_S(const float* taps);
  void PutFilterFCoeffs_S(const float* re, const float* im);
  void PutFilterTCoeffs_D(const double* taps);

  // The window of the design, and the same in the class's own arithmetic: fills [0 .. numPoints-1] and leaves
  // numPoints one lower.
  void CalcWindowCoeffs(std::int32_t windowType);
  static void CalcWindowCoeffs_VB(double* window, std::int32_t& numPoints, std::int32_t windowType);

  // Designs. Each fills the time coefficients from FLRadians, FHRadians, QPhase and NormaliseGain; the
  // receiver runs CalcBandPass and CalcBandStop_PAS, the others are kept to compare designs.
  void CalcBandPass();
  void CalcBandPass_VB();
  void CalcBandPass_Smith();
  void CalcBandStop_PAS();
  void CalcBandStop();
  void CalcBandStop_Smith();

 private:
  using Doubles = std::vector<double>;
  using GainRule = void (clsFFTFilter::*)(Doubles&) const;

  void TransformCoefficients();
  void AddMeanToGain(Doubles& taps) const;
  void ScaleToUnitSum(Doubles& taps) const;
  void SincLowPass(Doubles& taps, double edge, bool quadrature) const;
  void SmithBandStop(GainRule normalise);
  void InvertSpectrum();

  KernelSettings& settings_;
  bool useSPL_ = false;
  Doubles filterTCoeffsD_;                    // impulse response as designed
  SampleBuffer filterTCoeffsS_;               // the same in 32 bits, zero from Points on
  SampleBuffer filterTImag_;                  // all zero: a real impulse response
  Doubles lowPassCoeffsD_;                    // second sinc of the band stops
  Doubles filterFRealD_, filterFImagD_;       // spectrum in double
  SampleBuffer filterFRealS_, filterFImagS_;  // spectrum, the operand of the running path
  SampleBuffer filterMagS_, filterPhaseS_;    // its polar form
  SampleBuffer workReal_, workImag_;          // spectrum of the current block
  SampleBuffer overlapSamples_;               // tail of the last block, Points - 2 samples in use
  Doubles windowCoeffsD_;
  clsFFT fftComplex_;
  clsFFTReal fftReal_;
};

}  // namespace quorl
