// One Qt application without a screen, for all tests of the window. It goes before the program's end does.
#include <gtest/gtest.h>

#include <QApplication>

#include "desktop/window/Application.h"

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(count, arguments);
  quorl::PrepareApplication();
  return RUN_ALL_TESTS();
}
