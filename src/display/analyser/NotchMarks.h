// Where the notch stands in the frequency picture.
#pragma once

#include <array>

#include "display/analyser/ScopeBand.h"
#include "state/PublicVars.h"

namespace quorl {

// Up to two bands, in picture bins of the whole band.
struct NotchMarks {
  struct Edges {
    double From = 0, To = 0;
  };
  int Count = 0;
  std::array<Edges, 2> Bands;
};

// A notch on the IF stands at its own frequencies. One on the audio stands there on a scale of audio, and on
// the air as far from the zero beat as its audio is from 0: above it, below it or on both sides, as the mode
// hears them.
NotchMarks PlaceNotch(const PublicVars& vars, const ScopeBand& band);

}  // namespace quorl
