#include "platform/linux/sound/RtAudioSoundSystem.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/streams/StreamCaptureBuffer.h"
#include "platform/streams/StreamPlaybackBuffer.h"

namespace quorl {
namespace {

constexpr std::chrono::milliseconds kCheckPeriod{500};
constexpr std::chrono::seconds kWatchPeriod{2};
constexpr std::int64_t kIdleTime = 3000000;  // microseconds

std::int64_t Microseconds() {
  return std::chrono::duration_cast<std::chrono::microseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

}  // namespace

// A buffer with its stream.
class RtAudioSoundSystem::OpenBuffer : public RtAudioClient {
 public:
  OpenBuffer(RtAudioSoundSystem& system, SoundDirection direction, const Choice& choice,
             const SoundFormat& format)
      : Stream(system.devices_, direction, choice.Name, choice.Occurrence, format, *this, *system.signal_,
               system.counters_),
        system_(system) {
    const std::lock_guard lock(system_.buffersMutex_);
    system_.buffers_.push_back(this);
  }
  ~OpenBuffer() override { Leave(); }

  virtual bool Runs() const = 0;
  virtual void Halt() = 0;
  virtual bool IsPlayback() const = 0;
  Failure StartStream() {
    auto failure = Stream.Start();
    if (!failure) system_.told_ = false;
    LastUse = Microseconds();
    return failure;
  }

  RtAudioStream Stream;
  std::int64_t LastUse = Microseconds();

 protected:
  RtAudioSoundSystem& system_;
  // The audio thread must be gone before the ring that it uses.
  void Leave() {
    {
      const std::lock_guard lock(system_.buffersMutex_);
      std::erase(system_.buffers_, this);
    }
    Stream.Close();
  }
};

class RtAudioSoundSystem::Capture : public StreamCaptureBuffer, public RtAudioSoundSystem::OpenBuffer {
 public:
  Capture(RtAudioSoundSystem& system, const Choice& choice, const SoundFormat& format, int bytes,
          SoundNotifier notifier)
      : StreamCaptureBuffer(system.events_, system.counters_, format, bytes, std::move(notifier)),
        OpenBuffer(system, SoundDirection::Capture, choice, format) {}
  ~Capture() override { Leave(); }

  Failure Start() override {
    if (IsRunning()) return std::nullopt;
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
  Playback(RtAudioSoundSystem& system, const Choice& choice, const SoundFormat& format, int bytes,
           SoundNotifier notifier)
      : StreamPlaybackBuffer(system.events_, system.counters_, format, bytes, std::move(notifier)),
        OpenBuffer(system, SoundDirection::Playback, choice, format) {}
  ~Playback() override { Leave(); }

  Failure Play() override {
    if (IsRunning()) return std::nullopt;
    if (auto failure = StartStream()) {
      system_.Tell(*failure);  // it comes in the middle of a run, where nobody waits for an answer
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
    : devices_(backEnd),
      signal_(queue.CreateSignal([this] { OnSignal(); })),
      timer_(queue.CreateTimer([this] { CheckDevices(); })) {
  timer_->Start(kCheckPeriod);
}

RtAudioSoundSystem::~RtAudioSoundSystem() {
  {
    const std::lock_guard lock(buffersMutex_);
    closing_ = true;
  }
  wakeWatch_.notify_all();
  if (watch_.joinable()) watch_.join();
}

std::vector<std::string> RtAudioSoundSystem::Names(SoundDirection direction, std::vector<std::string>& kept) {
  kept.clear();
  // A sound server may have been started since.
  if (buffers_.empty() && devices_.List().empty()) devices_.Select();
  for (const RtAudioDevice& device : devices_.List()) {
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

bool RtAudioSoundSystem::Choose(const std::vector<std::string>& names, int device, const SoundFormat& format,
                                Choice& choice, Failure& failure) {
  failure.reset();
  if (names.empty()) {
    failure =
        Error{RtAudioStream::kErrorMissing,
              "there is no sound device: start the sound server, or add your user to the group audio and "
              "log in again"};
    return false;
  }
  if (device < 1 || device > static_cast<int>(names.size())) {
    failure =
        Error{RtAudioStream::kErrorMissing, "there is no sound device number " + std::to_string(device)};
    return false;
  }
  if (format.BitsPerSample != 16 || format.Channels < 1 || format.Channels > 2) {
    failure = Error{RtAudioStream::kErrorFormat, "sound is 16 bits a sample, mono or stereo"};
    return false;
  }
  const auto chosen = names.begin() + (device - 1);
  choice = {*chosen, static_cast<int>(std::count(names.begin(), chosen, *chosen))};
  if (devices_.MovesStreams() && !watch_.joinable()) watch_ = std::thread([this] { WatchDevices(); });
  return true;
}

std::unique_ptr<CaptureBuffer> RtAudioSoundSystem::CreateCaptureBuffer(int device, const SoundFormat& format,
                                                                       int bytes, SoundNotifier notifier,
                                                                       Failure& failure) {
  if (captureNames_.empty()) CaptureDeviceNames();
  Choice choice;
  if (!Choose(captureNames_, device, format, choice, failure)) return nullptr;
  auto buffer = std::make_unique<Capture>(*this, choice, format, bytes, std::move(notifier));
  failure = buffer->Stream.Open();
  if (failure) return nullptr;
  return buffer;
}

std::unique_ptr<PlaybackBuffer> RtAudioSoundSystem::CreatePlaybackBuffer(int device,
                                                                         const SoundFormat& format, int bytes,
                                                                         SoundNotifier notifier,
                                                                         Failure& failure) {
  if (playbackNames_.empty()) PlaybackDeviceNames();
  Choice choice;
  if (!Choose(playbackNames_, device, format, choice, failure)) return nullptr;
  auto buffer = std::make_unique<Playback>(*this, choice, format, bytes, std::move(notifier));
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
  const std::int64_t now = Microseconds();
  std::string lost;
  // Only this thread changes the list.
  const bool inUse =
      std::any_of(buffers_.begin(), buffers_.end(), [](const auto* buffer) { return buffer->Runs(); });
  for (OpenBuffer* buffer : buffers_) {
    if (inUse) buffer->LastUse = now;
    if (buffer->Stream.IsLost(now)) {
      if (inUse) lost = buffer->Stream.Name();
      buffer->Halt();
      buffer->Stream.Close();
    } else if (buffer->Stream.IsOpen() && now - buffer->LastUse > kIdleTime) {
      buffer->Stream.Close();
    }
  }
  if (!lost.empty()) Tell({RtAudioStream::kErrorLost, "The sound device \"" + lost + "\" has vanished"});
}

void RtAudioSoundSystem::Tell(const Error& error) {
  if (std::exchange(told_, true)) return;
  if (onLost_) onLost_(error);
}

// A sound server that moves a stream to another device when the stream's own is unplugged tells nobody, and
// the radio would listen to a microphone. So the devices in use are looked for.
void RtAudioSoundSystem::WatchDevices() {
  std::unique_lock lock(buffersMutex_);
  while (!wakeWatch_.wait_for(lock, kWatchPeriod, [this] { return closing_; })) {
    lock.unlock();
    const auto list = devices_.List();
    lock.lock();
    for (OpenBuffer* buffer : buffers_) {
      const bool there = std::any_of(list.begin(), list.end(), [&](const RtAudioDevice& device) {
        return device.Name == buffer->Stream.Name();
      });
      if (!there) buffer->Stream.MarkLost();
    }
  }
}

}  // namespace quorl
