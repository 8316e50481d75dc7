// Sound devices made of memory: captures come from sources, playback goes to sinks, time from the clock
// handed in.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "platform/EventQueue.h"
#include "platform/SampleSource.h"
#include "platform/SoundSystem.h"
#include "platform/streams/StreamEvents.h"

namespace quorl {

// Each device counts its frames from the moment it was started: frame n falls on n / rate seconds of the
// clock, without any drift. A notification is delivered on the next whole millisecond of the queue's timers,
// later where the thread is busy, and always in the order in which the devices would have raised them. Works
// with a virtual clock and queue, and as well with real ones. Sources and sinks outlive the system; it
// outlives its buffers.
class VirtualSoundSystem : public SoundSystem {
 public:
  VirtualSoundSystem(EventQueue& queue, const Clock& clock);
  ~VirtualSoundSystem() override;

  void AddCaptureDevice(const std::string& name, SampleSource& source);
  // What is played is folded to mono on its way to the sink. Null takes it nowhere.
  void AddPlaybackDevice(const std::string& name, SampleSink* sink);
  // The device vanishes, from under a running buffer too, or comes back. Names of both kinds.
  void Unplug(const std::string& name);
  void Plug(const std::string& name);
  // Creating a capture or playback buffer fails with this until it is set to empty.
  void RefuseCapture(Failure failure) { refuseCapture_ = std::move(failure); }
  void RefusePlayback(Failure failure) { refusePlayback_ = std::move(failure); }
  // While stalled no device moves on, as with a sound server that hangs.
  void SetStalled(bool stalled);
  // A device's rate differs from the clock's by so many parts per million: two sound cards drift apart.
  void SetPlaybackDrift(double partsPerMillion) { playbackDrift_ = partsPerMillion; }

  std::vector<std::string> CaptureDeviceNames() override;
  std::vector<std::string> PlaybackDeviceNames() override;
  std::unique_ptr<CaptureBuffer> CreateCaptureBuffer(int device, const SoundFormat& format, int bytes,
                                                     SoundNotifier notifier, Failure& failure) override;
  std::unique_ptr<PlaybackBuffer> CreatePlaybackBuffer(int device, const SoundFormat& format, int bytes,
                                                       SoundNotifier notifier, Failure& failure) override;
  SoundStatistics Statistics() const override { return counters_.Read(); }
  void OnDeviceLost(std::function<void(const Error&)> handler) override { onLost_ = std::move(handler); }

 private:
  struct Device {
    std::string Name;
    SampleSource* Source = nullptr;
    SampleSink* Sink = nullptr;
    bool Present = true;
  };
  class Runner;
  class Capture;
  class Playback;

  static Device* Find(std::deque<Device>& devices, int number, const SoundFormat& format, Failure& failure);
  void SetPresent(const std::string& name, bool present);
  // Runs the devices up to now, delivers, and sets the timer to the next notification.
  void Tick();
  void RunDevices();
  void Arm();

  EventQueue& queue_;
  const Clock& clock_;
  std::deque<Device> captures_, playbacks_;  // entries stay where they are
  Failure refuseCapture_, refusePlayback_;
  double playbackDrift_ = 0.0;
  bool stalled_ = false;
  std::int64_t stalledAt_ = 0;
  SoundCounters counters_;
  StreamEvents events_;
  std::vector<Runner*> runners_;
  std::function<void(const Error&)> onLost_;
  std::unique_ptr<QueueTimer> timer_;
};

}  // namespace quorl
