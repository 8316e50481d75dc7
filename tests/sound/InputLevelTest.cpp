#include "sound/InputLevel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>
#include <random>
#include <vector>

#include "state/InputBand.h"

namespace quorl {
namespace {

using Fault = InputLevel::Fault;
using Wave = std::function<double(double seconds)>;

Wave Tone(double amplitude, double degrees = 0) {
  return [=](double seconds) {
    return amplitude * std::sin(2 * std::numbers::pi * (997 * seconds + degrees / 360));
  };
}

Wave Noise(unsigned seed, double amplitude) {
  return [random = std::mt19937(seed),
          spread = std::normal_distribution<double>(0, amplitude)](double) mutable { return spread(random); };
}

void Feed(InputLevel& level, Wave left, Wave right, double seconds) {
  constexpr int kBlock = 2048;
  std::vector<std::int16_t> l(kBlock), r(kBlock);
  int sample = 0;
  for (int block = 0; block < seconds * 48000 / kBlock; ++block) {
    for (std::size_t i = 0; i < kBlock; ++i, ++sample) {
      l[i] = static_cast<std::int16_t>(std::lround(left(sample / 48000.0)));
      r[i] = static_cast<std::int16_t>(std::lround(right(sample / 48000.0)));
    }
    level.Take(l.data(), r.data(), kBlock);
  }
}

TEST(InputLevel, APeakRisesAtOnceAndFallsTwentyDecibelsASecond) {
  InputLevel level;
  EXPECT_FALSE(level.IsHeard());
  Feed(level, Tone(2000), Tone(20000, 90), 0.04);
  EXPECT_NEAR(level.Peak(0), 2000, 3);
  EXPECT_NEAR(level.Peak(1), 20000, 10);
  EXPECT_EQ(InputBandOf(level.Peak(0)), InputBand::Low);
  EXPECT_EQ(InputBandOf(level.Peak(1)), InputBand::High);
  Feed(level, Tone(0), Tone(0), 1.0);
  EXPECT_NEAR(level.Peak(1), 2000, 130);  // a block is 0.85 dB
  // The most negative sample is a peak, too.
  const std::int16_t lowest = -32768, none = 0;
  level.Take(&none, &lowest, 1);
  EXPECT_EQ(level.Peak(1), 32768);
  level.Rest();
  EXPECT_EQ(level.Peak(1), 0);
}

TEST(InputLevel, TellsAPairFromASilentChannelAndFromOneSignalTwice) {
  const auto fault = [](Wave left, Wave right) {
    InputLevel level;
    Feed(level, std::move(left), std::move(right), 1.1);
    return level.SignalFault();
  };
  const auto plus = [](Wave a, Wave b) {
    return [a, b](double seconds) mutable { return a(seconds) + b(seconds); };
  };
  EXPECT_EQ(fault(Tone(3000), Tone(3000, 90)), Fault::None);
  EXPECT_EQ(fault(Noise(1, 50), Noise(2, 40)), Fault::None);
  EXPECT_EQ(fault(Tone(0), Tone(0)), Fault::NoSignal);
  EXPECT_EQ(fault(Tone(0.9), Tone(0.9)), Fault::NoSignal);
  EXPECT_EQ(fault(Noise(1, 5), Tone(3000)), Fault::LeftSilent);
  EXPECT_EQ(fault(Tone(3000), Noise(1, 5)), Fault::RightSilent);
  // A mono cable, one with a weaker contact, one whose second contact is turned round.
  for (const double right : {3000.0, 2000.0, -3000.0}) {
    EXPECT_EQ(fault(plus(Tone(3000), Noise(1, 10)), plus(Tone(right), Noise(2, 10))), Fault::Alike) << right;
  }
  // A constant in both is no signal in common.
  EXPECT_EQ(
      fault(plus(Noise(1, 20), [](double) { return 300; }), plus(Noise(2, 20), [](double) { return 300; })),
      Fault::None);
}

}  // namespace
}  // namespace quorl
