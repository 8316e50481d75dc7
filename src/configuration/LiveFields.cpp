#include "configuration/LiveFields.h"

#include <algorithm>

namespace quorl {

void LiveFields::Add(CheckBox& box, std::function<bool()> live) {
  fields_.push_back({&box, [&box] { return box.Text(); },
                     [live = std::move(live)] { return std::string(live() ? "1" : "0"); },
                     [&box](const std::string& text) { box.SetValue(text == "1"); }, box.Text()});
}

void LiveFields::Add(TextBox& box, std::function<std::string()> live) {
  fields_.push_back({&box, [&box] { return box.Value(); }, std::move(live),
                     [&box](const std::string& text) { box.SetValue(text); }, box.Value()});
}

void LiveFields::Add(ComboBox& box, std::function<int()> live) {
  fields_.push_back({&box, [&box] { return std::to_string(box.ListIndex()); },
                     [live = std::move(live)] { return std::to_string(live()); },
                     [&box](const std::string& text) { box.SetListIndex(std::stoi(text)); },
                     std::to_string(box.ListIndex())});
}

void LiveFields::Add(OptionGroup& group, std::function<int()> live) {
  fields_.push_back({&group, [&group] { return std::to_string(group.Pressed()); },
                     [live = std::move(live)] { return std::to_string(live()); },
                     [&group](const std::string& text) { group.Press(std::stoi(text)); },
                     std::to_string(group.Pressed())});
}

void LiveFields::Show(Field& field) {
  const std::string live = field.Live();
  if (live == field.Loaded && live == field.Shown()) return;
  field.Show(live);
  field.Loaded = field.Shown();
}

void LiveFields::Load() {
  for (Field& field : fields_) Show(field);
}

void LiveFields::Load(const void* which) {
  for (Field& field : fields_) {
    if (field.Which == which) Show(field);
  }
}

void LiveFields::Follow() {
  for (Field& field : fields_) {
    if (field.Shown() == field.Loaded) Show(field);
  }
}

void LiveFields::Settle() {
  for (Field& field : fields_) {
    if (field.Shown() == field.Live()) field.Loaded = field.Shown();
  }
}

bool LiveFields::IsTouched(const void* which) const {
  return std::any_of(fields_.begin(), fields_.end(), [which](const Field& field) {
    return field.Which == which && field.Shown() != field.Loaded;
  });
}

}  // namespace quorl
