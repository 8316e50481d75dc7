// What all controls of a panel share. Controls know no toolkit: a panel, a test or a script works them the
// same way, and a view shows what they hold.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "controls/Event.h"
#include "controls/Property.h"

namespace quorl {

class ControlRegistry;

using Colour = std::uint32_t;  // 24 bits, blue in the high byte
// That of a control whose panel has set none: its view has one for it. Black is a colour like any other.
inline constexpr Colour kNoColour = 0x1000000;

enum class MouseButton { None, Left, Right, Middle };

struct Modifiers {
  bool Shift = false, Ctrl = false, Alt = false;
};

// A gesture of the pointer, whoever makes it: a hand through a view, a script, a test.
struct MouseEvent {
  // The place within the control, 0 to 1 of its width and height from the top left; a drag may leave it.
  double X = 0.5, Y = 0.5;
  MouseButton Button = MouseButton::None;  // that goes down or up, or is held while the pointer moves
  Modifiers With = {};
};

// Where a control is seen, in pixels.
struct PixelRect {
  int Left = 0, Top = 0, Width = 0, Height = 0;
  bool operator==(const PixelRect&) const = default;
};

// A key by the number that the panels know it by: letters and digits as their capital ASCII code.
struct Key {
  static constexpr int Backspace = 8, Enter = 13, Control = 17, Escape = 27, Space = 32, PageUp = 33,
                       PageDown = 34, End = 35, Home = 36, Left = 37, Up = 38, Right = 39, Down = 40,
                       Insert = 45, Delete = 46, A = 65, Z = 90;
  int Code = 0;
  Modifiers With;
};

// Whether a key presses what has the keyboard.
constexpr bool IsPressKey(int code) {
  return code == Key::Space || code == Key::Enter;
}
// Which way an arrow key turns a value: 1 up, -1 down, 0 for other keys.
constexpr int TurnOf(int code) {
  return code == Key::Up || code == Key::Right ? 1 : code == Key::Down || code == Key::Left ? -1 : 0;
}

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
  void UserClick(const MouseEvent& at = {});
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
  Property<Colour> ForeColour{*this, kNoColour};
  Property<Colour> BackColour{*this, kNoColour};
  Property<std::string> Fault{*this};  // what is wrong with its value, and what to do; empty: nothing
  Property<std::string> AccessibleName{*this};  // empty: the view takes caption and tool tip
  Property<std::string> AccessibleText{*this};  // how its value is said, with its unit; empty: as it stands

  // Gestures that panels handle. Each is raised by the view or a script, never by code that sets a value.
  Event<const MouseEvent&> MouseMove, MouseDown, MouseUp, DblClick;
  Event<> GotFocus, LostFocus;
  // Notches, positive away from the user. A panel that leaves it empty gets the wheel through its table of
  // scrollable controls.
  Event<int, const MouseEvent&> Wheel;
  Event<Key> KeyDown, KeyUp;

  // Told after each change of a property.
  Event<> OnChanged;
  void Changed() const { OnChanged(); }

  // Its size, and its corner within its frame (of a frame: within what holds the frames). Each view tells its
  // own, by whatever address it likes, and takes it back when it ends; the latest counts. kUnseen where there
  // is none.
  static constexpr PixelRect kUnseen{0, 0, 640, 400};
  const PixelRect& Place() const { return places_.empty() ? kUnseen : places_.back().Rect; }
  void SetPlace(const PixelRect& place, const void* view = nullptr);
  void LeavePlace(const void* view);
  Event<> Resized;  // another width or height

 protected:
  virtual void OnUserClick(const MouseEvent&) {}

 private:
  struct Seen {
    const void* View;
    PixelRect Rect;
  };
  void TellResized(const PixelRect& before);

  ControlRegistry& registry_;
  std::string name_;
  std::vector<Seen> places_;
};

template <typename T>
Property<T>& Property<T>::operator=(T value) {
  if (value == value_) return *this;
  value_ = std::move(value);
  owner_.Changed();
  return *this;
}

}  // namespace quorl
