// Each kind of control is bound both ways, and is seen where it says.
#include <gtest/gtest.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>

#include "BindingRig.h"
#include "desktop/views/Binder.h"
#include "desktop/views/Skin.h"

namespace quorl {
namespace {

class BindingTest : public BindingRig {};

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
  ListBox lines(registry, "lstLines");
  lines.SetItems({"one", "two", "three"});
  std::unique_ptr<ListView> list(bind.List("lstLines"));
  window.Clock().Flush();
  lines.SetItems({"one", "2", "three"});
  window.Clock().Flush();
  EXPECT_EQ(list->Lines().item(1)->text(), "2") << "a line between others";
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
  const auto ink = [&field] { return field->Line().palette().color(QPalette::Text).name(); };
  field->Line().ensurePolished();
  text.ForeColour = Colour{0x0000FF};
  window.Clock().Flush();
  EXPECT_EQ(ink(), skin::ColourOf(0x0000FF).name()) << "a text that is refused";
  text.ForeColour = kNoColour;
  window.Clock().Flush();
  EXPECT_NE(ink(), skin::ColourOf(0x0000FF).name());

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
