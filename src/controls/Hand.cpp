#include "controls/Hand.h"

#include <cstdlib>

namespace quorl::hand {

namespace {

MouseEvent Free(MouseEvent at) {
  at.Button = MouseButton::None;
  return at;
}

}  // namespace

bool Reaches(const Control& control) {
  return control.Enabled() && control.Visible();
}

void Hover(Control& control, const MouseEvent& at) {
  if (Reaches(control)) control.MouseMove(at);
}

void Press(Control& control, const MouseEvent& at) {
  if (!Reaches(control)) return;
  control.MouseMove(Free(at));
  control.MouseDown(at);
}

// A button comes up also where the press has disabled or hidden what it was on.
void Release(Control& control, const MouseEvent& at) {
  control.MouseUp(at);
  if (at.Button == MouseButton::Left) control.UserClick(at);
}

void Click(Control& control, const MouseEvent& at) {
  if (!Reaches(control)) return;
  Press(control, at);
  Release(control, at);
}

void DoubleClick(Control& control, MouseEvent at) {
  at.Button = MouseButton::Left;
  Click(control, at);
  if (!Reaches(control)) return;
  if (control.DblClick) {
    control.DblClick(at);
    control.MouseUp(at);
  } else {
    control.MouseDown(at);
    Release(control, at);
  }
}

bool Turn(Control& control, int notches, const MouseEvent& at) {
  if (!Reaches(control)) return true;
  control.MouseMove(Free(at));
  for (int i = 0; i < std::abs(notches); ++i) {
    const int notch = notches > 0 ? 1 : -1;
    control.Wheel(notch, at);
    if (!control.Wheel && !control.UserTurn(notch, at.With)) return false;
  }
  return true;
}

void Drag(Control& control, const MouseEvent& from, const MouseEvent& to,
          const std::function<void()>& pause) {
  if (!Reaches(control)) return;
  control.MouseMove(Free(from));
  control.MouseDown(from);
  MouseEvent at = from;
  for (int i = 1; i <= kDragMoves; ++i) {
    const double share = double(i) / kDragMoves;
    at.X = from.X + share * (to.X - from.X);
    at.Y = from.Y + share * (to.Y - from.Y);
    control.MouseMove(at);
    pause();
  }
  Release(control, at);
}

}  // namespace quorl::hand
