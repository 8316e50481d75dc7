// The FFT objects: transforms, scales, reports.
#include <gtest/gtest.h>

#include <string>

#include "dsp/Signals.h"
#include "dsp/fft/clsFFT.h"
#include "dsp/fft/clsFFTReal.h"

namespace quorl::test {
namespace {

constexpr const char* kNotInitialised = "clsFFT not initialised, you must call Init first";

auto Pairs(const SampleBuffer& re, const SampleBuffer& im) {
  return [&](std::size_t k) { return std::complex<double>{re[k], im[k]}; };
}

ComplexVector Joined(const SampleBuffer& re, const SampleBuffer& im, std::size_t n) {
  ComplexVector all(n);
  for (std::size_t k = 0; k < n; ++k) all[k] = {re[k], im[k]};
  return all;
}

TEST(clsFFT, RunningTransformHoldsToTheSteppedRotationWithin90Decibels) {
  KernelSettings settings;
  clsFFT fft(settings);
  for (std::int32_t order = 1; order <= 14; ++order) {
    const std::size_t n = std::size_t{1} << order;
    fft.FFTInit(static_cast<std::int32_t>(n));
    ASSERT_EQ(fft.Order, order);
    const SampleBuffer re = RandomFloats(n, 1, 1), im = RandomFloats(n, 1, 2);
    SampleBuffer outRe(n), outIm(n), refRe(n), refIm(n);
    fft.FFT_S_2(re.data(), im.data(), outRe.data(), outIm.data());
    fft.FFTReference(re.data(), im.data(), refRe.data(), refIm.data());
    EXPECT_LT(ErrorDecibels(Pairs(outRe, outIm), Joined(refRe, refIm, n)), -90.0) << n;
  }
}

TEST(clsFFT, InverseByConjugationIsScaledByNOverNPlusOne) {
  KernelSettings settings;
  clsFFT fft(settings);
  for (const std::size_t n : {8U, 2048U}) {
    fft.FFTInit(static_cast<std::int32_t>(n));
    const SampleBuffer re = RandomFloats(n + 1, 1, 1), im = RandomFloats(n + 1, 1, 2);
    SampleBuffer specRe(n + 1), specIm(n + 1), backRe(n + 1), backIm(n + 1);
    fft.FFT_S_2(re.data(), im.data(), specRe.data(), specIm.data());
    fft.IFFT_S_2(specRe.data(), specIm.data(), backRe.data(), backIm.data());
    ComplexVector expected = Joined(re, im, n);
    for (auto& v : expected) v *= double(n) / double(n + 1);
    EXPECT_LT(ErrorDecibels(Pairs(backRe, backIm), expected), -125.0) << n;
  }
}

TEST(clsFFT, BitsReverseAndLengthsAreChecked) {
  EXPECT_EQ(clsFFT::ReverseBits(0b0001011, 7), 0b1101000);
  EXPECT_EQ(clsFFT::ReverseBits(5, 0), 0);
  KernelSettings settings;
  clsFFT fft(settings);
  clsFFTReal real(settings);
  for (const std::int32_t bad : {0, -4, 32768}) EXPECT_THROW(fft.FFTInit(bad), std::invalid_argument) << bad;
  for (const std::int32_t bad : {0, 1, 65536}) EXPECT_THROW(real.FFTInit(bad), std::invalid_argument) << bad;
  EXPECT_FALSE(fft.IsInitialised);
  EXPECT_FALSE(real.IsInitialised);
  fft.FFTInit(16384);
  real.FFTInit(32768);
  EXPECT_EQ(fft.Order, 14);
  EXPECT_EQ(real.Order, 15);
  fft.FFTInit(4);  // again, and smaller
  EXPECT_EQ(fft.Points, 4);
}

TEST(clsFFT, ReportsACallBeforeInitAndLeavesTheOutputsAlone) {
  std::vector<std::string> reports;
  KernelSettings settings;
  settings.Report = [&](const std::string& text) { reports.push_back(text); };
  clsFFT fft(settings);
  clsFFTReal real(settings);
  float re[4] = {1, 2, 3, 4}, im[4] = {1, 2, 3, 4}, outRe[4] = {7, 7, 7, 7}, outIm[4] = {7, 7, 7, 7};
  fft.FFT_S_2(re, im, outRe, outIm);
  fft.IFFT_S_2(re, im, outRe, outIm);
  real.FFT_Real_S_2_VB(re, outRe, outIm);
  real.FFT_Real_S_2(re, outRe, outIm);
  real.IFFT_Real_S_2(re, im, outRe);
  EXPECT_EQ(reports, std::vector<std::string>(5, kNotInitialised));
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(outRe[i], 7.0F);
    EXPECT_EQ(outIm[i], 7.0F);
  }
}

TEST(clsFFT, OneFlagForTheVectorLibrarySwitchesEveryObject) {
  KernelSettings settings;
  clsFFT first(settings);
  clsFFTReal second(settings);
  first.SetUseSPL(true);
  EXPECT_TRUE(settings.UseSPL);
  EXPECT_FALSE(second.UseSPL());  // its own copy
  second.SetUseSPL(false);
  EXPECT_FALSE(settings.UseSPL);
  EXPECT_TRUE(first.UseSPL());
}

TEST(clsFFTReal, ForwardMatchesADoubleTransformInBothForms) {
  KernelSettings settings;
  clsFFTReal fft(settings);
  for (std::int32_t order = 1; order <= 15; ++order) {
    const std::size_t n = std::size_t{1} << order;
    fft.FFTInit(static_cast<std::int32_t>(n));
    const SampleBuffer in = RandomFloats(n, 1, 3);
    SampleBuffer re(n + 1, 7.0F), im(n + 1, 7.0F), stepRe(n + 1), stepIm(n + 1);
    fft.FFT_Real_S_2(in.data(), re.data(), im.data());
    fft.FFT_Real_S_2_VB(in.data(), stepRe.data(), stepIm.data());
    const ComplexVector expected = FastTransform(Joined(in, SampleBuffer(n), n));
    EXPECT_LT(ErrorDecibels(Pairs(re, im), expected), -130.0) << n;
    // Its rotation is stepped in 32-bit floats and drifts with the length.
    EXPECT_LT(ErrorDecibels(Pairs(stepRe, stepIm), expected), n <= 4096 ? -90.0 : -75.0) << n;
    EXPECT_EQ(re[n], 7.0F);
  }
}

TEST(clsFFTReal, InverseReturnsTheInputFromTheLowerHalfAlone) {
  KernelSettings settings;
  clsFFTReal fft(settings);
  for (std::int32_t order = 1; order <= 15; ++order) {
    const std::size_t n = std::size_t{1} << order;
    fft.FFTInit(static_cast<std::int32_t>(n));
    const SampleBuffer in = RandomFloats(n, 32767, 4);
    SampleBuffer re(n + 1), im(n + 1), back(n);
    fft.FFT_Real_S_2(in.data(), re.data(), im.data());
    std::fill(re.begin() + std::ptrdiff_t(n / 2 + 1), re.end(), 1e9F);
    std::fill(im.begin() + std::ptrdiff_t(n / 2 + 1), im.end(), 1e9F);
    fft.IFFT_Real_S_2(re.data(), im.data(), back.data());
    const SampleBuffer none(n);
    EXPECT_LT(ErrorDecibels(Pairs(back, none), Joined(in, none, n)), -125.0) << n;
  }
}

}  // namespace
}  // namespace quorl::test
