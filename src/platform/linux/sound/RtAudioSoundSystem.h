// The machine's sound devices, through RtAudio: PulseAudio, ALSA or JACK.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/EventQueue.h"
#include "platform/SoundSystem.h"
#include "platform/linux/sound/RtAudioStream.h"
#include "platform/linux/sound/SoundErrands.h"
#include "platform/streams/StreamEvents.h"

namespace quorl {

// Device numbers count in the list that was handed out last. A device that vanishes stops its buffer and is
// told once; starting the buffer again looks for the device by its name. Where all buffers have been stopped
// for a few seconds, they give their devices back until they are started again. The sound server converts
// rates; a device without one that can't give the rate refuses. A server that hangs keeps the caller for a
// second at most: the names are then those of the last time, and opening fails.
class RtAudioSoundSystem : public SoundSystem {
 public:
  // `backEnd` is "pulse", "alsa" or "jack"; empty takes the first of them that has devices.
  explicit RtAudioSoundSystem(EventQueue& queue, const std::string& backEnd = "");
  ~RtAudioSoundSystem() override;

  const std::string& BackEnd() const { return backEnd_; }

  std::vector<std::string> CaptureDeviceNames() override;
  std::vector<std::string> PlaybackDeviceNames() override;
  std::unique_ptr<CaptureBuffer> CreateCaptureBuffer(int device, const SoundFormat& format, int bytes,
                                                     SoundNotifier notifier, Failure& failure) override;
  std::unique_ptr<PlaybackBuffer> CreatePlaybackBuffer(int device, const SoundFormat& format, int bytes,
                                                       SoundNotifier notifier, Failure& failure) override;
  SoundStatistics Statistics() const override { return counters_.Read(); }
  void OnDeviceLost(std::function<void(const Error&)> handler) override { onLost_ = std::move(handler); }

 private:
  class OpenBuffer;
  class Capture;
  class Playback;
  // What the last look at the devices in use has seen; under its mutex, for the errand may outlive the
  // system.
  struct Sight {
    std::mutex Mutex;
    bool IsNew = false;
    std::vector<RtAudioDevice> Devices;
  };

  std::vector<std::string> Names(SoundDirection direction, std::vector<std::string>& kept);
  Failure Choose(const std::vector<std::string>& names, int device, RtAudioRequest& request);
  void WakePlayback();
  void OnSignal();
  void CheckDevices();
  void Tell(const Error& error);
  void WatchDevices();
  void CompareDevices();

  SoundErrands errands_;
  const std::shared_ptr<RtAudioDevices> devices_;
  std::string backEnd_;
  std::vector<std::string> captureNames_, playbackNames_;
  SoundCounters counters_;
  StreamEvents events_;
  std::function<void(const Error&)> onLost_;
  bool told_ = false;  // that a device is lost; until one is started again
  std::unique_ptr<QueueSignal> signal_;
  std::unique_ptr<QueueTimer> timer_;

  std::vector<OpenBuffer*> buffers_;
  const std::shared_ptr<Sight> sight_ = std::make_shared<Sight>();
  std::int64_t nextLook_ = 0;
};

}  // namespace quorl
