// What is being played, between the disk and the block pump: one half plays while the next one lies ready.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "recorder/ReadAhead.h"

namespace quorl {

class PlaybackQueue {
 public:
  enum class Place { WithinHalf, BehindHalf, AtEnd };

  explicit PlaybackQueue(FileWorker& worker) : ahead_(worker) {}

  // Plays the 16-bit samples between the bytes `begin` and `end` of `file`, `halfSamples` at a time; `hold`
  // bytes are kept ahead. `onArrival` tells that more of them are there, or that Fault is set.
  void Open(std::shared_ptr<OpenFile> file, std::int64_t begin, std::int64_t end, std::int32_t halfSamples,
            std::int64_t hold, std::function<void()> onArrival);
  void Close();
  bool IsOpen() const { return ahead_.IsOpen(); }

  // Goes on from the byte `at`.
  void Start(std::int64_t at);
  // Fills the halves that are free from what is there already.
  void Load();
  // Load, and asks the disk for what will be wanted next.
  void Follow();
  // The next `count` samples, which divide a half; zeros stand behind the last one of the file. Null where
  // they aren't there yet.
  const std::int16_t* Next(std::int32_t count);
  // They have been played.
  Place Advance(std::int32_t count);
  // Position of the next sample to be played.
  std::int64_t At() const { return at_; }
  const Failure& Fault() const { return ahead_.Fault(); }

 private:
  struct Half {
    std::vector<std::int16_t> Samples;
    std::int32_t Count = 0;  // of them, that are the file's
    bool Loaded = false;
    bool Last = false;
  };

  bool LoadHalf(Half& half);

  ReadAhead ahead_;
  std::array<Half, 2> halves_;
  int playing_ = 0;  // the other one is being loaded
  std::int32_t fill_ = 0;
  std::int64_t begin_ = 0, end_ = 0, at_ = 0, next_ = 0;
};

}  // namespace quorl
