// The window of the configuration (frmConfig).
#pragma once

#include "desktop/window/FormPage.h"
#include "desktop/window/FormWindow.h"

namespace quorl {

// The radio plays on, and can be worked, while it is open.
class ConfigWindow : public FormWindow {
 public:
  ConfigWindow(const ControlRegistry& registry, Binder::Logger log);

 private:
  QWidget* MakeTabs();
  QWidget* MakePages();
  QWidget* MakeFoot();
};

// The pages, in the order of their numbers.
QWidget* MakeReceiverPage(Binder& bind);
QWidget* MakeInterfacePage(Binder& bind);
QWidget* MakeSoundPage(Binder& bind);
QWidget* MakeTuningPage(Binder& bind);
QWidget* MakeDisplayPage(Binder& bind);
QWidget* MakeDecoderPage(Binder& bind);
QWidget* MakeColoursPage(Binder& bind);
QWidget* MakeAboutPage(Binder& bind);
QWidget* MakeRemotePage(Binder& bind);

}  // namespace quorl
