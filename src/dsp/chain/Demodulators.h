// From filtered I and Q branches to audio. All work on blocks of SamplesPerEvent samples; every block that a
// filter runs over has room for SegmentSize.
#pragma once

#include <array>
#include <cstdint>

#include "dsp/filters/FilterBank.h"

namespace quorl {

class Demodulators {
 public:
  explicit Demodulators(FilterBank& filters);

  // Phasing method: the pair of filters carries the passband and the 90 degree difference at once. Sum for
  // `add`, else difference. Changes i and q.
  void DemodSSB(float* i, float* q, float* out, bool add);
  // Envelope of the pair. The audio filter takes the carrier's direct component away.
  void DemodAM(const float* i, const float* q, float* out);
  // Root of the sum of the last six squares over six; the AGC looks after the level. Changes `in`.
  void DemodBC(float* in, float* out, std::int32_t n);
  // Distance of the phase step from the quarter turn that a carrier at the IF makes, by 4096.
  void DemodFM(const float* i, const float* q, float* out);

 private:
  static constexpr std::int32_t kBCWindow = 6;  // samples

  FilterBank& filters_;
  SampleBuffer fmPhase_, fmMagnitude_;
  float fmLastPhase_ = 0.0F;
  SampleBuffer bcSquares_;  // the last kBCWindow - 1 squares of the block before, then this block's
};

}  // namespace quorl
