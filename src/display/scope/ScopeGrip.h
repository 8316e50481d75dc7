// What the pointer can take hold of in the scope's pictures.
#pragma once

#include "display/analyser/FrequencyScale.h"
#include "display/canvas/CanvasPicture.h"

namespace quorl {

// Where the pointer is.
struct ScopePlace {
  const CanvasPicture& Picture;
  MouseEvent At;
  FrequencyScale Scale;  // of what is on display
  double Hertz = 0;      // on that scale

  double PixelX() const { return At.X * Picture.Place().Width; }
  double PixelY() const { return At.Y * Picture.Place().Height; }
  double HertzPerPixel() const {
    return Scale.HertzPerBin * Scale.Width() / (Picture.Place().Width > 0 ? Picture.Place().Width : 1);
  }
};

class ScopeGrip {
 public:
  virtual ~ScopeGrip() = default;
  // A button goes down: true where this one takes hold, and gets what follows until the button is let go.
  virtual bool Press(const ScopePlace& place) = 0;
  virtual void Drag(const ScopePlace&) {}
  // True where that was a use of it; a press without one counts as a click.
  virtual bool Release() { return true; }
};

}  // namespace quorl
