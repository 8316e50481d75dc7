#include "dsp/chain/AudioNotch.h"

#include <algorithm>

#include "dsp/kernel/VectorKernel.h"
#include "support/Rounding.h"

namespace quorl {

AudioNotch::AudioNotch(PublicVars& vars, FilterBank& filters)
    : vars_(vars),
      filters_(filters),
      specRe_(SegmentSize + 1),
      specIm_(SegmentSize + 1),
      specMag_(SegmentSize / 2),
      tail_(SegmentSize / 2) {}

void AudioNotch::AudioNotchAndPeak(float* block) {
  constexpr std::int32_t kBins = SegmentSize / 2;
  ZeroVector_S(block + SamplesPerEvent, SegmentSize - SamplesPerEvent);
  filters_.FFTReal.FFT_Real_S_2(block, specRe_.data(), specIm_.data());
  PowerSpectrum_S_2(specRe_.data(), specIm_.data(), specMag_.data(), kBins);

  const std::int32_t hertzPerBin = RoundHalfEven(filters_.DynFilter.HzPerBin);
  const std::int32_t first = std::clamp(vars_.FilterLo / hertzPerBin, 0, kBins);
  const std::int32_t count = std::clamp((vars_.FilterHi - vars_.FilterLo) / hertzPerBin, 0, kBins - first);
  vars_.PeakBinRing[static_cast<std::size_t>(vars_.PeakBinIndex)] =
      MaxIndex_S(specMag_.data() + first, count);
  if (++vars_.PeakBinIndex > PeakBinRingUpperBound) vars_.PeakBinIndex = 0;

  const clsFFTFilter& notch = filters_.NotchFilterI;
  if (!notch.Active || vars_.NotchType != NotchTypes::Audio) return;
  const std::int32_t overlap = notch.Points - 2;
  notch.Filter_S_Cart_1(specRe_.data(), specIm_.data());
  filters_.FFTReal.IFFT_Real_S_2(specRe_.data(), specIm_.data(), block);
  Add_S_2(tail_.data(), block, overlap);
  CopyVector_S(block + notch.Points, tail_.data(), overlap);
}

}  // namespace quorl
