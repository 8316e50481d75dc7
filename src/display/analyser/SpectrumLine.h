// A spectrum line as it leaves the transform, before smoothing and gain.
#pragma once

#include <span>

#include "display/analyser/FrequencyScale.h"

namespace quorl {

struct SpectrumLine {
  std::span<const float> Bins;  // magnitudes, upwards in the transform's own order
  FrequencyScale Frequencies;
  bool Ascending = true;  // element 0 is the lowest frequency; otherwise the highest
};

}  // namespace quorl
