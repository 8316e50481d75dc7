// The layer between the devices' threads and the main thread: stalls, order, gaps, volume.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <numeric>
#include <thread>

#include "platform/streams/StreamCaptureBuffer.h"
#include "platform/streams/StreamPlaybackBuffer.h"
#include "sound/AllocationCounter.h"
#include "sound/SoundBench.h"

namespace quorl {
namespace {

using std::chrono::milliseconds;

// Delay from capture to playback of what is heard at sample `at`, modulo 32000 frames.
std::int64_t FramesOfDelay(const std::vector<std::int16_t>& heard, std::size_t at) {
  return (static_cast<std::int64_t>(at) - (heard[at] - 1) + 320000) % 32000;
}

TEST(Stream, AStallOfHalfASecondCostsNoBlockAndOneGap) {
  for (const int phase : {0, 7, 13, 21, 29, 38}) {
    SoundBench bench;
    bench.Sound.StartSound();
    bench.Queue.AdvanceBy(milliseconds(2000 + phase));
    bench.Clock.Advance(milliseconds(500));  // nothing of the main thread runs
    bench.Queue.AdvanceBy(milliseconds(1));
    const std::size_t back = bench.Sink.Samples.size();
    bench.Queue.AdvanceBy(milliseconds(2000));

    const auto& heard = bench.Sink.Samples;
    const auto gaps = FindGaps(heard);
    ASSERT_EQ(gaps.size(), 1U) << phase;
    EXPECT_EQ(bench.System.Statistics().Underruns, 1);
    EXPECT_EQ(bench.System.Statistics().Overruns, 0);
    EXPECT_EQ(bench.Sound.Recoveries().Overruns + bench.Sound.Recoveries().Starvations, 0);
    const std::size_t sound = gaps[0].Begin + gaps[0].Length;
    EXPECT_LE(sound, back + 4 * kBlock) << phase;
    EXPECT_EQ(FramesOfDelay(heard, sound), FramesOfDelay(heard, gaps[0].Begin - 1)) << phase;
    EXPECT_LT(gaps[0].Length, 48000U / 2);

    // Every captured block reached the pump.
    const auto& first = bench.Pump.FirstSamples;
    for (std::size_t i = 0; i < first.size(); ++i) {
      ASSERT_EQ(first[i], CountingSource::Value(static_cast<std::int64_t>(i) * kBlock)) << phase;
    }
    EXPECT_EQ(static_cast<std::int64_t>(first.size()), bench.Clock.Microseconds() * 48000 / 1000000 / kBlock);
  }
}

TEST(Stream, AfterMoreThanASecondWholeBlocksAreLostAndCounted) {
  SoundBench bench;
  bench.Sound.StartSound();
  bench.RunBlocks(40);
  bench.Clock.Advance(milliseconds(5000));
  bench.RunBlocks(100);
  const std::int64_t lost = bench.System.Statistics().Overruns;
  EXPECT_NEAR(static_cast<double>(lost), 4000 / 42.667, 3.0);
  const auto& first = bench.Pump.FirstSamples;
  int jumps = 0;
  for (std::size_t i = 1; i < first.size(); ++i) {
    const std::int64_t step = (first[i] - first[i - 1] + 32000) % 32000;
    if (step == kBlock) continue;
    ++jumps;
    EXPECT_EQ(step, (lost + 1) * kBlock % 32000);
  }
  EXPECT_EQ(jumps, 1);
  EXPECT_EQ(bench.Sound.OutDelay, 0);
  EXPECT_EQ(FindGaps({bench.Sink.Samples.end() - 48000, bench.Sink.Samples.end()}).size(), 0U);
}

TEST(Stream, AHangingSoundServerOnlyPauses) {
  SoundBench bench;
  bench.Sound.StartSound();
  bench.RunBlocks(20);
  bench.System.SetStalled(true);
  bench.Queue.AdvanceBy(milliseconds(3000));
  const auto blocks = bench.Pump.FirstSamples.size();
  EXPECT_EQ(blocks, 20U);
  bench.System.SetStalled(false);
  bench.RunBlocks(20);
  EXPECT_EQ(bench.Pump.FirstSamples.size(), 40U);
  EXPECT_TRUE(FindGaps(bench.Sink.Samples).empty());
}

TEST(Stream, TheBlockPathAllocatesNothing) {
  SoundBench bench;
  bench.Sound.StartSound();
  bench.RunBlocks(10);
  // The devices' side and the main thread's, without the recording test pump and the timers.
  StreamEvents events;
  SoundCounters counters;
  const SoundFormat stereo{48000, 16, 2}, mono{48000, 16, 1};
  std::array<std::int16_t, 1024> block{};
  int calls = 0;
  StreamCaptureBuffer capture(events, counters, stereo, 16384, [&](int) { ++calls; });
  StreamPlaybackBuffer playback(events, counters, mono, 16384, [&](int id) {
    ++calls;
    std::array<std::int16_t, 2048> sound{};
    playback.Write((id - 10) * 4096, 4096, sound.data());
  });
  capture.SetNotificationPositions({{8191, 1}, {16383, 2}});
  playback.SetNotificationPositions({{4095, 10}, {8191, 11}, {12287, 12}, {16383, 13}});
  capture.Start();
  playback.Play();
  playback.SetVolume(-100);
  bench.Pump.FirstSamples.reserve(1000);
  bench.Pump.DataOutBytes.reserve(1000);

  const std::int64_t before = AllocationsOfThisThread();
  for (int i = 0; i < 400; ++i) {
    capture.Deliver(block.data(), 512, i);
    playback.Fetch(block.data(), 512, i);
    events.Deliver();
    bench.Sound.EventHandler(1 + i % 2, bench.Form.SamplesI.data(), bench.Form.SamplesQ.data());
    bench.Sound.EventHandler(3 + i % 4, bench.Form.SamplesI.data(), bench.Form.SamplesQ.data());
  }
  EXPECT_EQ(AllocationsOfThisThread(), before);
  EXPECT_EQ(calls, 200);
  EXPECT_GT(bench.Pump.FirstSamples.size(), 100U);
  const std::int64_t counted = AllocationsOfThisThread();
  std::vector<int>(100).swap(*std::make_unique<std::vector<int>>());
  EXPECT_GT(AllocationsOfThisThread(), counted);
}

TEST(Stream, TwoDeviceThreadsAndAMainThreadLoseNothing) {
  StreamEvents events;
  SoundCounters counters;
  constexpr int kBlocks = 3000;
  std::vector<std::int16_t> ring(4096);
  std::int64_t expected = 0;
  bool inOrder = true;
  std::vector<std::int64_t> order;
  const SoundFormat mono{48000, 16, 1};
  StreamCaptureBuffer* source = nullptr;
  const auto onBlock = [&](int id) {
    source->Read((id - 1) * 4096, 4096, ring.data());
    for (std::size_t i = 0; i < 2048; ++i) inOrder = inOrder && ring[i] == CountingSource::Value(expected++);
  };
  StreamCaptureBuffer capture(events, counters, mono, 8192, onBlock);
  source = &capture;
  StreamPlaybackBuffer playback(events, counters, mono, 8192, [&](int) { order.push_back(expected); });
  capture.SetNotificationPositions({{4095, 1}, {8191, 2}});
  playback.SetNotificationPositions({{4095, 3}, {8191, 4}});
  capture.Start();
  playback.Play();

  std::atomic<std::int64_t> read{0}, heard{0};
  std::thread device([&] {
    std::array<std::int16_t, 512> block{};
    for (std::int64_t frame = 0; frame < kBlocks * kBlock;) {
      if (frame - read.load() > 10 * kBlock) continue;  // the line has room for a second
      for (auto& sample : block) sample = CountingSource::Value(frame++);
      capture.Deliver(block.data(), 512, frame);
    }
  });
  std::atomic<bool> spoken{false};
  std::thread speaker([&] {
    std::array<std::int16_t, 512> block{};
    for (std::int64_t frame = 0; frame < kBlocks * kBlock; frame += 512) {
      // No loudspeaker plays a second's worth before its first notification is heard.
      while (frame - heard.load() > 10 * kBlock) std::this_thread::yield();
      playback.Fetch(block.data(), 512, frame);
    }
    spoken.store(true);
  });
  while (expected < kBlocks * kBlock || !spoken.load()) {
    events.Deliver();
    read.store(expected);
    heard.store(static_cast<std::int64_t>(order.size()) * kBlock);
  }
  device.join();
  speaker.join();
  events.Deliver();
  EXPECT_TRUE(inOrder);
  EXPECT_EQ(counters.CapturedBlocks.load(), kBlocks);
  EXPECT_EQ(counters.Overruns.load(), 0);
  EXPECT_EQ(order.size(), static_cast<std::size_t>(kBlocks));
}

TEST(Stream, PlaybackGoesOnWhereItStoppedAndForgetsOldSoundAfterALongPause) {
  for (const bool longPause : {false, true}) {
    StreamEvents events;
    SoundCounters counters;
    StreamPlaybackBuffer playback(events, counters, {48000, 16, 1}, 400, [](int) {});
    playback.SetNotificationPositions({{199, 1}, {399, 2}});
    std::array<std::int16_t, 100> sound{}, out{};
    std::iota(sound.begin(), sound.end(), std::int16_t{1});
    playback.Play();
    playback.Write(0, 200, sound.data());
    playback.Fetch(out.data(), 40, 1000);
    EXPECT_EQ(out[39], 40);
    playback.Stop();
    playback.Fetch(out.data(), 40, 2000);
    EXPECT_EQ(out[0], 0);
    playback.Play();
    playback.Fetch(out.data(), 40, longPause ? 2000000 : 3000);
    EXPECT_EQ(out[0], longPause ? 0 : 41);
  }
}

}  // namespace
}  // namespace quorl
