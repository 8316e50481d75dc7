#include "platform/streams/StreamCaptureBuffer.h"

#include <algorithm>
#include <cstring>

namespace quorl {
StreamCaptureBuffer::StreamCaptureBuffer(StreamEvents& events, SoundCounters& counters,
                                         const SoundFormat& format, int bytes, SoundNotifier notifier)
    : events_(events),
      counters_(counters),
      channels_(format.Channels),
      notifier_(std::make_shared<const SoundNotifier>(std::move(notifier))),
      ring_(static_cast<std::size_t>(bytes) / sizeof(std::int16_t)),
      // One second, and the ring itself for the segment that is being filled.
      line_(static_cast<std::size_t>(format.SampleRate * format.Channels) + ring_.size()),
      marks_(kMostMarks) {
  events_.AddCapture(*this);
}

StreamCaptureBuffer::~StreamCaptureBuffer() {
  events_.Remove(*this);
}

void StreamCaptureBuffer::SetNotificationPositions(const std::vector<SoundNotification>& positions) {
  if (IsRunning()) return;
  positions_ = positions;
  std::stable_sort(positions_.begin(), positions_.end(),
                   [](const auto& a, const auto& b) { return a.Offset < b.Offset; });
}

Failure StreamCaptureBuffer::Start() {
  if (IsRunning()) return {};
  marks_.Drop(marks_.Readable());
  line_.Drop(line_.Readable());
  run_.fetch_add(1, std::memory_order_release);
  return {};
}

void StreamCaptureBuffer::Stop() {
  if (IsRunning()) run_.fetch_add(1, std::memory_order_release);
}

void StreamCaptureBuffer::Read(int offset, int bytes, void* destination) {
  std::memcpy(destination, reinterpret_cast<const char*>(ring_.data()) + offset,
              static_cast<std::size_t>(bytes));
}

void StreamCaptureBuffer::BeginSegment() {
  const std::size_t end = (static_cast<std::size_t>(positions_[next_].Offset) + 1) / sizeof(std::int16_t);
  length_ = (end + ring_.size() - offset_ - 1) % ring_.size() + 1;
  left_ = length_;
  begin_ = line_.Written();
  dropping_ = line_.Writable() < length_ || marks_.Writable() == 0;
}

bool StreamCaptureBuffer::EndSegment(std::int64_t microsecond) {
  if (dropping_) {
    counters_.Overruns.fetch_add(1, std::memory_order_relaxed);
    return false;
  }
  marks_.Push({microsecond, begin_, begin_ + length_, offset_, segmentRun_, positions_[next_].EventId});
  counters_.CapturedBlocks.fetch_add(1, std::memory_order_relaxed);
  offset_ = (offset_ + length_) % ring_.size();
  next_ = (next_ + 1) % positions_.size();
  return true;
}

bool StreamCaptureBuffer::EnterRun() {
  const std::uint32_t run = run_.load(std::memory_order_acquire);
  if (!IsRun(run) || positions_.empty()) return false;
  if (run != segmentRun_) {
    segmentRun_ = run;
    next_ = offset_ = 0;
    BeginSegment();
  }
  return true;
}

int StreamCaptureBuffer::FramesToNotification() {
  return EnterRun() ? static_cast<int>(left_) / channels_ : 0;
}

bool StreamCaptureBuffer::Deliver(const std::int16_t* interleaved, int frames, std::int64_t microsecond) {
  if (!EnterRun()) return false;
  bool due = false;
  for (std::size_t n = static_cast<std::size_t>(frames) * static_cast<std::size_t>(channels_); n > 0;) {
    const std::size_t part = std::min(n, left_);
    if (!dropping_) line_.Push(interleaved, part);
    interleaved += part;
    n -= part;
    left_ -= part;
    if (left_ == 0) {
      due |= EndSegment(microsecond);
      BeginSegment();
    }
  }
  return due;
}

bool StreamCaptureBuffer::OldestTime(std::int64_t& microsecond) {
  const std::uint32_t run = run_.load(std::memory_order_relaxed);
  while (marks_.Readable() > 0 && marks_.Front().Run != run) marks_.Drop(1);
  if (marks_.Readable() == 0) return false;
  microsecond = marks_.Front().Time;
  return true;
}

void StreamCaptureBuffer::DeliverOldest() {
  Mark mark;
  marks_.Take(&mark, 1);
  line_.DropUntil(mark.Begin);
  const std::size_t length = static_cast<std::size_t>(mark.End - mark.Begin);
  const std::size_t head = std::min(length, ring_.size() - mark.Offset);
  line_.Take(ring_.data() + mark.Offset, head);
  line_.Take(ring_.data(), length - head);
  const auto notifier = notifier_;  // lives on where it destroys the buffer
  (*notifier)(mark.EventId);
}

}  // namespace quorl
