// What the tests of the window share; main.cpp holds their Qt application.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>

#include "DemoPanel.h"

namespace quorl {

class DesktopTest : public testing::Test {
 protected:
  static void Settle() {
    for (int i = 0; i < 4; ++i) QApplication::processEvents();
  }
};

}  // namespace quorl
