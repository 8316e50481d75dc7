#include "sound/TestTone.h"

#include <gtest/gtest.h>

#include "signals/Measures.h"
#include "sound/InputCapture.h"
#include "sound/SoundBench.h"

namespace quorl {
namespace {

using std::chrono::milliseconds;

TEST(TestTone, IsASecondOfOneKilohertzTwentyDecibelsDownAndFreesItsDevice) {
  SoundBench bench;
  TestTone tone(bench.System, bench.Queue);
  int ends = 0;
  tone.OnEnd = [&ends] { ++ends; };
  for (int round = 1; round <= 2; ++round) {
    bench.Sink.Samples.clear();
    ASSERT_FALSE(tone.Start(1));
    ASSERT_FALSE(tone.Start(1));  // a second press plays no second one
    bench.Queue.AdvanceBy(milliseconds(2000));
    EXPECT_EQ(ends, round);
    EXPECT_FALSE(tone.IsPlaying());
    const auto& heard = bench.Sink.Samples;
    ASSERT_GT(heard.size(), 48000U);
    EXPECT_LT(heard.size(), 70000U);  // the device runs no longer
    const auto begin = std::find_if(heard.begin(), heard.end(), [](auto s) { return s != 0; });
    const std::span<const std::int16_t> steady(begin + 4800, 38400);
    EXPECT_NEAR(test::LineAt(steady, 1000), 3276.7, 10);
    EXPECT_NEAR(test::RootMeanSquare(steady), 3276.7 / std::sqrt(2), 5);  // nothing else is in it
    const auto sounding = std::count_if(heard.begin(), heard.end(), [](auto s) { return std::abs(s) > 0; });
    EXPECT_NEAR(static_cast<double>(sounding), 48000 * 47 / 48.0, 1200);
    EXPECT_LT(std::abs(begin[5]), 200);  // it fades in
  }
}

TEST(TestTone, EndsWhereItsDeviceFailsVanishesOrStandsStill) {
  SoundBench bench;
  TestTone tone(bench.System, bench.Queue);
  int ends = 0;
  tone.OnEnd = [&ends] { ++ends; };
  EXPECT_TRUE(tone.Start(7));
  EXPECT_FALSE(tone.IsPlaying());
  ASSERT_FALSE(tone.Start(1));
  bench.Queue.AdvanceBy(milliseconds(300));
  bench.System.Unplug("Loudspeaker");
  bench.Queue.AdvanceBy(milliseconds(5000));
  EXPECT_FALSE(tone.IsPlaying());
  EXPECT_EQ(ends, 1);
  bench.System.Plug("Loudspeaker");
  ASSERT_FALSE(tone.Start(1));
  tone.Stop();
  EXPECT_FALSE(tone.IsPlaying());
  EXPECT_EQ(ends, 2);
  bench.Queue.AdvanceBy(milliseconds(5000));
  EXPECT_EQ(ends, 2);
}

TEST(InputCapture, BringsBothChannelsUntilItIsClosedOrTheDeviceIsGone) {
  SoundBench bench;
  std::int64_t blocks = 0;
  std::int16_t left = 0, right = 0;
  InputCapture capture(bench.System, [&](const std::int16_t* l, const std::int16_t* r, std::int32_t n) {
    ASSERT_EQ(n, InputCapture::kBlockSamples);
    left = l[0];
    right = r[0];
    ++blocks;
  });
  EXPECT_TRUE(capture.Open(2));
  ASSERT_FALSE(capture.Open(1));
  bench.RunBlocks(12);
  EXPECT_EQ(blocks, 3);
  EXPECT_EQ(left, CountingSource::Value(2 * InputCapture::kBlockSamples));
  EXPECT_EQ(right, -left);
  capture.Close();
  bench.RunBlocks(12);
  EXPECT_EQ(blocks, 3);
  ASSERT_FALSE(capture.Open(1));
  bench.System.Unplug("Line In");
  EXPECT_FALSE(capture.IsRunning());
}

}  // namespace
}  // namespace quorl
