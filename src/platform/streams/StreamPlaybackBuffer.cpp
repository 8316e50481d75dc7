#include "platform/streams/StreamPlaybackBuffer.h"

#include <algorithm>
#include <cmath>

#include "support/Decibels.h"

namespace quorl {
namespace {

constexpr std::size_t kMostChunks = 64;
constexpr std::int64_t kLongestPause = 1000000;  // microseconds

}  // namespace

StreamPlaybackBuffer::StreamPlaybackBuffer(StreamEvents& events, SoundCounters& counters,
                                           const SoundFormat& format, int bytes, SoundNotifier notifier)
    : events_(events),
      counters_(counters),
      channels_(format.Channels),
      notifier_(std::make_shared<const SoundNotifier>(std::move(notifier))),
      size_(static_cast<std::size_t>(bytes) / sizeof(std::int16_t)),
      line_(2 * size_),
      chunks_(kMostChunks),
      marks_(kMostMarks) {
  events_.AddPlayback(*this);
}

StreamPlaybackBuffer::~StreamPlaybackBuffer() {
  events_.Remove(*this);
}

void StreamPlaybackBuffer::SetNotificationPositions(const std::vector<SoundNotification>& positions) {
  if (IsRunning()) return;
  positions_ = positions;
  std::stable_sort(positions_.begin(), positions_.end(),
                   [](const auto& a, const auto& b) { return a.Offset < b.Offset; });
}

Failure StreamPlaybackBuffer::Play() {
  if (IsRunning()) return {};
  marks_.Drop(marks_.Readable());
  cursor_ = played_.load(std::memory_order_acquire);
  run_.fetch_add(1, std::memory_order_release);
  return {};
}

void StreamPlaybackBuffer::Stop() {
  if (IsRunning()) run_.fetch_add(1, std::memory_order_release);
}

void StreamPlaybackBuffer::Write(int offset, int bytes, const void* source) {
  const std::size_t count = static_cast<std::size_t>(bytes) / sizeof(std::int16_t);
  const std::size_t place = static_cast<std::size_t>(offset) / sizeof(std::int16_t);
  const std::uint64_t position = cursor_ + (place + size_ - cursor_ % size_) % size_;
  const bool passed = position + count <= played_.load(std::memory_order_acquire);
  if (passed || line_.Writable() < count || chunks_.Writable() == 0) return;
  const std::uint64_t begin = line_.Written();
  line_.Push(static_cast<const std::int16_t*>(source), count);
  chunks_.Push({position, position + count, begin});
}

void StreamPlaybackBuffer::SetVolume(int hundredthsOfDecibel) {
  gain_.store(static_cast<float>(Ratio(std::clamp(hundredthsOfDecibel, -10000, 0) / 100.0)),
              std::memory_order_relaxed);
}

void StreamPlaybackBuffer::FindNextPosition() {
  const std::size_t place = static_cast<std::size_t>(position_ % size_);
  left_ = size_ + 1;
  for (std::size_t i = 0; i < positions_.size(); ++i) {
    const std::size_t end = (static_cast<std::size_t>(positions_[i].Offset) + 1) / sizeof(std::int16_t);
    const std::size_t distance = (end + size_ - place - 1) % size_ + 1;
    if (distance < left_) {
      left_ = distance;
      next_ = i;
    }
  }
}

bool StreamPlaybackBuffer::EnterRun(std::int64_t microsecond) {
  const std::uint32_t run = run_.load(std::memory_order_acquire);
  if (!IsRun(run)) return false;
  if (run != playingRun_) {
    playingRun_ = run;
    soundDue_ = position_ + size_;
    inGap_ = false;
    if (microsecond - lastTime_ > kLongestPause) chunks_.Drop(chunks_.Readable());
    FindNextPosition();
  }
  lastTime_ = microsecond;
  return true;
}

int StreamPlaybackBuffer::FramesToNotification() {
  if (!IsRunning()) return 0;
  FindNextPosition();
  return static_cast<int>(left_) / channels_;
}

bool StreamPlaybackBuffer::Fetch(std::int16_t* interleaved, int frames, std::int64_t microsecond) {
  const std::size_t count = static_cast<std::size_t>(frames) * static_cast<std::size_t>(channels_);
  if (!EnterRun(microsecond)) {
    std::fill_n(interleaved, count, std::int16_t{0});
    return false;
  }
  bool due = false;
  std::int16_t* out = interleaved;
  for (std::size_t n = count; n > 0;) {
    const std::size_t part = std::min(n, left_);
    Render(out, part);
    out += part;
    n -= part;
    left_ -= part;
    if (left_ > 0) continue;
    if (!positions_.empty() && marks_.Writable() > 0) {
      marks_.Push({microsecond, position_, playingRun_, positions_[next_].EventId});
      due = true;
    }
    FindNextPosition();
  }
  ApplyVolume(interleaved, count);
  played_.store(position_, std::memory_order_release);
  return due;
}

void StreamPlaybackBuffer::Render(std::int16_t* out, std::size_t n) {
  while (n > 0) {
    while (chunks_.Readable() > 0 && chunks_.Front().End <= position_) chunks_.Drop(1);
    if (chunks_.Readable() == 0) return RenderSilence(out, n);
    const Chunk& chunk = chunks_.Front();
    std::size_t part = n;
    if (chunk.Position > position_) {
      part = static_cast<std::size_t>(std::min<std::uint64_t>(part, chunk.Position - position_));
      RenderSilence(out, part);
    } else {
      line_.DropUntil(chunk.Begin + (position_ - chunk.Position));
      part = static_cast<std::size_t>(std::min<std::uint64_t>(part, chunk.End - position_));
      line_.Take(out, part);
      position_ += part;
      inGap_ = false;
    }
    out += part;
    n -= part;
  }
}

void StreamPlaybackBuffer::RenderSilence(std::int16_t* out, std::size_t n) {
  std::fill_n(out, n, std::int16_t{0});
  position_ += n;
  if (position_ <= soundDue_ || inGap_) return;
  inGap_ = true;
  counters_.Underruns.fetch_add(1, std::memory_order_relaxed);
}

void StreamPlaybackBuffer::ApplyVolume(std::int16_t* samples, std::size_t n) {
  const float target = gain_.load(std::memory_order_relaxed);
  if (currentGain_ == 1.0F && target == 1.0F) return;
  // A step in the gain would click: it goes over the samples at hand.
  const float step = (target - currentGain_) / static_cast<float>(n);
  float gain = currentGain_;
  for (std::size_t i = 0; i < n; ++i) {
    gain = std::min(gain + step, 1.0F);
    samples[i] = static_cast<std::int16_t>(std::lrintf(static_cast<float>(samples[i]) * gain));
  }
  currentGain_ = target;
}

bool StreamPlaybackBuffer::OldestTime(std::int64_t& microsecond) {
  const std::uint32_t run = run_.load(std::memory_order_relaxed);
  while (marks_.Readable() > 0 && marks_.Front().Run != run) marks_.Drop(1);
  if (marks_.Readable() == 0) return false;
  microsecond = marks_.Front().Time;
  return true;
}

void StreamPlaybackBuffer::DeliverOldest() {
  Mark mark;
  marks_.Take(&mark, 1);
  cursor_ = mark.Position;
  const auto notifier = notifier_;  // lives on where it destroys the buffer
  (*notifier)(mark.EventId);
}

}  // namespace quorl
