// The controls of a panel worked by their names.
#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "controls/ControlRegistry.h"
#include "controls/Controls.h"
#include "controls/Hand.h"

namespace quorl::test {

class Hands {
 public:
  virtual ~Hands() = default;
  virtual const ControlRegistry& Registry() = 0;

  Control& At(const std::string& name) {
    Control* control = Registry().Find(name);
    if (control == nullptr) throw std::out_of_range(name);
    return *control;
  }
  template <class C>
  C& Get(const std::string& name) {
    return dynamic_cast<C&>(At(name));
  }
  void Click(const std::string& name) { At(name).UserClick(); }
  void Press(const std::string& group, int index) { Click(IndexedName(group, index)); }
  void RightClick(const std::string& name) { hand::Click(At(name), {.Button = MouseButton::Right}); }
  void Set(const std::string& name, const std::string& value) {
    EXPECT_TRUE(At(name).UserSet(value)) << name;
  }
  void Wheel(const std::string& name, int notches, Modifiers with = {}) {
    hand::Turn(At(name), notches, {.With = with});
  }
  std::string Text(const std::string& name) { return At(name).Text(); }
  // The nine of the frequency.
  std::string Digits() {
    std::string digits;
    for (int i = 0; i < 9; ++i) digits += Text(IndexedName("lbl7Seg", i));
    return digits;
  }
};

}  // namespace quorl::test
