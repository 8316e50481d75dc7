// What is heard, as it lies in the scope's picture: the passband and the edges that bound it.
#pragma once

#include <vector>

#include "interaction/ScrollableControls.h"
#include "state/PublicVars.h"

namespace quorl {

// Hz, low to high.
struct HeardBand {
  double Low = 0, High = 0;
};

// On the air, from the tuned frequency; what the IF filter by hand keeps out isn't heard.
HeardBand HeardOnAir(const PublicVars& vars);
// Of the plain audio.
HeardBand HeardAudio(const PublicVars& vars);
// From the tuned frequency to the middle of what is heard, Hz.
double MiddleOfPassband(const PublicVars& vars);

// An edge that a value of the table moves: at `Origin` where the value is 0, and `Slope` (1 or -1) hertz
// further for each hertz of it.
struct BandEdge {
  int Entry = 0;
  double Origin = 0, Slope = 1;
  double Value = 0;
  double Hertz() const { return Origin + Slope * Value; }
};

// All edges in sight: of the audio filter, of the IF filter by hand, of the notch. `tuned` in Hz; not used
// for plain audio.
std::vector<BandEdge> EdgesOf(const PublicVars& vars, bool onAir, double tuned);

}  // namespace quorl
