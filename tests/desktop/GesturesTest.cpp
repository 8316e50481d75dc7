// Every gesture of pointer, wheel and keys arrives at its control, and at no other.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>

#include "BindingRig.h"
#include "controls/Hand.h"

namespace quorl {
namespace {

class GesturesTest : public BindingRig {};

TEST_F(GesturesTest, AClickOnAButtonLeavesTheKeysToTuning) {
  int downs = 0;
  panel.Get<FrequencyDisplay>("picFreqDisp").KeyDown = [&] { ++downs; };
  Open();
  ASSERT_TRUE(window.FocusByKeyboard("picFreqDisp"));
  for (const char* name : {"optMode(4)", "chkMusic", "cmdCalibrateSMeter"}) {
    QTest::mouseClick(Named(name), Qt::LeftButton);
    QTest::keyClick(window.focusWidget(), Qt::Key_Up);
  }
  EXPECT_EQ(panel.Pressed("optMode"), 4);
  EXPECT_EQ(downs, 3);
  // Tab comes to the pressed button, arrows go on from it, and stay within the group.
  window.Clock().Flush();
  ASSERT_TRUE(window.FocusByKeyboard("optMode(4)"));
  for (int i = 0; i < 3; ++i) QTest::keyClick(window.focusWidget(), Qt::Key_Down);
  EXPECT_EQ(panel.Pressed("optMode"), 5);
  window.Clock().Flush();
  EXPECT_EQ(Named("optMode(5)")->focusPolicy(), Qt::TabFocus);
  EXPECT_EQ(Named("optMode(4)")->focusPolicy(), Qt::NoFocus);
}

TEST_F(GesturesTest, AnArrowKeyNeverClosesTheProgram) {
  Open();
  ASSERT_TRUE(window.FocusByKeyboard("optPwr(1)"));
  for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Down}) QTest::keyClick(window.focusWidget(), key);
  EXPECT_EQ(panel.Closed, 0);
  EXPECT_EQ(panel.Pressed("optPwr"), 1);
  ASSERT_TRUE(window.FocusByKeyboard("optPwr(2)"));
  for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Up}) QTest::keyClick(window.focusWidget(), key);
  EXPECT_EQ(panel.Pressed("optPwr"), 1);
  EXPECT_EQ(panel.Closed, 0);
  QTest::keyClick(Named("optPwr(2)"), Qt::Key_Space);
  EXPECT_EQ(panel.Closed, 1);
}

TEST_F(GesturesTest, AMnemonicPressesItsButton) {
  Open();
  QTest::keyClick(&window, Qt::Key_L, Qt::AltModifier);
  EXPECT_EQ(panel.Pressed("optMode"), 2);
}

TEST_F(GesturesTest, LabelsHearPointerWheelKeysAndRightClick) {
  auto& label = panel.Get<Label>("lblFilterHi");
  std::vector<std::string> heard;
  const auto hear = [&heard](const std::string& what) { heard.push_back(what); };
  label.MouseMove = [&] { hear("move"); };
  label.MouseDown = [&](const MouseEvent& at) { hear(at.Button == MouseButton::Right ? "right" : "left"); };
  label.Wheel = [&](int notches, const MouseEvent& at) {
    hear("wheel " + std::to_string(notches) + (at.With.Shift ? " shift" : "") +
         (at.With.Ctrl ? " ctrl" : ""));
  };
  label.KeyDown = [&](Key key) {
    hear("down " + std::to_string(key.Code) + (key.With.Shift ? " shift" : ""));
  };
  label.KeyUp = [&](Key key) { hear("up " + std::to_string(key.Code)); };
  Open();
  QWidget* view = Named("lblFilterHi");
  QEnterEvent enter(QPointF(2, 2), QPointF(2, 2), QPointF(2, 2));
  QApplication::sendEvent(view, &enter);
  EXPECT_EQ(heard, std::vector<std::string>{"move"});
  EXPECT_EQ(window.focusWidget(), view) << "hovering gives the label the keys";

  heard.clear();
  Wheel(view, 120);
  Wheel(view, -60);  // half a notch waits for its other half
  Wheel(view, -60, Qt::ShiftModifier);
  Wheel(view, 240, Qt::ControlModifier);
  EXPECT_EQ(heard, (std::vector<std::string>{"wheel 1", "wheel -1 shift", "wheel 2 ctrl"}));

  heard.clear();
  QTest::mouseClick(view, Qt::RightButton);
  for (const int key :
       {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_Space, Qt::Key_Escape}) {
    QTest::keyClick(view, static_cast<Qt::Key>(key));
  }
  QTest::keyClick(view, 'z', Qt::ShiftModifier);
  EXPECT_EQ(heard, (std::vector<std::string>{"right", "down 38", "up 38", "down 40", "up 40", "down 37",
                                             "up 37", "down 39", "up 39", "down 32", "up 32", "down 27",
                                             "up 27", "down 90 shift", "up 90"}));
}

TEST_F(GesturesTest, AHeldKeyIsReleasedOnce) {
  int downs = 0, ups = 0;
  auto& surface = panel.Get<FrequencyDisplay>("picFreqDisp");
  surface.KeyDown = [&](Key) { ++downs; };
  surface.KeyUp = [&](Key) { ++ups; };
  Open();
  QWidget* view = Named("picFreqDisp");
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease, QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent repeat(type, Qt::Key_Up, Qt::NoModifier, QString(), true);
    QApplication::sendEvent(view, &repeat);
  }
  QKeyEvent release(QEvent::KeyRelease, Qt::Key_Up, Qt::NoModifier);
  QApplication::sendEvent(view, &release);
  EXPECT_EQ(downs, 2);
  EXPECT_EQ(ups, 1);
}

TEST_F(GesturesTest, DigitsTakeHoverWheelClickAndDoubleClick) {
  std::vector<std::string> heard;
  auto& digit = panel.Get<Label>("lbl7Seg(3)");
  digit.MouseMove = [&] { heard.push_back("move"); };
  digit.Click = [&] { heard.push_back("click"); };
  digit.DblClick = [&] { heard.push_back("double"); };
  digit.Wheel = [&](int notches, const MouseEvent&) { heard.push_back("wheel " + std::to_string(notches)); };
  Open();
  QWidget* view = Named("lbl7Seg(3)");
  QTest::mouseMove(&window, view->mapTo(&window, view->rect().center()));
  Wheel(view, -120);
  QTest::mouseClick(view, Qt::LeftButton);
  QTest::mouseDClick(view, Qt::LeftButton);
  QTest::mouseRelease(view, Qt::LeftButton);
  std::erase(heard, "move");  // as many as there are ways for the pointer
  EXPECT_EQ(heard, (std::vector<std::string>{"wheel -1", "click", "double"}));
}

// A gesture as its place in hundredths, button and keys.
std::string Told(const MouseEvent& at) {
  constexpr const char* kButtons[] = {"", " left", " right", " middle"};
  return std::to_string(std::lround(100 * at.X)) + "," + std::to_string(std::lround(100 * at.Y)) +
         kButtons[static_cast<int>(at.Button)] + (at.With.Shift ? " shift" : "") +
         (at.With.Ctrl ? " ctrl" : "");
}

TEST_F(GesturesTest, GesturesCarryPlaceButtonAndKeysAsThoseOfAHandWithoutAWindow) {
  auto& label = panel.Get<Label>("lblClock");
  std::vector<std::string> heard;
  const auto note = [&heard](const char* what) {
    return [&heard, what](const MouseEvent& at) { heard.push_back(what + (" " + Told(at))); };
  };
  label.MouseMove = note("move");
  label.MouseDown = note("down");
  label.MouseUp = note("up");
  label.Click = note("click");
  Open();
  QWidget* view = Named("lblClock");
  view->setFixedSize(50, 20);
  const auto send = [view](QEvent::Type type, QPointF place, Qt::MouseButton button, Qt::MouseButtons held) {
    QMouseEvent event(type, place, view->mapToGlobal(place), button, held, Qt::ShiftModifier);
    QApplication::sendEvent(view, &event);
  };
  const auto dragged = [&](Qt::MouseButton button) {
    send(QEvent::MouseMove, {10, 5}, Qt::NoButton, Qt::NoButton);
    send(QEvent::MouseButtonPress, {10, 5}, button, button);
    for (int i = 1; i <= hand::kDragMoves; ++i) {
      send(QEvent::MouseMove, {10.0 + 2 * i, 5.0 + i}, Qt::NoButton, button);
    }
    send(QEvent::MouseButtonRelease, {30, 15}, button, Qt::NoButton);
    return std::exchange(heard, {});
  };
  for (const MouseButton button : {MouseButton::Left, MouseButton::Middle}) {
    const auto byView = dragged(button == MouseButton::Left ? Qt::LeftButton : Qt::MiddleButton);
    hand::Drag(label, {0.2, 0.25, button, {.Shift = true}}, {0.6, 0.75}, [] {});
    EXPECT_EQ(byView, heard);
    EXPECT_EQ(byView.size(), button == MouseButton::Left ? 14U : 13U) << "only the left button clicks";
    EXPECT_EQ(byView[1], button == MouseButton::Left ? "down 20,25 left shift" : "down 20,25 middle shift");
    heard.clear();
  }
  for (const bool handled : {false, true}) {
    if (handled) label.DblClick = note("double");
    send(QEvent::MouseMove, {10, 5}, Qt::NoButton, Qt::NoButton);
    for (const auto press : {QEvent::MouseButtonPress, QEvent::MouseButtonDblClick}) {
      send(press, {10, 5}, Qt::LeftButton, Qt::LeftButton);
      send(QEvent::MouseButtonRelease, {10, 5}, Qt::LeftButton, Qt::NoButton);
    }
    const auto byView = std::exchange(heard, {});
    hand::DoubleClick(label, {.X = 0.2, .Y = 0.25, .With = {.Shift = true}});
    EXPECT_EQ(byView, heard);
    EXPECT_EQ(byView.size(), handled ? 6U : 7U);
    heard.clear();
  }
}

TEST_F(GesturesTest, AScriptsKeysGoWhereTheKeyboardIs) {
  Open();
  EXPECT_TRUE(window.FocusByKeyboard("optMode(1)"));
  window.PressKey({Key::Right, {}}, true);
  EXPECT_EQ(panel.Pressed("optMode"), 2);
  auto& label = panel.Get<Label>("lblFilterHi");
  std::vector<int> keys;
  label.KeyDown = [&](Key key) { keys.push_back(key.With.Ctrl ? -key.Code : key.Code); };
  EXPECT_TRUE(window.FocusByKeyboard("lblFilterHi"));
  for (const int code : {int(Key::Home), int(Key::Enter), int('7')}) window.PressKey({code, {}}, true);
  window.PressKey({Key::Down, {.Ctrl = true}}, true);
  EXPECT_EQ(keys, (std::vector<int>{Key::Home, Key::Enter, '7', -Key::Down}));
  EXPECT_FALSE(window.FocusByKeyboard("lblStatsVal(0)")) << "a reading takes no keys";
  EXPECT_FALSE(window.FocusByKeyboard("lblNobody"));
}

TEST_F(GesturesTest, TheKeyboardReachesTheDigitsMenuAndTheLock) {
  int rightClicks = 0, unlocks = 0;
  panel.Get<Label>("lbl7Seg(3)").MouseDown = [&](const MouseEvent& at) {
    rightClicks += at.Button == MouseButton::Right ? 1 : 0;
  };
  panel.At("lbl7Seg(3)").MouseMove({});
  panel.Click("lbl7Seg(3)");  // locks the step to it
  auto& lock = panel.Get<Picture>("imgTuneStepLock");
  lock.Click = [&] { ++unlocks; };
  lock.DblClick = [&] { ++unlocks; };
  Open();
  QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(), QPoint());
  QApplication::sendEvent(Named("picFreqDisp"), &menuKey);
  EXPECT_EQ(rightClicks, 1);
  QTest::keyClick(Named("imgTuneStepLock"), Qt::Key_Space);
  QTest::mouseClick(Named("imgTuneStepLock"), Qt::LeftButton);
  EXPECT_EQ(unlocks, 2);
}

}  // namespace
}  // namespace quorl
