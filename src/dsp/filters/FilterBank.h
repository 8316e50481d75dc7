// The filter objects of one receiver.
#pragma once

#include "dsp/fft/clsFFTReal.h"
#include "dsp/filters/clHilbert.h"
#include "dsp/filters/clsFFTFilter.h"
#include "state/PublicConstants.h"

namespace quorl {

// All clsFFTFilter objects take blocks of 2048 samples at 48000 Hz and hold 2047 taps. A pair I/Q has one
// object for each stream.
struct FilterBank {
  explicit FilterBank(KernelSettings& settings);

  // Gives every object its start values and the first coefficients. The sideband and notch pairs get theirs
  // when the edges are known.
  void Initialise();
  // Runs the objects that the demodulation mode needs.
  void ActivateForMode(std::int32_t demodMode);

  clsFFTFilter AFFilter;                // audio filter of AM, BC, FM and of the I/Q sideband sum
  clsFFTFilter DynFilter;               // second audio filter, which follows the signal
  clsFFTFilter IFFilterI, IFFilterQ;    // IF filter
  clHilbert HilbertI, HilbertQ;         // delayed and transformed branch of the FM demodulator
  clsFFTFilter IQFilterI, IQFilterQ;    // wide pair that splits a real IF into I and Q
  clsFFTFilter SSBFilterI, SSBFilterQ;  // audio pair of the phasing demodulator
  clsFFTFilter NotchFilterI, NotchFilterQ;
  clsFFTReal FFTReal;  // 4096 points, for the noise blanker and the audio notch
};

}  // namespace quorl
