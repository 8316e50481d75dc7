#include "platform/virtual/SourcedSoundSystem.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/streams/StreamCaptureBuffer.h"

namespace quorl {
namespace {

constexpr std::chrono::milliseconds kClockTick{10};
// While the playback paces: in case that it stops without a word.
constexpr std::chrono::milliseconds kWatchTick{500};
constexpr int kErrorTaken = 1;
constexpr std::int64_t kPieceFrames = 512;
constexpr std::int64_t kSecond = 1000000;

}  // namespace

class SourcedSoundSystem::Capture : public StreamCaptureBuffer {
 public:
  Capture(SourcedSoundSystem& system, const SoundFormat& format, int bytes, SoundNotifier notifier)
      : StreamCaptureBuffer(system.events_, system.counters_, format, bytes, std::move(notifier)),
        system_(system) {
    system_.capture_ = this;
  }
  ~Capture() override {
    system_.capture_ = nullptr;
    system_.StopPacing();
  }

  Failure Start() override {
    if (IsRunning()) return {};
    auto failure = StreamCaptureBuffer::Start();
    system_.Pace();
    return failure;
  }
  void Stop() override {
    system_.StopPacing();
    StreamCaptureBuffer::Stop();
  }

 private:
  SourcedSoundSystem& system_;
};

// Passes everything on; hears the notifications first.
class SourcedSoundSystem::Playback : public PlaybackBuffer {
 public:
  Playback(SourcedSoundSystem& system, int bytes, int bytesPerFrame)
      : system_(system), bytes_(bytes), bytesPerFrame_(bytesPerFrame) {}
  ~Playback() override {
    std::erase(system_.playbacks_, this);
    system_.Pace();
  }

  void SetInner(std::unique_ptr<PlaybackBuffer> inner) {
    inner_ = std::move(inner);
    system_.playbacks_.push_back(this);
  }
  void Heard(int eventId) {
    const auto position = std::find_if(positions_.begin(), positions_.end(),
                                       [eventId](const auto& item) { return item.EventId == eventId; });
    if (position == positions_.end()) return;
    const int distance = (position->Offset - lastOffset_ + bytes_ - 1) % bytes_ + 1;
    lastOffset_ = position->Offset;
    if (system_.pacer_ == this) system_.Advance(distance / bytesPerFrame_);
  }

  void SetNotificationPositions(const std::vector<SoundNotification>& positions) override {
    positions_ = positions;
    inner_->SetNotificationPositions(positions);
  }
  Failure Play() override {
    auto failure = inner_->Play();
    system_.Pace();
    return failure;
  }
  void Stop() override {
    inner_->Stop();
    system_.Pace();
  }
  bool IsRunning() const override { return inner_->IsRunning(); }
  void Write(int offset, int bytes, const void* source) override { inner_->Write(offset, bytes, source); }
  void SetVolume(int hundredthsOfDecibel) override { inner_->SetVolume(hundredthsOfDecibel); }

 private:
  SourcedSoundSystem& system_;
  const int bytes_, bytesPerFrame_;
  int lastOffset_ = -1;
  std::vector<SoundNotification> positions_;
  std::unique_ptr<PlaybackBuffer> inner_;
};

SourcedSoundSystem::SourcedSoundSystem(SoundSystem& playback, SampleSource& source, EventQueue& queue,
                                       const Clock& clock, std::string captureName)
    : playback_(playback),
      source_(source),
      clock_(clock),
      captureName_(std::move(captureName)),
      timer_(queue.CreateTimer([this] { TickByClock(); })) {
  playback_.OnDeviceLost([this](const Error& error) {
    Pace();
    if (onLost_) onLost_(error);
  });
}

SourcedSoundSystem::~SourcedSoundSystem() {
  playback_.OnDeviceLost({});
}

std::unique_ptr<CaptureBuffer> SourcedSoundSystem::CreateCaptureBuffer(int device, const SoundFormat& format,
                                                                       int bytes, SoundNotifier notifier,
                                                                       Failure& failure) {
  failure.reset();
  if (device != 1 || capture_ != nullptr || format.Channels < 1 || format.Channels > 2) {
    failure = Error{kErrorTaken, "\"" + captureName_ + "\" is the one capture device, and opened once"};
    return nullptr;
  }
  rate_ = format.SampleRate;
  return std::make_unique<Capture>(*this, format, bytes, std::move(notifier));
}

std::unique_ptr<PlaybackBuffer> SourcedSoundSystem::CreatePlaybackBuffer(int device,
                                                                         const SoundFormat& format, int bytes,
                                                                         SoundNotifier notifier,
                                                                         Failure& failure) {
  auto outer = std::make_unique<Playback>(*this, bytes, format.Channels * format.BitsPerSample / 8);
  auto inner = playback_.CreatePlaybackBuffer(
      device, format, bytes,
      [heard = outer.get(), notifier = std::move(notifier)](int eventId) {
        heard->Heard(eventId);
        notifier(eventId);
      },
      failure);
  if (!inner) return nullptr;
  outer->SetInner(std::move(inner));
  return outer;
}

SoundStatistics SourcedSoundSystem::Statistics() const {
  SoundStatistics statistics = playback_.Statistics();
  statistics.CapturedBlocks = counters_.CapturedBlocks.load();
  return statistics;
}

void SourcedSoundSystem::Advance(std::int64_t frames) {
  std::array<std::int16_t, 2 * kPieceFrames> block;
  while (frames > 0 && capture_ != nullptr && capture_->IsRunning()) {
    const int part = static_cast<int>(std::min(frames, kPieceFrames));
    frames -= part;
    source_.Render(block.data(), part);
    if (capture_->Channels() == 1) {
      for (std::size_t i = 0; i < static_cast<std::size_t>(part); ++i) block[i] = block[2 * i];
    }
    if (capture_->Deliver(block.data(), part, clock_.Microseconds())) events_.Deliver();
  }
}

const SourcedSoundSystem::Playback* SourcedSoundSystem::Pacer() const {
  for (const Playback* playback : playbacks_) {
    if (playback->IsRunning()) return playback;
  }
  return nullptr;
}

void SourcedSoundSystem::Pace() {
  if (capture_ == nullptr || !capture_->IsRunning()) return;
  const Playback* pacer = Pacer();
  if (pacer != nullptr && pacer == pacer_) return;  // goes on as it is
  pacer_ = pacer;
  origin_ = clock_.Microseconds();
  framesDone_ = 0;
  timer_->Start(pacer_ ? kWatchTick : kClockTick);
}

void SourcedSoundSystem::StopPacing() {
  timer_->Stop();
  pacer_ = nullptr;
}

void SourcedSoundSystem::TickByClock() {
  const Playback* pacer = Pacer();
  const std::int64_t frames = (clock_.Microseconds() - origin_) * rate_ / kSecond - framesDone_;
  // After more than a second of standing still the past is not rendered any more.
  if (pacer_ != nullptr || pacer != nullptr || frames > rate_) {
    Pace();
    return;
  }
  framesDone_ += frames;
  Advance(frames);
}

}  // namespace quorl
