// The demodulators' own arithmetic, with filters that pass everything.
#include "dsp/chain/Demodulators.h"

#include <gtest/gtest.h>

#include "dsp/Signals.h"

namespace quorl::test {
namespace {

constexpr std::size_t kBlock = SamplesPerEvent;
constexpr std::size_t kRun = 3;

class DemodulatorsTest : public testing::Test {
 protected:
  DemodulatorsTest() {
    bank.Initialise();
    std::vector<float> pass(kBlock);
    pass[0] = 1.0F;
    for (clsFFTFilter* filter : {&bank.AFFilter, &bank.SSBFilterI, &bank.SSBFilterQ}) {
      filter->PutFilterTCoeffs_S(pass.data());
    }
  }

  // Runs `demodulate` over noise in blocks, in buffers with room for the filters' segments.
  template <typename F>
  SampleBuffer Run(F demodulate) {
    SampleBuffer all;
    for (std::size_t at = 0; at < kRun * kBlock; at += kBlock) {
      SampleBuffer i(2 * kBlock), q(2 * kBlock), out(2 * kBlock);
      std::copy_n(&inI[at], kBlock, i.data());
      std::copy_n(&inQ[at], kBlock, q.data());
      demodulate(i.data(), q.data(), out.data());
      all.insert(all.end(), out.begin(), out.begin() + kBlock);
    }
    return all;
  }

  KernelSettings settings;
  FilterBank bank{settings};
  Demodulators demodulators{bank};
  const SampleBuffer inI = RandomFloats(kRun * kBlock, 1000.0F, 1),
                     inQ = RandomFloats(kRun * kBlock, 1000.0F, 2);
};

// The pass-all filters' transforms round at a few millionths of the block's level.
constexpr double kAudioTolerance = 5e-3;

TEST_F(DemodulatorsTest, BCTakesTheRootOfSixSquaresAcrossBlocks) {
  const SampleBuffer out = Run([&](float* i, float*, float* o) { demodulators.DemodBC(i, o, kBlock); });
  for (std::size_t k = 0; k < out.size(); ++k) {
    double sum = 0.0;
    for (std::size_t w = 0; w < 6 && w <= k; ++w) sum += double(inI[k - w]) * double(inI[k - w]);
    ASSERT_NEAR(out[k], std::sqrt(sum) / 6.0, kAudioTolerance) << k;
  }
}

TEST_F(DemodulatorsTest, FMFoldsThePhaseStepAroundTheCarriersQuarterTurn) {
  const SampleBuffer out = Run([&](float* i, float* q, float* o) { demodulators.DemodFM(i, q, o); });
  double last = 0.0;
  for (std::size_t k = 0; k < out.size(); ++k) {
    const double phase = std::atan2(double(inQ[k]), double(inI[k]));
    // A millionth of a radian in each phase, times 4096, and the filter's rounding of steps up to 19000.
    ASSERT_NEAR(out[k], 4096.0 * (std::numbers::pi / 2 - std::abs(phase - last)), 0.05) << k;
    last = phase;
  }
}

TEST_F(DemodulatorsTest, AMIsTheEnvelopeAndASidebandTheSumOrDifference) {
  const SampleBuffer am = Run([&](float* i, float* q, float* o) { demodulators.DemodAM(i, q, o); });
  const SampleBuffer sum = Run([&](float* i, float* q, float* o) { demodulators.DemodSSB(i, q, o, true); });
  const SampleBuffer difference =
      Run([&](float* i, float* q, float* o) { demodulators.DemodSSB(i, q, o, false); });
  for (std::size_t k = 0; k < am.size(); ++k) {
    ASSERT_NEAR(am[k], std::hypot(inI[k], inQ[k]), kAudioTolerance) << k;
    ASSERT_NEAR(sum[k], inI[k] + inQ[k], kAudioTolerance) << k;
    ASSERT_NEAR(difference[k], inI[k] - inQ[k], kAudioTolerance) << k;
  }
}

}  // namespace
}  // namespace quorl::test
