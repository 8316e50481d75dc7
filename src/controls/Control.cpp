#include "controls/Control.h"

#include "controls/ControlRegistry.h"

namespace quorl {

Control::Control(ControlRegistry& registry, std::string name) : registry_(registry), name_(std::move(name)) {
  registry_.Add(*this);
}

Control::~Control() {
  registry_.Remove(*this);
}

void Control::UserClick() {
  if (Enabled() && Visible()) OnUserClick();
}

}  // namespace quorl
