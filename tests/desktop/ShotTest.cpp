#include <gtest/gtest.h>

#include <QTest>

#include "DesktopTest.h"
#include "desktop/PanelWindow.h"
#include "desktop/Shot.h"
#include "desktop/SidePanels.h"

namespace quorl {
namespace {

TEST_F(DesktopTest, TemporaryShots) {
  DemoPanel panel;
  PanelWindow window(panel.Registry, {[](const std::string& l) { printf("%s\n", l.c_str()); }, {}});
  window.resize(1024, 700);
  window.show();
  Settle();
  GrabShot(window, "/tmp/desk/std-1024.png", 1);
  window.resize(1280, 800);
  Settle();
  GrabShot(window, "/tmp/desk/std-1280.png", 1);
  GrabShot(window, "/tmp/desk/std-1280@2.png", 2);
  window.resize(1024, 700);
  int i = 0;
  for (const char* n : {"ext", "std2", "comp", "full"}) {
    panel.Group("optDisplaySize").Press(i++);
    window.Clock().Flush();
    Settle();
    GrabShot(window, std::string("/tmp/desk/") + n + ".png", 1);
  }
  panel.Group("optDisplaySize").Press(1);
  window.Clock().Flush();
  for (int k = 0; k < 3; ++k) QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, Qt::Key_Tab);
  Settle();
  GrabShot(window, "/tmp/desk/focus@1.5.png", 1.5);
  window.ShowHelp();
  Settle();
  if (auto* help = window.findChild<QWidget*>("frmHelp")) GrabShot(*help, "/tmp/desk/help.png", 1);
  SplashPanel splash("0.1.0");
  GrabShot(splash, "/tmp/desk/splash.png", 1);
  LogWindow log(panel.Registry, [](const std::string& l) { printf("%s\n", l.c_str()); });
  log.show();
  GrabShot(log, "/tmp/desk/log.png", 1);
}

}  // namespace
}  // namespace quorl
