#include "controls/Control.h"

#include "controls/ControlRegistry.h"

namespace quorl {

Control::Control(ControlRegistry& registry, std::string name) : registry_(registry), name_(std::move(name)) {
  registry_.Add(*this);
}

Control::~Control() {
  registry_.Remove(*this);
}

void Control::UserClick(const MouseEvent& at) {
  if (Enabled() && Visible()) OnUserClick(at);
}

void Control::SetPlace(const PixelRect& place) {
  const bool resized = place.Width != place_.Width || place.Height != place_.Height;
  place_ = place;
  if (resized) Resized();
}

}  // namespace quorl
