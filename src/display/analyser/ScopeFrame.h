// What a frame takes once, before it draws anything: whatever happens while it is being drawn comes with the
// next one.
#pragma once

#include <cstdint>
#include <span>

#include "display/analyser/FrequencyScale.h"
#include "display/analyser/ModeSettings.h"
#include "display/canvas/Canvas.h"

namespace quorl {

struct ScopeFrame {
  std::int32_t Mode = ScopeMode::Frequency;
  FrequencyScale Frequencies;
  CanvasScale Scale;
  bool LevelView = false;     // the scale's Y is dB below a full-scale sine
  double Top = 0, Floor = 0;  // dB, of the level view
  // dB that gain and shift lift channel 1 by in the level view: a level is drawn at Y = level + LevelLift.
  double LevelLift = 0;
  // Levels of channel 1 in dB below a full-scale sine before gain and shift, in the order of the picture's
  // bins: element 0 is bin 0 of Frequencies (not StartX), and there is one element more than there are bins.
  // Empty where there is no spectrum.
  std::span<const float> Levels;
  bool Frozen = false;
};

// Something that is drawn into each frame over the traces of both channels.
class ScopeLayer {
 public:
  virtual ~ScopeLayer() = default;
  virtual void Draw(Canvas& canvas, const ScopeFrame& frame) = 0;
};

}  // namespace quorl
