// Log and pictures of the window.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QTest>
#include <QWindow>

#include "WindowRig.h"
#include "desktop/window/Shot.h"
#include "desktop/window/SidePanels.h"
#include "desktop/window/TimerWindow.h"

namespace quorl {
namespace {

class SideWindowsTest : public WindowRig {};

TEST_F(SideWindowsTest, CloseAsks) {
  bool asked = false;
  PanelWindow own(panel.Registry(), {{}, [&] {
                                       asked = true;
                                       return false;
                                     }});
  own.show();
  EXPECT_FALSE(own.close());
  EXPECT_TRUE(asked);
}

TEST_F(SideWindowsTest, AShotHasItsScale) {
  panel.Press("optMode", 1);
  window.resize(1024, 700);
  const std::string path = testing::TempDir() + "quorl-window.png";
  ASSERT_TRUE(GrabShot(window, path, 2));
  QPixmap picture(QString::fromStdString(path));
  EXPECT_EQ(picture.size(), QSize(2048, 1400));
  // The accent fills the chosen mode's button.
  const auto* button = window.findChild<QWidget*>("optMode(1)");
  const QPoint corner = button->mapTo(&window, QPoint(4, 4)) * 2;
  const QColor face = picture.toImage().pixelColor(corner);
  EXPECT_LT(face.red(), 60);
  EXPECT_GT(face.green(), 180);
  EXPECT_FALSE(GrabShot(window, "/nowhere/at/all.png"));
  EXPECT_EQ(FindPanel("FRNOTCH"), window.findChild<QWidget*>("frNotch"));
  EXPECT_EQ(FindPanel("frNothing"), nullptr);
}

TEST_F(SideWindowsTest, TheLogIsPaintedWithItsLinesBeforeTheProgramGoesOn) {
  panel.At("frmLog").Visible = true;
  LogWindow log(panel.Registry(), [](const std::string& line) { FAIL() << line; });
  auto* lines = log.findChild<QListWidget*>();
  PaintCounter counter(log);
  panel.Get<ListBox>("lstLog").AddItem("the latest");
  log.PaintNow();
  EXPECT_TRUE(log.windowHandle()->isExposed());
  EXPECT_GT(counter.Paints, 0);
  EXPECT_EQ(lines->item(lines->count() - 1)->text(), "the latest");
  panel.Get<ListBox>("lstLog").AddItem("later still");
  ASSERT_TRUE(GrabShot(log, testing::TempDir() + "quorl-log.png"));
  EXPECT_EQ(lines->item(lines->count() - 1)->text(), "later still") << "a picture shows it, too";
}

TEST_F(SideWindowsTest, TheLogFollowsItsForm) {
  Control& form = panel.At("frmLog");
  LogWindow log(panel.Registry(), [](const std::string& line) { FAIL() << line; });
  EXPECT_FALSE(log.isVisible());
  form.Visible = true;
  EXPECT_TRUE(log.isVisible());
  log.close();
  EXPECT_FALSE(form.Visible());
}

// What is typed into a field ends with Enter; the panel stays free.
TEST_F(SideWindowsTest, TheTimersWindowTakesEnterAndEscape) {
  auto& form = panel.Get<Frame>("frmTimer");
  TimerWindow timer(panel.Registry(), [](const std::string& line) { FAIL() << line; });
  EXPECT_FALSE(timer.isVisible());
  panel.Click("cmdTimer");
  EXPECT_TRUE(timer.isVisible());
  EXPECT_FALSE(timer.isModal());
  std::vector<int> keys;
  form.KeyDown = [&](const Key& key) { keys.push_back(key.Code); };
  auto* start = timer.findChild<QLineEdit*>();
  QTest::keyClicks(start, "18:05");
  QTest::keyClick(start, Qt::Key_Return);
  QTest::keyClick(start, Qt::Key_Escape);
  timer.close();
  EXPECT_EQ(keys, (std::vector<int>{Key::Enter, Key::Escape, Key::Escape}));
  EXPECT_TRUE(timer.isVisible()) << "until its frame is hidden";
  form.Visible = false;
  EXPECT_FALSE(timer.isVisible());
}

}  // namespace
}  // namespace quorl
