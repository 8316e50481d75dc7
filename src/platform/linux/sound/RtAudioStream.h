// One open stream of one sound device, in one direction.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/EventQueue.h"
#include "platform/SoundSystem.h"
#include "platform/linux/sound/RtAudioDevices.h"
#include "platform/streams/StreamEvents.h"

namespace quorl {

// What the audio thread calls.
class RtAudioClient {
 public:
  virtual ~RtAudioClient() = default;
  // Takes (capture) or fills (playback) `frames` interleaved frames. True where the main thread has something
  // to do. Never waits, never allocates.
  virtual bool Process(std::int16_t* interleaved, int frames, std::int64_t microsecond) = 0;
};

// The device is found by its name each time that it is opened, so that it comes back after it was unplugged.
class RtAudioStream {
 public:
  static constexpr int kErrorMissing = 1, kErrorFormat = 2, kErrorOpen = 3, kErrorLost = 4;

  // Everything outlives the stream. `occurrence` counts from 0 among devices of the same name.
  RtAudioStream(RtAudioDevices& devices, SoundDirection direction, std::string name, int occurrence,
                const SoundFormat& format, RtAudioClient& client, QueueSignal& signal,
                SoundCounters& counters);
  ~RtAudioStream();
  RtAudioStream(const RtAudioStream&) = delete;
  RtAudioStream& operator=(const RtAudioStream&) = delete;

  // Main thread. Open finds and checks the device; where it is open and well, nothing.
  Failure Open();
  // Opens where it must, and runs the audio thread.
  Failure Start();
  void Close();
  bool IsOpen() const { return audio_ != nullptr; }
  // The device has gone: it ran away without taking its time, or not at all for some seconds.
  bool IsLost(std::int64_t now) const;
  const std::string& Name() const { return name_; }
  // Any thread: the device was seen to be gone.
  void MarkLost();

  // Audio thread, at its first block: asks once for real-time scheduling, and goes on without.
  void Prioritise();
  // Audio thread: the driver itself came too late.
  void CountTrouble();
  // Audio thread. 0 goes on, 2 gives the stream up.
  int OnAudio(std::int16_t* samples, int frames, std::int64_t microsecond);

 private:
  Failure OpenDevice(const RtAudioDevice& device);
  const RtAudioDevice* Find(const std::vector<RtAudioDevice>& list) const;
  bool RunsAway(int frames, std::int64_t microsecond);

  RtAudioDevices& devices_;
  const SoundDirection direction_;
  const std::string name_;
  const int occurrence_;
  const SoundFormat format_;
  RtAudioClient& client_;
  QueueSignal& signal_;
  SoundCounters& counters_;

  bool prioritised_ = false;  // by the audio thread of the open stream
  std::unique_ptr<RtAudio> audio_;
  int deviceChannels_ = 0;
  std::vector<std::int16_t> scratch_;  // where the device has another number of channels
  std::int64_t lastCall_ = 0;          // the audio thread's
  double ahead_ = 0.0;                 // seconds that the device is ahead of its time; the audio thread's
  std::atomic<std::int64_t> lastHeard_{0};
  std::atomic<bool> lost_{false};
};

}  // namespace quorl
