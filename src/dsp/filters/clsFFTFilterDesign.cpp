// The design half of clsFFTFilter: from band edges in hertz to coefficients.
#include <cmath>

#include "dsp/filters/FilterDesign.h"
#include "dsp/filters/clsFFTFilter.h"
#include "dsp/kernel/VectorKernel.h"
#include "support/Rounding.h"

namespace quorl {

namespace {

constexpr double kTwoPi = 6.28318530717958;

}  // namespace

void clsFFTFilter::MakeFilter() {
  if (FSampling / 2 < FHigh) FHigh = FSampling / 2;
  if (FLow < 0) FLow = 0;
  BinFLow = RoundDown(FLow / HzPerBin);
  BinFHigh = RoundDown(FHigh / HzPerBin + 0.5);
  BinFCount = BinFHigh - BinFLow;
  FHRadians = FHigh * kTwoPi / FSampling;
  FLRadians = FLow * kTwoPi / FSampling;
  BandReject ? CalcBandStop_PAS() : CalcBandPass();
  TransformCoefficients();
}

void clsFFTFilter::CalcWindowCoeffs(std::int32_t windowType) {
  CalcWindowCoeffs_D(Points, windowCoeffsD_.data(), windowType);
}

void clsFFTFilter::CalcWindowCoeffs_VB(double* window, std::int32_t& numPoints, std::int32_t windowType) {
  --numPoints;
  const double m = numPoints;
  for (std::int32_t i = 0; i <= numPoints; ++i) {
    if (windowType == kHammingWindow) window[i] = 0.54 - 0.46 * std::cos(i * kTwoPi / m);
    if (windowType == kBlackmanWindow) {
      window[i] = 0.42 - 0.5 * std::cos(i * kTwoPi / m) + 0.08 * std::cos(i * 2 * kTwoPi) / m;
    }
  }
}

// Every filter's level in the chain is set against this rule: one plus the mean of the taps.
void clsFFTFilter::AddMeanToGain(Doubles& taps) const {
  Mpy_D_1(Sum_D_1(taps.data(), Points) / Points + 1.0, taps.data(), Points);
}

void clsFFTFilter::ScaleToUnitSum(Doubles& taps) const {
  const double sum = Sum_D_1(taps.data(), Points);
  if (sum != 0.0) Mpy_D_1(1.0 / sum, taps.data(), Points);
}

void clsFFTFilter::CalcBandPass() {
  CalcBPFilterCoeffs(Points, filterTCoeffsD_.data(), FHRadians, FLRadians, QPhase);
  Mpy_D_2(windowCoeffsD_.data(), filterTCoeffsD_.data(), Points);
  if (NormaliseGain) AddMeanToGain(filterTCoeffsD_);
  DoubleToSingle_D_2(filterTCoeffsD_.data(), filterTCoeffsS_.data(), Points);
}

void clsFFTFilter::CalcBandPass_VB() {
  const std::int32_t m = Points - 1, reach = m / 2;
  for (std::int32_t i = -reach; i <= reach; ++i) {
    double& tap = filterTCoeffsD_[static_cast<std::size_t>(i + reach)];
    if (i == 0) {
      tap = QPhase ? 0.0 : (FHRadians - FLRadians) / 3.14159265358979;
    } else if (QPhase) {
      tap = (std::cos(i * FHRadians) - std::cos(i * FLRadians)) * (1.0 / (i * 3.14159265358979));
    } else {
      tap = (std::sin(i * FHRadians) - std::sin(i * FLRadians)) * (1.0 / (i * 3.14159265358979));
    }
  }
  double sum = 0.0;
  for (std::size_t k = 0; k <= static_cast<std::size_t>(m); ++k) {
    filterTCoeffsD_[k] *= windowCoeffsD_[k];
    sum += filterTCoeffsD_[k];
  }
  const double gain = NormaliseGain ? sum / m + 1.0 : 1.0;
  for (std::size_t k = 0; k <= static_cast<std::size_t>(m); ++k) {
    filterTCoeffsD_[k] *= gain;
    filterTCoeffsS_[k] = static_cast<float>(filterTCoeffsD_[k]);
  }
}

void clsFFTFilter::CalcBandStop_PAS() {
  CalcBSFilterCoeffs(Points, filterTCoeffsD_.data(), filterTCoeffsS_.data(), windowCoeffsD_.data(), FHRadians,
                     FLRadians);
}

// A sinc low pass around tap Points/2, entries 0 .. Points, or its quadrature twin.
void clsFFTFilter::SincLowPass(Doubles& taps, double edge, bool quadrature) const {
  const std::int32_t centre = RoundHalfEven(Points / 2.0);
  for (std::int32_t k = 0; k <= Points; ++k) {
    const std::int32_t i = k - centre;
    double& tap = taps[static_cast<std::size_t>(k)];
    if (i == 0) {
      tap = quadrature ? 0.0 : edge;
    } else {
      tap = (quadrature ? std::cos(i * edge) : std::sin(i * edge)) / i;
    }
  }
}

void clsFFTFilter::CalcBandStop() {
  SincLowPass(filterTCoeffsD_, FHRadians, false);
  SincLowPass(lowPassCoeffsD_, FLRadians, false);
  Mpy_D_2(windowCoeffsD_.data(), lowPassCoeffsD_.data(), Points);
  Mpy_D_2(windowCoeffsD_.data(), filterTCoeffsD_.data(), Points);
  if (NormaliseGain) {
    ScaleToUnitSum(lowPassCoeffsD_);
    const double sum = Sum_D_1(filterTCoeffsD_.data(), Points);
    if (sum != 0.0) Mpy_D_1(-1.0 / sum, filterTCoeffsD_.data(), Points);
  }
  filterTCoeffsD_[static_cast<std::size_t>(Points / 2)] += 1.0;
  Add_D_2(lowPassCoeffsD_.data(), filterTCoeffsD_.data(), Points);
  DoubleToSingle_D_2(filterTCoeffsD_.data(), filterTCoeffsS_.data(), Points);
}

void clsFFTFilter::InvertSpectrum() {
  Mpy_D_1(-1.0, filterTCoeffsD_.data(), Points);
  filterTCoeffsD_[static_cast<std::size_t>(Points / 2)] += 1.0;
}

void clsFFTFilter::SmithBandStop(GainRule normalise) {
  SincLowPass(lowPassCoeffsD_, FLRadians, QPhase);
  SincLowPass(filterTCoeffsD_, FHRadians, QPhase);
  for (Doubles* taps : {&lowPassCoeffsD_, &filterTCoeffsD_}) {
    Mpy_D_2(windowCoeffsD_.data(), taps->data(), Points);
    if (NormaliseGain) (this->*normalise)(*taps);
  }
  InvertSpectrum();
  Add_D_2(lowPassCoeffsD_.data(), filterTCoeffsD_.data(), Points);
}

void clsFFTFilter::CalcBandPass_Smith() {
  SmithBandStop(&clsFFTFilter::AddMeanToGain);
  InvertSpectrum();
  Mpy_D_2(windowCoeffsD_.data(), filterTCoeffsD_.data(), Points);
  if (NormaliseGain) AddMeanToGain(filterTCoeffsD_);
  DoubleToSingle_D_2(filterTCoeffsD_.data(), filterTCoeffsS_.data(), Points);
}

void clsFFTFilter::CalcBandStop_Smith() {
  SmithBandStop(&clsFFTFilter::ScaleToUnitSum);
  DoubleToSingle_D_2(filterTCoeffsD_.data(), filterTCoeffsS_.data(), Points);
}

}  // namespace quorl
