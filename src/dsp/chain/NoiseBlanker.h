// Noise blanker on the spectrum of each block.
#pragma once

#include <cstdint>

#include "dsp/filters/FilterBank.h"
#include "state/PublicVars.h"

namespace quorl {

// Reduces every bin of the IF band that lies under a share of the band's peak: noise goes down, signals stay.
class NoiseBlanker {
 public:
  NoiseBlanker(const PublicVars& vars, FilterBank& filters);

  // One block of SamplesPerEvent samples in place; room for SegmentSize. Threshold: PublicVars::NBThreshold.
  void NoiseBlank(float* block);

  // The threshold that stands for the blanker control, 0 to 10000.
  static float ThresholdOf(float controlValue);

 private:
  const PublicVars& vars_;
  FilterBank& filters_;
  SampleBuffer specRe_, specIm_, specMag_, specPhase_;
};

}  // namespace quorl
