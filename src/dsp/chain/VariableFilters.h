// From the user's filter, mode and notch settings to coefficients.
//
// Controls only change numbers and set FiltersDirty or NotchDirty; the routines here turn the numbers into
// filters, once per housekeeping pass and between two blocks.
#pragma once

#include <cstdint>
#include <functional>

#include "dsp/chain/AnalyserTap.h"
#include "dsp/filters/FilterBank.h"
#include "state/PublicVars.h"

namespace quorl {

class VariableFilters {
 public:
  // `yield` delivers waiting events once; the waits for a block in work call it until DSPRunning clears.
  VariableFilters(PublicVars& vars, FilterBank& filters, const AnalyserTap& tap, std::function<void()> yield);

  // Rebuilds every active filter from the edges in force. Returns at once when it is already running.
  void MakeFilters();
  // Tone tracker, dynamic filter and notch; rebuilds what moved. Returns true where PeakFrequency is new.
  bool NotchHousekeeping();
  // Yields, and goes on yielding while a block is in work.
  void WaitForBlock();
  // The filter whose curve goes with what the analyser shows.
  clsFFTFilter& CurveFilter() const;

  // Places the dynamic filter a tenth of the audio band inside its edges, as its start for tracking.
  void CentreDynFilter();

  // Edges of the IF filter, Hz, before the BFO offset moves them.
  static FilterEdges IFEdges(const PublicVars& vars);

 private:
  void Rebuild(clsFFTFilter& filter, FilterEdges edges);
  void TrackPeak();
  void MoveDynFilter();
  void RebuildNotch();

  PublicVars& vars_;
  FilterBank& filters_;
  const AnalyserTap& tap_;
  std::function<void()> yield_;
  bool inMakeFilters_ = false;
  SampleBuffer curveTaps_;  // of that filter, for the display's curve
};

// Band edges of the notch from its centre and width.
void SetNotchEdges(PublicVars& vars);

}  // namespace quorl
