// The deck at work, without a disk: what it adds to a block that is recorded, and a block that is played.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <string>

#include "platform/virtual/VirtualClock.h"
#include "platform/virtual/VirtualDialogs.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualFileWorker.h"
#include "platform/virtual/VirtualFiles.h"
#include "receiver/Receiver.h"
#include "recorder/clsWavFile.h"

namespace quorl {

struct DeckDesk {
  VirtualClock Clock;
  VirtualEventQueue Queue{Clock};
  VirtualFiles Storage;
  VirtualFileWorker Worker{Queue};
  VirtualDialogs Boxes;
  clsWavFile Deck{{Storage, Worker, Queue, Boxes, Clock}, ""};
};

class RecordStep {
 public:
  RecordStep() {
    desk_.Deck.TunedFrequency = [] { return 72050000; };
    desk_.Deck.OpenRecording();
  }
  void operator()() { desk_.Deck.AddSamples(block_.data(), SamplesPerEvent); }

 private:
  DeckDesk desk_;
  std::array<std::int16_t, SamplesPerEvent> block_{};
};

// Two seconds of noise, round and round, through pump and chain.
class PlayedBlock {
 public:
  PlayedBlock() {
    constexpr std::int64_t kFrames = 98304;
    std::string bytes = MakeWavHeader({}, 44 + 2 * kFrames, kFrames);
    for (std::uint32_t n = 1; bytes.size() < 44 + 2 * kFrames; n = n * 1664525 + 1013904223) {
      bytes += static_cast<char>(n >> 24);
    }
    desk_.Storage.Put("/noise.wav", bytes);
    clsWavFile& deck = desk_.Deck;
    deck.PlayEnd = [&deck] { deck.Play(); };
    deck.Looping = true;
    deck.TakeName("/noise.wav");
    deck.OpenFile();
    desk_.Queue.AdvanceBy(std::chrono::seconds(1));
    deck.Play();
    radio_.Initialise();
    radio_.SetDemodMode(DemodMode::AM);
    radio_.Housekeeping();
  }
  void operator()() { radio_.Pump.SoundCard_DataReady(left_.data(), right_.data()); }

 private:
  struct Silence final : SoundOutput {
    void SetOutputAttenuation(std::int32_t) override {}
    void Output(const std::int16_t*, const std::int16_t*) override {}
  };
  DeckDesk desk_;
  Silence sound_;
  Receiver radio_{desk_.Clock, sound_, desk_.Deck, [] {}};
  std::array<std::int16_t, SamplesPerEvent> left_{}, right_{};
};

}  // namespace quorl
