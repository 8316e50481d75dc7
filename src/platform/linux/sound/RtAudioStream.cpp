#include "platform/linux/sound/RtAudioStream.h"

#include <RtAudio.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "platform/linux/system/LinuxClock.h"
#include "platform/linux/system/ThreadPriority.h"

namespace quorl {
namespace {

// A block is not complete before its last sample, so that capture has nothing to do sooner.
constexpr unsigned kCaptureFrames = 2048;
// Ahead in the sound server: 64 ms. With two pieces a busy machine is heard.
constexpr unsigned kPlaybackFrames = 1024, kBuffersAhead = 3;
// A device that fails goes through its samples at once. Seconds that one may be ahead of its time, those that
// it may catch up after it stood still, and how far its clock may be off.
constexpr double kMostAhead = 1.0, kMostCredit = 5.0, kClockError = 0.01;
constexpr std::int64_t kLongestSilence = 3000000;  // microseconds

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

const RtAudioDevice* Find(const std::vector<RtAudioDevice>& list, const RtAudioRequest& request) {
  const RtAudioDevice* found = nullptr;
  int seen = 0;
  for (const RtAudioDevice& device : list) {
    if (device.Name != request.Name || device.Channels(request.Direction) == 0) continue;
    found = &device;
    if (seen++ == request.Occurrence) break;
  }
  return found;
}

Error NoAnswer(const std::string& name) {
  return {RtAudioStream::kErrorOpen, "\"" + name + "\" can't be opened: the sound server does not answer"};
}

}  // namespace

// Shared by the stream, the audio thread and the errand that closes: each may be the last that needs it.
struct RtAudioStream::Line {
  std::unique_ptr<RtAudio> Audio;
  int DeviceChannels = 0;
  unsigned Frames = 0;                   // of the longest block
  std::atomic<RtAudioStream*> Target{};  // null once the stream has let go
  std::atomic<bool> InCall{false};       // the audio thread is with the target
  bool Failed = false;                   // the device gave or took no block; the audio thread's
};

struct CallbackTarget {
  using Line = RtAudioStream::Line;
  static thread_local Line* OfThisThread;

  static int OnAudio(void* out, void* in, unsigned frames, double, RtAudioStreamStatus status, void* user) {
    auto& line = *static_cast<Line*>(user);
    OfThisThread = &line;
    auto* samples = static_cast<std::int16_t*>(out != nullptr ? out : in);
    if (out != nullptr)
      std::fill_n(samples, frames * static_cast<unsigned>(line.DeviceChannels), std::int16_t{0});
    line.InCall = true;
    int answer = 0;
    if (RtAudioStream* target = line.Target) {
      target->Prioritise();
      if (status != 0) target->CountTrouble();
      const bool came = !std::exchange(line.Failed, false);
      answer = target->OnAudio(samples, static_cast<int>(frames), LinuxClock{}.Microseconds(), came);
    }
    line.InCall = false;
    return answer;
  }
  // With a receiver for its errors RtAudio throws none, which on its own thread would end the program. On the
  // audio thread they say that a block was not read or not written; the next turn comes all the same.
  static void OnError(RtAudioError::Type, const std::string&) {
    if (OfThisThread != nullptr) OfThisThread->Failed = true;
  }
};

thread_local CallbackTarget::Line* CallbackTarget::OfThisThread = nullptr;

RtAudioStream::RtAudioStream(std::shared_ptr<RtAudioDevices> devices, SoundErrands& errands,
                             RtAudioRequest request, RtAudioClient& client, QueueSignal& signal,
                             SoundCounters& counters)
    : devices_(std::move(devices)),
      errands_(errands),
      request_(std::move(request)),
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

Failure RtAudioStream::Open() {
  if (line_ && !lost_.load()) return {};
  Close();
  struct Answer {
    Line Opened;
    Failure Fault;
  };
  const auto answer = std::make_shared<Answer>();
  const auto open = [answer, devices = devices_, request = request_] {
    answer->Fault = OpenLine(*devices, request, answer->Opened);
  };
  if (!errands_.Run(open)) return NoAnswer(request_.Name);
  if (answer->Fault) return answer->Fault;
  line_ = {answer, &answer->Opened};
  scratch_.assign(
      static_cast<std::size_t>(line_->Frames) * static_cast<std::size_t>(request_.Format.Channels), 0);
  prioritised_ = lost_ = false;
  line_->Target = this;
  return {};
}

Failure RtAudioStream::OpenLine(RtAudioDevices& devices, const RtAudioRequest& request, Line& line) {
  const auto list = devices.List();
  const RtAudioDevice* device = Find(list, request);
  if (device == nullptr) return Error{kErrorMissing, "\"" + request.Name + "\" is not connected"};
  const auto& rates = device->SampleRates;
  const int rate = request.Format.SampleRate;
  if (!rates.empty() && std::count(rates.begin(), rates.end(), static_cast<unsigned>(rate)) == 0) {
    return Error{kErrorFormat,
                 "\"" + request.Name + "\" can't run at " + std::to_string(rate) + " samples a second"};
  }
  return OpenDevice(devices, request, *device, line);
}

Failure RtAudioStream::OpenDevice(RtAudioDevices& devices, const RtAudioRequest& request,
                                  const RtAudioDevice& device, Line& line) {
  const bool capture = request.Direction == SoundDirection::Capture;
  // Stereo wherever the device has it: mono would come out of the left loudspeaker only.
  line.DeviceChannels = static_cast<int>(std::min(2U, device.Channels(request.Direction)));
  RtAudio::StreamParameters parameters;
  parameters.deviceId = device.Id;
  parameters.nChannels = static_cast<unsigned>(line.DeviceChannels);
  RtAudio::StreamOptions options;
  options.numberOfBuffers = kBuffersAhead;
  options.streamName = capture ? "QUORLSDR capture" : "QUORLSDR playback";
  line.Frames = capture ? std::max(kCaptureFrames, request.Frames) : kPlaybackFrames;
  line.Audio = devices.Create();
  const std::string what = "\"" + request.Name + "\" can't be opened at " +
                           std::to_string(request.Format.SampleRate) + " samples a second";
  try {
    line.Audio->openStream(capture ? nullptr : &parameters, capture ? &parameters : nullptr, RTAUDIO_SINT16,
                           static_cast<unsigned>(request.Format.SampleRate), &line.Frames,
                           &CallbackTarget::OnAudio, &line, &options, &CallbackTarget::OnError);
  } catch (const RtAudioError& error) {
    return Error{kErrorOpen, what + ": " + error.getMessage()};
  }
  if (!line.Audio->isStreamOpen()) return Error{kErrorOpen, what};
  return {};
}

Failure RtAudioStream::Start() {
  if (auto failure = Open()) return failure;
  if (line_->Audio->isStreamRunning()) return {};
  lastCall_ = LinuxClock{}.Microseconds();
  ahead_ = 0.0;
  lastHeard_.store(lastCall_, std::memory_order_release);
  const bool answered = errands_.Run([line = line_] { line->Audio->startStream(); });
  if (answered && line_->Audio->isStreamRunning()) return {};
  Close();
  return answered ? Error{kErrorOpen, "\"" + request_.Name + "\" does not start"} : NoAnswer(request_.Name);
}

void RtAudioStream::Close() {
  if (!line_) return;
  line_->Target = nullptr;
  while (line_->InCall) std::this_thread::yield();  // for as long as a block is copied
  errands_.Post([line = std::exchange(line_, nullptr)] {
    line->Audio->closeStream();
    line->Audio.reset();
  });
}

RtAudioStream::Loss RtAudioStream::LossAt(std::int64_t now) const {
  if (!line_) return Loss::None;
  if (lost_.load()) return Loss::Vanished;
  const bool silent = line_->Audio->isStreamRunning() && now - lastHeard_.load() > kLongestSilence;
  return silent ? Loss::Silent : Loss::None;
}

void RtAudioStream::MarkLost() {
  lost_ = true;
  signal_.Raise();
}

void RtAudioStream::CountTrouble() {
  auto& counter = request_.Direction == SoundDirection::Capture ? counters_.Overruns : counters_.Underruns;
  counter.fetch_add(1, std::memory_order_relaxed);
}

bool RtAudioStream::RunsAway(int frames, std::int64_t microsecond) {
  constexpr double kSecondsPerMicrosecond = 1e-6;
  const double elapsed = static_cast<double>(microsecond - lastCall_) * kSecondsPerMicrosecond;
  ahead_ += static_cast<double>(frames) / request_.Format.SampleRate - elapsed * (1.0 + kClockError);
  ahead_ = std::max(ahead_, -kMostCredit);
  lastCall_ = microsecond;
  lastHeard_.store(microsecond, std::memory_order_relaxed);
  return ahead_ > kMostAhead;
}

int RtAudioStream::OnAudio(std::int16_t* samples, int frames, std::int64_t microsecond, bool came) {
  constexpr int kGoOn = 0, kGiveUp = 2;
  // Pairs with the store in Start: RtAudio's thread is older than what Start and Open have written.
  static_cast<void>(lastHeard_.load(std::memory_order_acquire));
  if (RunsAway(frames, microsecond)) {
    MarkLost();
    return kGiveUp;
  }
  if (came && PassBlocks(samples, static_cast<std::size_t>(frames), microsecond)) signal_.Raise();
  return kGoOn;
}

bool RtAudioStream::PassBlocks(std::int16_t* samples, std::size_t frames, std::int64_t microsecond) {
  const int channels = request_.Format.Channels, deviceChannels = line_->DeviceChannels;
  const bool capture = request_.Direction == SoundDirection::Capture;
  const std::size_t most = scratch_.size() / static_cast<std::size_t>(channels);
  bool due = false;
  for (std::size_t done = 0; done < frames;) {
    const std::size_t part = std::min(most, frames - done);
    std::int16_t* device = samples + done * static_cast<std::size_t>(deviceChannels);
    std::int16_t* block = deviceChannels == channels ? device : scratch_.data();
    if (block != device && capture) Convert(device, deviceChannels, block, part);
    due |= client_.Process(block, static_cast<int>(part), microsecond);
    if (block != device && !capture) Convert(block, channels, device, part);
    done += part;
  }
  return due;
}

}  // namespace quorl
