// The strongest carrier's distance from the IF's centre, against tones whose frequency is known.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "dsp/chain/BeatMeter.h"

namespace quorl::test {
namespace {

struct Tone {
  double Hertz, Amplitude, Quadrature = 0;  // Quadrature: 1 where Q runs ahead, -1 where it runs behind
};

class BeatMeterTest : public testing::Test {
 protected:
  void Play(const std::vector<Tone>& tones, double noise = 30, bool both = false, int blocks = 20) {
    std::normal_distribution<double> hiss(0, noise);
    std::vector<std::int16_t> i(SamplesPerEvent), q(SamplesPerEvent);
    for (int block = 0; block < blocks; ++block) {
      for (std::size_t n = 0; n < i.size(); ++n, ++sample_) {
        double left = hiss(random_), right = hiss(random_);
        for (const Tone& tone : tones) {
          const double phase = 2 * std::numbers::pi * std::fmod(tone.Hertz * sample_ / FSampling, 1.0);
          left += tone.Amplitude * std::cos(phase);
          right -= tone.Quadrature * tone.Amplitude * std::sin(phase);
        }
        i[n] = static_cast<std::int16_t>(std::lround(left));
        q[n] = static_cast<std::int16_t>(std::lround(right));
      }
      Meter.Take(i.data(), both ? q.data() : nullptr);
    }
  }

  KernelSettings Settings;
  BeatMeter Meter{Settings};

 private:
  double sample_ = 0;
  std::mt19937 random_{7};
};

TEST_F(BeatMeterTest, ReadsACarrierToATenthOfAHertz) {
  Meter.SetActive(true);
  for (const double offset : {0.0, 0.04, -13.37, 385.1, -1234.5, 1990.0}) {
    Meter.Restart();
    Play({{IFCentre + offset, 3000}, {IFCentre + offset + 400, 900}, {IFCentre + 2600, 9000}});
    ASSERT_TRUE(Meter.Offset()) << offset;
    EXPECT_NEAR(*Meter.Offset(), offset, 0.05);
  }
}

TEST_F(BeatMeterTest, SaysNothingWithoutACarrierOrBeforeItHasHeardEnough) {
  Play({{IFCentre, 3000}});
  EXPECT_FALSE(Meter.Offset()) << "not active";
  Meter.SetActive(true);
  Play({{IFCentre, 3000}}, 30, false, 5);
  EXPECT_FALSE(Meter.Offset()) << "a fifth of a second";
  Play({}, 300, false, 40);
  EXPECT_FALSE(Meter.Offset()) << "noise";
  Play({{IFCentre - 6000, 9000}, {IFCentre + 4300, 9000}});
  EXPECT_FALSE(Meter.Offset()) << "carriers beyond its reach";
  Play({{IFCentre + 50, 3000}});
  EXPECT_TRUE(Meter.Offset());
  Meter.Restart();
  EXPECT_FALSE(Meter.Offset());
}

TEST_F(BeatMeterTest, OnTwoChannelsTheOtherSideOfTheOscillatorIsNoCarrier) {
  Meter.SetActive(true);
  const std::vector<Tone> tones{{IFCentre + 100, 1000, 1}, {IFCentre - 700, 4000, -1}};
  Play(tones, 30, true);
  ASSERT_TRUE(Meter.Offset());
  EXPECT_NEAR(*Meter.Offset(), 100, 0.05);
  Play(tones, 30, false);
  EXPECT_NEAR(*Meter.Offset(), -700, 0.05) << "one channel can't tell the sides";
}

}  // namespace
}  // namespace quorl::test
