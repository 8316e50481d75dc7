// Capture ring between a sound device's thread and the main thread, whatever the device is.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/streams/SpscRing.h"
#include "platform/streams/StreamEvents.h"

namespace quorl {

// The device side puts samples into a line that holds one second. The main thread sees a ring of bytes whose
// cursor moves when a notification is delivered, so that each one finds its own block in the ring, however
// late it comes. Where the line is full, whole segments between two notification positions are left out and
// counted as overruns. A run begins at byte 0; what was not delivered when it ends is forgotten.
class StreamCaptureBuffer : public CaptureBuffer, public EventStream {
 public:
  // `bytes` is a multiple of the frame; 16 bits a sample. `events` and `counters` outlive the buffer.
  StreamCaptureBuffer(StreamEvents& events, SoundCounters& counters, const SoundFormat& format, int bytes,
                      SoundNotifier notifier);
  ~StreamCaptureBuffer() override;
  StreamCaptureBuffer(const StreamCaptureBuffer&) = delete;
  StreamCaptureBuffer& operator=(const StreamCaptureBuffer&) = delete;

  // Only while stopped. Positions fall on the last byte of a frame.
  void SetNotificationPositions(const std::vector<SoundNotification>& positions) override;
  Failure Start() override;
  void Stop() override;
  bool IsRunning() const override { return IsRun(run_.load(std::memory_order_relaxed)); }
  void Read(int offset, int bytes, void* destination) override;

  // Device side, on any one thread: `frames` interleaved frames, captured at `microsecond`. True where a
  // notification has become due. Never waits, never allocates.
  bool Deliver(const std::int16_t* interleaved, int frames, std::int64_t microsecond);
  // Device side: frames to the next notification, > 0; 0 where nothing runs.
  int FramesToNotification();
  int Channels() const { return channels_; }

  std::size_t Pending() const override { return marks_.Readable(); }
  bool OldestTime(std::int64_t& microsecond) override;
  void DeliverOldest() override;

 private:
  struct Mark {
    std::int64_t Time = 0;
    std::uint64_t Begin = 0, End = 0;  // of the segment, in samples of the line
    std::size_t Offset = 0;            // where it goes in the ring, samples
    std::uint32_t Run = 0;
    int EventId = 0;
  };
  static bool IsRun(std::uint32_t run) { return (run & 1) != 0; }
  bool EnterRun();
  void BeginSegment();
  bool EndSegment(std::int64_t microsecond);

  StreamEvents& events_;
  SoundCounters& counters_;
  const int channels_;
  const std::shared_ptr<const SoundNotifier> notifier_;
  std::vector<std::int16_t> ring_;            // the main thread's
  std::vector<SoundNotification> positions_;  // ascending
  std::atomic<std::uint32_t> run_{0};         // odd while running; each Start and Stop makes it the next

  SpscRing<std::int16_t> line_;
  SpscRing<Mark> marks_;

  // The device side's.
  std::uint32_t segmentRun_ = 0;
  std::size_t next_ = 0;               // index of the next position
  std::size_t offset_ = 0;             // where the segment begins in the ring, samples
  std::size_t length_ = 0, left_ = 0;  // samples of the segment, and how many of them are to come
  std::uint64_t begin_ = 0;
  bool dropping_ = false;
};

}  // namespace quorl
