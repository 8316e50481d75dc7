// The gestures of a hand on a control, as scripts and tests make them: what a view brings for the same ones.
#pragma once

#include <functional>

#include "controls/Control.h"

namespace quorl::hand {

// Nothing of this reaches a control that is disabled or hidden.
bool Reaches(const Control& control);

// The pointer comes to a place, with no button or the one that `at` names.
void Hover(Control& control, const MouseEvent& at = {});
// at.Button goes down, or comes up; the left one that comes up is a click, too.
void Press(Control& control, const MouseEvent& at = {.Button = MouseButton::Left});
void Release(Control& control, const MouseEvent& at = {.Button = MouseButton::Left});
// Press and release.
void Click(Control& control, const MouseEvent& at = {.Button = MouseButton::Left});
// A click, and the double click where the panel handles it, else a second click.
void DoubleClick(Control& control, MouseEvent at = {});
// One notch a message, positive away from the user; the control's own turning where its panel has no handler.
// False where there is nothing to turn.
bool Turn(Control& control, int notches, const MouseEvent& at = {});
// From one place to the other in kDragMoves moves with from.Button held; `pause` runs after each.
inline constexpr int kDragMoves = 10;
void Drag(Control& control, const MouseEvent& from, const MouseEvent& to, const std::function<void()>& pause);

}  // namespace quorl::hand
