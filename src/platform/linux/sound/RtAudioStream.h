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
#include "platform/linux/sound/SoundErrands.h"
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

// What is asked of a device. It is found by its name each time, so that it comes back after it was unplugged.
struct RtAudioRequest {
  SoundDirection Direction = SoundDirection::Capture;
  std::string Name;
  int Occurrence = 0;  // counts from 0 among devices of the same name
  SoundFormat Format;
  unsigned Frames = 0;  // that a capture brings at once; 0 for the usual ones
};

// Main thread, but for what is said to be the audio thread's. What may hang is an errand: opening and
// starting are waited for as long as the errands' patience goes, closing is not.
class RtAudioStream {
 public:
  static constexpr int kErrorMissing = 1, kErrorFormat = 2, kErrorOpen = 3, kErrorLost = 4;
  enum class Loss { None, Vanished, Silent };

  // Everything outlives the stream.
  RtAudioStream(std::shared_ptr<RtAudioDevices> devices, SoundErrands& errands, RtAudioRequest request,
                RtAudioClient& client, QueueSignal& signal, SoundCounters& counters);
  ~RtAudioStream();
  RtAudioStream(const RtAudioStream&) = delete;
  RtAudioStream& operator=(const RtAudioStream&) = delete;

  // Open finds and checks the device; where it is open and well, nothing.
  Failure Open();
  // Opens where it must, and runs the audio thread.
  Failure Start();
  // When it returns, the audio thread has left the client for good.
  void Close();
  bool IsOpen() const { return line_ != nullptr; }
  // The device has gone: it ran away without taking its time or was marked so, or it has said nothing for
  // some seconds.
  Loss LossAt(std::int64_t now) const;
  const std::string& Name() const { return request_.Name; }
  // Any thread: the device was seen to be gone.
  void MarkLost();

  // Audio thread, at its first block: asks once for real-time scheduling, and goes on without.
  void Prioritise();
  // Audio thread: the driver itself came too late.
  void CountTrouble();
  // Audio thread. `came` is false for a block that the device failed to give or take, which goes to nobody.
  // 0 goes on, 2 gives the stream up.
  int OnAudio(std::int16_t* samples, int frames, std::int64_t microsecond, bool came);

 private:
  struct Line;
  friend struct CallbackTarget;

  static Failure OpenLine(RtAudioDevices& devices, const RtAudioRequest& request, Line& line);
  static Failure OpenDevice(RtAudioDevices& devices, const RtAudioRequest& request,
                            const RtAudioDevice& device, Line& line);
  bool RunsAway(int frames, std::int64_t microsecond);
  bool PassBlocks(std::int16_t* samples, std::size_t frames, std::int64_t microsecond);

  const std::shared_ptr<RtAudioDevices> devices_;
  SoundErrands& errands_;
  const RtAudioRequest request_;
  RtAudioClient& client_;
  QueueSignal& signal_;
  SoundCounters& counters_;

  std::shared_ptr<Line> line_;         // to the device; null while closed
  bool prioritised_ = false;           // by the audio thread of the open stream
  std::vector<std::int16_t> scratch_;  // where the device has another number of channels
  std::int64_t lastCall_ = 0;          // the audio thread's
  double ahead_ = 0.0;                 // seconds that the device is ahead of its time; the audio thread's
  std::atomic<std::int64_t> lastHeard_{0};
  std::atomic<bool> lost_{false};
};

}  // namespace quorl
