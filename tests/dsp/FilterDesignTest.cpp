// What the designs pass, stop and shift.
#include <gtest/gtest.h>

#include "dsp/FilterRig.h"

namespace quorl::test {
namespace {

TEST(FilterDesign, BandPassIsFlatInsideAndDeepOutside) {
  FilterRig rig;
  for (const auto& [low, high] : {std::pair{300, 2300}, {50, 5000}, {100, 4500}, {2000, 22000}, {0, 3000}}) {
    for (const bool quadrature : {false, true}) {
      rig.Make(low, high, quadrature);
      // A Blackman window of 2047 taps falls from full pass to its stop band over 130 Hz around an edge. The
      // quadrature twin cannot pass 0 Hz.
      for (double f = low + (low == 0 && !quadrature ? 0 : 70); f <= high - 70; f += 37) {
        ASSERT_NEAR(rig.GainAt(f), 0.0, 0.01) << low << " " << high << " " << quadrature << " " << f;
      }
      for (double f = high + 80; f < std::min(high + 3000.0, 24000.0); f += 37) {
        ASSERT_LT(rig.GainAt(f), -73.0) << low << " " << high << " " << quadrature << " " << f;
      }
      for (double f = low - 80; f > 0; f -= 37) ASSERT_LT(rig.GainAt(f), -73.0) << low << " " << f;
      EXPECT_NEAR(rig.GainAt(high), -6.02, 0.1);
    }
  }
}

TEST(FilterDesign, QuadratureTwinStandsNinetyDegreesApart) {
  FilterRig inPhase, quadrature;
  inPhase.Make(300, 2300);
  quadrature.Make(300, 2300, true);
  const std::vector<double> i = inPhase.Taps(), q = quadrature.Taps();
  EXPECT_EQ(q[1023], 0.0);
  EXPECT_EQ(q[2047], 0.0);
  EXPECT_EQ(i[2047], 0.0);
  for (std::size_t k = 1; k <= 1023; ++k) {
    ASSERT_NEAR(i[1023 - k], i[1023 + k], 5e-6);  // the even window's centre lies half a sample off
    ASSERT_NEAR(q[1023 - k], -q[1023 + k], 5e-6);
  }
  for (double f = 400; f < 2200; f += 55) {
    const std::complex<double> ratio = ResponseAt(q, f) / ResponseAt(i, f);
    ASSERT_NEAR(ratio.real(), 0.0, 1e-5) << f;
    ASSERT_NEAR(ratio.imag(), 1.0, 1e-5) << f;  // leads
  }
}

TEST(FilterDesign, BandStopIsDeepAndLeavesTheRestAtGainOne) {
  FilterRig rig(2048, kHammingWindow);
  rig.Make(900, 1100, false, true);
  for (double f = 0; f < 24000; f += f < 2000 ? 13 : 487) {
    const double gain = rig.GainAt(f), distance = std::abs(f - 1000.0);
    ASSERT_TRUE(distance <= 145 || std::abs(gain) < 0.06) << f << ": " << gain;
    ASSERT_TRUE(distance >= 40 || gain < -50.0) << f << ": " << gain;
  }
}

TEST(FilterDesign, EdgesAreClampedAndBinsTold) {
  FilterRig rig;
  rig.Make(100, 4500);
  EXPECT_EQ(rig.Filter.BinFLow, 8);
  EXPECT_EQ(rig.Filter.BinFHigh, 384);
  EXPECT_EQ(rig.Filter.BinFCount, 376);
  EXPECT_EQ(rig.Filter.Order, 11);
  EXPECT_DOUBLE_EQ(rig.Filter.HzPerBin, 11.71875);
  EXPECT_NEAR(rig.Filter.FHRadians, Radians(4500), 1e-12);
  rig.Make(-1000, 30000);
  EXPECT_EQ(rig.Filter.FLow, 0);
  EXPECT_EQ(rig.Filter.FHigh, 24000);
  EXPECT_NEAR(rig.GainAt(5000), 0.0, 0.01);
  rig.Make(3000, 3000);
  for (const double tap : rig.Taps()) ASSERT_EQ(tap, 0.0);
}

TEST(FilterDesign, NormalisationIsOnePlusTheMeanOfTheTaps) {
  FilterRig rig;
  rig.Make(0, 3000);  // taps sum to one
  const double with = ResponseAt(rig.Taps(), 1000).real() / std::cos(Radians(1000) * 1023);
  rig.Filter.NormaliseGain = false;
  rig.Make(0, 3000);
  const double without = ResponseAt(rig.Taps(), 1000).real() / std::cos(Radians(1000) * 1023);
  EXPECT_NEAR(with / without, 1.0 + 1.0 / 2048, 1e-6);
}

TEST(FilterDesign, Windows) {
  std::vector<double> window(2049, 9.0);
  CalcWindowCoeffs_D(2048, window.data(), kRectangularWindow);
  EXPECT_EQ(window[0], 1.0);
  EXPECT_EQ(window[2047], 1.0);
  EXPECT_EQ(window[2048], 9.0);
  CalcWindowCoeffs_D(2048, window.data(), kHammingWindow);
  EXPECT_NEAR(window[0], 0.08, 1e-12);
  EXPECT_NEAR(window[2047], 0.08, 1e-12);
  EXPECT_NEAR(window[1023], 1.0, 1e-5);
  CalcWindowCoeffs_D(2048, window.data(), kBlackmanWindow);
  EXPECT_NEAR(window[0], 0.0, 1e-12);
  EXPECT_NEAR(window[2047], 0.0, 1e-12);
  EXPECT_NEAR(window[1023], 1.0, 1e-5);

  std::int32_t points = 2048;
  std::vector<double> own(2048, 9.0), kernel(2048);
  CalcWindowCoeffs_D(2048, kernel.data(), kHammingWindow);
  clsFFTFilter::CalcWindowCoeffs_VB(own.data(), points, kHammingWindow);
  EXPECT_EQ(points, 2047);
  for (std::size_t i = 0; i < own.size(); ++i) ASSERT_NEAR(own[i], kernel[i], 1e-12) << i;
  clsFFTFilter::CalcWindowCoeffs_VB(own.data(), points, kRectangularWindow);
  EXPECT_EQ(points, 2046);
  EXPECT_NEAR(own[0], 0.08, 1e-12);  // the entries stay as they were
}

// The class's own designs against the kernel's: same band, same centre.
TEST(FilterDesign, OwnDesignsComeNearTheKernels) {
  FilterRig rig;
  for (const bool quadrature : {false, true}) {
    rig.Make(300, 2300, quadrature);
    const std::vector<double> kernel = rig.Taps();
    rig.Filter.CalcBandPass_VB();
    const std::vector<double> own = rig.Taps();
    // The means differ in their divisor, 2047 against 2048.
    for (std::size_t k = 0; k < own.size(); ++k) ASSERT_NEAR(own[k], kernel[k], 1e-7) << k;
  }
  // By inversion the sincs keep their factor of pi, and the centre lies one tap later.
  rig.Make(300, 2300);
  rig.Filter.CalcBandPass_Smith();
  for (const double f : {500.0, 1300.0, 2000.0})
    EXPECT_NEAR(rig.GainAt(f), Decibels(std::numbers::pi), 0.05) << f;
  for (const double f : {100.0, 2600.0, 9000.0}) EXPECT_LT(rig.GainAt(f), -60.0) << f;

  FilterRig notch(2048, kHammingWindow);
  notch.Make(900, 1100, false, true);
  const std::vector<double> kernel = notch.Taps();
  notch.Filter.CalcBandStop();
  EXPECT_EQ(notch.Taps(), kernel);
  notch.Filter.CalcBandStop_Smith();
  const std::vector<double> smith = notch.Taps();
  for (std::size_t k = 0; k < smith.size(); ++k) ASSERT_NEAR(smith[k], kernel[k], 1e-12) << k;
}

}  // namespace
}  // namespace quorl::test
