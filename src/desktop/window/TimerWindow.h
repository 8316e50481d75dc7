// The dialog of the timer (frmTimer).
#pragma once

#include "desktop/window/FormWindow.h"

namespace quorl {

// The radio plays on, and can be worked, while it is open.
class TimerWindow : public FormWindow {
 public:
  TimerWindow(const ControlRegistry& registry, Binder::Logger log);

 private:
  QWidget* MakeList();
  QWidget* MakeFields();
  QWidget* MakeFoot();
};

}  // namespace quorl
