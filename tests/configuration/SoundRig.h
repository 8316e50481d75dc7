// A dialog's sound devices of memory: an input that carries two tones, and outputs that say who holds them.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <string>
#include <vector>

#include "controls/ControlRegistry.h"
#include "platform/virtual/VirtualSoundSystem.h"
#include "rigs/Hands.h"
#include "rigs/VirtualDesk.h"

namespace quorl::test {

// Remembers which devices are open, by their names.
class WatchedSound : public VirtualSoundSystem {
 public:
  using VirtualSoundSystem::VirtualSoundSystem;

  // As many entries as there are buffers open on the device.
  std::vector<std::string> Opened(const std::string& name) {
    std::vector<std::string> open;
    for (const std::string& each : open_) {
      if (each == name) open.push_back(each);
    }
    return open;
  }
  std::unique_ptr<CaptureBuffer> CreateCaptureBuffer(int device, const SoundFormat& format, int bytes,
                                                     SoundNotifier notifier, Failure& failure) override {
    auto inner = VirtualSoundSystem::CreateCaptureBuffer(device, format, bytes, std::move(notifier), failure);
    if (!inner) return nullptr;
    return std::make_unique<Capture>(*this, CaptureDeviceNames().at(static_cast<std::size_t>(device) - 1),
                                     std::move(inner));
  }
  std::unique_ptr<PlaybackBuffer> CreatePlaybackBuffer(int device, const SoundFormat& format, int bytes,
                                                       SoundNotifier notifier, Failure& failure) override {
    auto inner =
        VirtualSoundSystem::CreatePlaybackBuffer(device, format, bytes, std::move(notifier), failure);
    if (!inner) return nullptr;
    return std::make_unique<Playback>(*this, PlaybackDeviceNames().at(static_cast<std::size_t>(device) - 1),
                                      std::move(inner));
  }

 private:
  class Entry {
   public:
    Entry(WatchedSound& sound, std::string name) : sound_(sound), name_(std::move(name)) {
      sound_.open_.push_back(name_);
    }
    ~Entry() { sound_.open_.erase(std::find(sound_.open_.begin(), sound_.open_.end(), name_)); }

   private:
    WatchedSound& sound_;
    std::string name_;
  };
  class Capture : public CaptureBuffer, Entry {
   public:
    Capture(WatchedSound& sound, const std::string& name, std::unique_ptr<CaptureBuffer> inner)
        : Entry(sound, name), inner_(std::move(inner)) {}
    void SetNotificationPositions(const std::vector<SoundNotification>& positions) override {
      inner_->SetNotificationPositions(positions);
    }
    Failure Start() override { return inner_->Start(); }
    void Stop() override { inner_->Stop(); }
    bool IsRunning() const override { return inner_->IsRunning(); }
    void Read(int offset, int bytes, void* destination) override { inner_->Read(offset, bytes, destination); }

   private:
    std::unique_ptr<CaptureBuffer> inner_;
  };
  class Playback : public PlaybackBuffer, Entry {
   public:
    Playback(WatchedSound& sound, const std::string& name, std::unique_ptr<PlaybackBuffer> inner)
        : Entry(sound, name), inner_(std::move(inner)) {}
    void SetNotificationPositions(const std::vector<SoundNotification>& positions) override {
      inner_->SetNotificationPositions(positions);
    }
    Failure Play() override { return inner_->Play(); }
    void Stop() override { inner_->Stop(); }
    bool IsRunning() const override { return inner_->IsRunning(); }
    void Write(int offset, int bytes, const void* source) override { inner_->Write(offset, bytes, source); }
    void SetVolume(int hundredths) override { inner_->SetVolume(hundredths); }

   private:
    std::unique_ptr<PlaybackBuffer> inner_;
  };

  std::vector<std::string> open_;
};

struct SoundRig : VirtualDesk, Hands {
  // Peaks of both channels, and the right one's lead.
  struct Tone {
    double Left = 0, Right = 0, Degrees = 0;
  };

  SoundRig() {
    Sound.AddCaptureDevice("Line In", source_);
    Sound.AddCaptureDevice("Microphone", source_);
    Sound.AddPlaybackDevice("Loudspeaker", nullptr);
    Sound.AddPlaybackDevice("Headset", nullptr);
  }
  const ControlRegistry& Registry() override { return Controls; }

  Tone LineIn;
  ControlRegistry Controls;
  WatchedSound Sound{Queue, Clock};

 private:
  struct Source : SampleSource {
    explicit Source(const Tone& wanted) : Wanted(wanted) {}
    void Render(std::int16_t* interleaved, int frames) override {
      for (int i = 0; i < frames; ++i, ++Frame) {
        const double phase = 2 * std::numbers::pi * 1000 * static_cast<double>(Frame) / 48000;
        const double lead = Wanted.Degrees * std::numbers::pi / 180;
        *interleaved++ = static_cast<std::int16_t>(std::lround(Wanted.Left * std::sin(phase)));
        *interleaved++ = static_cast<std::int16_t>(std::lround(Wanted.Right * std::sin(phase + lead)));
      }
    }
    const Tone& Wanted;
    std::int64_t Frame = 0;
  };

  Source source_{LineIn};
};

}  // namespace quorl::test
