#include "dsp/chain/TableOscillator.h"

#include <cmath>

#include "dsp/kernel/VectorKernel.h"

namespace quorl {

void TableOscillator::InitDDS() {
  constexpr std::size_t kEntries = std::size_t{1} << kTableBits;
  constexpr double kAngle = 9.587379924285248e-05;  // 2 pi / 65536
  sines_.resize(kEntries);
  cosines_.resize(kEntries);
  for (std::size_t k = 0; k < kEntries; ++k) {
    sines_[k] = static_cast<float>(std::sin(static_cast<double>(k) * kAngle));
    cosines_[k] = static_cast<float>(std::cos(static_cast<double>(k) * kAngle));
  }
}

void TableOscillator::MakeOscillatorBlock(std::int32_t step, float* sine, float* cosine, float gain,
                                          std::int32_t n) {
  accumulator_ = MakeFreq(accumulator_, static_cast<std::uint32_t>(step), sines_.data(), cosines_.data(),
                          sine, cosine, n);
  if (gain != 1.0F) {
    Mpy_S_1(gain, sine, n);
    Mpy_S_1(gain, cosine, n);
  }
}

}  // namespace quorl
