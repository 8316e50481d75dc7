// What a station sends, before modulation: analytic audio at 8000 Hz, peaks near 1.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "sim/Chunk.h"

namespace quorl {

class Audio {
 public:
  virtual ~Audio() = default;
  // Writes the kSlowChunkFrames samples of `chunk`: I is the audio, Q its Hilbert transform.
  virtual void Render(std::int64_t chunk, IqSpan out) const = 0;
};

// A steady tone of amplitude 1; `hz` 0 to 4000.
class ToneAudio final : public Audio {
 public:
  explicit ToneAudio(double hz) : hz_(hz) {}
  void Render(std::int64_t chunk, IqSpan out) const override;

 private:
  double hz_;
};

// Items one after the other, over and over.
class Playlist final : public Audio {
 public:
  // Adds `chunks` (at least 1) of `audio`, null for silence. With `relative` the audio is asked for its
  // chunks from 0 each time the item comes up, else for those of the clock, so that it never repeats itself.
  // The item is faded in and out over `fadeChunks`.
  void Add(std::shared_ptr<const Audio> audio, std::int64_t chunks, bool relative, int fadeChunks);
  // The cycle begins at kFirstChunk, or, shifted, is `chunks` into it then.
  void SetOffset(std::int64_t chunks) { offset_ = chunks; }
  // Length of one cycle; 0 while nothing was added.
  std::int64_t CycleChunks() const { return cycle_; }
  void Render(std::int64_t chunk, IqSpan out) const override;

 private:
  struct Item {
    std::shared_ptr<const Audio> Sound;
    std::int64_t Begin, End;  // chunks within the cycle
    bool Relative;
    int FadeChunks;
  };
  std::vector<Item> items_;
  std::int64_t cycle_ = 0;
  std::int64_t offset_ = 0;
};

}  // namespace quorl
