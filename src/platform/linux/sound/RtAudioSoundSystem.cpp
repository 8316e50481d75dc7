#include "platform/linux/sound/RtAudioSoundSystem.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/linux/system/LinuxClock.h"
#include "platform/streams/StreamCaptureBuffer.h"
#include "platform/streams/StreamPlaybackBuffer.h"

namespace quorl {
namespace {

constexpr std::chrono::milliseconds kCheckPeriod{500};
constexpr int kMostFrames = 8192;                                    // of a capture, at once
constexpr std::int64_t kWatchPeriod = 2000000, kIdleTime = 3000000;  // microseconds

}  // namespace

// A buffer with its stream.
class RtAudioSoundSystem::OpenBuffer : public RtAudioClient {
 public:
  OpenBuffer(RtAudioSoundSystem& system, const RtAudioRequest& request)
      : Stream(system.devices_, system.errands_, request, *this, *system.signal_, system.counters_),
        system_(system) {
    system_.buffers_.push_back(this);
  }
  ~OpenBuffer() override { Leave(); }

  virtual bool Runs() const = 0;
  virtual void Halt() = 0;
  virtual bool IsPlayback() const = 0;
  Failure StartStream() {
    auto failure = Stream.Start();
    if (!failure) system_.told_ = false;
    LastUse = LinuxClock{}.Microseconds();
    return failure;
  }

  RtAudioStream Stream;
  std::int64_t LastUse = LinuxClock{}.Microseconds();

 protected:
  RtAudioSoundSystem& system_;
  // The audio thread must be gone before the ring that it uses.
  void Leave() {
    std::erase(system_.buffers_, this);
    Stream.Close();
  }
};

class RtAudioSoundSystem::Capture : public StreamCaptureBuffer, public RtAudioSoundSystem::OpenBuffer {
 public:
  Capture(RtAudioSoundSystem& system, const RtAudioRequest& request, int bytes, SoundNotifier notifier)
      : StreamCaptureBuffer(system.events_, system.counters_, request.Format, bytes, std::move(notifier)),
        OpenBuffer(system, request) {}
  ~Capture() override { Leave(); }

  Failure Start() override {
    if (IsRunning()) return {};
    if (auto failure = StartStream()) return failure;
    system_.WakePlayback();
    return StreamCaptureBuffer::Start();
  }
  bool Process(std::int16_t* interleaved, int frames, std::int64_t microsecond) override {
    return Deliver(interleaved, frames, microsecond);
  }
  bool Runs() const override { return IsRunning(); }
  void Halt() override { Stop(); }
  bool IsPlayback() const override { return false; }
};

class RtAudioSoundSystem::Playback : public StreamPlaybackBuffer, public RtAudioSoundSystem::OpenBuffer {
 public:
  Playback(RtAudioSoundSystem& system, const RtAudioRequest& request, int bytes, SoundNotifier notifier)
      : StreamPlaybackBuffer(system.events_, system.counters_, request.Format, bytes, std::move(notifier)),
        OpenBuffer(system, request) {}
  ~Playback() override { Leave(); }

  Failure Play() override {
    if (IsRunning()) return {};
    if (auto failure = StartStream()) {
      // It comes in the middle of a run, where nobody waits for an answer, and once for each start.
      system_.told_ = false;
      system_.Tell(*failure);
      return failure;
    }
    return StreamPlaybackBuffer::Play();
  }
  bool Process(std::int16_t* interleaved, int frames, std::int64_t microsecond) override {
    return Fetch(interleaved, frames, microsecond);
  }
  bool Runs() const override { return IsRunning(); }
  void Halt() override { Stop(); }
  bool IsPlayback() const override { return true; }
};

RtAudioSoundSystem::RtAudioSoundSystem(EventQueue& queue, const std::string& backEnd)
    : devices_(std::make_shared<RtAudioDevices>(backEnd)),
      signal_(queue.CreateSignal([this] { OnSignal(); })),
      timer_(queue.CreateTimer([this] { CheckDevices(); })) {
  timer_->Start(kCheckPeriod);
}

RtAudioSoundSystem::~RtAudioSoundSystem() = default;

std::vector<std::string> RtAudioSoundSystem::Names(SoundDirection direction, std::vector<std::string>& kept) {
  struct Answer {
    std::vector<RtAudioDevice> Devices;
    std::string BackEnd;
  };
  const auto answer = std::make_shared<Answer>();
  const auto look = [answer, devices = devices_, free = buffers_.empty()] {
    if (devices->BackEnd().empty()) devices->Select();
    answer->Devices = devices->List();
    if (free && answer->Devices.empty()) {  // a sound server may have been started since
      devices->Select();
      answer->Devices = devices->List();
    }
    answer->BackEnd = devices->BackEnd();
  };
  if (!errands_.Run(look)) return kept;
  backEnd_ = answer->BackEnd;
  kept.clear();
  for (const RtAudioDevice& device : answer->Devices) {
    if (device.Channels(direction) > 0) kept.push_back(device.Name);
  }
  return kept;
}

std::vector<std::string> RtAudioSoundSystem::CaptureDeviceNames() {
  return Names(SoundDirection::Capture, captureNames_);
}

std::vector<std::string> RtAudioSoundSystem::PlaybackDeviceNames() {
  return Names(SoundDirection::Playback, playbackNames_);
}

Failure RtAudioSoundSystem::Choose(const std::vector<std::string>& names, int device,
                                   RtAudioRequest& request) {
  const auto missing = [](const std::string& text) { return Error{RtAudioStream::kErrorMissing, text}; };
  if (names.empty() && errands_.IsHanging()) return missing("the sound server does not answer");
  if (names.empty()) {
    return missing(
        "there is no sound device: start the sound server, or add your user to the group audio and log in "
        "again");
  }
  if (device < 1 || device > static_cast<int>(names.size()))
    return missing("there is no sound device number " + std::to_string(device));
  const SoundFormat& format = request.Format;
  if (format.BitsPerSample != 16 || format.Channels < 1 || format.Channels > 2)
    return Error{RtAudioStream::kErrorFormat, "sound is 16 bits a sample, mono or stereo"};
  const auto chosen = names.begin() + (device - 1);
  request.Name = *chosen;
  request.Occurrence = static_cast<int>(std::count(names.begin(), chosen, *chosen));
  return {};
}

std::unique_ptr<CaptureBuffer> RtAudioSoundSystem::CreateCaptureBuffer(int device, const SoundFormat& format,
                                                                       int bytes, SoundNotifier notifier,
                                                                       Failure& failure) {
  if (captureNames_.empty()) CaptureDeviceNames();
  // Who takes half of a large ring at a time needs no smaller pieces: each wakes the machine.
  const int half = bytes / (2 * std::max(format.Channels, 1) * static_cast<int>(sizeof(std::int16_t)));
  RtAudioRequest request{SoundDirection::Capture, "", 0, format,
                         static_cast<unsigned>(std::clamp(half, 0, kMostFrames))};
  failure = Choose(captureNames_, device, request);
  if (failure) return nullptr;
  auto buffer = std::make_unique<Capture>(*this, request, bytes, std::move(notifier));
  failure = buffer->Stream.Open();
  if (failure) return nullptr;
  return buffer;
}

std::unique_ptr<PlaybackBuffer> RtAudioSoundSystem::CreatePlaybackBuffer(int device,
                                                                         const SoundFormat& format, int bytes,
                                                                         SoundNotifier notifier,
                                                                         Failure& failure) {
  if (playbackNames_.empty()) PlaybackDeviceNames();
  RtAudioRequest request{SoundDirection::Playback, "", 0, format, 0};
  failure = Choose(playbackNames_, device, request);
  if (failure) return nullptr;
  auto buffer = std::make_unique<Playback>(*this, request, bytes, std::move(notifier));
  failure = buffer->Stream.Open();
  if (failure) return nullptr;
  return buffer;
}

// A sleeping device needs up to a second to wake. It plays silence from now on, so that the first block finds
// it awake; where it fails, Play says so.
void RtAudioSoundSystem::WakePlayback() {
  for (OpenBuffer* buffer : buffers_) {
    if (buffer->IsPlayback()) static_cast<void>(buffer->StartStream());
  }
}

void RtAudioSoundSystem::OnSignal() {
  CheckDevices();
  events_.Deliver();
}

void RtAudioSoundSystem::CheckDevices() {
  const std::int64_t now = LinuxClock{}.Microseconds();
  std::string lost;
  const bool inUse =
      std::any_of(buffers_.begin(), buffers_.end(), [](const auto* buffer) { return buffer->Runs(); });
  CompareDevices();
  for (OpenBuffer* buffer : buffers_) {
    if (inUse) buffer->LastUse = now;
    const auto loss = buffer->Stream.LossAt(now);
    if (loss != RtAudioStream::Loss::None) {
      const bool vanished = loss == RtAudioStream::Loss::Vanished;
      if (inUse) lost = "\"" + buffer->Stream.Name() + (vanished ? "\" has vanished" : "\" does not answer");
      buffer->Halt();
      buffer->Stream.Close();
    } else if (buffer->Stream.IsOpen() && now - buffer->LastUse > kIdleTime) {
      buffer->Stream.Close();
    }
  }
  if (inUse && now >= nextLook_) {
    nextLook_ = now + kWatchPeriod;
    WatchDevices();
  }
  if (!lost.empty()) Tell({RtAudioStream::kErrorLost, "The sound device " + lost});
}

void RtAudioSoundSystem::Tell(const Error& error) {
  if (std::exchange(told_, true)) return;
  if (onLost_) onLost_(error);
}

// PulseAudio moves a stream to another device when the stream's own is unplugged and tells nobody: the radio
// would listen to a microphone. So the devices in use are looked for.
void RtAudioSoundSystem::WatchDevices() {
  if (backEnd_ != "pulse" || errands_.IsHanging()) return;
  errands_.Post([devices = devices_, sight = sight_] {
    auto list = devices->List();
    const std::lock_guard lock(sight->Mutex);
    sight->Devices = std::move(list);
    sight->IsNew = true;
  });
}

void RtAudioSoundSystem::CompareDevices() {
  const std::lock_guard lock(sight_->Mutex);
  if (!std::exchange(sight_->IsNew, false)) return;
  for (OpenBuffer* buffer : buffers_) {
    const bool there =
        std::any_of(sight_->Devices.begin(), sight_->Devices.end(),
                    [&](const RtAudioDevice& device) { return device.Name == buffer->Stream.Name(); });
    if (!there) buffer->Stream.MarkLost();
  }
}

}  // namespace quorl
