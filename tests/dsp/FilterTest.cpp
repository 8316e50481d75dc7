// The running half of the convolution filter: overlap-add, seams, coefficients in and out.
#include <gtest/gtest.h>

#include "dsp/FilterRig.h"
#include "dsp/kernel/VectorKernel.h"

namespace quorl::test {
namespace {

// Rounding of two transforms and a product in 32-bit floats stays 120 dB under the largest sample.
constexpr double kConvolution = 1e-6;
// A band stop has one tap more than the overlap carries.
constexpr double kNotchConvolution = 2e-5;

double LargestDifference(const SampleBuffer& got, const std::vector<double>& expected) {
  double largest = 0.0;
  for (std::size_t i = 0; i < got.size(); ++i)
    largest = std::max(largest, std::abs(double(got[i]) - expected[i]));
  return largest;
}

TEST(clsFFTFilter, ConvolvesLikeADirectFir) {
  struct {
    std::int32_t Points, Low, High;
    bool Quadrature, Reject;
    double Tolerance;
  } const cases[] = {
      {64, 3000, 9000, false, false, kConvolution},      {64, 3000, 9000, true, false, kConvolution},
      {2048, 300, 2300, false, false, kConvolution},     {2048, 300, 2300, true, false, kConvolution},
      {2048, 950, 1050, false, true, kNotchConvolution}, {2048, 50, 5000, false, false, kConvolution},
  };
  for (const auto& c : cases) {
    FilterRig rig(c.Points, c.Reject ? kHammingWindow : kBlackmanWindow);
    rig.Make(c.Low, c.High, c.Quadrature, c.Reject);
    const SampleBuffer in = RandomFloats(4 * std::size_t(c.Points), 1.0F, 8);
    EXPECT_LT(LargestDifference(rig.Run(in), DirectFir(rig.Taps(), in)), c.Tolerance)
        << c.Points << " " << c.Low << " " << c.Quadrature << c.Reject;
  }
}

TEST(clsFFTFilter, AnImpulseSpreadsOverTwoBlocksAndNoFurther) {
  FilterRig rig(64);
  rig.Make(2000, 8000);
  const std::vector<double> taps = rig.Taps();
  for (const std::size_t at : {std::size_t{0}, std::size_t{1}, std::size_t{63}}) {
    SampleBuffer in(64 * 4);
    in[at] = 1.0F;
    const SampleBuffer out = rig.Run(in);
    for (std::size_t i = 0; i < out.size(); ++i) {
      const double expected = i >= at && i - at < 63 ? taps[i - at] : 0.0;
      ASSERT_NEAR(out[i], expected, kConvolution) << at << " " << i;
    }
  }
}

TEST(clsFFTFilter, ARebuiltFilterReceivesTheTailOfTheOldOne) {
  FilterRig rig(64);
  rig.Make(2000, 8000);
  const std::vector<double> before = rig.Taps();
  SampleBuffer first = RandomFloats(64, 1.0F, 1);
  const SampleBuffer second = RandomFloats(64, 1.0F, 2);
  rig.Run(first);
  rig.Make(10000, 15000);
  const SampleBuffer out = rig.Run(second);
  first.resize(128, 0.0F);
  const std::vector<double> tail = DirectFir(before, first), fresh = DirectFir(rig.Taps(), second);
  for (std::size_t i = 0; i < 64; ++i) ASSERT_NEAR(out[i], tail[64 + i] + fresh[i], kConvolution) << i;
}

TEST(clsFFTFilter, SpectralProductsAgreeInAllForms) {
  FilterRig rig(64);
  rig.Make(2000, 8000);
  const SampleBuffer re = RandomFloats(129, 1, 1), im = RandomFloats(129, 1, 2);
  SampleBuffer inRe = re, inIm = im, outRe(129), outIm(129), loopRe(129), loopIm(129);
  rig.Filter.Filter_S_Cart_1(inRe.data(), inIm.data());
  rig.Filter.Filter_S_Cart_2(re.data(), im.data(), outRe.data(), outIm.data());
  rig.Filter.Filter_S_Cart_2_VB(re.data(), im.data(), loopRe.data(), loopIm.data());
  SampleBuffer magnitude(128), phase(128), outMagnitude(128), outPhase(128), polarRe(128), polarIm(128);
  CartToPolar_S_2(re.data(), im.data(), magnitude.data(), phase.data(), 128);
  rig.Filter.Filter_S_Polar_2(magnitude.data(), phase.data(), outMagnitude.data(), outPhase.data());
  rig.Filter.Filter_S_Polar_1(magnitude.data(), phase.data());
  EXPECT_EQ(magnitude, outMagnitude);
  EXPECT_EQ(phase, outPhase);
  PolarToCart_S_2(magnitude.data(), phase.data(), polarRe.data(), polarIm.data(), 128);
  std::vector<float> fre(128), fim(128);
  rig.Filter.GetFilterFCoeffs_S(fre.data(), fim.data());
  for (std::size_t i = 0; i < 128; ++i) {
    const auto expected = std::complex<double>{re[i], im[i]} * std::complex<double>{fre[i], fim[i]};
    ASSERT_NEAR(std::abs(std::complex<double>(inRe[i], inIm[i]) - expected), 0.0, kConvolution);
    ASSERT_NEAR(std::abs(std::complex<double>(outRe[i], outIm[i]) - expected), 0.0, kConvolution);
    ASSERT_NEAR(std::abs(std::complex<double>(loopRe[i], loopIm[i]) - expected), 0.0, kConvolution);
    const std::complex<double> polar{polarRe[i], polarIm[i]};
    ASSERT_NEAR(std::abs(polar - (i < 64 ? expected : 0.0)), 0.0, 1e-5) << i;  // the polar form's lower half
  }
}

TEST(clsFFTFilter, CoefficientsGoInAndComeOut) {
  FilterRig made(64), filled(64), spectral(64);
  made.Make(2000, 8000);
  std::vector<float> taps(64), also(64), re(128), im(128), re2(128), im2(128), mag(64), ph(64), mag2(64),
      ph2(64);
  made.Filter.GetFilterTCoeffs_S(taps.data());
  made.Filter.GetFilterCoeffs_T_S(also.data());
  EXPECT_EQ(taps, also);
  made.Filter.GetFilterFCoeffs_S(re.data(), im.data());
  made.Filter.GetFilterCoeffs_F_S(mag.data(), ph.data());

  filled.Filter.PutFilterTCoeffs_S(taps.data());  // carries the spectrum along
  filled.Filter.GetFilterFCoeffs_S(re2.data(), im2.data());
  filled.Filter.GetFilterPCoeffs_S(mag2.data(), ph2.data());
  EXPECT_EQ(re, re2);
  EXPECT_EQ(im, im2);
  EXPECT_EQ(mag, mag2);
  EXPECT_EQ(ph, ph2);

  spectral.Filter.PutFilterFCoeffs_S(re.data(), im.data());  // the polar form follows
  spectral.Filter.GetFilterPCoeffs_S(mag2.data(), ph2.data());
  EXPECT_EQ(mag, mag2);
  const SampleBuffer in = RandomFloats(256, 1, 3);
  EXPECT_EQ(made.Run(in), spectral.Run(in));

  std::vector<float> ones(64, 1.0F), zeros(64);
  spectral.Filter.PutFilterPCoeffs_S(ones.data(), zeros.data());  // stands alone
  spectral.Filter.GetFilterPCoeffs_S(mag2.data(), ph2.data());
  spectral.Filter.GetFilterFCoeffs_S(re2.data(), im2.data());
  EXPECT_EQ(mag2, ones);
  EXPECT_EQ(re2, re);

  const std::vector<double> doubles = made.Taps();
  filled.Filter.PutFilterTCoeffs_D(std::vector<double>(64, 0.25).data());
  filled.Filter.PutFilterTCoeffs_D(doubles.data());
  EXPECT_EQ(filled.Taps(), doubles);
  filled.Filter.GetFilterFCoeffs_S(re2.data(), im2.data());
  EXPECT_EQ(re2, re);
}

}  // namespace
}  // namespace quorl::test
