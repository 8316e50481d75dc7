// Audio notch by overlap-add, and the search for the strongest audio tone that steers it.
#pragma once

#include "dsp/filters/FilterBank.h"
#include "state/PublicVars.h"

namespace quorl {

// One object for each signal path: it keeps the tail of the path's last block.
class AudioNotch {
 public:
  AudioNotch(PublicVars& vars, FilterBank& filters);

  // One block of audio in place, room for SegmentSize. Notes the strongest bin between FilterLo and FilterHi
  // in PeakBinRing; where the notch is on and on the audio, filters with NotchFilterI.
  void AudioNotchAndPeak(float* block);

 private:
  PublicVars& vars_;
  FilterBank& filters_;
  SampleBuffer specRe_, specIm_, specMag_, tail_;
};

}  // namespace quorl
