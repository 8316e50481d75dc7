#include "dsp/chain/NoiseBlanker.h"

#include <algorithm>

#include "dsp/kernel/VectorKernel.h"

namespace quorl {

NoiseBlanker::NoiseBlanker(const PublicVars& vars, FilterBank& filters)
    : vars_(vars),
      filters_(filters),
      specRe_(SegmentSize + 1),
      specIm_(SegmentSize + 1),
      specMag_(SegmentSize + 1),
      specPhase_(SegmentSize + 1) {}

float NoiseBlanker::ThresholdOf(float controlValue) {
  constexpr float kControlRange = 10000.0F;
  return controlValue / (kControlRange * 5.0F);
}

void NoiseBlanker::NoiseBlank(float* block) {
  constexpr std::int32_t kBins = SegmentSize / 2 + 1;  // the others mirror these
  ZeroVector_S(block + SamplesPerEvent, SegmentSize - SamplesPerEvent);
  filters_.FFTReal.FFT_Real_S_2(block, specRe_.data(), specIm_.data());
  CartToPolar_S_2(specRe_.data(), specIm_.data(), specMag_.data(), specPhase_.data(), kBins);
  // The band of the IF filter, whether that runs or not, as far as the spectrum reaches. A filter with its
  // edges crossed has the bins so, too.
  const clsFFTFilter& band = filters_.IFFilterI;
  const auto [first, last] =
      std::minmax({std::clamp(band.BinFLow, 0, kBins), std::clamp(band.BinFHigh, 0, kBins)});
  const std::int32_t count = last - first;
  float* magnitudes = specMag_.data() + first;
  const float threshold = vars_.NBThreshold * MaxValue_S(magnitudes, count);
  LowThreshFract_S_1(magnitudes, threshold, vars_.NBThreshold / 10.0F, count);
  PolarToCart_S_2(specMag_.data(), specPhase_.data(), specRe_.data(), specIm_.data(), kBins);
  filters_.FFTReal.IFFT_Real_S_2(specRe_.data(), specIm_.data(), block);
}

}  // namespace quorl
