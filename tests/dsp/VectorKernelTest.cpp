// Every routine of the vector kernel against plain double arithmetic, in every instruction set at hand.
#include "dsp/kernel/VectorKernel.h"

#include <gtest/gtest.h>

#include <limits>

#include "dsp/Signals.h"
#include "dsp/kernel/KernelTable.h"

namespace quorl::test {
namespace {

// Inputs lie within 2 of zero. One rounding costs 6e-8 of the value; the longest chains here have a dozen.
constexpr double kTolerance = 1e-6;
constexpr std::int32_t kLengths[] = {-1, 0, 1, 2, 3, 4, 7, 15, 16, 17, 33, 64, 101, 2047, 2048};
constexpr std::size_t kRoom = 2064;  // elements past the count must stay as they were
constexpr float kC = 0.7F;

class KernelTest : public testing::TestWithParam<const KernelTable*> {
 protected:
  const KernelTable& k = *GetParam();
};

std::vector<const KernelTable*> Tables() {
  const KernelChoice choice = RunnableKernels();
  return {choice.Tables, choice.Tables + choice.Count};
}

INSTANTIATE_TEST_SUITE_P(Tables, KernelTest, testing::ValuesIn(Tables()), [](const auto& about) {
  std::string name = about.param->InstructionSet;
  std::erase(name, '-');
  return name;
});

// One result element for each input pair. `out` holds b before: routines that work in place work on it.
struct Elementwise {
  const char* Name;
  void (*Run)(const KernelTable& k, const float* a, const float* b, float* out, std::int32_t n);
  double (*Expected)(double a, double b);
  bool HasDestination = false;
};

#define RUN [](const KernelTable& k, const float* a, const float* b, float* out, std::int32_t n)
#define GIVES [](double a, double b) -> double
const Elementwise kElementwise[] = {{"Mpy_S_1", RUN{(void)a, (void)b, k.Mpy_S_1(kC, out, n);
}  // namespace
, GIVES {
  return (void)a, kC * b;
}
}  // namespace quorl::test
, {"Mpy_S_2", RUN{(void)b, k.Mpy_S_2(a, out, n);
}
, GIVES {
  return a * b;
}
}
, {"Mpy_S_3", RUN{k.Mpy_S_3(a, b, out, n);
}
, GIVES {
  return a * b;
}
, true
}
, {"Add_S_1", RUN{(void)a, (void)b, k.Add_S_1(kC, out, n);
}
, GIVES {
  return (void)a, b + kC;
}
}
, {"Add_S_2", RUN{(void)b, k.Add_S_2(a, out, n);
}
, GIVES {
  return a + b;
}
}
, {"Add_S_3", RUN{k.Add_S_3(a, b, out, n);
}
, GIVES {
  return a + b;
}
, true
}
, {"Sub_S_1", RUN{(void)a, (void)b, k.Sub_S_1(kC, out, n);
}
, GIVES {
  return (void)a, kC - b;
}
}
, {"Sub_S_3", RUN{k.Sub_S_3(a, b, out, n);
}
, GIVES {
  return a - b;
}
, true
}
, {"Negate_S", RUN{(void)a, (void)b, k.Negate_S(out, n);
}
, GIVES {
  return (void)a, -b;
}
}
, {"NegateAndDiv_S_1", RUN{(void)a, (void)b, k.NegateAndDiv_S_1(3.0F, out, n);
}
, GIVES {
  return (void)a, -b / 3.0;
}
}
, {"Abs_S_1", RUN{(void)a, (void)b, k.Abs_S_1(out, n);
}
, GIVES {
  return (void)a, std::abs(b);
}
}
, {"Sqr_S_1", RUN{(void)a, (void)b, k.Sqr_S_1(out, n);
}
, GIVES {
  return (void)a, b * b;
}
}
, {"Sqr_S_2", RUN{(void)b, k.Sqr_S_2(a, out, n);
}
, GIVES {
  return (void)b, a * a;
}
, true
}
, {"SetMemory_S", RUN{(void)a, (void)b, k.SetMemory_S(out, n, kC);
}
, GIVES {
  return (void)a, (void)b, double(kC);
}
}
, {"LowThresh_S_1", RUN{(void)a, (void)b, k.LowThresh_S_1(out, 0, kC, n);
}
, GIVES {
  return (void)a, std::max(b, double(kC));
}
}
, {"HiThresh_S_1", RUN{(void)a, (void)b, k.HiThresh_S_1(out, 0, kC, n);
}
, GIVES {
  return (void)a, std::min(b, double(kC));
}
}
, {"LowThreshFract_S_1", RUN{(void)a, (void)b, k.LowThreshFract_S_1(out, kC, 0.02F, n);
}
, GIVES {
  return (void)a, b < double(kC) ? 0.02 * b : b;
}
}
, {"PowerSpectrum_S_2", RUN{k.PowerSpectrum_S_2(a, b, out, n);
}
, GIVES {
  return std::hypot(a, b);
}
, true
}
,
}
;
#undef RUN
#undef GIVES

TEST_P(KernelTest, ElementwiseRoutinesMatchDoubleArithmetic) {
  for (const Elementwise& routine : kElementwise) {
    for (const std::int32_t n : kLengths) {
      const SampleBuffer a = RandomFloats(kRoom, 2.0F, 1), b = RandomFloats(kRoom, 2.0F, 2);
      // Destination on its own; where there is one, also the same vector as either source.
      for (int alias = 0; alias < (routine.HasDestination ? 3 : 1); ++alias) {
        SampleBuffer out = alias == 1 ? a : b;
        routine.Run(k, alias == 1 ? out.data() : a.data(), alias == 2 ? out.data() : b.data(), out.data(), n);
        const SampleBuffer& before = alias == 1 ? a : b;
        for (std::size_t i = 0; i < kRoom; ++i) {
          const bool inside = static_cast<std::int32_t>(i) < n;
          const double expected = inside ? routine.Expected(a[i], b[i]) : before[i];
          ASSERT_NEAR(out[i], expected, kTolerance * (1.0 + std::abs(expected)))
              << routine.Name << " n=" << n << " i=" << i << " alias=" << alias;
        }
      }
    }
  }
}

TEST_P(KernelTest, DoubleRoutinesMatch) {
  const std::vector<double> a{1.5, -2.25, 3.0, 1e-9, 7.0}, b{0.5, 4.0, -1.0, 1e9, 2.0};
  std::vector<double> scaled = b, product = b, sum = b;
  std::vector<float> narrow(5, -1.0F);
  k.Mpy_D_1(-3.0, scaled.data(), 5);
  k.Mpy_D_2(a.data(), product.data(), 5);
  k.Add_D_2(a.data(), sum.data(), 5);
  k.DoubleToSingle_D_2(a.data(), narrow.data(), 4);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_DOUBLE_EQ(scaled[i], -3.0 * b[i]);
    EXPECT_DOUBLE_EQ(product[i], a[i] * b[i]);
    EXPECT_DOUBLE_EQ(sum[i], a[i] + b[i]);
    EXPECT_EQ(narrow[i], i < 4 ? static_cast<float>(a[i]) : -1.0F);
  }
}

TEST_P(KernelTest, ReductionsMatch) {
  for (const std::int32_t n : kLengths) {
    const auto v = RandomFloats(kRoom, 2.0F, static_cast<unsigned>(n + 5));
    const auto count = static_cast<std::size_t>(std::max(n, 0));
    std::vector<double> doubles(v.begin(), v.end());
    std::vector<std::int16_t> shorts(kRoom);
    std::vector<std::int32_t> ints(kRoom);
    for (std::size_t i = 0; i < kRoom; ++i) {
      shorts[i] = static_cast<std::int16_t>(v[i] * 16000.0F);
      ints[i] = static_cast<std::int32_t>(v[i] * 1e9F);
    }
    double sum = 0.0, shortSum = 0.0, intSum = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
      sum += doubles[i];
      shortSum += shorts[i];
      intSum += ints[i];
    }
    // Floats add up with up to 2048 / 16 roundings a lane of values below 260.
    EXPECT_NEAR(k.Sum_S_1(v.data(), n), sum, 1e-3) << n;
    EXPECT_NEAR(k.Sum_D_1(doubles.data(), n), sum, 1e-10) << n;
    EXPECT_EQ(k.Sum_Int16_1(shorts.data(), n), shortSum) << n;
    EXPECT_EQ(k.Sum_Int32_1(ints.data(), n), intSum) << n;
    if (count == 0) continue;
    const auto end = v.begin() + n;
    EXPECT_EQ(k.MaxValue_S(v.data(), n), *std::max_element(v.begin(), end));
    EXPECT_EQ(k.MaxIndex_S(v.data(), n), std::max_element(v.begin(), end) - v.begin());
    EXPECT_EQ(k.MaxValue_16(shorts.data(), n), *std::max_element(shorts.begin(), shorts.begin() + n));
    const auto smaller = [](float x, float y) { return std::abs(x) < std::abs(y); };
    EXPECT_EQ(k.MaxValueAbs_S(v.data(), n), std::abs(*std::max_element(v.begin(), end, smaller)));
  }
  // Of equal ones the first counts; negative peaks count by magnitude.
  SampleBuffer flat(100, -1.0F);
  EXPECT_EQ(k.MaxIndex_S(flat.data(), 100), 0);
  flat[37] = flat[71] = 5.0F;
  EXPECT_EQ(k.MaxIndex_S(flat.data(), 100), 37);
  flat[99] = -9.0F;
  EXPECT_EQ(k.MaxValueAbs_S(flat.data(), 100), 9.0F);
  EXPECT_EQ(k.MaxValue_S(flat.data(), 100), 5.0F);
}

TEST_P(KernelTest, ShiftAndRamp) {
  float v[5] = {1, 2, 3, 4, 5};
  k.ShiftVectorRight_S_1(v, 4);
  EXPECT_TRUE(std::ranges::equal(v, std::initializer_list<float>{1, 1, 2, 3, 4}));
  for (const std::int32_t n : {1, 2, 3, 480, 959}) {
    SampleBuffer ramp(960, 9.0F);
    k.VectorRamp_S_1(2.0F, -1.0F, ramp.data(), n);
    for (std::int32_t i = 0; i < n; ++i) {
      ASSERT_NEAR(ramp[static_cast<std::size_t>(i)], 2.0 - 3.0 * i / std::max(n - 1, 1), kTolerance) << n;
    }
    EXPECT_EQ(ramp[0], 2.0F);
    EXPECT_EQ(ramp[static_cast<std::size_t>(n - 1)], n > 1 ? -1.0F : 2.0F);
    EXPECT_EQ(ramp[static_cast<std::size_t>(n)], 9.0F);
  }
}

TEST_P(KernelTest, SampleFormats) {
  constexpr float kInf = std::numeric_limits<float>::infinity();
  const float in[] = {0.5F,      1.5F,      2.5F,   -0.5F, -1.5F, 32766.5F, 32767.4F,    32767.6F, 1e30F,
                      -32768.4F, -32769.0F, -1e30F, kInf,  -kInf, NAN,      0.49999997F, -0.0F,    123.0F};
  const std::int16_t expected[] = {0,      2,      2,      0,     -2,     32766, 32767, 32767, 32767,
                                   -32768, -32768, -32768, 32767, -32768, 0,     0,     0,     123};
  // Run from two places, so that vector body and tail both see every value.
  SampleBuffer twice(in, in + std::size(in));
  twice.insert(twice.end(), in, in + std::size(in));
  std::vector<std::int16_t> out(2 * std::size(in));
  k.FloatToInt16_S_2(twice.data(), out.data(), static_cast<std::int32_t>(out.size()));
  for (std::size_t i = 0; i < out.size(); ++i) EXPECT_EQ(out[i], expected[i % std::size(in)]) << twice[i];

  SampleBuffer back(out.size());
  k.Int16ToFloat_S_2(out.data(), back.data(), static_cast<std::int32_t>(out.size()));
  for (std::size_t i = 0; i < out.size(); ++i) EXPECT_EQ(back[i], out[i]);
}

TEST_P(KernelTest, PairsComeApartAndTogether) {
  for (const std::int32_t n : {0, 2, 6, 34, 4096}) {
    const auto size = static_cast<std::size_t>(n);
    const SampleBuffer in = RandomFloats(size, 30000.0F, 3);
    std::vector<std::int16_t> in16(size), a16(size), b16(size), joined16(size);
    for (std::size_t i = 0; i < size; ++i) in16[i] = static_cast<std::int16_t>(in[i]);
    SampleBuffer a(size), b(size), joined(size);
    k.DeInterlace_S_2(in.data(), a.data(), b.data(), n);
    k.DeInterlace_16_2(in16.data(), a16.data(), b16.data(), n);
    for (std::size_t i = 0; i < size / 2; ++i) {
      ASSERT_EQ(a[i], in[2 * i]);
      ASSERT_EQ(b[i], in[2 * i + 1]);
    }
    k.Interlace_16_2(a16.data(), b16.data(), joined16.data(), n);
    k.InterlaceScaled_S_2(0.5F, a.data(), b.data(), joined.data(), n);
    EXPECT_EQ(joined16, in16);
    for (std::size_t i = 0; i < size; ++i) ASSERT_EQ(joined[i], 0.5F * in[i]);
  }
}

TEST_P(KernelTest, PolarFormIsGoodToAMillionthInAllQuadrants) {
  // A circle in steps of 0.01 degree, at three sizes, and the axes.
  for (const double radius : {1e-15, 1.0, 3e7}) {
    SampleBuffer re, im;
    for (int i = 0; i < 36000; ++i) {
      re.push_back(static_cast<float>(radius * std::cos(i * std::numbers::pi / 18000)));
      im.push_back(static_cast<float>(radius * std::sin(i * std::numbers::pi / 18000)));
    }
    const float r = static_cast<float>(radius);
    for (const auto& [x, y] : {std::pair{r, 0.0F}, {0.0F, r}, {-r, 0.0F}, {0.0F, -r}, {r, r}, {-r, -r}}) {
      re.push_back(x);
      im.push_back(y);
    }
    const auto n = static_cast<std::int32_t>(re.size());
    SampleBuffer magnitude(re.size()), phase(re.size()), backRe(re.size()), backIm(re.size());
    k.CartToPolar_S_2(re.data(), im.data(), magnitude.data(), phase.data(), n);
    k.PolarToCart_S_2(magnitude.data(), phase.data(), backRe.data(), backIm.data(), n);
    for (std::size_t i = 0; i < re.size(); ++i) {
      const double hypot = std::hypot(double(re[i]), double(im[i]));
      ASSERT_NEAR(phase[i], std::atan2(double(im[i]), double(re[i])), 1e-6) << i;
      ASSERT_NEAR(magnitude[i] / hypot, 1.0, 1e-6) << i;
      ASSERT_NEAR(backRe[i], re[i], 2e-6 * hypot) << i;
      ASSERT_NEAR(backIm[i], im[i], 2e-6 * hypot) << i;
    }
  }
  float zero = 0.0F, magnitude = 1.0F, phase = 1.0F;
  k.CartToPolar_S_2(&zero, &zero, &magnitude, &phase, 1);
  EXPECT_EQ(magnitude, 0.0F);
  EXPECT_EQ(phase, 0.0F);
}

TEST_P(KernelTest, LogarithmsAreGoodToAMillionth) {
  for (const std::int32_t n : {1, 15, 16, 33, 2048}) {
    SampleBuffer in(kRoom), out(kRoom, -7.0F);
    for (std::size_t i = 0; i < in.size(); ++i)
      in[i] = static_cast<float>((i % 2 == 0 ? 1.0 : -1.0) * std::pow(10.0, double(i) / 27.5 - 37.0));
    k.Log10_S_2(in.data(), out.data(), n);
    for (std::size_t i = 0; i < std::size_t(n); ++i) {
      // The exponent's share rounds twice: 8e-6 at the ends of the range.
      const double expected = std::log10(std::fabs(double(in[i])));
      ASSERT_NEAR(out[i], expected, kTolerance + 2e-7 * std::fabs(expected)) << i;
    }
    EXPECT_EQ(out[std::size_t(n)], -7.0F);
  }
  float ends[] = {0.0F, 1.0F, 10.0F};
  k.Log10_S_2(ends, ends, 3);
  EXPECT_NEAR(ends[0], -37.93F, 0.01F);
  EXPECT_EQ(ends[1], 0.0F);
  EXPECT_FLOAT_EQ(ends[2], 1.0F);
}

TEST_P(KernelTest, SpectraMultiplyAsComplexNumbers) {
  for (const std::int32_t n : {0, 1, 5, 16, 31, 2048}) {
    const SampleBuffer re = RandomFloats(kRoom, 2, 1), im = RandomFloats(kRoom, 2, 2);
    const SampleBuffer fre = RandomFloats(kRoom, 2, 3), fim = RandomFloats(kRoom, 2, 4);
    SampleBuffer inRe = re, inIm = im, outRe = re, outIm = im;
    k.Convolve_Cart_S_2(fre.data(), fim.data(), inRe.data(), inIm.data(), n);
    k.Filter_S_Cart_2(re.data(), im.data(), fre.data(), fim.data(), outRe.data(), outIm.data(), n);
    for (std::size_t i = 0; i < kRoom; ++i) {
      std::complex<double> expected{re[i], im[i]};
      if (static_cast<std::int32_t>(i) < n) expected *= std::complex<double>{fre[i], fim[i]};
      for (const auto& got : {std::complex<double>{inRe[i], inIm[i]}, {outRe[i], outIm[i]}}) {
        ASSERT_NEAR(std::abs(got - expected), 0.0, 8 * kTolerance) << i;
      }
    }
  }
}

TEST_P(KernelTest, QuarterRateMixerAndOscillator) {
  constexpr std::int32_t n = 64;
  const SampleBuffer in = RandomFloats(n, 2.0F, 9);
  SampleBuffer i(n), q(n);
  k.MixerIQ_S_S_1(in.data(), i.data(), q.data(), n);
  constexpr float kCos[] = {1, 0, -1, 0}, kSin[] = {0, 1, 0, -1};
  for (std::size_t s = 0; s < n; ++s) {
    EXPECT_EQ(i[s], in[s] * kCos[s % 4]);
    EXPECT_EQ(q[s], in[s] * kSin[s % 4]);
  }

  // Tables that name their own entries show the accumulator: it moves before the first look-up and wraps.
  SampleBuffer names(65536), negatives(65536), sine(n), cosine(n);
  for (std::size_t e = 0; e < names.size(); ++e) names[e] = static_cast<float>(e);
  for (std::size_t e = 0; e < names.size(); ++e) negatives[e] = -static_cast<float>(e);
  constexpr std::uint32_t kStep = 268435456U + 12345U, kMask = (1U << 30) - 1;
  std::uint32_t accumulator = kMask - 5, expected = accumulator;
  for (int block = 0; block < 3; ++block) {
    accumulator =
        k.MakeFreq(accumulator, kStep, names.data(), negatives.data(), sine.data(), cosine.data(), n);
    for (std::size_t s = 0; s < n; ++s) {
      expected = (expected + kStep) & kMask;
      ASSERT_EQ(sine[s], static_cast<float>(expected >> 14));
      ASSERT_EQ(cosine[s], -sine[s]);
    }
  }
  EXPECT_EQ(accumulator, expected);
  EXPECT_EQ(k.MakeFreq(7, kStep, names.data(), names.data(), sine.data(), cosine.data(), 0), 7U);
}

TEST_P(KernelTest, SlidingSums) {
  for (const std::int32_t n : {0, 1, 33, 2048}) {
    SampleBuffer in = RandomFloats(kRoom + 130, 2.0F, 11), out(kRoom, -7.0F),
                 coefs = RandomFloats(128, 1.0F, 4);
    k.sHilbert(in.data(), coefs.data(), out.data(), 128, n);
    for (std::int32_t m = 0; m < n; ++m) {
      double expected = 0.0;
      for (std::int32_t tap = 1; tap < 128; tap += 2) {
        expected += double(coefs[std::size_t(tap)]) * double(in[std::size_t(128 + m - tap)]);
      }
      ASSERT_NEAR(out[std::size_t(m)], expected, 2e-5) << m;  // 64 products of up to 2 each
    }
    EXPECT_EQ(out[std::size_t(n)], -7.0F);
    k.Sqr_S_1(in.data(), static_cast<std::int32_t>(in.size()));
    k.MovingRoot_S_2(in.data(), out.data(), 6, 1.0F / 6.0F, n);
    for (std::size_t m = 0; m < std::size_t(n); ++m) {
      double sum = 0.0;
      for (std::size_t w = 0; w < 6; ++w) sum += double(in[m + w]);
      ASSERT_NEAR(out[m], std::sqrt(sum) / 6.0, kTolerance) << m;
    }
  }
}

TEST_P(KernelTest, TransformsMatchADoubleTransform) {
  for (std::int32_t order = 0; order <= 14; ++order) {
    const std::int32_t n = 1 << order;
    const auto size = static_cast<std::size_t>(n);
    FftPlan plan;
    SampleBuffer twiddles, outRe(size), outIm(size), workRe(size), workIm(size);
    plan.Build(n, order, twiddles);
    const SampleBuffer re = RandomFloats(size, 1, 5), im = RandomFloats(size, 1, 6);
    ComplexVector in(size);
    for (std::size_t i = 0; i < size; ++i) in[i] = {re[i], im[i]};
    k.FFT_S_2(plan, re.data(), im.data(), outRe.data(), outIm.data(), workRe.data(), workIm.data());
    const ComplexVector expected = order <= 7 ? DirectTransform(in) : FastTransform(in);
    // 32-bit floats have their rounding at -150 dB; it grows by some 3 dB a pass.
    EXPECT_LT(ErrorDecibels(
                  [&](std::size_t i) {
                    return std::complex<double>{outRe[i], outIm[i]};
                  },
                  expected),
              -130.0)
        << order;
  }
}

TEST(VectorKernel, MovesAndFills) {
  const float in[] = {1, 2, 3};
  const std::int16_t in16[] = {4, 5, 6};
  float out[] = {9, 9, 9};
  std::int16_t out16[] = {9, 9, 9};
  CopyVector_S(in, out, 2);
  CopyVector_16(in16, out16, 2);
  EXPECT_TRUE(std::ranges::equal(out, std::initializer_list<float>{1, 2, 9}));
  EXPECT_TRUE(std::ranges::equal(out16, std::initializer_list<std::int16_t>{4, 5, 9}));
  ZeroVector_S(out, 1);
  ZeroVector_16(out16, 1);
  CopyVector_S(in, out, -1);
  ZeroVector_16(out16, -1);
  EXPECT_TRUE(std::ranges::equal(out, std::initializer_list<float>{0, 2, 9}));
  EXPECT_TRUE(std::ranges::equal(out16, std::initializer_list<std::int16_t>{0, 5, 9}));
  float re[8] = {0, 1, 2, 3, 4, 9, 9, 9}, im[8] = {0, 5, 6, 7, 8, 9, 9, 9};
  MakeNegFreq_S_1_P(re, im, 3);
  EXPECT_TRUE(std::ranges::equal(re, std::initializer_list<float>{0, 1, 2, 3, 4, 3, 2, 1}));
  EXPECT_TRUE(std::ranges::equal(im, std::initializer_list<float>{0, 5, 6, 7, 8, -7, -6, -5}));
}

}  // namespace
}  // namespace quorl::test
