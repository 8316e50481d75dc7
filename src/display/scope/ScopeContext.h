// What the parts of the scope's panel share.
#pragma once

#include <cstdint>
#include <functional>

#include "display/analyser/clsSpectrumAnalyser.h"
#include "display/canvas/CanvasPicture.h"
#include "interaction/PanelContext.h"

namespace quorl {

// The way to tuning and player. Every entry may stay as it is.
struct ScopePanelLinks {
  std::function<std::int32_t()> Wanted = [] { return 0; };  // dHz, the frequency that is tuned
  std::function<void(std::int32_t dHz)> TuneTo = [](std::int32_t) {};
  std::function<void(int direction)> StepByRate = [](int) {};  // as a notch of the wheel over a digit
  std::function<void(double dHz)> TakeStep = [](double) {};    // for wheel and keys, from now on
  std::function<double()> TuneStep = [] { return 0.0; };       // dHz
  std::function<bool()> IsPlaying = [] { return false; };      // a recording, in the antenna's place
};

// All of it is used as long as the parts live.
struct ScopeContext {
  PanelContext& Panel;
  clsSpectrumAnalyser& Analyser;
  const ScopePanelLinks& Links;
  const CanvasPicture* Scope;  // the spectrum's picture

  const PublicVars& Vars() const { return Panel.Rx.Vars; }
  // A line over the traces, on the picture's ground.
  Ink Over(Ink ink) const { return OnGround(ink, Analyser.ScopeBackColour); }
};

}  // namespace quorl
