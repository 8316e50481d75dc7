// What is being recorded, between the block pump and the disk: two halves, one filling while the other waits.
#pragma once

#include <cstdint>
#include <vector>

namespace quorl {

// Halves are numbered from 0 as they fill. A half that nobody has taken when the next one is full is lost.
class RecordQueue {
 public:
  void Open(std::int32_t halfSamples);
  void Close();

  // `n` more samples, which divide a half. True where a half is full now.
  bool Add(const std::int16_t* samples, std::int32_t n);
  // Frames of two channels, `n` of each, interleaved.
  bool AddFrames(const std::int16_t* left, const std::int16_t* right, std::int32_t n);

  std::int32_t HalfSamples() const { return half_; }
  // A full half waits: ReadyHalf() is its number.
  bool IsFull() const { return full_; }
  std::int64_t ReadyHalf() const { return filling_ - 1; }
  const std::int16_t* Ready() const { return At(ReadyHalf()); }
  // It has been taken.
  void Release() { full_ = false; }

  // The half that is filling, and how much of it there is.
  std::int64_t FillingHalf() const { return filling_; }
  const std::int16_t* Filling() const { return At(filling_); }
  std::int32_t Fill() const { return fill_; }

 private:
  const std::int16_t* At(std::int64_t half) const { return samples_.data() + half % 2 * half_; }
  std::int16_t* Room() { return samples_.data() + filling_ % 2 * half_ + fill_; }
  bool Added(std::int32_t samples);

  std::vector<std::int16_t> samples_;
  std::int32_t half_ = 0, fill_ = 0;
  std::int64_t filling_ = 0;
  bool full_ = false;
};

}  // namespace quorl
