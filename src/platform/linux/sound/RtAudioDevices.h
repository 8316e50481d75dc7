// What RtAudio knows of the machine's sound devices.
#pragma once

#include <memory>
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

// One back end: the sound server or driver that is asked. Every call may hang with the server, and RtAudio
// keeps one list of devices for the whole process: one thread at a time calls, that of the errands.
class RtAudioDevices {
 public:
  // `name` is "pulse", "alsa" or "jack"; anything else takes the first of them, in this order, that has a
  // device. Asks nobody yet.
  explicit RtAudioDevices(std::string name);
  ~RtAudioDevices();

  // Chooses the back end anew. While no stream is open, and before anything else.
  void Select();

  // A new stream object of this back end.
  std::unique_ptr<RtAudio> Create() const;
  std::vector<RtAudioDevice> List();

  const std::string& BackEnd() const { return backEnd_; }

 private:
  const std::string wanted_;
  std::string backEnd_;
  std::unique_ptr<RtAudio> prober_;
};

}  // namespace quorl
