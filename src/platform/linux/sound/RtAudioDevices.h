// What RtAudio knows of the machine's sound devices.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

class RtAudio;

namespace quorl {

enum class SoundDirection { Capture, Playback };

struct RtAudioDevice {
  unsigned Id = 0;   // RtAudio's number, good until something is plugged
  std::string Name;  // what the desktop's sound settings show
  unsigned CaptureChannels = 0, PlaybackChannels = 0;
  std::vector<unsigned> SampleRates;

  unsigned Channels(SoundDirection direction) const {
    return direction == SoundDirection::Capture ? CaptureChannels : PlaybackChannels;
  }
};

// One back end: the sound server or driver that is asked. Any thread may call it; the calls wait for each
// other, since RtAudio keeps one list of devices for the whole process.
class RtAudioDevices {
 public:
  // `name` is "pulse", "alsa" or "jack"; anything else takes the first of them, in this order, that has a
  // device.
  explicit RtAudioDevices(std::string name);
  ~RtAudioDevices();

  // Chooses the back end anew. While no stream is open.
  void Select();

  // A new stream object of this back end.
  std::unique_ptr<RtAudio> Create() const;
  // Keeps the list still while a stream is opened.
  std::unique_lock<std::mutex> Lock() { return std::unique_lock(mutex_); }
  // With Lock held by the caller.
  std::vector<RtAudioDevice> ListLocked();
  std::vector<RtAudioDevice> List();

  const std::string& BackEnd() const { return backEnd_; }
  // Streams move to another device by themselves where theirs vanishes.
  bool MovesStreams() const { return backEnd_ == "pulse"; }

 private:
  std::mutex mutex_;
  const std::string wanted_;
  std::string backEnd_;
  std::unique_ptr<RtAudio> prober_;
};

}  // namespace quorl
