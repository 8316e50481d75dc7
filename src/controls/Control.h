// What all controls of a panel share. Controls know no toolkit: a panel, a test or a script works them the
// same way, and a view shows what they hold.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "controls/Property.h"

namespace quorl {

class ControlRegistry;

using Colour = std::uint32_t;  // 24 bits, blue in the high byte

enum class MouseButton { Left, Right, Middle };

struct Modifiers {
  bool Shift = false, Ctrl = false, Alt = false;
};

// A key by the number that the panels know it by: letters and digits as their capital ASCII code.
struct Key {
  static constexpr int Escape = 27, Space = 32, PageUp = 33, PageDown = 34, Left = 37, Up = 38, Right = 39,
                       Down = 40, A = 65, Z = 90;
  int Code = 0;
  Modifiers With;
};

class Control {
 public:
  // Enters itself in the registry, which must outlive it. Names are unique: "lblNB", "optMode(1)".
  Control(ControlRegistry& registry, std::string name);
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  const std::string& Name() const { return name_; }
  // What a script prints and a test compares: caption, or value as text.
  virtual std::string Text() const { return {}; }
  // The user's main gesture: pressing, ticking, clicking. Nothing happens while disabled or hidden.
  void UserClick();
  // The wheel of a user over a control whose panel leaves that to it: notches away from the user. False where
  // there is nothing to turn.
  virtual bool UserTurn(int, Modifiers) { return false; }
  // The user's setting of a value, as a text that the control understands; false where it does not.
  virtual bool UserSet(const std::string&) { return false; }

  Property<bool> Enabled{*this, true};
  Property<bool> Visible{*this, true};
  Property<bool> Faded{*this, false};  // looks switched off, although it takes gestures
  Property<std::string> ToolTip{*this};
  Property<std::string> Tag{*this};
  Property<Colour> ForeColour{*this, 0};
  Property<Colour> BackColour{*this, 0};
  Property<std::string> AccessibleName{*this};  // empty: the view takes caption and tool tip

  // Gestures that panels handle. Each is raised by the view or a script, never by code that sets a value.
  std::function<void()> MouseMove;
  std::function<void(MouseButton)> MouseDown, MouseUp;
  std::function<void()> DblClick;
  std::function<void()> GotFocus, LostFocus;
  // Notches, positive away from the user. A panel that leaves it empty gets the wheel through its table of
  // scrollable controls.
  std::function<void(int notches, Modifiers)> Wheel;
  std::function<void(Key)> KeyDown, KeyUp;

  // Told after each change of a property; the view sets it.
  std::function<void()> OnChanged;
  void Changed() const {
    if (OnChanged) OnChanged();
  }

 protected:
  virtual void OnUserClick() {}

 private:
  ControlRegistry& registry_;
  std::string name_;
};

// Calls an event that may have no handler.
template <typename... Arguments, typename... Values>
void Raise(const std::function<void(Arguments...)>& event, Values&&... values) {
  if (event) event(std::forward<Values>(values)...);
}

template <typename T>
Property<T>& Property<T>::operator=(T value) {
  if (value == value_) return *this;
  value_ = std::move(value);
  owner_.Changed();
  return *this;
}

}  // namespace quorl
