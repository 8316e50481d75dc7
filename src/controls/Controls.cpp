#include "controls/Controls.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>

#include "support/Text.h"

namespace quorl {

namespace {

int WheelStep(int range, Modifiers with) {
  const int normal = std::max(1, range / 100);
  return with.Shift ? 10 * normal : with.Ctrl ? 1 : normal;
}

std::optional<int> NumberIn(const std::string& text) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data(), end, number);
  if (fault != std::errc() || stop != end) return {};
  return number;
}

// The whole number next to one with a fraction, too.
std::optional<int> WholeIn(const std::string& text) {
  const std::optional<double> number = ParseDouble(text);
  if (!number || std::abs(*number) > std::numeric_limits<int>::max()) return std::nullopt;
  return static_cast<int>(std::lround(*number));
}

// The place of `text` in `items`, or the place that it names by number.
std::optional<int> ItemIn(const std::vector<std::string>& items, const std::string& text) {
  const auto found = std::find(items.begin(), items.end(), text);
  if (found != items.end()) return static_cast<int>(found - items.begin());
  const std::optional<int> number = NumberIn(text);
  if (number && *number >= 0 && *number < static_cast<int>(items.size())) return number;
  return {};
}

}  // namespace

std::string IndexedName(const std::string& name, int index) {
  return name + "(" + std::to_string(index) + ")";
}

bool Label::UserSet(const std::string& text) {
  const std::optional<double> number = ParseDouble(text);
  if (!Number || !number) return false;
  if (Enabled() && Visible()) SetNumber(*number);
  return true;
}

bool CheckBox::UserSet(const std::string& text) {
  if (text != "0" && text != "1") return false;
  if (Enabled() && Visible()) SetValue(text == "1");
  return true;
}

void CheckBox::SetValue(bool value) {
  if (value == value_) return;
  value_ = value;
  Changed();
  Raise(Click);
}

OptionButton::OptionButton(ControlRegistry& registry, OptionGroup& group, int index)
    : Control(registry, IndexedName(group.Name(), index)), group_(group), index_(index) {}

bool OptionButton::Value() const {
  return group_.Pressed() == index_;
}

void OptionButton::OnUserClick(const MouseEvent&) {
  if (group_.Repeats && Value()) {
    group_.Click(index_);
  } else {
    group_.Press(index_);
  }
}

OptionGroup::OptionGroup(ControlRegistry& registry, const std::string& name, int count) : name_(name) {
  for (int i = 0; i < count; ++i) buttons_.push_back(std::make_unique<OptionButton>(registry, *this, i));
}

void OptionGroup::Press(int index) {
  if (index == pressed_) return;
  pressed_ = index;
  for (const auto& button : buttons_) button->Changed();
  if (index >= 0) Raise(Click, index);
}

std::string Slider::Text() const {
  return std::to_string(value_);
}

bool Slider::UserSet(const std::string& text) {
  const std::optional<int> number = WholeIn(text);
  if (!number) return false;
  if (Enabled() && Visible()) UserScroll(*number);
  return true;
}

void Slider::SetValue(int value) {
  value = std::clamp(value, std::min(Min(), Max()), std::max(Min(), Max()));
  if (value == value_) return;
  value_ = value;
  Changed();
  Raise(Change);
}

void Slider::UserScroll(int value) {
  value = std::clamp(value, std::min(Min(), Max()), std::max(Min(), Max()));
  if (value == value_) return;
  value_ = value;
  Changed();
  Raise(Scroll);
  Raise(Change);
}

bool Slider::UserTurn(int notches, Modifiers with) {
  const int steps = (Reversed() ? -notches : notches) * WheelStep(std::abs(Max() - Min()), with);
  if (Enabled()) UserScroll(value_ + steps);
  return true;
}

std::string Dial::Text() const {
  return std::to_string(value_);
}

bool Dial::UserSet(const std::string& text) {
  const std::optional<int> number = WholeIn(text);
  if (!number) return false;
  if (Enabled() && Visible()) SetValue(*number);
  return true;
}

void Dial::SetValue(int value) {
  if (Bounded()) value = std::clamp(value, Min(), std::max(Min(), Max()));
  if (value == value_) return;
  value_ = value;
  Changed();
  Raise(Change);
}

void Dial::UserStep(int steps) {
  if (!Enabled()) return;
  if (Bounded()) {
    SetValue(value_ + steps);
    return;
  }
  for (int i = 0; i < std::abs(steps); ++i) SetValue(value_ + (steps > 0 ? 1 : -1));
}

bool Dial::UserTurn(int notches, Modifiers with) {
  UserStep(notches * WheelStep(Bounded() ? Max() - Min() : 0, with));
  return true;
}

std::string ComboBox::Text() const {
  return listIndex_ < 0 ? std::string() : items_[static_cast<std::size_t>(listIndex_)];
}

bool ComboBox::UserSet(const std::string& text) {
  const std::optional<int> item = ItemIn(items_, text);
  if (!item) return false;
  if (Enabled() && Visible()) SetListIndex(*item);
  return true;
}

void ComboBox::SetItems(std::vector<std::string> items) {
  items_ = std::move(items);
  listIndex_ = -1;
  Changed();
}

void ComboBox::AddItem(std::string item) {
  items_.push_back(std::move(item));
  Changed();
}

void ComboBox::RemoveItem(int index) {
  if (index < 0 || index >= static_cast<int>(items_.size())) return;
  items_.erase(items_.begin() + index);
  if (listIndex_ == index) {
    listIndex_ = -1;
  } else if (listIndex_ > index) {
    --listIndex_;
  }
  Changed();
}

void ComboBox::SetListIndex(int index) {
  if (index == listIndex_ || index < -1 || index >= static_cast<int>(items_.size())) return;
  listIndex_ = index;
  Changed();
  if (index >= 0) Raise(Click);
}

bool FrequencyDisplay::UserSet(const std::string& text) {
  const std::optional<double> hertz = ParseDouble(text);
  if (!Tune || !hertz) return false;
  if (Enabled() && Visible()) Tune(*hertz);
  return true;
}

bool TextBox::UserSet(const std::string& text) {
  if (Enabled() && Visible()) SetValue(text);
  return true;
}

void TextBox::SetValue(const std::string& value) {
  if (value == value_) return;
  value_ = value;
  Changed();
  Raise(Change);
}

Menu::Menu(ControlRegistry& registry, const std::string& name, std::span<const char* const> captions)
    : Control(registry, name),
      captions_(captions.begin(), captions.end()),
      ticked_(captions.size()),
      enabled_(captions.size(), true) {}

std::string Menu::Text() const {
  std::string text;
  for (const std::string& caption : captions_) text += (text.empty() ? "" : "|") + caption;
  return text;
}

bool Menu::UserSet(const std::string& text) {
  const std::optional<int> item = ItemIn(captions_, text);
  if (item) UserChoose(*item);
  return item.has_value();
}

}  // namespace quorl
