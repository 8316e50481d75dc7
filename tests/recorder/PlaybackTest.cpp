#include <algorithm>
#include <cerrno>

#include "recorder/DeckRig.h"

namespace quorl::test {
namespace {

std::vector<std::int16_t> Expected(std::int64_t from, std::int64_t count) {
  std::vector<std::int16_t> samples;
  for (std::int64_t n = from; n < from + count; ++n) samples.push_back(Signal(n));
  return samples;
}

TEST_F(DeckRig, PlaysEverySampleFromTheFirstToTheLast) {
  for (const std::int64_t samples : {2048, 32768, 65536, 100000, 200001}) {
    Load(samples);
    Ends = 0;
    ASSERT_EQ(Deck.Play(), 0);
    EXPECT_EQ(Deck.Play(), DeckCode::PlaysAlready);
    const auto blocks = static_cast<int>((samples + 2047) / 2048);
    std::vector<std::int16_t> heard = Hear(blocks);
    EXPECT_EQ(Ends, 1) << samples;
    EXPECT_TRUE(std::all_of(heard.begin() + samples, heard.end(), [](std::int16_t s) { return s == 0; }));
    heard.resize(static_cast<std::size_t>(samples));
    EXPECT_EQ(heard, Expected(0, samples)) << samples;
    EXPECT_EQ(Deck.PlayerMode(), 4);
  }
}

TEST_F(DeckRig, ThinnedSamplesStandAmongZeros) {
  for (const std::int32_t rate : {48000, 24000, 12000, 6000, 3000}) {
    Load(50000, rate);
    EXPECT_EQ(Deck.WavSamplingRate(), rate);
    const auto factor = static_cast<std::size_t>(48000 / rate);
    EXPECT_EQ(Deck.Decimator(), 48000 / rate);
    Deck.Play();
    const std::vector<std::int16_t> heard = Hear(40);
    for (std::size_t k = 0; k < std::min<std::size_t>(heard.size(), 50000 * factor); ++k) {
      ASSERT_EQ(heard[k], k % factor == 0 ? Signal(static_cast<std::int64_t>(k / factor)) : 0) << rate << k;
    }
    Deck.CloseFile();
    EXPECT_EQ(Deck.Decimator(), 1);
    EXPECT_EQ(Deck.PlayerMode(), 0);
  }
}

TEST_F(DeckRig, TheTrailerIsHeardOnlyWhereItIsNotMuted) {
  const std::vector<LogRecord> log(40, LogRecord{46000.0, 72050000, 44, 100});
  Load(4096, 48000, log);
  Deck.Play();
  Hear(2);
  EXPECT_EQ(Ends, 1);
  Deck.MuteTrailer = false;
  Load(4096, 48000, log);
  Deck.Play();
  const std::vector<std::int16_t> heard = Hear(4);
  EXPECT_EQ(heard[4096], 'Q' | 'U' << 8);
  EXPECT_EQ(Ends, 2);
}

TEST_F(DeckRig, JumpsLandOnTheSample) {
  std::vector<std::int64_t> read;
  Deck.DiskRead = [&](std::int64_t position) { read.push_back(position); };
  Load(1000000, 48000,
       {{46000.0, 72050000, 44, 90044}, {46000.0, 60000000, 90044, 2000044}, {46000.0, 1, 3000000, 3000001}});
  Deck.PlayFrom(1);  // not before it plays
  Deck.Play();
  Hear(3);
  Deck.PlayFrom(1);
  EXPECT_EQ(Hear(2), Expected(45000, 4096));
  Deck.PlayFrom(2);  // beyond the file
  Deck.PlayFrom(7);
  EXPECT_EQ(Hear(1), Expected(45000 + 4096, 2048));
  Deck.SeekTo(46);  // the second byte of the first sample
  EXPECT_EQ(Hear(40), Expected(0, 40 * 2048));
  EXPECT_FALSE(read.empty());
  // A place that isn't in memory yet comes in silence, and nothing of it is skipped.
  Deck.SeekTo(45 + 2 * 900000);
  std::vector<std::int16_t> heard = Hear(4);
  const auto first = std::find_if(heard.begin(), heard.end(), [](std::int16_t s) { return s != 0; });
  EXPECT_EQ((first - heard.begin()) % 2048, 0);
  heard.erase(heard.begin(), first);
  EXPECT_EQ(heard, Expected(900000, static_cast<std::int64_t>(heard.size())));
  EXPECT_GT(heard.size(), 2048U);
}

TEST_F(DeckRig, ADiskThatStandsStillForTwoSecondsIsNotHeard) {
  Load(1000000);
  Deck.Play();
  std::vector<std::int16_t> heard = Hear(30);
  Worker.Stall();
  for (const std::int16_t sample : Hear(47)) heard.push_back(sample);
  Worker.Resume();
  for (const std::int16_t sample : Hear(100)) heard.push_back(sample);
  EXPECT_EQ(heard, Expected(0, 177 * 2048));
}

TEST_F(DeckRig, LoopsWithoutAGapThoughTheDiskStandsStill) {
  Load(8 * 32768);
  Deck.Looping = true;
  Deck.Play();
  std::vector<std::int16_t> heard = Hear(8 * 16 - 5);
  Worker.Stall();
  for (const std::int16_t sample : Hear(40)) heard.push_back(sample);
  std::vector<std::int16_t> expected = Expected(0, 8 * 32768);
  const std::vector<std::int16_t> again = Expected(0, 35 * 2048);
  expected.insert(expected.end(), again.begin(), again.end());
  EXPECT_EQ(heard, expected);
}

TEST_F(DeckRig, PauseHoldsThePlace) {
  Load(100000);
  Deck.Play();
  Hear(5);
  Deck.Pause();
  EXPECT_EQ(Hear(2), std::vector<std::int16_t>(4096, 0));
  Deck.Pause();
  EXPECT_EQ(Hear(5), Expected(5 * 2048, 5 * 2048));
}

TEST_F(DeckRig, AReadErrorEndsThePlayingWithItsReason) {
  Load(1000000);
  Deck.Play();
  Hear(5);
  Storage.Put(kSaved, Content(kSaved).substr(0, 600000));  // somebody cuts the file
  Storage.Fail(FileOperation::Read, Error{EIO, "the disk is gone"});
  Hear(300);
  EXPECT_EQ(Ends, 1);
  EXPECT_TRUE(Deck.PlaybackFault());
  EXPECT_FALSE(Deck.HasFile());
}

TEST_F(DeckRig, WhatCantBeOpenedLeavesTheDeckAsItWas) {
  Load(100000);
  Deck.Play();
  Hear(2);
  for (const char* bad : {"/music/nothing.wav", "/music", "/music/text.wav", "/music/cut.wav"}) {
    Storage.Put("/music/text.wav", "no sound");
    Storage.Put("/music/cut.wav", Content(kSaved).substr(0, 50000));
    Deck.TakeName(bad);
    EXPECT_NE(Deck.OpenFile(), 0) << bad;
    EXPECT_EQ(Deck.PlayerMode(), 2);
  }
  EXPECT_EQ(Hear(1), Expected(2 * 2048, 2048));
}

}  // namespace
}  // namespace quorl::test
