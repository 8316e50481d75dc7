// The menus that switch what the scope shows.
#pragma once

#include <functional>

#include "controls/Controls.h"
#include "display/scope/ScopeOptions.h"

namespace quorl {

class ScopeMenu {
 public:
  // The options are used as long as the menus live.
  ScopeMenu(ControlRegistry& registry, ScopeOptions& options);

  Menu mnuScope, mnuWaterfall;
  CommandButton cmdScopeView;

  // Told after each change of an option. May be empty.
  std::function<void()> OnOptions;
  // The wheel over the pictures tunes; and fitting both ends of the levels.
  std::function<bool()> WheelTunes = [] { return false; };
  std::function<void(bool)> SetWheelTunes = [](bool) {};
  std::function<void()> Fit = [] {};

  void PopUp();
  void mnuScope_Click(int index);
  void mnuWaterfall_Click(int index);
  // What is in force, to the ticks.
  void Show();

 private:
  ScopeOptions& options_;
};

}  // namespace quorl
