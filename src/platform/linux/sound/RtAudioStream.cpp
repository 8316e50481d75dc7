#include "platform/linux/sound/RtAudioStream.h"

#include <RtAudio.h>

#include <algorithm>
#include <chrono>

#include "platform/linux/system/ThreadPriority.h"

namespace quorl {
namespace {

// A block is not complete before its last sample, so that capture has nothing to do sooner.
constexpr unsigned kCaptureFrames = 2048;
constexpr unsigned kPlaybackFrames = 1024, kBuffersAhead = 3;  // the latter in the sound server: 64 ms
// A device that fails goes through its samples at once. Seconds that one may be ahead of its time, those that
// it may catch up after it stood still, and how far its clock may be off.
constexpr double kMostAhead = 1.0, kMostCredit = 5.0, kClockError = 0.01;
constexpr std::int64_t kLongestSilence = 3000000;  // microseconds

std::int64_t Microseconds() {
  return std::chrono::duration_cast<std::chrono::microseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

// Between mono and stereo.
void Widen(const std::int16_t* mono, std::int16_t* stereo, std::size_t frames) {
  for (std::size_t i = 0; i < frames; ++i) stereo[2 * i] = stereo[2 * i + 1] = mono[i];
}
void TakeLeft(const std::int16_t* stereo, std::int16_t* mono, std::size_t frames) {
  for (std::size_t i = 0; i < frames; ++i) mono[i] = stereo[2 * i];
}
void Convert(const std::int16_t* from, int fromChannels, std::int16_t* to, std::size_t frames) {
  fromChannels == 1 ? Widen(from, to, frames) : TakeLeft(from, to, frames);
}

struct CallbackTarget {
  static int OnAudio(void* out, void* in, unsigned frames, double, RtAudioStreamStatus status, void* stream) {
    auto* target = static_cast<RtAudioStream*>(stream);
    target->Prioritise();
    if (status != 0) target->CountTrouble();
    return target->OnAudio(static_cast<std::int16_t*>(out != nullptr ? out : in), static_cast<int>(frames),
                           Microseconds());
  }
  // With a receiver for its errors RtAudio throws none, which on its own thread would end the program. The
  // stream sees a failing device by itself: it runs away or stands still.
  static void OnError(RtAudioError::Type, const std::string&) {}
};

}  // namespace

RtAudioStream::RtAudioStream(RtAudioDevices& devices, SoundDirection direction, std::string name,
                             int occurrence, const SoundFormat& format, RtAudioClient& client,
                             QueueSignal& signal, SoundCounters& counters)
    : devices_(devices),
      direction_(direction),
      name_(std::move(name)),
      occurrence_(occurrence),
      format_(format),
      client_(client),
      signal_(signal),
      counters_(counters) {}

void RtAudioStream::Prioritise() {
  if (prioritised_) return;
  prioritised_ = true;
  SetRealTimePriority(true);
}

RtAudioStream::~RtAudioStream() {
  Close();
}

const RtAudioDevice* RtAudioStream::Find(const std::vector<RtAudioDevice>& list) const {
  const RtAudioDevice* found = nullptr;
  int seen = 0;
  for (const RtAudioDevice& device : list) {
    if (device.Name != name_ || device.Channels(direction_) == 0) continue;
    found = &device;
    if (seen++ == occurrence_) break;
  }
  return found;
}

Failure RtAudioStream::Open() {
  if (audio_ && !lost_.load()) return std::nullopt;
  Close();
  const auto lock = devices_.Lock();
  const auto list = devices_.ListLocked();
  const RtAudioDevice* device = Find(list);
  if (device == nullptr) return Error{kErrorMissing, "\"" + name_ + "\" is not connected"};
  const auto& rates = device->SampleRates;
  if (!rates.empty() &&
      std::count(rates.begin(), rates.end(), static_cast<unsigned>(format_.SampleRate)) == 0) {
    return Error{kErrorFormat, "\"" + name_ + "\" can't run at " + std::to_string(format_.SampleRate) +
                                   " samples a second"};
  }
  return OpenDevice(*device);
}

Failure RtAudioStream::OpenDevice(const RtAudioDevice& device) {
  const bool capture = direction_ == SoundDirection::Capture;
  // Stereo wherever the device has it: mono would come out of the left loudspeaker only.
  deviceChannels_ = static_cast<int>(std::min(2U, device.Channels(direction_)));
  RtAudio::StreamParameters parameters;
  parameters.deviceId = device.Id;
  parameters.nChannels = static_cast<unsigned>(deviceChannels_);
  RtAudio::StreamOptions options;
  options.numberOfBuffers = kBuffersAhead;
  options.streamName = capture ? "QUORLSDR capture" : "QUORLSDR playback";
  unsigned frames = capture ? kCaptureFrames : kPlaybackFrames;
  auto audio = devices_.Create();
  prioritised_ = false;
  try {
    audio->openStream(capture ? nullptr : &parameters, capture ? &parameters : nullptr, RTAUDIO_SINT16,
                      static_cast<unsigned>(format_.SampleRate), &frames, &CallbackTarget::OnAudio, this,
                      &options, &CallbackTarget::OnError);
  } catch (const RtAudioError& error) {
    return Error{kErrorOpen, "\"" + name_ + "\" can't be opened at " + std::to_string(format_.SampleRate) +
                                 " samples a second: " + error.getMessage()};
  }
  if (!audio->isStreamOpen()) return Error{kErrorOpen, "\"" + name_ + "\" can't be opened"};
  scratch_.assign(static_cast<std::size_t>(frames) * static_cast<std::size_t>(format_.Channels), 0);
  lost_ = false;
  audio_ = std::move(audio);
  return std::nullopt;
}

Failure RtAudioStream::Start() {
  if (auto failure = Open()) return failure;
  if (audio_->isStreamRunning()) return std::nullopt;
  lastCall_ = Microseconds();
  ahead_ = 0.0;
  lastHeard_.store(lastCall_, std::memory_order_release);
  audio_->startStream();
  if (audio_->isStreamRunning()) return std::nullopt;
  Close();
  return Error{kErrorOpen, "\"" + name_ + "\" does not start"};
}

void RtAudioStream::Close() {
  if (!audio_) return;
  audio_->closeStream();
  audio_.reset();
}

bool RtAudioStream::IsLost(std::int64_t now) const {
  if (!audio_) return false;
  return lost_.load() || (audio_->isStreamRunning() && now - lastHeard_.load() > kLongestSilence);
}

void RtAudioStream::MarkLost() {
  lost_ = true;
  signal_.Raise();
}

void RtAudioStream::CountTrouble() {
  auto& counter = direction_ == SoundDirection::Capture ? counters_.Overruns : counters_.Underruns;
  counter.fetch_add(1, std::memory_order_relaxed);
}

bool RtAudioStream::RunsAway(int frames, std::int64_t microsecond) {
  constexpr double kSecondsPerMicrosecond = 1e-6;
  const double elapsed = static_cast<double>(microsecond - lastCall_) * kSecondsPerMicrosecond;
  ahead_ += static_cast<double>(frames) / format_.SampleRate - elapsed * (1.0 + kClockError);
  ahead_ = std::max(ahead_, -kMostCredit);
  lastCall_ = microsecond;
  lastHeard_.store(microsecond, std::memory_order_relaxed);
  return ahead_ > kMostAhead;
}

int RtAudioStream::OnAudio(std::int16_t* samples, int frames, std::int64_t microsecond) {
  constexpr int kGoOn = 0, kGiveUp = 2;
  // Pairs with the store in Start: RtAudio's thread is older than what Start and Open have written.
  static_cast<void>(lastHeard_.load(std::memory_order_acquire));
  if (RunsAway(frames, microsecond)) {
    MarkLost();
    return kGiveUp;
  }
  const std::size_t most = scratch_.size() / static_cast<std::size_t>(format_.Channels);
  bool due = false;
  for (std::size_t done = 0, n = static_cast<std::size_t>(frames); done < n;) {
    const std::size_t part = std::min(most, n - done);
    std::int16_t* device = samples + done * static_cast<std::size_t>(deviceChannels_);
    std::int16_t* block = deviceChannels_ == format_.Channels ? device : scratch_.data();
    if (block != device && direction_ == SoundDirection::Capture)
      Convert(device, deviceChannels_, block, part);
    due |= client_.Process(block, static_cast<int>(part), microsecond);
    if (block != device && direction_ == SoundDirection::Playback)
      Convert(block, format_.Channels, device, part);
    done += part;
  }
  if (due) signal_.Raise();
  return kGoOn;
}

}  // namespace quorl
