#include "platform/virtual/SourcedSoundSystem.h"

#include <gtest/gtest.h>

#include "sound/SoundBench.h"
#include "sound/TestTone.h"

namespace quorl {
namespace {

using std::chrono::milliseconds;

// A simulated antenna in front of loudspeakers whose clock is a little off.
struct SourcedBench {
  explicit SourcedBench(double drift)
      : Queue(Clock),
        Speakers(Queue, Clock),
        System((SetUp(drift), Speakers), Source, Queue, Clock, "Simulated antenna"),
        Sound(System, Queue, Dialogs, Pump),
        Form(Sound) {
    Pump.Sound = &Sound;
    SetUpMono(Sound);
  }
  void SetUp(double drift) {
    Speakers.AddPlaybackDevice("Loudspeaker", &Sink);
    Speakers.SetPlaybackDrift(drift);
  }
  VirtualClock Clock;
  VirtualEventQueue Queue;
  VirtualDialogs Dialogs;
  CountingSource Source;
  RecordingSink Sink;
  VirtualSoundSystem Speakers;
  SourcedSoundSystem System;
  CopyPump Pump;
  QUORLDX8 Sound;
  frmDX8Events Form;
};

TEST(SourcedSoundSystem, CapturesFollowThePlaybackSoThatNothingDrifts) {
  for (const double drift : {-5000.0, 0.0, 5000.0}) {
    SourcedBench bench(drift);
    ASSERT_FALSE(bench.Sound.StartSound());
    bench.Queue.AdvanceBy(milliseconds(140));
    EXPECT_EQ(bench.Pump.FirstSamples.size(), 3U);  // by the clock, until playback starts
    bench.Queue.AdvanceBy(std::chrono::minutes(2));
    EXPECT_TRUE(FindGaps(bench.Sink.Samples).empty());
    EXPECT_EQ(bench.System.Statistics().Underruns, 0);
    EXPECT_EQ(bench.Sound.Recoveries().Overruns + bench.Sound.Recoveries().Starvations, 0);
    EXPECT_NEAR(static_cast<double>(bench.Pump.FirstSamples.size()), 120 / 0.0426667 * (1 + drift * 1e-6),
                6.0);
    EXPECT_EQ(bench.System.Statistics().CapturedBlocks,
              static_cast<std::int64_t>(bench.Pump.FirstSamples.size()));
  }
}

TEST(SourcedSoundSystem, AStallIsOneGapAndALostLoudspeakerLeavesTheCapturesToTheClock) {
  SourcedBench bench(0.0);
  bench.Sound.StartSound();
  bench.Queue.AdvanceBy(milliseconds(2010));
  bench.Clock.Advance(milliseconds(500));
  bench.Queue.AdvanceBy(milliseconds(2000));
  EXPECT_EQ(FindGaps(bench.Sink.Samples).size(), 1U);
  EXPECT_EQ(bench.Sound.Recoveries().Overruns + bench.Sound.Recoveries().Starvations, 0);

  bench.Speakers.Unplug("Loudspeaker");
  const auto blocks = bench.Pump.FirstSamples.size();
  bench.Queue.AdvanceBy(milliseconds(4267));
  EXPECT_NEAR(static_cast<double>(bench.Pump.FirstSamples.size() - blocks), 100.0, 1.0);
  bench.Sound.StopSound();
  const auto stopped = bench.Pump.FirstSamples.size();
  bench.Queue.AdvanceBy(milliseconds(1000));
  EXPECT_EQ(bench.Pump.FirstSamples.size(), stopped);
}

// A test tone beside the radio, one that was there before it, and one with the radio switched off.
TEST(SourcedSoundSystem, ASecondSoundOnTheLoudspeakersLeavesThePaceAlone) {
  SourcedBench bench(0.0);
  TestTone tone(bench.System, bench.Queue);
  const auto paceOver = [&bench](milliseconds time) {
    const auto before = bench.Pump.FirstSamples.size();
    bench.Queue.AdvanceBy(time);
    return static_cast<double>(bench.Pump.FirstSamples.size() - before);
  };
  ASSERT_FALSE(tone.Start(1));
  ASSERT_FALSE(bench.Sound.StartSound());
  EXPECT_NEAR(paceOver(milliseconds(4267)), 100.0, 3.0);
  EXPECT_FALSE(tone.IsPlaying());
  ASSERT_FALSE(tone.Start(1));
  EXPECT_NEAR(paceOver(milliseconds(4267)), 100.0, 2.0);
  bench.Sound.StopSound();
  ASSERT_FALSE(bench.Sound.StartSound());
  EXPECT_NEAR(paceOver(milliseconds(4267)), 100.0, 2.0);
  EXPECT_EQ(bench.Sound.Recoveries().Overruns + bench.Sound.Recoveries().Starvations, 0);
}

}  // namespace
}  // namespace quorl
