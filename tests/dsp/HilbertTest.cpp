// The Hilbert transformer and its matching delay.
#include "dsp/filters/clHilbert.h"

#include <gtest/gtest.h>

#include "dsp/Signals.h"

namespace quorl::test {
namespace {

struct Pair {
  Pair() {
    Transformed.Load(128, 2048);
    Delayed.Load(128, 2048);
  }
  clHilbert Transformed, Delayed;
};

TEST(clHilbert, Constants) {
  std::vector<double> coefficients(129, 7.0);
  double gain = 0.0;
  clHilbert::CalcCoefficients(128, coefficients.data(), gain);
  EXPECT_NEAR(gain, 1.56876214838177, 1e-13);
  EXPECT_EQ(coefficients[0], 7.0);
  EXPECT_EQ(coefficients[64], 0.0);
  for (std::size_t k = 1; k < 64; ++k) {
    ASSERT_EQ(coefficients[64 - k], -coefficients[64 + k]) << k;
    ASSERT_TRUE(k % 2 == 1 || coefficients[64 + k] == 0.0) << k;
  }
  EXPECT_GT(coefficients[63], 0.99);
  const Pair pair;
  EXPECT_EQ(pair.Transformed.Delay, 64);
  EXPECT_EQ(pair.Transformed.Nzeros, 128);
  EXPECT_EQ(pair.Transformed.sGain, 0.6374452628344794F);
}

TEST(clHilbert, PairIsAlignedAndNinetyDegreesApart) {
  Pair pair;
  constexpr std::size_t kBlocks = 6, n = 2048;
  for (const double f : {3000.0, 6000.0, 12000.0, 18000.0, 21000.0}) {
    SampleBuffer i, q, in(n), outI(n), outQ(n);
    for (std::size_t b = 0; b < kBlocks; ++b) {
      for (std::size_t k = 0; k < n; ++k) in[k] = float(std::cos(Radians(f) * double(b * n + k)));
      pair.Transformed.sTransform(in.data(), outQ.data(), n);
      pair.Delayed.sDelaySamples(in.data(), outI.data(), n);
      if (b < 2) continue;
      i.insert(i.end(), outI.begin(), outI.end());
      q.insert(q.end(), outQ.begin(), outQ.end());
    }
    // The make-up factor is exact at a quarter of the rate; the Hamming window ripples by half a percent.
    const std::complex<double> ratio = PhasorAt(q, f) / PhasorAt(i, f);
    EXPECT_NEAR(std::abs(ratio), 1.0, f == 12000.0 ? 1e-6 : 5e-3) << f;
    EXPECT_NEAR(std::abs(std::arg(ratio)), std::numbers::pi / 2, 1e-5) << f;
    EXPECT_NEAR(std::arg(PhasorAt(i, f) * std::polar(1.0, Radians(f) * 64.0)), 0.0, 1e-3) << f;
  }
}

TEST(clHilbert, BlocksJoinWithoutASeam) {
  Pair pair;
  const SampleBuffer in = RandomFloats(4 * 512, 1.0F, 1);
  SampleBuffer out(in.size()), delayed(in.size());
  std::vector<double> doubles(in.begin(), in.end()), delayedDoubles(in.size());
  clHilbert doubleDelay;
  doubleDelay.Load(128, 2048);
  for (std::size_t at = 0; at < in.size(); at += 512) {
    pair.Transformed.sTransform(&in[at], &out[at], 512);
    pair.Delayed.sDelaySamples(&in[at], &delayed[at], 512);
    doubleDelay.DelaySamples(&doubles[at], &delayedDoubles[at], 512);
  }
  std::vector<double> taps(128);
  pair.Transformed.GetCoefs(taps.data(), 128);
  const std::vector<double> expected = DirectFir(taps, in);
  for (std::size_t k = 0; k < in.size(); ++k) {
    ASSERT_NEAR(out[k], expected[k] * 0.6374452628344794, 2e-6) << k;
    ASSERT_EQ(delayed[k], k < 64 ? 0.0F : in[k - 64]) << k;
    ASSERT_EQ(delayedDoubles[k], double(delayed[k])) << k;
  }
}

TEST(clHilbert, SingleAndDoubleCoefficientsStandAlone) {
  clHilbert hilbert;
  hilbert.Load(16, 64);
  std::vector<double> doubles(16), doublesAfter(16);
  std::vector<float> singles(16, 0.5F), singlesAfter(16);
  hilbert.GetCoefs(doubles.data(), 16);
  hilbert.sSetCoefs(singles.data(), 16);
  hilbert.GetCoefs(doublesAfter.data(), 16);
  EXPECT_EQ(doubles, doublesAfter);
  hilbert.dSetCoefs(std::vector<double>(16, 0.25).data(), 16);
  hilbert.sGetCoefs(singlesAfter.data(), 16);
  EXPECT_EQ(singles, singlesAfter);
}

}  // namespace
}  // namespace quorl::test
