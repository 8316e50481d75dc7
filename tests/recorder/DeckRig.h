// A deck on a machine of memory, with the timers that a panel puts behind its events.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "platform/virtual/VirtualClock.h"
#include "platform/virtual/VirtualDialogs.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualFileWorker.h"
#include "platform/virtual/VirtualFiles.h"
#include "recorder/clsWavFile.h"
#include "recorder/files/LittleEndian.h"
#include "state/PublicConstants.h"

namespace quorl::test {

inline constexpr char kFolder[] = "/radio";
inline constexpr char kSaved[] = "/music/night.wav";

// Sample `n` of a signal in which every stretch is unlike every other.
inline std::int16_t Signal(std::int64_t n) {
  const auto mixed = static_cast<std::uint64_t>(n) * 0x9E3779B97F4A7C15U;
  return static_cast<std::int16_t>(mixed >> 48);
}

class DeckRig : public testing::Test {
 protected:
  DeckRig() {
    Storage.MakeDirectory(kFolder);
    Storage.MakeDirectory("/music");
    Deck.TunedFrequency = [this] { return Tuned; };
    Deck.WriteNextBlockToDisk = [this] { write_->Start(std::chrono::milliseconds(2)); };
    Deck.ReadNextBlockFromDisk = [this] { read_->Start(std::chrono::milliseconds(4)); };
    Deck.PlayEnd = [this] {
      ++Ends;
      if (Deck.Looping) Deck.Play();
    };
    Deck.MuteTrailer = true;
    Deck.RecordFileName = kSaved;
  }

  // The pump's period.
  static constexpr std::chrono::microseconds kBlock{42667};

  // Records `count` blocks of the signal, each with the time that it takes.
  void Feed(int count) {
    for (int i = 0; i < count; ++i) {
      std::array<std::int16_t, SamplesPerEvent> block;
      for (std::int16_t& sample : block) sample = Signal(Fed++);
      LastAdd = Deck.AddSamples(block.data(), SamplesPerEvent);
      if (LastAdd != 0) Fed -= SamplesPerEvent;
      Queue.AdvanceBy(kBlock);
    }
  }
  // Plays `count` blocks and gives what came.
  std::vector<std::int16_t> Hear(int count) {
    std::vector<std::int16_t> heard;
    for (int i = 0; i < count; ++i) {
      std::array<std::int16_t, SamplesPerEvent> block;
      Deck.GetNextSamples(block.data(), SamplesPerEvent);
      heard.insert(heard.end(), block.begin(), block.end());
      Queue.AdvanceBy(kBlock);
    }
    return heard;
  }
  std::string Content(const std::string& path) {
    Failure failure;
    return Storage.Read(path, failure).value_or("");
  }
  // The samples of a file of ours, as they stand in it.
  std::vector<std::int16_t> SamplesOf(const std::string& path) {
    const Recording recording = Read(path);
    const std::string bytes = Content(path);
    std::vector<std::int16_t> samples;
    const std::int64_t begin = recording.Format.DataAt();
    for (std::int64_t at = begin; at < begin + recording.DataBytes; at += 2) {
      samples.push_back(
          static_cast<std::int16_t>(GetU16(reinterpret_cast<const unsigned char*>(bytes.data()) + at)));
    }
    return samples;
  }
  Recording Read(const std::string& path) {
    Failure failure;
    const auto file = Storage.Open(path, OpenMode::Read, failure);
    if (!file) return {};
    RecordingRead read = ReadRecording(*file);
    EXPECT_TRUE(read.Own) << path;
    return read.Own.value_or(Recording{});
  }
  // Puts a recording of `samples` of the signal there and opens it.
  void Load(std::int64_t samples, std::int32_t rate = 48000, const std::vector<LogRecord>& log = {}) {
    const RecordingFormat format{rate, 1, 16, {}};
    std::string bytes = MakeWavHeader(format, 44 + 2 * samples, samples);
    for (std::int64_t n = 0; n < samples; ++n) {
      const auto bits = static_cast<std::uint16_t>(Signal(n));
      bytes += {static_cast<char>(bits & 0xFF), static_cast<char>(bits >> 8)};
    }
    Storage.Put(kSaved, bytes + MakeTrailer(log));
    Deck.TakeName(kSaved);
    ASSERT_EQ(Deck.OpenFile(), 0);
    Queue.AdvanceBy(std::chrono::milliseconds(50));
  }

  VirtualClock Clock;
  VirtualEventQueue Queue{Clock};
  VirtualFiles Storage;
  VirtualFileWorker Worker{Queue};
  VirtualDialogs Boxes;
  std::int32_t Tuned = 72050000;
  std::int64_t Fed = 0;
  int Ends = 0;
  std::int16_t LastAdd = 0;
  std::vector<std::int16_t> Results;  // of the writes
  clsWavFile Deck{{Storage, Worker, Queue, Boxes, Clock}, kFolder};

 private:
  std::unique_ptr<QueueTimer> write_ = Queue.CreateTimer([this] {
    write_->Stop();
    Results.push_back(Deck.WriteToDisk());
  });
  std::unique_ptr<QueueTimer> read_ = Queue.CreateTimer([this] {
    read_->Stop();
    Deck.ReadFromDisk();
  });
};

}  // namespace quorl::test
