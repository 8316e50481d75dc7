// Each kind of control is bound both ways, and every gesture arrives.
#include <gtest/gtest.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QTest>
#include <QWheelEvent>

#include "DesktopTest.h"
#include "controls/Hand.h"
#include "desktop/views/Binder.h"
#include "desktop/window/PanelWindow.h"

namespace quorl {
namespace {

class BindingTest : public DesktopTest {
 protected:
  QWidget* Named(const char* name) { return window.findChild<QWidget*>(name); }
  void Wheel(QWidget* widget, int eighths, Qt::KeyboardModifiers with = Qt::NoModifier) {
    const QPointF middle = QRectF(widget->rect()).center();
    QWheelEvent event(middle, widget->mapToGlobal(middle), QPoint(), QPoint(0, eighths), Qt::NoButton, with,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
  }
  void Open() {
    window.show();
    Settle();
  }

  RealPanel panel;
  std::vector<std::string> log;
  PanelWindow window{panel.Registry(), {[this](const std::string& line) { log.push_back(line); }, {}}};
};

TEST_F(BindingTest, ButtonsTakeClicksAndKeysAndShowTheirState) {
  Open();
  EXPECT_TRUE(log.empty()) << log.front();
  int commands = 0;
  panel.At("cmdCalibrateSMeter").Enabled = true;  // as while it receives
  window.Clock().Flush();
  panel.Get<CommandButton>("cmdCalibrateSMeter").Click = [&] { ++commands; };
  auto& music = panel.Get<CheckBox>("chkMusic");

  QTest::mouseClick(Named("cmdCalibrateSMeter"), Qt::LeftButton);
  QTest::keyClick(Named("cmdCalibrateSMeter"), Qt::Key_Space);
  QTest::mouseClick(Named("cmdCalibrateSMeter"), Qt::RightButton);
  EXPECT_EQ(commands, 2);
  QTest::mouseClick(Named("chkMusic"), Qt::LeftButton);
  EXPECT_TRUE(music.Value());
  QTest::mouseClick(Named("optMode(4)"), Qt::LeftButton);
  EXPECT_EQ(panel.Vars().CurrentDemodMode, 4);
  QTest::keyClick(Named("optMode(4)"), Qt::Key_Right);
  EXPECT_EQ(panel.Pressed("optMode"), 5);

  // The other way: what code sets is what the view tells, once it has been refreshed.
  auto* view = dynamic_cast<View*>(Named("chkMusic"));
  ASSERT_NE(view, nullptr);
  music.SetValue(false);
  EXPECT_FALSE(view->IsChecked());
  music.Enabled = false;
  music.ToolTip = std::string("Reaches down");
  window.Clock().Flush();
  EXPECT_FALSE(view->isEnabled());
  EXPECT_EQ(view->toolTip(), "Reaches down");
  QTest::mouseClick(view, Qt::LeftButton);
  EXPECT_FALSE(music.Value()) << "a disabled control takes no click";
}

TEST_F(BindingTest, AClickOnAButtonLeavesTheKeysToTuning) {
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

TEST_F(BindingTest, AnArrowKeyNeverClosesTheProgram) {
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

TEST_F(BindingTest, AMnemonicPressesItsButton) {
  Open();
  QTest::keyClick(&window, Qt::Key_L, Qt::AltModifier);
  EXPECT_EQ(panel.Pressed("optMode"), 2);
}

TEST_F(BindingTest, LabelsHearPointerWheelKeysAndRightClick) {
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

TEST_F(BindingTest, AHeldKeyIsReleasedOnce) {
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

TEST_F(BindingTest, DigitsTakeHoverWheelClickAndDoubleClick) {
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

TEST_F(BindingTest, GesturesCarryPlaceButtonAndKeysAsThoseOfAHandWithoutAWindow) {
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

TEST_F(BindingTest, AControlKnowsWhereItIsSeen) {
  auto& digit = panel.Get<Label>("lbl7Seg(3)");
  auto& surface = panel.Get<FrequencyDisplay>("picFreqDisp");
  int resized = 0;
  const Listening listening = surface.Resized.Listen([&] { ++resized; });
  ControlRegistry bare;
  EXPECT_EQ(Label(bare, "lblUnseen").Place(), Control::kUnseen);
  Open();
  QWidget* card = Named("frFreqCtl");
  const auto in = [card](QWidget* view) {
    const QPoint corner = view->mapTo(card, QPoint(0, 0));
    return PixelRect{corner.x(), corner.y(), view->width(), view->height()};
  };
  EXPECT_EQ(digit.Place(), in(Named("lbl7Seg(3)")));
  EXPECT_EQ(surface.Place(), in(Named("picFreqDisp")));
  EXPECT_EQ(panel.Get<Frame>("frFreqCtl").Place().Height, card->height());
  const int before = resized;
  Named("picFreqDisp")->move(40, 30);
  EXPECT_EQ(digit.Place(), in(Named("lbl7Seg(3)"))) << "a figure moves with its display";
  EXPECT_EQ(resized, before);
  Named("picFreqDisp")->setFixedSize(400, 90);
  Settle();
  EXPECT_GT(resized, before);
}

TEST_F(BindingTest, TwoViewsOfOneControlBothFollowItAndLeaveWithTheirWindows) {
  auto second = std::make_unique<PanelWindow>(panel.Registry(), PanelWindow::Events{});
  auto& label = panel.Get<Label>("lblNotch");
  label.ToolTip = std::string("first");
  window.Clock().Flush();
  second->Clock().Flush();
  EXPECT_EQ(Named("lblNotch")->toolTip(), "first");
  EXPECT_EQ(second->findChild<QWidget*>("lblNotch")->toolTip(), "first");
  second->resize(1600, 900);
  second->show();
  Open();
  Settle();
  EXPECT_EQ(label.Place().Width, Named("lblNotch")->width());
  second.reset();
  EXPECT_NE(label.Place(), Control::kUnseen) << "the first window still shows it";
  EXPECT_EQ(label.Place().Width, Named("lblNotch")->width());
  label.ToolTip = std::string("second");
  window.Clock().Flush();
  EXPECT_EQ(Named("lblNotch")->toolTip(), "second");
}

TEST_F(BindingTest, AScriptsKeysGoWhereTheKeyboardIs) {
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

TEST_F(BindingTest, SlidersAndKnobsTurnBothWays) {
  panel.SwitchOn({"chkNB"});
  Open();
  auto& slider = panel.Get<Slider>("sldNB");
  int scrolls = 0;
  slider.Scroll = [&] { ++scrolls; };
  QWidget* view = Named("sldNB");
  QTest::mouseClick(view, Qt::LeftButton, Qt::NoModifier, QPoint(view->width() - 2, 8));
  EXPECT_EQ(slider.Value(), slider.Max());
  QTest::keyClick(view, Qt::Key_Left);
  Wheel(view, -120, Qt::ShiftModifier);
  EXPECT_EQ(slider.Value(), slider.Max() * 89 / 100);
  EXPECT_EQ(scrolls, 3);
  slider.SetValue(12);
  EXPECT_EQ(dynamic_cast<View*>(view)->SpokenRange()->Value, 12);
  EXPECT_EQ(scrolls, 3) << "code that sets it is no scroll";

  // A slider whose number runs backwards is at its least value on the right.
  QWidget* edge = Named("sldBW(1)");
  QTest::mouseClick(edge, Qt::LeftButton, Qt::NoModifier, QPoint(edge->width() - 2, 8));
  EXPECT_EQ(panel.Get<Slider>("sldBW(1)").Value(), panel.Get<Slider>("sldBW(1)").Min());

  auto& dial = panel.Get<Dial>("dialtuner");
  QWidget* knob = Named("dialtuner");
  const int start = dial.Value();
  const QPoint middle = knob->rect().center();
  QTest::mousePress(knob, Qt::LeftButton, Qt::NoModifier, middle - QPoint(0, 30));
  QMouseEvent drag(QEvent::MouseMove, QPointF(middle + QPoint(30, 0)), QPointF(), Qt::NoButton,
                   Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(knob, &drag);
  QTest::mouseRelease(knob, Qt::LeftButton);
  EXPECT_NEAR(dial.Value() - start, Dial::kStepsPerTurn / 4, 1) << "a quarter of a turn to the right";
  const int turned = dial.Value();
  Wheel(knob, 120);
  QTest::keyClick(knob, Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(dial.Value(), turned + 1 - 10);
  int changes = 0;
  dial.Change = [&] { ++changes; };
  Wheel(knob, 120, Qt::ShiftModifier);
  EXPECT_EQ(changes, 10) << "each step of a knob without ends tunes";
}

TEST_F(BindingTest, ListsAndFieldsAndMenus) {
  ControlRegistry registry;
  ComboBox box(registry, "cboBandSelect");
  TextBox text(registry, "txtName");
  box.SetItems({"AMATEUR", "BROADCAST", "UTILITY"});
  Binder bind(registry, window.Clock(), [this](const std::string& line) { log.push_back(line); });
  std::unique_ptr<ChoiceView> choice(bind.Choice("cboBandSelect", 120));
  std::unique_ptr<TextView> field(bind.Text("txtName", 120));
  QTest::keyClick(choice.get(), Qt::Key_Down);
  QTest::keyClick(choice.get(), Qt::Key_Down);
  EXPECT_EQ(box.ListIndex(), 1);
  std::unique_ptr<QMenu> items(MakeItemMenu(box, nullptr));
  EXPECT_TRUE(items->actions().at(1)->isChecked());
  items->actions().at(2)->trigger();
  EXPECT_EQ(box.ListIndex(), 2);
  QTest::keyClicks(&field->Line(), "40m");
  EXPECT_EQ(text.Value(), "40m");
  text.SetValue("20m");
  window.Clock().Flush();
  EXPECT_EQ(field->Line().text(), "20m");

  Open();
  int chosen = -1;
  auto& menu = panel.Get<Menu>("mnuVFOControlSub");
  menu.Click = [&](int index) { chosen = index; };
  menu.PopUp();
  auto* opened = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(opened, nullptr);
  opened->actions().at(3)->trigger();
  opened->close();
  EXPECT_EQ(chosen, 3);
}

TEST_F(BindingTest, TheStepSelectorOpensWhenItsControlBecomesVisible) {
  Open();
  auto& box = panel.Get<PopupBox>("cboTuningSteps");
  int losses = 0;
  box.LostFocus = [&] {
    ++losses;
    box.Visible = false;
  };
  box.Beside = &panel.Get<Label>("lblTuningRate");
  box.Marked = 2;
  box.Visible = true;
  window.Clock().Flush();
  auto* popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(popup, nullptr);
  EXPECT_TRUE(popup->actions().at(2)->isChecked());
  QTest::keyClick(popup, Qt::Key_Return);  // the marked one can be chosen again
  Settle();
  EXPECT_EQ(box.ListIndex(), 2);
  EXPECT_EQ(losses, 1);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(BindingTest, TheKeyboardReachesTheDigitsMenuAndTheLock) {
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

TEST_F(BindingTest, AMissingControlIsOneLineAndNoMore) {
  ControlRegistry registry;
  Label label(registry, "lblNB");
  std::vector<std::string> lines;
  PanelWindow bare(registry, {[&](const std::string& line) { lines.push_back(line); }, {}});
  bare.show();
  Settle();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "Window: chkNB is not on the panel"), 1);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "Window: lblNB is not on the panel"), 0);
  EXPECT_NE(bare.findChild<QWidget*>("lblNB"), nullptr);
}

}  // namespace
}  // namespace quorl
