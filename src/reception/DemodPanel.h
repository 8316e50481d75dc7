// The demodulation mode.
#pragma once

#include "interaction/PanelContext.h"

namespace quorl {

class DemodPanel {
 public:
  explicit DemodPanel(const PanelContext& context);

  Frame frDemod;
  OptionGroup optMode;  // DemodMode

  // Takes the mode. A click that comes in while one is being worked on is undone.
  void optMode_Click(int index);

 private:
  void Show();

  PanelContext context_;
  bool inOptMode_ = false;
  Listening listening_;
};

}  // namespace quorl
