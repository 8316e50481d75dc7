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

void Control::SetPlace(const PixelRect& place, const void* view) {
  const PixelRect before = Place();
  std::erase_if(places_, [view](const Seen& seen) { return seen.View == view; });
  places_.push_back({view, place});
  TellResized(before);
}

void Control::LeavePlace(const void* view) {
  const PixelRect before = Place();
  std::erase_if(places_, [view](const Seen& seen) { return seen.View == view; });
  TellResized(before);
}

void Control::TellResized(const PixelRect& before) {
  if (Place().Width != before.Width || Place().Height != before.Height) Resized();
}

}  // namespace quorl
