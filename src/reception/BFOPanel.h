// The beat frequency oscillator: shifts the pitch of a sideband signal.
#pragma once

#include "interaction/PanelContext.h"

namespace quorl {

class BFOPanel {
 public:
  explicit BFOPanel(const PanelContext& context);

  Label lblBFO;  // hertz

  void lblBFO_Wheel();

 private:
  PanelContext context_;
  bool inBFO_ = false;
  Listening listening_;
};

}  // namespace quorl
