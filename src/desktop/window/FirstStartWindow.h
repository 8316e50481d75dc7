// The window of the first start (frmFirstStart).
#pragma once

#include "desktop/window/FormPage.h"
#include "desktop/window/FormWindow.h"

namespace quorl {

class FirstStartWindow : public FormWindow {
 public:
  FirstStartWindow(const ControlRegistry& registry, Binder::Logger log);

 private:
  QWidget* MakeQuestions();
  QWidget* MakeFoot();
};

}  // namespace quorl
