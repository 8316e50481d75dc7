// A picture that its panel draws on two surfaces in turn, which the view lends it.
#pragma once

#include "controls/Controls.h"
#include "display/canvas/Canvas.h"

namespace quorl {

// Without a view there are no surfaces, and nothing is drawn.
class CanvasPicture : public Picture {
 public:
  using Picture::Picture;

  // The view's: its surfaces are new, or have another size; null when it goes. The panel draws at once.
  void SetSurfaces(Canvas* surface0, Canvas* surface1) {
    surface0_ = surface0;
    surface1_ = surface1;
    OnSurfaces();
  }
  Canvas* Surface0() const { return surface0_; }
  Canvas* Surface1() const { return surface1_; }
  Event<> OnSurfaces;

 private:
  Canvas* surface0_ = nullptr;
  Canvas* surface1_ = nullptr;
};

}  // namespace quorl
