// Playback ring between the main thread and a sound device's thread, whatever the device is.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/streams/SpscRing.h"
#include "platform/streams/StreamEvents.h"

namespace quorl {

// The main thread sees a looping ring of bytes whose cursor stands where the last delivered notification
// said. A write goes to the next time that the cursor comes by its offset, and is heard once, at that time or
// never: where the device has passed it by, silence was played instead. So a main thread that stood still
// costs one gap, and the delay is the old one right after it. Writes follow the cursor in playing order.
//
// Stop forgets notifications that were not delivered. Play goes on where the cursor stopped, without the
// sound that was left over where the pause was longer than a second.
class StreamPlaybackBuffer : public PlaybackBuffer, public EventStream {
 public:
  // `bytes` is a multiple of the frame; 16 bits a sample. `events` and `counters` outlive the buffer.
  StreamPlaybackBuffer(StreamEvents& events, SoundCounters& counters, const SoundFormat& format, int bytes,
                       SoundNotifier notifier);
  ~StreamPlaybackBuffer() override;
  StreamPlaybackBuffer(const StreamPlaybackBuffer&) = delete;
  StreamPlaybackBuffer& operator=(const StreamPlaybackBuffer&) = delete;

  // Only before the first Play. Positions fall on the last byte of a frame.
  void SetNotificationPositions(const std::vector<SoundNotification>& positions) override;
  Failure Play() override;
  void Stop() override;
  bool IsRunning() const override { return IsRun(run_.load(std::memory_order_relaxed)); }
  void Write(int offset, int bytes, const void* source) override;
  void SetVolume(int hundredthsOfDecibel) override;

  // Device side, on any one thread: fills `frames` interleaved frames that are heard at `microsecond`, with
  // silence while the buffer is stopped. True where a notification has become due. Never waits, never
  // allocates.
  bool Fetch(std::int16_t* interleaved, int frames, std::int64_t microsecond);
  // Device side: frames to the next notification, > 0; 0 where nothing runs.
  int FramesToNotification();
  int Channels() const { return channels_; }

  std::size_t Pending() const override { return marks_.Readable(); }
  bool OldestTime(std::int64_t& microsecond) override;
  void DeliverOldest() override;

 private:
  struct Mark {
    std::int64_t Time = 0;
    std::uint64_t Position = 0;  // cursor, in samples since the buffer was made
    std::uint32_t Run = 0;
    int EventId = 0;
  };
  struct Chunk {
    std::uint64_t Position = 0, End = 0;  // when it is to be heard, samples since the buffer was made
    std::uint64_t Begin = 0;              // its first sample's number in the line
  };
  static bool IsRun(std::uint32_t run) { return (run & 1) != 0; }
  bool EnterRun(std::int64_t microsecond);
  void FindNextPosition();
  void Render(std::int16_t* out, std::size_t n);
  void RenderSilence(std::int16_t* out, std::size_t n);
  void ApplyVolume(std::int16_t* samples, std::size_t n);

  StreamEvents& events_;
  SoundCounters& counters_;
  const int channels_;
  const std::shared_ptr<const SoundNotifier> notifier_;
  const std::size_t size_;                    // of the ring, samples
  std::vector<SoundNotification> positions_;  // ascending
  std::atomic<std::uint32_t> run_{0};         // odd while running; each Play and Stop makes it the next
  std::atomic<float> gain_{1.0F};
  std::atomic<std::uint64_t> played_{0};
  std::uint64_t cursor_ = 0;  // the main thread's

  SpscRing<std::int16_t> line_;
  SpscRing<Chunk> chunks_;
  SpscRing<Mark> marks_;

  // The device side's.
  std::uint32_t playingRun_ = 0;
  std::int64_t lastTime_ = 0;  // when the run before was last heard
  std::uint64_t position_ = 0;
  std::uint64_t soundDue_ =
      0;  // the ring's first lap after Play has nothing to play, and that is no underrun
  std::size_t next_ = 0, left_ = 0;
  float currentGain_ = 1.0F;
  bool inGap_ = false;
};

}  // namespace quorl
