// Labels whose values are turned where the pointer rests, with the wheel or the keys ("MouseOverS").
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "config/ColourSchemes.h"
#include "config/SettingsTable.h"
#include "controls/Controls.h"
#include "interaction/ScrollableTable.h"

namespace quorl {

struct WheelMessage {
  int Notches = 0;
  Modifiers With;
};

// One entry of CtlArray: how the value moves, how it is shown, what happens when it changes.
struct ScrollableControl {
  bool NoFocus = true;  // may not become active; stays so until a panel binds its label
  float MaxValue = 0, MinValue = 0;
  float DefaultValue = 0;  // what Space and the right mouse button restore
  float Value = 0;
  float SmallStep = 0, NormalStep = 0, LargeStep = 0;  // with Ctrl, plain, with Shift
  bool ShowValue = false;
  std::string Format;
  quorl::Label* Label = nullptr;
  Control* Keys = nullptr;  // takes the keyboard's focus; the label, where there is one
  std::function<void()> OnChange;
  // Renews DefaultValue before it is restored, where a table holds it. May be empty.
  std::function<float()> TableDefault;
  std::function<void()> OnEnter;  // the key, while the entry is active; may be empty
  WheelMessage LastMessage;
  Colour FocusColour = 0, NormalColour = 0;
};

// The table CtlArray, the one control that is active, and the routines for wheel and keys that serve all.
class ScrollableControls {
 public:
  // `scheme` is used as long as the table lives.
  explicit ScrollableControls(const ColourSchemes& scheme);
  ScrollableControls(const ScrollableControls&) = delete;
  ScrollableControls& operator=(const ScrollableControls&) = delete;

  bool HiLiteBorder = false;  // the active label gets a border
  // Asks the view to move the keyboard's focus to the control that became active. May be empty.
  std::function<void(Control&)> GiveFocus;
  // Whether the view shows a control at present; arrow keys pass over what it doesn't.
  std::function<bool(const Control&)> IsShown = [](const Control&) { return true; };

  // CtlArray(index).
  ScrollableControl& operator()(int index) { return ctlArray_.at(static_cast<std::size_t>(index)); }
  // The entry under the pointer, 0 for none.
  int ActiveCtl() const { return activeCtl_; }

  // Gives the entry its label, with tool tip, colours and all of its gestures; `onChange` runs after each
  // change of its value. Both are used as long as the table lives.
  void Bind(int index, Label& label, std::function<void()> onChange);
  // An entry without a label takes the keyboard through `keys`.
  void BindKeys(int index, Control& keys);
  // A disabled or hidden label can't become active, and stops being so.
  void SetEnabled(int index, bool enabled);
  void SetVisible(int index, bool visible);

  // The pointer has come to an entry: it alone is active.
  void Point(int index);
  // Makes an entry active again that the keyboard came to, and that the pointer's way has darkened since.
  void Revive(int index);
  // Makes an entry active. -1 means the one that is active already, to highlight it.
  void EnterControl(int index);
  // Ends the active state; of the active entry without an index.
  void LeaveControl();
  void LeaveControl(int index);
  // Nothing is active or highlighted any more; also runs what AddDarkened has collected.
  void DarkenControls();
  // Something to hide whenever the pointer goes elsewhere.
  void AddDarkened(std::function<void()> darken) { darkened_.push_back(std::move(darken)); }

  // One message of the wheel: one step of the active entry, however many notches. False where it had no use.
  bool Wheel(int notches, Modifiers with);
  // "A", Up, "Z", Down, Left, Right and Space for the active entry; the frequency has keys of its own. False
  // where the key had no use.
  bool KeyDown(const Key& key);
  // Left (-1) and Right (+1): to the next entry that may become active, around the circle 1 to 20.
  void StepActive(int direction);
  // Takes the default, shows it, runs OnChange. Not while the entry is disabled.
  void RestoreDefault(int index);

  // Code's way to a value: no limits (a preset may lie outside of what a hand can reach), runs OnChange,
  // shows.
  void SetValue(int index, float value);
  // Writes the value to the label, where the entry shows its value.
  void Show(int index);

  // Takes focus and normal colours from the scheme and paints all labels.
  void ReColour();

  void AddSettings(SettingsTable& table) { table.Add("MouseOverS.HiLiteBorder", HiLiteBorder); }

 private:
  Colour RestColour(int index) const;
  void BindNumber(int index, Label& label);
  void Renew(int index);
  void Change(int index, float value);

  const ColourSchemes& scheme_;
  std::array<ScrollableControl, CtlIndex::Count> ctlArray_;
  std::vector<std::function<void()>> darkened_;
  int activeCtl_ = CtlIndex::None;
  int held_ = CtlIndex::None;  // the one with the keyboard's focus, unless the pointer brought that
  bool inEnter_ = false;
  bool busy_ = false;
};

}  // namespace quorl
