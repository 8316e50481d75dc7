// A sound card in memory with a pump behind it, on the virtual clock.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/SampleSource.h"
#include "platform/virtual/VirtualClock.h"
#include "platform/virtual/VirtualDialogs.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualSoundSystem.h"
#include "sound/QUORLDX8.h"
#include "sound/SoundEvents.h"
#include "sound/frmDX8Events.h"

namespace quorl {

inline constexpr std::int64_t kBlock = 2048;

// Every frame tells its number: left n mod 32000 + 1, never 0; right its negative.
class CountingSource : public SampleSource {
 public:
  static std::int16_t Value(std::int64_t frame) { return static_cast<std::int16_t>(frame % 32000 + 1); }
  void Render(std::int16_t* interleaved, int frames) override {
    for (int i = 0; i < frames; ++i, ++Frames) {
      *interleaved++ = Value(Frames);
      *interleaved++ = static_cast<std::int16_t>(-Value(Frames));
    }
  }
  std::int64_t Frames = 0;
};

class RecordingSink : public SampleSink {
 public:
  void Accept(const std::int16_t* samples, int count) override {
    Samples.insert(Samples.end(), samples, samples + count);
  }
  std::vector<std::int16_t> Samples;
};

// Sends the left channel straight on, and remembers the first sample of each block.
class CopyPump : public SoundEvents {
 public:
  void SoundCard_DataReady(std::int16_t* samplesI, std::int16_t* samplesQ, std::int32_t n) override {
    FirstSamples.push_back(samplesI[0]);
    if (OnBlock) OnBlock(samplesI, samplesQ, n);
    if (Forward) Sound->Output(samplesI, samplesI);
  }
  void SoundCard_DataOut(std::int16_t* buffer, std::int32_t readPtr, std::int32_t n) override {
    DataOutBytes.push_back(n);
    if (OnOut) OnOut(buffer + readPtr);
  }
  QUORLDX8* Sound = nullptr;
  bool Forward = true;
  std::function<void(std::int16_t*, std::int16_t*, std::int32_t)> OnBlock;
  std::function<void(std::int16_t*)> OnOut;
  std::vector<std::int16_t> FirstSamples;
  std::vector<std::int32_t> DataOutBytes;
};

inline void SetUpMono(QUORLDX8& sound) {
  sound.FSampling = 48000;
  sound.NoChannelsIn = 2;
  sound.NoChannelsOut = 1;
  sound.SetSamplesPerEvent(kBlock);
}

// Stretches of zeros between sound: (first frame, length). Silence before the first sound and after the last
// is none.
struct Gap {
  std::size_t Begin = 0, Length = 0;
};
inline std::vector<Gap> FindGaps(const std::vector<std::int16_t>& samples) {
  std::vector<Gap> gaps;
  std::size_t lastSound = samples.size();
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (samples[i] == 0) continue;
    if (lastSound + 1 < i && lastSound != samples.size()) gaps.push_back({lastSound + 1, i - lastSound - 1});
    lastSound = i;
  }
  return gaps;
}

struct SoundBench {
  SoundBench()
      : Queue(Clock), System(Queue, Clock), Sound((AddDevices(), System), Queue, Dialogs, Pump), Form(Sound) {
    Pump.Sound = &Sound;
    SetUpMono(Sound);
    Sound.RefreshDevices();
  }
  void AddDevices() {
    System.AddCaptureDevice("Line In", Source);
    System.AddPlaybackDevice("Loudspeaker", &Sink);
  }
  // To just after the n-th block's notification from now, where both start at a block's begin.
  void RunBlocks(std::int64_t n) {
    Queue.AdvanceBy(std::chrono::microseconds(n * kBlock * 1000000 / 48000 + 1100));
  }

  VirtualClock Clock;
  VirtualEventQueue Queue;
  VirtualDialogs Dialogs;
  CountingSource Source;
  RecordingSink Sink;
  VirtualSoundSystem System;
  CopyPump Pump;
  QUORLDX8 Sound;
  frmDX8Events Form;
};

}  // namespace quorl
