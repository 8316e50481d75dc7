// A spectrum line as it leaves the transform, before smoothing and gain.
#pragma once

#include <span>

#include "display/analyser/FrequencyScale.h"

namespace quorl {

struct SpectrumLine {
  std::span<const float> Bins;  // magnitudes, upwards in the transform's own order
  FrequencyScale Frequencies;
  // Element k is picture bin k (Offset + k x HertzPerBin); otherwise picture bin Bins.size() - k, and picture
  // bin 0 takes the highest element there is.
  bool Ascending = true;
};

}  // namespace quorl
