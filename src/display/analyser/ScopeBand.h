// Which frequencies a spectrum line covers, and in which order its bins run.
#pragma once

#include <cstdint>

#include "display/analyser/FrequencyScale.h"
#include "state/PublicConstants.h"

namespace quorl {

inline constexpr std::int32_t kScopePoints = 2048;  // samples of a transform, elements of a trace
inline constexpr std::int32_t kScopeBins = kScopePoints / 2;
inline constexpr double kScopeHertzPerBin = static_cast<double>(FSampling) / kScopePoints;

// "Picture bins" count from the left edge of the whole band upwards in frequency, the line's bins from 0 Hz
// (two-sided: from minus half the sampling rate) upwards in the IF, which a high-side oscillator mirrors.
struct ScopeBand {
  bool operator==(const ScopeBand&) const = default;

  std::int32_t Offset = 0;  // Hz, of picture bin 0
  bool Ascending = false;   // the line's bin 0 is the lowest frequency; otherwise the highest
  bool TwoSided = false;    // the line is that of I - jQ, with the negative frequencies
  bool OnAir = true;        // radio frequencies; otherwise plain audio

  std::int32_t Bins() const { return TwoSided ? kScopePoints : kScopeBins; }
  // dB of the line of a full-scale sine (amplitude 32768) that lies on a bin.
  double FullScale() const { return TwoSided ? 156.53559774527022 : 150.51499783199060; }
  FrequencyScale Window(std::int32_t startX, std::int32_t stopX) const {
    return {kScopeHertzPerBin, Offset, startX, stopX, OnAir};
  }
  // Where `hertz` of the signal that is transformed (IF or audio) lies in the line, in bins.
  double BinOf(double hertz) const { return hertz / kScopeHertzPerBin + (TwoSided ? kScopeBins : 0); }
  double PictureBin(double bin) const { return Ascending ? bin : Bins() - bin; }
  // Hz on the air of the IF's centre: what is tuned in.
  std::int32_t TunedFrequency() const {
    return Offset + (TwoSided && Ascending ? FSampling - IFCentre : IFCentre);
  }
};

}  // namespace quorl
