// A command button that looks pressed for as long as what it stands for goes on.
#pragma once

#include <string>

#include "controls/Controls.h"

namespace quorl {

class LatchButton : public CommandButton {
 public:
  using CommandButton::CommandButton;
  std::string Text() const override { return Down() ? "1" : "0"; }

  Property<bool> Down{*this, false};
};

}  // namespace quorl
