// The running half: convolution, and the coefficients in and out. The designs are in clsFFTFilterDesign.cpp.
#include "dsp/filters/clsFFTFilter.h"

#include <algorithm>
#include <cmath>

#include "dsp/kernel/VectorKernel.h"

namespace quorl {

clsFFTFilter::clsFFTFilter(KernelSettings& settings)
    : settings_(settings), fftComplex_(settings), fftReal_(settings) {}

void clsFFTFilter::SetUseSPL(bool use) {
  useSPL_ = use;
  settings_.UseSPL = use;
}

void clsFFTFilter::init(std::int32_t numPoints) {
  Points = numPoints;
  Order = static_cast<std::int32_t>(std::log(static_cast<double>(Points)) / 0.693147180559945 + 0.5);
  HzPerBin = static_cast<double>(FSampling) / SegmentSize;
  const auto whole = static_cast<std::size_t>(2 * Points + 1);
  for (Doubles* v : {&filterTCoeffsD_, &filterFRealD_, &filterFImagD_, &windowCoeffsD_})
    v->assign(whole, 0.0);
  lowPassCoeffsD_.assign(static_cast<std::size_t>(Points + 1), 0.0);
  for (SampleBuffer* v : {&filterTCoeffsS_, &filterTImag_, &filterFRealS_, &filterFImagS_, &filterMagS_,
                          &filterPhaseS_, &workReal_, &workImag_, &overlapSamples_}) {
    v->assign(whole, 0.0F);
  }
  fftComplex_.FFTInit(2 * Points);
  fftReal_.FFTInit(2 * Points);
  CalcWindowCoeffs(WindowType);
}

void clsFFTFilter::Filter_FFT_S_1(float* samplesInOut) {
  // An impulse response of Points-1 taps reaches Points-2 samples into the next block.
  const std::int32_t tail = Points - 2;
  ZeroVector_S(samplesInOut + Points, Points);
  fftReal_.FFT_Real_S_2(samplesInOut, workReal_.data(), workImag_.data());
  Filter_S_Cart_1(workReal_.data(), workImag_.data());
  fftReal_.IFFT_Real_S_2(workReal_.data(), workImag_.data(), samplesInOut);
  Add_S_2(overlapSamples_.data(), samplesInOut, tail);
  CopyVector_S(samplesInOut + Points, overlapSamples_.data(), tail);
}

void clsFFTFilter::Filter_S_Cart_1(float* realInOut, float* imagInOut) const {
  Convolve_Cart_S_2(filterFRealS_.data(), filterFImagS_.data(), realInOut, imagInOut, SegmentSize);
}

void clsFFTFilter::Filter_S_Cart_2(const float* inI, const float* inQ, float* outI, float* outQ) const {
  quorl::Filter_S_Cart_2(inI, inQ, filterFRealS_.data(), filterFImagS_.data(), outI, outQ, SegmentSize);
}

void clsFFTFilter::Filter_S_Cart_2_VB(const float* inI, const float* inQ, float* outI, float* outQ) const {
  for (std::int32_t i = 0; i <= fftComplex_.Points; ++i) {
    const auto k = static_cast<std::size_t>(i);
    const float a = inI[i], b = inQ[i];
    outI[i] = a * filterFRealS_[k] - b * filterFImagS_[k];
    outQ[i] = b * filterFRealS_[k] + filterFImagS_[k] * a;
  }
}

void clsFFTFilter::Filter_S_Polar_1(float* magnitudes, float* phases) const {
  Mpy_S_2(filterMagS_.data(), magnitudes, fftComplex_.Points);
  Add_S_2(filterPhaseS_.data(), phases, fftComplex_.Points);
}

void clsFFTFilter::Filter_S_Polar_2(const float* magIn, const float* phaseIn, float* magOut,
                                    float* phaseOut) const {
  Mpy_S_3(magIn, filterMagS_.data(), magOut, fftComplex_.Points);
  Add_S_3(phaseIn, filterPhaseS_.data(), phaseOut, fftComplex_.Points);
}

void clsFFTFilter::TransformCoefficients() {
  ZeroVector_S(filterTCoeffsS_.data() + Points, Points);
  ZeroVector_S(filterTImag_.data(), 2 * Points);
  fftComplex_.FFT_S_2(filterTCoeffsS_.data(), filterTImag_.data(), filterFRealS_.data(),
                      filterFImagS_.data());
  CartToPolar_S_2(filterFRealS_.data(), filterFImagS_.data(), filterMagS_.data(), filterPhaseS_.data(),
                  Points);
}

void clsFFTFilter::GetFilterCoeffs_T_S(float* taps) const {
  CopyVector_S(filterTCoeffsS_.data(), taps, Points);
}
void clsFFTFilter::GetFilterTCoeffs_S(float* taps) const {
  GetFilterCoeffs_T_S(taps);
}
void clsFFTFilter::GetFilterTCoeffs_D(double* taps) const {
  std::copy_n(filterTCoeffsD_.data(), Points, taps);
}
void clsFFTFilter::GetFilterCoeffs_F_S(float* magnitudes, float* phases) const {
  CopyVector_S(filterMagS_.data(), magnitudes, Points);
  CopyVector_S(filterPhaseS_.data(), phases, Points);
}
void clsFFTFilter::GetFilterPCoeffs_S(float* magnitudes, float* phases) const {
  GetFilterCoeffs_F_S(magnitudes, phases);
}
void clsFFTFilter::GetFilterFCoeffs_S(float* re, float* im) const {
  CopyVector_S(filterFRealS_.data(), re, SegmentSize);
  CopyVector_S(filterFImagS_.data(), im, SegmentSize);
}
void clsFFTFilter::GetFilterFCoeffs_D(double* re, double* im) const {
  std::copy_n(filterFRealD_.data(), Points, re);
  std::copy_n(filterFImagD_.data(), Points, im);
}

void clsFFTFilter::PutFilterPCoeffs_S(const float* magnitudes, const float* phases) {
  CopyVector_S(magnitudes, filterMagS_.data(), Points);
  CopyVector_S(phases, filterPhaseS_.data(), Points);
}
void clsFFTFilter::PutFilterFCoeffs_S(const float* re, const float* im) {
  CopyVector_S(re, filterFRealS_.data(), SegmentSize);
  CopyVector_S(im, filterFImagS_.data(), SegmentSize);
  CartToPolar_S_2(filterFRealS_.data(), filterFImagS_.data(), filterMagS_.data(), filterPhaseS_.data(),
                  Points);
}
void clsFFTFilter::PutFilterTCoeffs_S(const float* taps) {
  CopyVector_S(taps, filterTCoeffsS_.data(), Points);
  TransformCoefficients();
}
void clsFFTFilter::PutFilterTCoeffs_D(const double* taps) {
  std::copy_n(taps, Points, filterTCoeffsD_.data());
  DoubleToSingle_D_2(filterTCoeffsD_.data(), filterTCoeffsS_.data(), Points);
  TransformCoefficients();
}

}  // namespace quorl
