#include "sound/TestTone.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

namespace quorl {

namespace {

constexpr SoundFormat kFormat{.Channels = 1};  // as the radio plays
constexpr int kBlocks = 4, kBlockSamples = 2048;
constexpr int kBlockBytes = kBlockSamples * static_cast<int>(sizeof(std::int16_t));
constexpr double kFullScale = 32767.0;
constexpr double kRamp = 0.005;  // seconds: a tone that begins at once clicks
// What is written is heard when the ring comes round again; what has left it is still on its way to the ear.
constexpr std::int64_t kAllSamples = static_cast<std::int64_t>(TestTone::kSeconds * kFormat.SampleRate) +
                                     std::int64_t{kBlocks + 2} * kBlockSamples;
constexpr std::chrono::milliseconds kAtOnce{1}, kAtMost{4000};  // a device that stands still ends it, too

std::int16_t Sample(std::int64_t number) {
  const double seconds = static_cast<double>(number) / kFormat.SampleRate;
  const double ramp = std::min({seconds, TestTone::kSeconds - seconds, kRamp}) / kRamp;
  const double amplitude = kFullScale * std::pow(10.0, TestTone::kDecibels / 20.0) * std::max(ramp, 0.0);
  return static_cast<std::int16_t>(
      std::lround(amplitude * std::sin(2.0 * std::numbers::pi * TestTone::kHertz * seconds)));
}

}  // namespace

TestTone::TestTone(SoundSystem& system, EventQueue& queue)
    : system_(system), end_(queue.CreateTimer([this] { Stop(); })) {}

Failure TestTone::Start(int device) {
  if (IsPlaying()) return {};
  Failure failure;
  auto buffer = system_.CreatePlaybackBuffer(
      device, kFormat, kBlocks * kBlockBytes, [this](int block) { Played(block); }, failure);
  if (!buffer) return failure;
  std::vector<SoundNotification> positions;
  positions.reserve(kBlocks);
  for (int block = 0; block < kBlocks; ++block) positions.push_back({(block + 1) * kBlockBytes - 1, block});
  buffer->SetNotificationPositions(positions);
  buffer_ = std::move(buffer);
  played_ = 0;
  failure = buffer_->Play();
  if (failure) {
    buffer_.reset();
  } else {
    end_->Start(kAtMost);
  }
  return failure;
}

void TestTone::Played(int block) {
  if (!buffer_) return;
  std::array<std::int16_t, kBlockSamples> samples;
  for (std::int16_t& sample : samples) sample = Sample(played_++);
  buffer_->Write(block * kBlockBytes, kBlockBytes, samples.data());
  if (played_ >= kAllSamples) end_->Start(kAtOnce);  // not from within the buffer's own notification
}

void TestTone::Stop() {
  end_->Stop();
  if (!std::exchange(buffer_, nullptr)) return;
  if (OnEnd) OnEnd();
}

}  // namespace quorl
