#include "interaction/ScrollableControls.h"

#include <algorithm>

#include "support/NumberPicture.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr char kHowTo[] = "Wheel, A, Z and the arrow keys change it; right click or Space for the default";

}  // namespace

ScrollableControls::ScrollableControls(const ColourSchemes& scheme) : scheme_(scheme) {
  for (std::size_t i = 0; i < kScrollableStarts.size(); ++i) {
    const ScrollableStart& start = kScrollableStarts[i];
    ScrollableControl& control = ctlArray_[i];
    control.MinValue = start.MinValue;
    control.MaxValue = start.MaxValue;
    control.DefaultValue = control.Value = start.DefaultValue;
    control.SmallStep = start.SmallStep;
    control.NormalStep = start.NormalStep;
    control.LargeStep = start.LargeStep;
    control.Format = start.Format;
    control.ShowValue = start.ShowValue;
  }
  // The frequency display has no label to bind.
  ctlArray_[CtlIndex::Frequency].NoFocus = false;
  ReColour();
}

void ScrollableControls::Bind(int index, Label& label, std::function<void()> onChange) {
  ScrollableControl& control = (*this)(index);
  control.Label = &label;
  control.OnChange = std::move(onChange);
  label.AccessibleName = kScrollableStarts[static_cast<std::size_t>(index)].WhatItIs;
  label.ToolTip = kHowTo;
  BindKeys(index, label);
  BindNumber(index, label);
  label.MouseMove = [this, index] { Point(index); };
  label.MouseDown = [this, index](const MouseEvent& at) {
    if (at.Button == MouseButton::Right) RestoreDefault(index);
  };
  label.Wheel = [this, index](int notches, const MouseEvent& at) {
    if (activeCtl_ != index) LeaveControl();
    EnterControl(index);
    if (activeCtl_ == index) Wheel(notches, at.With);
  };
  label.KeyDown = [this, index](const Key& key) {
    Revive(index);
    KeyDown(key);
  };
  Renew(index);
  Show(index);
  label.ForeColour = RestColour(index);
}

void ScrollableControls::BindNumber(int index, Label& label) {
  const double unit = kScrollableStarts[static_cast<std::size_t>(index)].Unit;
  label.Number = [this, index, unit] {
    const ScrollableControl& control = (*this)(index);
    return Label::TurnedNumber{unit * control.Value, unit * control.MinValue, unit * control.MaxValue};
  };
  label.SetNumber = [this, index, unit](double number) {
    const ScrollableControl& control = (*this)(index);
    const double value = number / unit;
    Change(index, static_cast<float>(std::clamp(value, double{control.MinValue}, double{control.MaxValue})));
  };
}

void ScrollableControls::BindKeys(int index, Control& keys) {
  (*this)(index).Keys = &keys;
  keys.GotFocus = [this, index] {
    held_ = index;
    if (activeCtl_ == index) return;
    LeaveControl();
    EnterControl(index);
  };
  keys.LostFocus = [this, index] {
    if (held_ == index) held_ = CtlIndex::None;
    // The frequency stays active: the window brings it the keys that no other control took.
    if (activeCtl_ == index && index != CtlIndex::Frequency) LeaveControl(index);
  };
}

void ScrollableControls::Point(int index) {
  if (activeCtl_ == index && held_ == CtlIndex::None) return;
  DarkenControls();
  EnterControl(index);
  held_ = CtlIndex::None;
}

void ScrollableControls::Revive(int index) {
  if (activeCtl_ == CtlIndex::None && held_ == index) EnterControl(index);
}

void ScrollableControls::Renew(int index) {
  ScrollableControl& control = (*this)(index);
  if (control.Label == nullptr) return;
  control.NoFocus = !control.Label->Enabled() || !control.Label->Visible();
  if (control.NoFocus && activeCtl_ == index) LeaveControl(index);
}

void ScrollableControls::SetEnabled(int index, bool enabled) {
  if (Label* label = (*this)(index).Label) label->Enabled = enabled;
  Renew(index);
}

void ScrollableControls::SetVisible(int index, bool visible) {
  if (Label* label = (*this)(index).Label) label->Visible = visible;
  Renew(index);
}

void ScrollableControls::EnterControl(int index) {
  if (inEnter_ || index == activeCtl_) return;
  ScopedFlag guard(inEnter_);
  if (index < 0) index = activeCtl_;
  const ScrollableControl& control = (*this)(index);
  if (control.NoFocus) return;
  activeCtl_ = index;
  if (control.Label != nullptr) {
    control.Label->ForeColour = control.FocusColour;
    if (HiLiteBorder) control.Label->Border = true;
  }
  if (GiveFocus && control.Keys != nullptr) GiveFocus(*control.Keys);
}

void ScrollableControls::LeaveControl() {
  LeaveControl(activeCtl_);
}

void ScrollableControls::LeaveControl(int index) {
  activeCtl_ = CtlIndex::None;
  Label* label = (*this)(index).Label;
  if (label == nullptr) return;
  label->ForeColour = RestColour(index);
  label->Border = false;
}

Colour ScrollableControls::RestColour(int index) const {
  if (index == CtlIndex::BFO) return scheme_.SDRTuningColour;
  return ctlArray_[static_cast<std::size_t>(index)].NormalColour;
}

void ScrollableControls::DarkenControls() {
  for (const auto& darken : darkened_) darken();
  for (int i = 0; i < CtlIndex::Count; ++i) LeaveControl(i);
}

void ScrollableControls::ReColour() {
  for (int i = 0; i < CtlIndex::Count; ++i) {
    ScrollableControl& control = (*this)(i);
    control.FocusColour = scheme_.ScrollableLabelFocusColour;
    control.NormalColour = scheme_.ScrollableLabelNormalColour;
    if (control.Label == nullptr) continue;
    control.Label->ForeColour = i == activeCtl_ ? control.FocusColour : RestColour(i);
  }
}

void ScrollableControls::Show(int index) {
  const ScrollableControl& control = (*this)(index);
  if (!control.ShowValue || control.Format.empty() || control.Label == nullptr) return;
  control.Label->Caption = FormatPicture(control.Value, control.Format);
}

void ScrollableControls::Change(int index, float value) {
  (*this)(index).Value = value;
  Show(index);
  if ((*this)(index).OnChange) (*this)(index).OnChange();
}

void ScrollableControls::SetValue(int index, float value) {
  Change(index, value);
  Show(index);
}

bool ScrollableControls::Wheel(int notches, Modifiers with) {
  if (busy_ || activeCtl_ == CtlIndex::None || notches == 0) return false;
  const int index = activeCtl_;
  ScrollableControl& control = (*this)(index);
  if (control.NoFocus || index == CtlIndex::Frequency) return false;
  ScopedFlag guard(busy_);
  control.LastMessage = {notches, with};
  const float step = with.Ctrl ? control.SmallStep : with.Shift ? control.LargeStep : control.NormalStep;
  Change(index, notches > 0 ? std::min(control.Value + step, control.MaxValue)
                            : std::max(control.Value - step, control.MinValue));
  return true;
}

bool ScrollableControls::KeyDown(const Key& key) {
  const int index = activeCtl_;
  if (busy_ || index == CtlIndex::None || index == CtlIndex::Frequency) return false;
  ScopedFlag guard(busy_);
  ScrollableControl& control = (*this)(index);
  const float step = key.With.Alt     ? 0.0F
                     : key.With.Shift ? control.LargeStep
                     : key.With.Ctrl  ? control.SmallStep
                                      : control.NormalStep;
  switch (key.Code) {
    case Key::A:
    case Key::Up:
      Change(index, std::min(control.Value + step, control.MaxValue));
      return true;
    case Key::Z:
    case Key::Down:
      Change(index, std::max(control.Value - step, control.MinValue));
      return true;
    case Key::Left:
      StepActive(-1);
      return true;
    case Key::Right:
      StepActive(1);
      return true;
    case Key::Space:
      RestoreDefault(index);
      return true;
    case Key::Enter:
      if (control.OnEnter) control.OnEnter();
      return control.OnEnter != nullptr;
    default:
      return false;
  }
}

void ScrollableControls::StepActive(int direction) {
  int index = activeCtl_;
  LeaveControl();
  // The frequency can always be entered and seen, so that the way round ends.
  const auto passes = [this](int at) {
    const ScrollableControl& control = (*this)(at);
    return control.NoFocus || (control.Label != nullptr && !IsShown(*control.Label));
  };
  do {
    index += direction;
    if (index < 1) index = CtlIndex::LastByArrows;
    if (index > CtlIndex::LastByArrows) index = 1;
  } while (passes(index));
  EnterControl(index);
}

void ScrollableControls::RestoreDefault(int index) {
  ScrollableControl& control = (*this)(index);
  if (control.NoFocus) return;
  if (control.TableDefault) control.DefaultValue = control.TableDefault();
  Change(index, control.DefaultValue);
}

}  // namespace quorl
