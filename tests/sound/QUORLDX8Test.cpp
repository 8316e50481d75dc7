#include "sound/QUORLDX8.h"

#include <gtest/gtest.h>

#include "sound/FindDevice.h"
#include "sound/SoundBench.h"

namespace quorl {
namespace {

using std::chrono::milliseconds;

TEST(QUORLDX8, FirstBlockComesOneBlockPeriodAfterTheStartAndPlaybackThreeBlocksIn) {
  SoundBench bench;
  bench.Queue.AdvanceBy(milliseconds(123));
  ASSERT_FALSE(bench.Sound.StartSound());
  EXPECT_EQ(bench.Sound.OutDelay, 3);
  bench.Queue.AdvanceBy(milliseconds(42));
  EXPECT_EQ(bench.Pump.FirstSamples.size(), 0U);
  bench.Queue.AdvanceBy(milliseconds(1));
  EXPECT_EQ(bench.Pump.FirstSamples, std::vector<std::int16_t>{CountingSource::Value(0)});

  bench.Queue.AdvanceBy(milliseconds(85));  // 128 ms: the third block is complete
  EXPECT_EQ(bench.Pump.FirstSamples.size(), 3U);
  EXPECT_EQ(bench.Sound.OutDelay, 0);
  EXPECT_TRUE(bench.Pump.DataOutBytes.empty());
  EXPECT_EQ(bench.Sound.UnreadBlocks(), 3);
  bench.Queue.AdvanceBy(milliseconds(43));
  EXPECT_EQ(bench.Pump.DataOutBytes, std::vector<std::int32_t>{4096});
}

TEST(QUORLDX8, PlaysEverySampleOnceInOrderSevenBlocksAfterItWasCaptured) {
  SoundBench bench;
  bench.Sound.StartSound();
  bench.Queue.AdvanceBy(milliseconds(60000));
  // 60 s at 48000 Hz are 1406 blocks and a quarter: the block clock does not drift against the wall.
  EXPECT_EQ(bench.Pump.FirstSamples.size(), 1406U);
  const auto& heard = bench.Sink.Samples;
  ASSERT_GT(heard.size(), 1400U * kBlock);
  // Three blocks until playback starts, four through the playback ring; the sink's own time starts after the
  // three.
  for (std::size_t i = 0; i < heard.size(); ++i) {
    const auto frame = static_cast<std::int64_t>(i) - 4 * kBlock;
    ASSERT_EQ(heard[i], frame < 0 ? 0 : CountingSource::Value(frame)) << i;
  }
  EXPECT_EQ(bench.System.Statistics().Underruns, 0);
  EXPECT_EQ(bench.System.Statistics().Overruns, 0);
  EXPECT_EQ(bench.Sound.Recoveries().Overruns + bench.Sound.Recoveries().Starvations, 0);
}

TEST(QUORLDX8, RingHasEightSlotsThatStepByTheBytesOfABlock) {
  SoundBench bench;
  bench.Sound.StartSound();
  std::vector<std::int16_t> block(kBlock, 7);
  for (int i = 1; i <= 7; ++i) {
    bench.Sound.Output(block.data(), nullptr);
    EXPECT_EQ(bench.Sound.OutBufferWritePtr(), i * 4096);
    EXPECT_FALSE(bench.Sound.OutBufferWritePtrWrap());
  }
  bench.Sound.Output(block.data(), nullptr);
  EXPECT_EQ(bench.Sound.OutBufferWritePtr(), 0);
  EXPECT_TRUE(bench.Sound.OutBufferWritePtrWrap());

  // Running already: a second start leaves pointers and delay alone.
  bench.Sound.OutDelay = 2;
  EXPECT_FALSE(bench.Sound.StartSound());
  EXPECT_TRUE(bench.Sound.OutBufferWritePtrWrap());
  EXPECT_EQ(bench.Sound.OutDelay, 2);
  EXPECT_EQ(bench.Sound.UnreadBlocks(), 8);
}

TEST(QUORLDX8, ChannelCounts) {
  SoundBench bench;
  bench.Sound.NoChannelsIn = 1;
  bench.Sound.NoChannelsOut = 2;
  bench.Sound.SetSamplesPerEvent(kBlock);
  bench.Pump.OnBlock = [](std::int16_t* i, std::int16_t* q, std::int32_t n) {
    ASSERT_EQ(n, kBlock);
    for (int k = 0; k < n; ++k) ASSERT_EQ(i[k], q[k]);
  };
  bench.Sound.StartSound();
  bench.RunBlocks(12);
  EXPECT_EQ(bench.Sound.OutBufferWritePtr(), 4 * 8192);
  ASSERT_GT(bench.Sink.Samples.size(), 5U * kBlock);
  EXPECT_EQ(bench.Sink.Samples[4 * kBlock + 5], CountingSource::Value(5));
  EXPECT_TRUE(bench.Dialogs.Messages.empty());

  bench.Sound.NoChannelsOut = 3;
  std::vector<std::int16_t> block(kBlock);
  bench.Sound.Output(block.data(), block.data());
  EXPECT_EQ(bench.Sound.OutBufferWritePtr(), 4 * 8192);
  EXPECT_EQ(bench.Sound.LastErr, 1001);
  bench.Sound.LastErr = 0;
  bench.Sound.NoChannelsIn = 0;
  bench.Sound.Capture(block.data(), block.data());
  EXPECT_EQ(bench.Sound.LastErr, 1001);
  ASSERT_EQ(bench.Dialogs.Messages.size(), 2U);
  for (const auto& message : bench.Dialogs.Messages) {
    EXPECT_EQ(message.Text, "Unknown Number of channels, only Mono or Stereo allowed");
  }
}

TEST(QUORLDX8, AttenuationReadsInDecibelsAndPlaysInHundredths) {
  SoundBench bench;
  struct Case {
    std::int32_t Set, Read;
    double Gain;
  };
  constexpr Case kCases[] = {{5000, 5000, 1.0},       {0, 0, 1.0},           {-2550, -26, 0.0530884},
                             {-2450, -24, 0.0595662}, {-600, -6, 0.5011872}, {-40000, -100, 0.0}};
  EXPECT_EQ(bench.Sound.OutputAttenuation(), 5000);
  bench.Pump.OnBlock = [](std::int16_t* i, std::int16_t*, std::int32_t n) {
    std::fill_n(i, n, std::int16_t{30000});
  };
  bench.Sound.StartSound();
  bench.RunBlocks(10);
  for (const Case& item : kCases) {
    bench.Sound.SetOutputAttenuation(item.Set);
    EXPECT_EQ(bench.Sound.OutputAttenuation(), item.Read) << item.Set;
    bench.RunBlocks(3);
    EXPECT_NEAR(bench.Sink.Samples.back(), 30000 * item.Gain, 1.0) << item.Set;
  }
}

TEST(QUORLDX8, APumpThatGivesNothingStarvesTheRingWhichStartsOver) {
  SoundBench bench;
  bench.Sound.StartSound();
  bench.RunBlocks(20);
  bench.Pump.Forward = false;
  int blocks = 0;
  for (; bench.Sound.Recoveries().Starvations == 0 && blocks < 30; ++blocks) bench.RunBlocks(1);
  // The reader passes the writer after the three or four blocks in the ring, and is caught at its next wrap.
  EXPECT_LE(blocks, 4 + 8);
  EXPECT_EQ(bench.Sound.OutBufferReadPtr(), 0);
  EXPECT_TRUE(bench.Sound.OutBufferReadPtrWrap());  // stays until the next block is fed
  EXPECT_EQ(bench.Sound.OutDelay, 3);
  bench.Pump.Forward = true;
  bench.RunBlocks(3);
  EXPECT_EQ(bench.Sound.OutDelay, 0);
  bench.RunBlocks(30);
  EXPECT_EQ(bench.Sound.Recoveries().Starvations, 1);
  EXPECT_EQ(bench.Sound.Recoveries().Overruns, 0);
  EXPECT_GE(bench.Sound.UnreadBlocks(), 3);
  EXPECT_LE(bench.Sound.UnreadBlocks(), 4);
  // Everything that was handed over is heard once: nothing lost, nothing twice. The pump left `blocks` out.
  const auto gaps = FindGaps(bench.Sink.Samples);
  EXPECT_GE(gaps.size(), 1U);
  std::int64_t last = 0;
  for (const std::int16_t sample : bench.Sink.Samples) {
    if (sample == 0) continue;
    const std::int64_t step = (sample - last + 32000) % 32000;
    ASSERT_TRUE(step == 1 || step == blocks * kBlock % 32000 + 1) << sample << " after " << last;
    last = sample;
  }
}

TEST(QUORLDX8, MoreThanEightUnreadBlocksStartOver) {
  SoundBench bench;
  bench.Sound.StartSound();
  bench.RunBlocks(20);
  std::vector<std::int16_t> block(kBlock, 7);
  while (bench.Sound.UnreadBlocks() < 8) bench.Sound.Output(block.data(), nullptr);
  bench.RunBlocks(1);  // a block comes and a block goes; order: capture first
  EXPECT_EQ(bench.Sound.Recoveries().Overruns, 1);
  EXPECT_EQ(bench.Sound.OutDelay, 3);
  EXPECT_EQ(bench.Sound.UnreadBlocks(), 0);
  bench.RunBlocks(10);
  EXPECT_EQ(bench.Sound.OutDelay, 0);
  EXPECT_EQ(bench.Sound.Recoveries().Overruns, 1);
}

class QUORLDX8Drift : public testing::TestWithParam<double> {};

TEST_P(QUORLDX8Drift, EndsInARecoveryNowAndThenAndNeverInNoise) {
  SoundBench bench;
  bench.System.SetPlaybackDrift(GetParam());
  bench.Sound.StartSound();
  bench.Queue.AdvanceBy(std::chrono::minutes(10));
  const auto recoveries = bench.Sound.Recoveries();
  EXPECT_GE(recoveries.Overruns + recoveries.Starvations, 1);
  EXPECT_EQ(GetParam() < 0 ? recoveries.Starvations : recoveries.Overruns, 0);
  // Within sound, each sample follows the one before: steps happen only around silence.
  std::int64_t steps = 0;
  const auto& heard = bench.Sink.Samples;
  for (std::size_t i = 1; i < heard.size(); ++i) {
    if (heard[i] == 0 || heard[i - 1] == 0) continue;
    if (heard[i] != heard[i - 1] % 32000 + 1) ++steps;
  }
  EXPECT_LE(steps, recoveries.Overruns + recoveries.Starvations);
}

INSTANTIATE_TEST_SUITE_P(PartsPerMillion, QUORLDX8Drift, testing::Values(-1000.0, 1000.0));

TEST(QUORLDX8, ADeviceThatFailsIsToldOnceAndAnotherCanBeChosen) {
  SoundBench bench;
  bench.System.RefusePlayback(Error{-2147221164, "class not registered"});
  const Failure failure = bench.Sound.StartSound();
  ASSERT_TRUE(failure);
  EXPECT_EQ(bench.Sound.LastErr, -2147221164);
  EXPECT_FALSE(bench.Sound.Prepared());
  EXPECT_FALSE(bench.Sound.InAction);
  ASSERT_EQ(bench.Dialogs.Messages.size(), 1U);
  EXPECT_EQ(bench.Dialogs.Messages[0].Text,
            "Unable to start DirectSound. Check proper sound card installation");

  bench.System.RefusePlayback(std::nullopt);
  bench.Sound.CurrentCaptureDevice = 2;  // saved, and gone
  EXPECT_TRUE(bench.Sound.StartSound());
  EXPECT_EQ(bench.Dialogs.Messages.size(), 2U);
  bench.Sound.CurrentCaptureDevice = 1;
  EXPECT_FALSE(bench.Sound.StartSound());
  EXPECT_EQ(bench.Sound.LastErr, 0);
  bench.RunBlocks(8);
  EXPECT_EQ(bench.Pump.FirstSamples.size(), 8U);
}

TEST(QUORLDX8, AVanishedDeviceComesBackWithStopAndStart) {
  SoundBench bench;
  std::vector<std::string> lost;
  bench.System.OnDeviceLost([&](const Error& error) { lost.push_back(error.Text); });
  bench.Sound.StartSound();
  bench.RunBlocks(10);
  bench.System.Unplug("Line In");
  EXPECT_EQ(lost, std::vector<std::string>{"\"Line In\" has vanished"});
  const auto blocks = bench.Pump.FirstSamples.size();
  bench.RunBlocks(10);
  EXPECT_EQ(bench.Pump.FirstSamples.size(), blocks);
  bench.Sound.StopSound();
  EXPECT_TRUE(bench.Sound.StartSound());
  bench.Sound.StopSound();
  bench.System.Plug("Line In");
  EXPECT_FALSE(bench.Sound.StartSound());
  bench.RunBlocks(10);
  EXPECT_EQ(bench.Pump.FirstSamples.size(), blocks + 10);
  EXPECT_EQ(lost.size(), 1U);
}

TEST(QUORLDX8, StopAndReleaseInsideABlockAreSafe) {
  for (const bool release : {false, true}) {
    SoundBench bench;
    bench.Sound.StartSound();
    bench.RunBlocks(2);
    bench.Pump.OnBlock = [&](std::int16_t*, std::int16_t*, std::int32_t) {
      release ? bench.Sound.ReleaseDevices() : bench.Sound.StopSound();
    };
    bench.RunBlocks(20);
    EXPECT_EQ(bench.Pump.FirstSamples.size(), 3U);
    EXPECT_TRUE(bench.Pump.DataOutBytes.empty());
    EXPECT_FALSE(bench.Sound.InAction);
    EXPECT_EQ(bench.Sound.Prepared(), !release);
    bench.Pump.OnBlock = nullptr;
    bench.Sound.StartSound();
    bench.RunBlocks(10);
    EXPECT_EQ(bench.Pump.FirstSamples.size(), 13U);
    EXPECT_EQ(bench.Sound.OutDelay, 0);
  }
}

TEST(QUORLDX8, DataOutMayChangeTheBlockThatLeaves) {
  SoundBench bench;
  bench.Pump.OnOut = [](std::int16_t* block) { std::fill_n(block, kBlock, std::int16_t{-5}); };
  bench.Sound.StartSound();
  bench.RunBlocks(12);
  EXPECT_EQ(bench.Sink.Samples.back(), -5);
}

TEST(FindDevice, TheNameDecides) {
  const std::vector<std::string> names = {"Headset", "Line", "USB", "USB"};
  EXPECT_EQ(FindDevice(names, "Line", 1), 2);  // the headset was plugged in meanwhile
  EXPECT_EQ(FindDevice(names, "USB", 4), 4);
  EXPECT_EQ(FindDevice(names, "USB", 1), 3);
  EXPECT_EQ(FindDevice(names, "", 3), 3);      // saved before names were
  EXPECT_EQ(FindDevice(names, "Gone", 2), 5);  // no device, rather than another input
  EXPECT_EQ(FindDevice({}, "Gone", 1), 1);
}

TEST(QUORLDX8, RefreshKeepsTheDevicesByName) {
  SoundBench bench;
  bench.System.AddCaptureDevice("Microphone", bench.Source);
  bench.Sound.RefreshDevices();
  std::vector<std::string> names;
  bench.Sound.GetCapDeviceNames(names);
  EXPECT_EQ(names, (std::vector<std::string>{"Line In", "Microphone"}));
  bench.Sound.GetPlayDeviceNames(names);
  EXPECT_EQ(names, std::vector<std::string>{"Loudspeaker"});
  EXPECT_EQ(bench.Sound.CurrentCaptureDevice, 1);
}

}  // namespace
}  // namespace quorl
