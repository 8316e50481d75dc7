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

  DemoPanel panel;
  std::vector<std::string> log;
  PanelWindow window{panel.Registry, {[this](const std::string& line) { log.push_back(line); }, {}}};
};

TEST_F(BindingTest, ButtonsTakeClicksAndKeysAndShowTheirState) {
  Open();
  EXPECT_TRUE(log.empty()) << log.front();
  int commands = 0, modes = 0;
  panel.Get<CommandButton>("cmdCalibrateSMeter").Click = [&] { ++commands; };
  panel.Group("optMode").Click = [&](int index) { modes = index; };
  auto& music = panel.Get<CheckBox>("chkMusic");

  QTest::mouseClick(Named("cmdCalibrateSMeter"), Qt::LeftButton);
  QTest::keyClick(Named("cmdCalibrateSMeter"), Qt::Key_Space);
  QTest::mouseClick(Named("cmdCalibrateSMeter"), Qt::RightButton);
  EXPECT_EQ(commands, 2);
  QTest::mouseClick(Named("chkMusic"), Qt::LeftButton);
  EXPECT_TRUE(music.Value());
  QTest::mouseClick(Named("optMode(4)"), Qt::LeftButton);
  EXPECT_EQ(modes, 4);
  QTest::keyClick(Named("optMode(4)"), Qt::Key_Right);
  EXPECT_EQ(panel.Group("optMode").Pressed(), 5);

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

TEST_F(BindingTest, AMnemonicPressesItsButton) {
  Open();
  QTest::keyClick(&window, Qt::Key_L, Qt::AltModifier);
  EXPECT_EQ(panel.Group("optMode").Pressed(), 2);
}

TEST_F(BindingTest, LabelsHearPointerWheelKeysAndRightClick) {
  auto& label = panel.Get<Label>("lblFilterHi");
  std::vector<std::string> heard;
  const auto hear = [&heard](const std::string& what) { heard.push_back(what); };
  label.MouseMove = [&] { hear("move"); };
  label.MouseDown = [&](MouseButton button) { hear(button == MouseButton::Right ? "right" : "left"); };
  label.Wheel = [&](int notches, Modifiers with) {
    hear("wheel " + std::to_string(notches) + (with.Shift ? " shift" : "") + (with.Ctrl ? " ctrl" : ""));
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
  auto& surface = panel.Get<Picture>("picFreqDisp");
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
  digit.Wheel = [&](int notches, Modifiers) { heard.push_back("wheel " + std::to_string(notches)); };
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

TEST_F(BindingTest, SlidersAndKnobsTurnBothWays) {
  Open();
  auto& slider = panel.Get<Slider>("sldNB");
  int scrolls = 0;
  slider.Scroll = [&] { ++scrolls; };
  QWidget* view = Named("sldNB");
  QTest::mouseClick(view, Qt::LeftButton, Qt::NoModifier, QPoint(view->width() - 2, 8));
  EXPECT_EQ(slider.Value(), 100);
  QTest::keyClick(view, Qt::Key_Left);
  Wheel(view, -120, Qt::ShiftModifier);
  EXPECT_EQ(slider.Value(), 89);
  EXPECT_EQ(scrolls, 3);
  slider.SetValue(12);
  EXPECT_EQ(dynamic_cast<View*>(view)->SpokenRange()->Value, 12);
  EXPECT_EQ(scrolls, 3) << "code that sets it is no scroll";

  // A slider whose number runs backwards is at its least value on the right.
  QWidget* edge = Named("sldBW(1)");
  QTest::mouseClick(edge, Qt::LeftButton, Qt::NoModifier, QPoint(edge->width() - 2, 8));
  EXPECT_EQ(panel.Get<Slider>("sldBW(1)").Value(), 0);

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
  auto& box = panel.Get<ComboBox>("cboTuningSteps");
  int losses = 0;
  box.LostFocus = [&] {
    ++losses;
    box.Visible = false;
  };
  box.Tag = std::string("lblTuningRate");
  box.Visible = true;
  window.Clock().Flush();
  auto* popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(popup, nullptr);
  QTest::keyClick(popup, Qt::Key_Down);
  QTest::keyClick(popup, Qt::Key_Return);
  Settle();
  EXPECT_GE(box.ListIndex(), 0);
  EXPECT_EQ(losses, 1);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(BindingTest, TheKeyboardReachesTheDigitsMenuAndTheLock) {
  int rightClicks = 0, unlocks = 0;
  panel.Get<Label>("lbl7Seg(3)").MouseDown = [&](MouseButton button) {
    rightClicks += button == MouseButton::Right ? 1 : 0;
  };
  panel.Get<Picture>("picFreqDisp").Tag = std::string("3");
  panel.Get<Picture>("imgTuneStepLock").DblClick = [&] { ++unlocks; };
  Open();
  QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(), QPoint());
  QApplication::sendEvent(Named("picFreqDisp"), &menuKey);
  EXPECT_EQ(rightClicks, 1);
  QTest::keyClick(Named("imgTuneStepLock"), Qt::Key_Space);
  QTest::mouseClick(Named("imgTuneStepLock"), Qt::LeftButton);
  EXPECT_EQ(unlocks, 1);
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
