// Sound devices as looping byte buffers with position notifications, all on the event queue's thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/Error.h"

namespace quorl {

struct SoundFormat {
  int SampleRate = 48000;  // Hz
  int BitsPerSample = 16;  // signed PCM
  int Channels = 2;        // interleaved
};

// Raised on the main thread when the buffer's cursor passes `Offset` (a byte position in the buffer).
struct SoundNotification {
  int Offset = 0;
  int EventId = 0;
};
using SoundNotifier = std::function<void(int eventId)>;

// A ring that the device fills.
class CaptureBuffer {
 public:
  virtual ~CaptureBuffer() = default;
  virtual void SetNotificationPositions(const std::vector<SoundNotification>& positions) = 0;
  virtual Failure Start() = 0;  // looping
  virtual void Stop() = 0;
  virtual bool IsRunning() const = 0;
  // Copies `bytes` from byte position `offset` of the ring.
  virtual void Read(int offset, int bytes, void* destination) = 0;
};

// A ring that the device plays.
class PlaybackBuffer {
 public:
  virtual ~PlaybackBuffer() = default;
  virtual void SetNotificationPositions(const std::vector<SoundNotification>& positions) = 0;
  virtual Failure Play() = 0;  // looping, from where the cursor stands
  virtual void Stop() = 0;
  virtual bool IsRunning() const = 0;
  virtual void Write(int offset, int bytes, const void* source) = 0;
  // Hundredths of a decibel, 0 (full) to -10000.
  virtual void SetVolume(int hundredthsOfDecibel) = 0;
};

// What went wrong on the way, for reports.
struct SoundStatistics {
  std::int64_t CapturedBlocks = 0;
  std::int64_t Overruns = 0;   // captured blocks lost because the main thread stood still too long
  std::int64_t Underruns = 0;  // stretches of silence that the device played for want of a block
};

class SoundSystem {
 public:
  virtual ~SoundSystem() = default;
  // The names that the desktop's sound settings show. Entry i is device number i + 1.
  virtual std::vector<std::string> CaptureDeviceNames() = 0;
  virtual std::vector<std::string> PlaybackDeviceNames() = 0;
  // `device` counts from 1. Null with `failure` set where the device is missing or refuses the format.
  virtual std::unique_ptr<CaptureBuffer> CreateCaptureBuffer(int device, const SoundFormat& format, int bytes,
                                                             SoundNotifier notifier, Failure& failure) = 0;
  virtual std::unique_ptr<PlaybackBuffer> CreatePlaybackBuffer(int device, const SoundFormat& format,
                                                               int bytes, SoundNotifier notifier,
                                                               Failure& failure) = 0;
  virtual SoundStatistics Statistics() const = 0;
  // Told once when an open device vanishes, with a line for the user.
  virtual void OnDeviceLost(std::function<void(const Error&)> handler) = 0;
};

}  // namespace quorl
