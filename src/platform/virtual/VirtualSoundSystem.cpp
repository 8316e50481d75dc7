#include "platform/virtual/VirtualSoundSystem.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "platform/streams/StreamCaptureBuffer.h"
#include "platform/streams/StreamPlaybackBuffer.h"

namespace quorl {
namespace {

constexpr int kErrorNoDevice = 1, kErrorFormat = 2, kErrorLost = 3;
constexpr int kFramesAtOnce = 512;
constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();
constexpr double kMicrosecondsPerSecond = 1e6;

}  // namespace

// A device that runs: frames against the clock.
class VirtualSoundSystem::Runner {
 public:
  Runner(VirtualSoundSystem& system, Device& device, const SoundFormat& format)
      : system_(system), device_(device), rate_(format.SampleRate) {
    system_.runners_.push_back(this);
  }
  virtual ~Runner() { std::erase(system_.runners_, this); }

  Device& TheDevice() const { return device_; }
  // Microsecond at which `frames` more frames are through; never where the device does not run.
  std::int64_t TimeOf(int frames) const {
    if (!Moves()) return kNever;
    const double seconds = static_cast<double>(done_ + frames) / (rate_ * (1.0 + drift_ * 1e-6));
    return origin_ + static_cast<std::int64_t>(std::ceil(seconds * kMicrosecondsPerSecond));
  }
  // Frames to the next notification.
  virtual int Ahead() = 0;
  void Run(int frames) {
    const std::int64_t time = TimeOf(frames);
    done_ += frames;
    Move(frames, time);
  }
  // The frames that are still to come follow `step` microseconds later.
  void Postpone(std::int64_t step) { origin_ += step; }
  virtual bool Moves() const = 0;
  virtual void Halt() = 0;

 protected:
  Failure Begin(double drift) {
    if (!device_.Present) return Error{kErrorNoDevice, "\"" + device_.Name + "\" is not connected"};
    origin_ = system_.clock_.Microseconds();
    done_ = 0;
    drift_ = drift;
    return {};
  }
  virtual void Move(int frames, std::int64_t time) = 0;

  VirtualSoundSystem& system_;
  Device& device_;

 private:
  const double rate_;
  double drift_ = 0.0;
  std::int64_t origin_ = 0, done_ = 0;
};

class VirtualSoundSystem::Capture : public StreamCaptureBuffer, public VirtualSoundSystem::Runner {
 public:
  Capture(VirtualSoundSystem& system, Device& device, const SoundFormat& format, int bytes,
          SoundNotifier notifier)
      : StreamCaptureBuffer(system.events_, system.counters_, format, bytes, std::move(notifier)),
        Runner(system, device, format) {}

  Failure Start() override {
    if (IsRunning()) return {};
    if (auto failure = Begin(0.0)) return failure;
    auto failure = StreamCaptureBuffer::Start();
    system_.Arm();
    return failure;
  }
  bool Moves() const override { return IsRunning(); }
  void Halt() override { Stop(); }
  int Ahead() override { return FramesToNotification(); }

 private:
  void Move(int frames, std::int64_t time) override {
    std::array<std::int16_t, 2 * kFramesAtOnce> block;
    device_.Source->Render(block.data(), frames);
    if (Channels() == 1) {
      for (std::size_t i = 0; i < static_cast<std::size_t>(frames); ++i) block[i] = block[2 * i];
    }
    Deliver(block.data(), frames, time);
  }
};

class VirtualSoundSystem::Playback : public StreamPlaybackBuffer, public VirtualSoundSystem::Runner {
 public:
  Playback(VirtualSoundSystem& system, Device& device, const SoundFormat& format, int bytes,
           SoundNotifier notifier)
      : StreamPlaybackBuffer(system.events_, system.counters_, format, bytes, std::move(notifier)),
        Runner(system, device, format) {}

  Failure Play() override {
    if (IsRunning()) return {};
    if (auto failure = Begin(system_.playbackDrift_)) return failure;
    auto failure = StreamPlaybackBuffer::Play();
    system_.Arm();
    return failure;
  }
  bool Moves() const override { return IsRunning(); }
  void Halt() override { Stop(); }
  int Ahead() override { return FramesToNotification(); }

 private:
  void Move(int frames, std::int64_t time) override {
    std::array<std::int16_t, 2 * kFramesAtOnce> block;
    Fetch(block.data(), frames, time);
    if (device_.Sink == nullptr) return;
    if (Channels() == 2) {
      for (std::size_t i = 0; i < static_cast<std::size_t>(frames); ++i) {
        block[i] = static_cast<std::int16_t>((block[2 * i] + block[2 * i + 1]) / 2);
      }
    }
    device_.Sink->Accept(block.data(), frames);
  }
};

VirtualSoundSystem::VirtualSoundSystem(EventQueue& queue, const Clock& clock)
    : queue_(queue), clock_(clock), timer_(queue.CreateTimer([this] { Tick(); })) {}

VirtualSoundSystem::~VirtualSoundSystem() = default;

void VirtualSoundSystem::AddCaptureDevice(const std::string& name, SampleSource& source) {
  captures_.push_back({name, &source, nullptr, true});
}

void VirtualSoundSystem::AddPlaybackDevice(const std::string& name, SampleSink* sink) {
  playbacks_.push_back({name, nullptr, sink, true});
}

void VirtualSoundSystem::SetPresent(const std::string& name, bool present) {
  for (auto* devices : {&captures_, &playbacks_}) {
    for (Device& device : *devices) {
      if (device.Name == name) device.Present = present;
    }
  }
}

void VirtualSoundSystem::Plug(const std::string& name) {
  SetPresent(name, true);
}

void VirtualSoundSystem::Unplug(const std::string& name) {
  Tick();
  bool ran = false;
  for (Runner* runner : runners_) {
    if (runner->TheDevice().Name != name || !runner->Moves()) continue;
    runner->Halt();
    ran = true;
  }
  SetPresent(name, false);
  Arm();
  if (ran && onLost_) onLost_({kErrorLost, "\"" + name + "\" has vanished"});
}

void VirtualSoundSystem::SetStalled(bool stalled) {
  if (stalled == stalled_) return;
  if (stalled) {
    Tick();
    stalledAt_ = clock_.Microseconds();
    timer_->Stop();
    stalled_ = true;
    return;
  }
  stalled_ = false;
  for (Runner* runner : runners_) runner->Postpone(clock_.Microseconds() - stalledAt_);
  Arm();
}

void VirtualSoundSystem::RunDevices() {
  const std::int64_t now = clock_.Microseconds();
  for (;;) {
    Runner* first = nullptr;
    int frames = 0;
    std::int64_t time = now;
    for (Runner* runner : runners_) {
      const int step = std::clamp(runner->Ahead(), 1, kFramesAtOnce);
      const std::int64_t end = runner->TimeOf(step);
      if (end > time || (first != nullptr && end == time)) continue;
      first = runner;
      frames = step;
      time = end;
    }
    if (first == nullptr) return;
    first->Run(frames);
  }
}

void VirtualSoundSystem::Arm() {
  std::int64_t next = kNever;
  for (Runner* runner : runners_) {
    if (runner->Moves()) next = std::min(next, runner->TimeOf(std::max(runner->Ahead(), 1)));
  }
  timer_->Stop();
  if (next == kNever || stalled_) return;
  const std::int64_t wait = std::max<std::int64_t>(next - clock_.Microseconds(), 0);
  timer_->Start(std::chrono::milliseconds(std::max<std::int64_t>((wait + 999) / 1000, 1)));
}

void VirtualSoundSystem::Tick() {
  if (stalled_) return;
  RunDevices();
  Arm();  // before the handlers, which may yield and wait for the next block there
  events_.Deliver();
}

VirtualSoundSystem::Device* VirtualSoundSystem::Find(std::deque<Device>& devices, int number,
                                                     const SoundFormat& format, Failure& failure) {
  if (number < 1 || number > static_cast<int>(devices.size())) {
    failure = Error{kErrorNoDevice, "there is no sound device number " + std::to_string(number)};
    return nullptr;
  }
  Device& device = devices[static_cast<std::size_t>(number) - 1];
  if (!device.Present) {
    failure = Error{kErrorNoDevice, "\"" + device.Name + "\" is not connected"};
    return nullptr;
  }
  if (format.BitsPerSample != 16 || format.Channels < 1 || format.Channels > 2 || format.SampleRate <= 0) {
    failure = Error{kErrorFormat, "\"" + device.Name + "\" refuses the sample format"};
    return nullptr;
  }
  return &device;
}

std::vector<std::string> VirtualSoundSystem::CaptureDeviceNames() {
  std::vector<std::string> names;
  for (const Device& device : captures_) names.push_back(device.Name);
  return names;
}

std::vector<std::string> VirtualSoundSystem::PlaybackDeviceNames() {
  std::vector<std::string> names;
  for (const Device& device : playbacks_) names.push_back(device.Name);
  return names;
}

std::unique_ptr<CaptureBuffer> VirtualSoundSystem::CreateCaptureBuffer(int device, const SoundFormat& format,
                                                                       int bytes, SoundNotifier notifier,
                                                                       Failure& failure) {
  failure = refuseCapture_;
  Device* found = failure ? nullptr : Find(captures_, device, format, failure);
  if (found == nullptr) return nullptr;
  return std::make_unique<Capture>(*this, *found, format, bytes, std::move(notifier));
}

std::unique_ptr<PlaybackBuffer> VirtualSoundSystem::CreatePlaybackBuffer(int device,
                                                                         const SoundFormat& format, int bytes,
                                                                         SoundNotifier notifier,
                                                                         Failure& failure) {
  failure = refusePlayback_;
  Device* found = failure ? nullptr : Find(playbacks_, device, format, failure);
  if (found == nullptr) return nullptr;
  return std::make_unique<Playback>(*this, *found, format, bytes, std::move(notifier));
}

}  // namespace quorl
