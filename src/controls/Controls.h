// The kinds of controls that a panel is made of.
//
// Setting a value raises the control's event at once, whether a person, a script or code sets it; setting the
// value that is already there raises nothing. Handlers guard themselves against being raised by their own
// doing.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "controls/Control.h"

namespace quorl {

// "optMode" and 1 to "optMode(1)".
std::string IndexedName(const std::string& name, int index);

class Label : public Control {
 public:
  using Control::Control;
  std::string Text() const override { return Caption; }

  Property<std::string> Caption{*this};
  Property<bool> Border{*this, false};
  Event<const MouseEvent&> Click;

  // Where the caption is a number that is turned: that number in the caption's unit, with its ends, and the
  // user's way to set it outright.
  struct TurnedNumber {
    double Value = 0, Minimum = 0, Maximum = 0;
  };
  std::function<TurnedNumber()> Number;
  Event<double> SetNumber;
  bool UserSet(const std::string& text) override;

 protected:
  void OnUserClick(const MouseEvent& at) override { Click(at); }
};

class Frame : public Label {
 public:
  using Label::Label;
};

class CommandButton : public Control {
 public:
  using Control::Control;
  std::string Text() const override { return Caption; }

  Property<std::string> Caption{*this};  // '&' stands before the mnemonic
  Event<> Click;

 protected:
  void OnUserClick(const MouseEvent&) override { Click(); }
};

class CheckBox : public Control {
 public:
  using Control::Control;
  std::string Text() const override { return Value() ? "1" : "0"; }
  bool UserSet(const std::string& text) override;

  Property<std::string> Caption{*this};
  bool Value() const { return value_; }
  void SetValue(bool value);
  Event<> Click;

 protected:
  void OnUserClick(const MouseEvent&) override { SetValue(!value_); }

 private:
  bool value_ = false;
};

class OptionGroup;

class OptionButton : public Control {
 public:
  OptionButton(ControlRegistry& registry, OptionGroup& group, int index);
  std::string Text() const override { return Value() ? "1" : "0"; }

  Property<std::string> Caption{*this};
  Property<bool> Marked{*this, false};  // stands out for another reason than being pressed
  bool Value() const;
  int Index() const { return index_; }

 protected:
  void OnUserClick(const MouseEvent& at) override;

 private:
  OptionGroup& group_;
  int index_;
};

// Buttons of which one at most is pressed. Pressing another one raises Click with its index.
class OptionGroup {
 public:
  // Buttons name(0) .. name(count-1).
  OptionGroup(ControlRegistry& registry, const std::string& name, int count);

  const std::string& Name() const { return name_; }
  int Count() const { return static_cast<int>(buttons_.size()); }
  OptionButton& operator()(int index) { return *buttons_.at(static_cast<std::size_t>(index)); }
  int Pressed() const { return pressed_; }  // -1 for none
  void Press(int index);
  Event<int> Click;
  bool Repeats = false;  // a person who presses the button that is pressed already raises Click, too

 private:
  std::string name_;
  std::vector<std::unique_ptr<OptionButton>> buttons_;
  int pressed_ = -1;
};

class Slider : public Control {
 public:
  using Control::Control;
  std::string Text() const override;
  bool UserSet(const std::string& text) override;

  Property<int> Min{*this, 0};
  Property<int> Max{*this, 100};
  int Value() const { return value_; }
  void SetValue(int value);    // clamped to Min .. Max; raises Change
  void UserScroll(int value);  // the same by hand: raises Scroll, then Change
  // Its number runs against what it means: the view has its least value on the right, and a notch away from
  // the user takes it down.
  Property<bool> Reversed{*this, false};
  // A hundredth of the range for each notch, ten with Shift; with Ctrl 1.
  bool UserTurn(int notches, Modifiers with) override;
  Event<> Scroll, Change;

 private:
  int value_ = 0;
};

// A knob without ends. Its value counts up and down; one turn is kStepsPerTurn.
class Dial : public Control {
 public:
  static constexpr int kStepsPerTurn = 60;

  using Control::Control;
  std::string Text() const override;
  bool UserSet(const std::string& text) override;

  int Value() const { return value_; }
  void SetValue(int value);
  // By hand. Without ends each of the steps counts for itself.
  void UserStep(int steps);
  // A step for each notch, with ends a hundredth of the range; ten times as far with Shift, with Ctrl 1.
  bool UserTurn(int notches, Modifiers with) override;
  Property<bool> Bounded{*this, false};  // stops at Min and Max instead of going round
  Property<int> Min{*this, 0};
  Property<int> Max{*this, 100};
  Event<> Change;

 private:
  int value_ = 0;
};

class ComboBox : public Control {
 public:
  using Control::Control;
  std::string Text() const override;
  bool UserSet(const std::string& text) override;  // an item by its text, or its number from 0

  const std::vector<std::string>& Items() const { return items_; }
  void SetItems(std::vector<std::string> items);  // selects nothing
  void AddItem(std::string item);
  void RemoveItem(int index);                   // the selection stays with its item
  int ListIndex() const { return listIndex_; }  // -1 for none
  void SetListIndex(int index);                 // raises Click
  // The item that is in force although nothing is chosen, -1 for none; the view ticks it.
  Property<int> Marked{*this, -1};
  Event<> Click;

 private:
  std::vector<std::string> items_;
  int listIndex_ = -1;
};

// A list that its panel makes visible for one choice.
class PopupBox : public ComboBox {
 public:
  using ComboBox::ComboBox;
  Property<const Control*> Beside{*this, nullptr};  // where it comes up; null: wherever the view likes
};

// A list that shows its last or its chosen line.
class ListBox : public ComboBox {
 public:
  using ComboBox::ComboBox;
};

class TextBox : public Control {
 public:
  using Control::Control;
  std::string Text() const override { return value_; }
  bool UserSet(const std::string& text) override;

  const std::string& Value() const { return value_; }
  void SetValue(const std::string& value);
  Event<> Change;

 private:
  std::string value_;
};

// A surface that the view paints, or a symbol with nothing to it but being there.
class Picture : public Control {
 public:
  using Control::Control;
  std::string Text() const override { return Caption; }

  Property<std::string> Caption{*this};
  Event<const MouseEvent&> Click;

 protected:
  void OnUserClick(const MouseEvent& at) override { Click(at); }
};

// The surface under the figures of a frequency.
class FrequencyDisplay : public Picture {
 public:
  using Picture::Picture;
  Property<int> ChosenDigit{*this, -1};  // the one that is tuned, from the left; -1 for none
  Event<double> Tune;                    // to a frequency in hertz that the user names
  bool UserSet(const std::string& text) override;
};

// A pop-up menu; its items are name(i).
class Menu : public Control {
 public:
  Menu(ControlRegistry& registry, const std::string& name, std::span<const char* const> captions);
  std::string Text() const override;
  bool UserSet(const std::string& text) override;  // an item by its caption or number

  const std::vector<std::string>& Captions() const { return captions_; }  // "-" is a separator
  // An item that is in force has a tick before it.
  bool Ticked(int index) const { return ticked_.at(static_cast<std::size_t>(index)); }
  void SetTicked(int index, bool ticked) { ticked_.at(static_cast<std::size_t>(index)) = ticked; }
  // Opens it where the pointer is: a view listens to OnPopup.
  void PopUp() const { OnPopup(); }
  // Nothing where the item can't be chosen.
  void UserChoose(int index) const {
    if (ItemEnabled(index)) Click(index);
  }
  void SetItemEnabled(int index, bool enabled) { enabled_.at(static_cast<std::size_t>(index)) = enabled; }
  bool ItemEnabled(int index) const { return enabled_.at(static_cast<std::size_t>(index)); }
  Event<int> Click;
  Event<> OnPopup;

 private:
  std::vector<std::string> captions_;
  std::vector<bool> ticked_, enabled_;
};

// An array of controls of one kind: name(0) .. name(count-1).
template <typename C>
class ControlArray {
 public:
  ControlArray(ControlRegistry& registry, const std::string& name, int count) {
    for (int i = 0; i < count; ++i) controls_.push_back(std::make_unique<C>(registry, IndexedName(name, i)));
  }
  int Count() const { return static_cast<int>(controls_.size()); }
  C& operator()(int index) { return *controls_.at(static_cast<std::size_t>(index)); }

 private:
  std::vector<std::unique_ptr<C>> controls_;
};

}  // namespace quorl
