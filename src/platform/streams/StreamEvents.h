// Brings the notifications of several sound buffers to the main thread in the order in which they happened.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/SoundSystem.h"

namespace quorl {

// Crossings of a buffer that the main thread has not heard of yet, at most.
constexpr std::size_t kMostMarks = 1024;

// Counts that the device sides raise and the main thread reads.
struct SoundCounters {
  std::atomic<std::int64_t> CapturedBlocks{0}, Overruns{0}, Underruns{0};

  SoundStatistics Read() const { return {CapturedBlocks.load(), Overruns.load(), Underruns.load()}; }
};

// A buffer's line of crossings that the main thread has not heard of yet.
class EventStream {
 public:
  virtual ~EventStream() = default;
  virtual std::size_t Pending() const = 0;
  // Microsecond of the oldest crossing; false where there is none.
  virtual bool OldestTime(std::int64_t& microsecond) = 0;
  // Takes the oldest crossing, which exists, and tells the buffer's notifier. It may destroy the stream.
  virtual void DeliverOldest() = 0;
};

// Main thread only.
class StreamEvents {
 public:
  // Of two crossings at the same microsecond the capture comes first: its block is what the output waits for.
  void AddCapture(EventStream& stream) { streams_.insert(streams_.begin(), &stream); }
  void AddPlayback(EventStream& stream) { streams_.push_back(&stream); }
  void Remove(EventStream& stream) { std::erase(streams_, &stream); }

  // Delivers what has happened before the call. A notifier may call it again from inside an event queue's
  // yield: what is left is then delivered there, and the outer call finds it gone.
  void Deliver();

 private:
  EventStream* Oldest();

  std::vector<EventStream*> streams_;
};

}  // namespace quorl
