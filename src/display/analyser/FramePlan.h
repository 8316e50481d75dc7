// All that a frame takes at its start. What is changed while it is being drawn comes with the next one.
#pragma once

#include "display/analyser/LevelLine.h"
#include "display/analyser/NotchMarks.h"
#include "display/analyser/ScopeFrame.h"
#include "display/analyser/TraceScale.h"

namespace quorl {

struct ScopeColours {
  Colour Y1 = 0, Y2 = 0, YText = 0, XText = 0, FilterCurve = 0, NotchFilter = 0, Graticule = 0, Back = 0;
};

struct FramePlan : ScopeFrame {
  ScopeBand Band;
  ModeSettings Record;
  ScaleSettings YScale;
  std::int32_t StartBin = 0, StopBin = 0;  // of the trace's array
  double Lift1 = 0, Lift2 = 0;             // dB that gain and shift lift a level by
  bool Fill = false, ShowFilter = false, PeakHold = false;
  NotchMarks Notch;  // none unless it is shown
  ScopeColours Colours;

  // The frequency picture is swept from its left edge, time and XY in the order of the samples.
  Sweep SweepOf() const {
    return Mode != ScopeMode::Frequency || Band.Ascending ? Sweep{StartBin, StopBin, 1}
                                                          : Sweep{StopBin, StartBin, -1};
  }
};

}  // namespace quorl
