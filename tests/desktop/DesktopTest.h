// What the tests of the window share; main.cpp holds their Qt application.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>

#include "core/FrameRig.h"

namespace quorl {

// The radio's own panel after its start, the power off. Its clock stands still, so that it changes by the
// test's hand only.
class RealPanel : public test::FrameRig {
 public:
  RealPanel() {
    if (!Start()) throw std::runtime_error("the radio does not start");
  }

  // What is switched off takes no gestures.
  void SwitchOn(std::initializer_list<const char*> names) {
    for (const char* name : names) Get<CheckBox>(name).SetValue(true);
  }
  int Pressed(const std::string& group) {
    int index = 0;
    while (!Get<OptionButton>(IndexedName(group, index)).Value()) ++index;
    return index;
  }
  void ShowDigits(const std::string& nine) {
    for (int i = 0; i < 9; ++i) {
      Get<Label>(IndexedName("lbl7Seg", i)).Caption = nine.substr(static_cast<std::size_t>(i), 1);
    }
  }
  void ShowSignal(int elements) {
    for (int i = 0; i < 28; ++i) At(IndexedName("shpSMeterGrid", i)).Visible = i < elements;
  }
};

class DesktopTest : public testing::Test {
 protected:
  static void Settle() {
    for (int i = 0; i < 4; ++i) QApplication::processEvents();
  }
};

}  // namespace quorl
