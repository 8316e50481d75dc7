// What a screen reader is told and can work, and what the keyboard reaches.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QTest>
#include <map>
#include <set>

#include "WindowRig.h"

namespace quorl {
namespace {

class AccessibilityTest : public WindowRig {};

TEST_F(AccessibilityTest, AScreenReaderReadsDigitsAndMeter) {
  panel.ShowDigits("070850003");
  panel.ShowSignal(12);
  panel.Get<Label>("lblSMeter").Caption = std::string("S9 +6 dB");
  EXPECT_EQ(Spoken("picFreqDisp", QAccessible::Name), "Frequency");
  EXPECT_EQ(Spoken("picFreqDisp", QAccessible::Value), "7085000.3 Hz");
  ASSERT_NE(Access("picFreqDisp").valueInterface(), nullptr);
  EXPECT_DOUBLE_EQ(Access("picFreqDisp").valueInterface()->currentValue().toDouble(), 7085000.3);
  EXPECT_EQ(Spoken("lbl7Seg(1)", QAccessible::Name), "Digit 1 MHz");
  EXPECT_EQ(Spoken("lbl7Seg(1)", QAccessible::Value), "7");

  EXPECT_EQ(Spoken("picSmeter", QAccessible::Name), "S-meter");
  EXPECT_EQ(Spoken("picSmeter", QAccessible::Value), "S9 +6 dB");
  ASSERT_NE(Access("picSmeter").valueInterface(), nullptr);
  EXPECT_EQ(Access("picSmeter").valueInterface()->currentValue().toInt(), 12);
  panel.ShowSignal(3);
  EXPECT_EQ(Access("picSmeter").valueInterface()->currentValue().toInt(), 3);
  EXPECT_EQ(Access("picSmeter").valueInterface()->maximumValue().toInt(), 28);
}

TEST_F(AccessibilityTest, AScreenReaderWorksTheControls) {
  panel.SwitchOn({"chkNotchOn", "chkNB"});
  panel.Press("optMode", 1);
  const auto centre = panel.Vars().NotchCentre;
  EXPECT_EQ(Access("lblNotchC").role(), QAccessible::SpinBox);
  EXPECT_EQ(Spoken("lblNotchC", QAccessible::Name), "Notch centre");
  EXPECT_EQ(Spoken("lblNotchC", QAccessible::Value), "1000 Hz");
  EXPECT_EQ(Spoken("lblOutVol", QAccessible::Value).toStdString(), panel.Text("lblOutVol") + " dB");
  Access("lblNotchC").actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
  EXPECT_EQ(panel.Vars().NotchCentre, centre + 10);

  int notches = 0;
  panel.Get<Label>("lbl7Seg(4)").Wheel = [&](int turned, const MouseEvent&) { notches += turned; };
  panel.Get<FrequencyDisplay>("picFreqDisp").ChosenDigit = 4;
  Access("picFreqDisp").actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
  EXPECT_EQ(notches, -1) << "tunes by the chosen digit";

  EXPECT_EQ(Access("optMode(1)").role(), QAccessible::RadioButton);
  EXPECT_EQ(Spoken("optMode(1)", QAccessible::Name), "USB") << "without the mnemonic's sign";
  EXPECT_TRUE(Access("optMode(1)").state().checked);
  Access("optMode(2)").actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(Access("optMode(2)").state().checked);
  EXPECT_FALSE(Access("optMode(1)").state().checked);
  Access("sldNB").valueInterface()->setCurrentValue(5000);
  EXPECT_EQ(panel.Get<Slider>("sldNB").Value(), 5000);
  for (const char* name : {"sldNB", "dialNB"}) {
    EXPECT_EQ(Spoken(name, QAccessible::Value), "10.00 %") << name;
    ASSERT_NE(Access(name).textInterface(), nullptr) << name;
    EXPECT_EQ(Access(name).textInterface()->text(0, 7), "10.00 %") << name;
  }
  panel.Set("sldOutVolume", "-1000");
  EXPECT_EQ(Spoken("sldOutVolume", QAccessible::Value), "-20.0 dB");
  EXPECT_EQ(Spoken("dialOutVol", QAccessible::Value), "-20.0 dB");
}

TEST_F(AccessibilityTest, AScreenReaderIsOfferedWhatDoesSomething) {
  panel.SwitchOn({"chkNB"});
  panel.Press("optDisplaySize", 3);
  window.Clock().Flush();
  const auto canPress = [this](const char* name) {
    return Access(name).actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction());
  };
  for (const char* name : {"optMode(1)", "chkMusic", "lblTuningRate", "lbl7Seg(4)", "imgTuneStepLock"}) {
    EXPECT_TRUE(canPress(name)) << name;
  }
  for (const char* name : {"sldNB", "dialNB", "lblFilterHi", "lblClock", "frNotch", "picFreqDisp"}) {
    EXPECT_FALSE(canPress(name)) << name;
  }
  Access("lbl7Seg(3)").valueInterface()->setCurrentValue(9);
  EXPECT_EQ(panel.Digits(), "072950000") << "the other digits stay";
  panel.Get<Label>("lbl7Seg(3)").Caption = std::string();
  EXPECT_EQ(Access("lbl7Seg(3)").valueInterface(), nullptr) << "a dark digit has no value";
}

TEST_F(AccessibilityTest, EveryControlHasANameAndTheKeyboardReachesIt) {
  panel.Press("optDisplaySize", 3);
  panel.SwitchOn({"chkIFFilter", "chkNotchOn", "chkNB"});
  panel.At("cmdCalibrateSMeter").Enabled = true;  // as while it receives
  window.show();
  Settle();
  window.Clock().Flush();
  std::set<QWidget*> reached;
  for (int i = 0; i < 200; ++i) {
    QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : &window, Qt::Key_Tab);
    if (QApplication::focusWidget()) reached.insert(QApplication::focusWidget());
  }
  int turned = 0;
  std::set<std::pair<QAccessible::Role, QString>> named;
  std::map<std::string, int> stops;
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    auto* view = dynamic_cast<View*>(widget);
    if (!view || !view->isVisible()) continue;
    EXPECT_TRUE(!view->SpokenName().isEmpty() || view->SpokenValue().isEmpty()) << view->Shown().Name();
    EXPECT_FALSE(SaysUnitTwice(*view)) << view->SpokenName().toStdString();
    const QAccessible::Role role = view->Role();
    const bool isWord = view->SpokenValue() == view->SpokenName();
    EXPECT_TRUE(isWord || named.emplace(role, view->SpokenName()).second) << view->SpokenName().toStdString();
    if (role == QAccessible::StaticText || role == QAccessible::Grouping || role == QAccessible::Graphic ||
        role == QAccessible::ProgressBar || role == QAccessible::PopupMenu) {
      continue;
    }
    ++turned;
    const std::string& name = view->Shown().Name();
    if (role == QAccessible::RadioButton) {
      stops[name.substr(0, name.find('('))] += static_cast<int>(reached.count(view));
    } else if (role == QAccessible::SpinBox && dynamic_cast<DigitView*>(view)) {
      EXPECT_EQ(reached.count(view), 0U) << "the digits are one stop";
    } else {
      QWidget* inner = view->focusProxy();  // a line to type into has the keyboard itself
      EXPECT_EQ(reached.count(inner ? inner : view), 1U) << name;
    }
  }
  EXPECT_GT(turned, 85);
  EXPECT_LT(reached.size(), 95U);
  EXPECT_EQ(stops.size(), 12U);
  for (const auto& [group, count] : stops) EXPECT_EQ(count, 1) << group;
}

}  // namespace
}  // namespace quorl
