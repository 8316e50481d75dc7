// The table-driven oscillator of the second mixer.
#pragma once

#include <cstdint>
#include <vector>

namespace quorl {

// A 30-bit phase accumulator that lasts from block to block, over tables of 65536 sines and cosines: steps of
// 2^-16 of a turn put its spurs about 96 dB down.
class TableOscillator {
 public:
  static constexpr std::int32_t kTableBits = 16;

  // Fills the tables; before the first block. Entry k holds sin and cos of k x 2 pi / 65536.
  void InitDDS();

  // `n` samples of sine and cosine. The phase advances by `step` (of 2^30) before each sample. A gain other
  // than 1.0 multiplies both.
  void MakeOscillatorBlock(std::int32_t step, float* sine, float* cosine, float gain, std::int32_t n);

 private:
  std::uint32_t accumulator_ = 0;
  std::vector<float> sines_, cosines_;
};

}  // namespace quorl
