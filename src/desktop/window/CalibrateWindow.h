// The dialog that derives the DDS chip's clock (frmCalibrate).
#pragma once

#include "desktop/window/FormWindow.h"

namespace quorl {

// The radio plays on, and can be tuned, while it is open.
class CalibrateWindow : public FormWindow {
 public:
  CalibrateWindow(const ControlRegistry& registry, Binder::Logger log);

 private:
  QWidget* MakeFigures();
  QWidget* MakeFoot();
};

}  // namespace quorl
