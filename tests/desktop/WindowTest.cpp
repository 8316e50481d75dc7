// When the window draws, and that nothing in it jumps.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTest>

#include "WindowRig.h"

namespace quorl {
namespace {

class WindowTest : public WindowRig {};

TEST_F(WindowTest, AHiddenOrMinimisedWindowDrawsNothing) {
  window.show();
  Settle();
  PaintCounter counter(window);
  const auto change = [this](int round) {
    panel.ShowDigits(round % 2 == 0 ? "123456789" : "070850000");
    panel.ShowSignal(round % 28);
    panel.Get<Label>("lblStatsVal(0)").Caption = std::to_string(round);
  };
  for (int i = 0; i < 10; ++i) {
    change(i);
    Pass(10);
  }
  Pass(60);
  EXPECT_GT(counter.Paints, 0);

  for (const bool minimised : {false, true}) {
    if (minimised) {
      window.showMinimized();
    } else {
      window.hide();
    }
    Pass(60);
    counter.Paints = 0;
    const long before = window.Clock().TakenOver();
    for (int i = 0; i < 10; ++i) {
      change(i);
      Pass(10);
    }
    EXPECT_EQ(counter.Paints, 0) << (minimised ? "minimised" : "hidden");
    EXPECT_EQ(window.Clock().TakenOver(), before);
    EXPECT_FALSE(seen.back());
    window.showNormal();
    Settle();
    EXPECT_TRUE(seen.back());
    EXPECT_GT(window.Clock().TakenOver(), before) << "what changed meanwhile is taken over";
  }
}

TEST_F(WindowTest, FiguresThatAreReadFollowSlowerThanWhatIsTurned) {
  window.show();
  Pass(300);
  struct Case {
    const char* Name;
    long Least, Most;  // refreshes in 0.8 s
  };
  for (const Case& each : {Case{"lblSMeter", 3, 6}, Case{"lblNB", 12, 21}}) {
    const long before = window.Clock().TakenOver();
    QElapsedTimer time;
    time.start();
    for (int i = 0; i < 80; ++i) {
      panel.Get<Label>(each.Name).Caption = std::to_string(i);
      Pass(10);
    }
    const double late = std::max(1.0, double(time.elapsed()) / 800.0);  // on a machine that is busy
    EXPECT_GE(window.Clock().TakenOver() - before, each.Least) << each.Name;
    EXPECT_LE(double(window.Clock().TakenOver() - before), double(each.Most) * late) << each.Name;
    Pass(200);
  }
}

TEST_F(WindowTest, ManyChangesAreOneRefresh) {
  window.show();
  Pass(100);
  const long before = window.Clock().TakenOver();
  for (int i = 0; i < 1000; ++i) panel.Get<Label>("lblNB").Caption = std::to_string(i);
  Pass(100);
  EXPECT_EQ(window.Clock().TakenOver() - before, 1);
}

// The rest waits for the next refresh of all, which has just been.
TEST_F(WindowTest, DigitsFollowTheHandBeforeTheNextRefresh) {
  window.show();
  auto *digits = window.findChild<QWidget*>("picFreqDisp"), *notch = window.findChild<QWidget*>("lblNotch");
  int first = 0;
  for (int i = 0; i < 9; ++i) {
    Pass(15);
    window.Clock().Flush();
    Settle();
    PaintCounter shown(*digits), later(*notch);
    panel.Get<Label>("lblNotch").Caption = std::to_string(i);
    panel.ShowDigits("07085000" + std::to_string(i + 1));
    for (QDeadlineTimer patience(1000); shown.Paints + later.Paints == 0 && !patience.hasExpired();)
      QApplication::processEvents();
    first += later.Paints == 0 ? 1 : 0;
  }
  EXPECT_GE(first, 5) << "of 9";
}

TEST_F(WindowTest, TheTenthDigitTakesItsPlaceAndTheOthersMoveOn) {
  panel.ShowDigits("070850000");
  window.show();
  Settle();
  auto* digits = window.findChild<QWidget*>("picFreqDisp");
  const QRect nine = window.findChild<QWidget*>("lbl7Seg(0)")->geometry();
  const int width = digits->width();
  panel.Get<Label>("lbl7SegTop").Caption = std::string("1");
  panel.Get<Label>("lbl7SegTop").Visible = true;
  window.Clock().Flush();
  Settle();
  EXPECT_EQ(Spoken("picFreqDisp", QAccessible::Value), "107085000.0 Hz");
  EXPECT_GT(digits->width(), width);
  EXPECT_LE(window.minimumSizeHint().width(), 1024);
  EXPECT_GT(window.findChild<QWidget*>("lbl7Seg(0)")->x(), nine.x());
  panel.Get<Label>("lbl7SegTop").Visible = false;
  window.Clock().Flush();
  Settle();
  EXPECT_EQ(digits->width(), width);
  EXPECT_EQ(window.findChild<QWidget*>("lbl7Seg(0)")->geometry(), nine);
}

TEST_F(WindowTest, WhyTuningStoppedComesUpUnderTheDigits) {
  window.show();
  auto& limit = panel.Get<Label>("lblTuningLimit");
  auto* note = window.findChild<QWidget*>("lblTuningLimit");
  window.Clock().Flush();
  EXPECT_FALSE(note->isVisible());
  limit.Caption = std::string("135,048.0 kHz is as far as DDS clock and IF go");
  limit.Visible = true;
  window.Clock().Flush();
  EXPECT_TRUE(note->isVisible());
  EXPECT_EQ(Spoken("lblTuningLimit", QAccessible::Name), QString::fromStdString(limit.Caption()));
  EXPECT_TRUE(window.rect().contains(note->geometry()));
  limit.Visible = false;
  window.Clock().Flush();
  EXPECT_FALSE(note->isVisible());
}

TEST_F(WindowTest, MMutesWhereverTheKeyboardIsButForWhereOneTypes) {
  int muted = 0;
  panel.Get<CheckBox>("chkMute").Click = [&] { ++muted; };
  window.show();
  for (const char* name : {"picFreqDisp", "lblNotchC", "optMode(1)", "sldNB"}) {
    QTest::keyClick(window.findChild<QWidget*>(name), Qt::Key_M);
  }
  EXPECT_EQ(muted, 4);
  QTest::keyClick(window.findChild<QWidget*>("sldNB"), Qt::Key_M, Qt::ControlModifier);
  QLineEdit line(&window);
  QTest::keyClick(&line, Qt::Key_M);
  EXPECT_EQ(line.text(), "m");
  EXPECT_EQ(muted, 4);
}

TEST_F(WindowTest, NothingMovesWhenAValueChanges) {
  window.resize(1024, 700);
  window.show();
  Settle();
  const auto places = [this] {
    std::vector<QRect> rects;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
      if (dynamic_cast<View*>(widget)) rects.push_back(widget->geometry());
    }
    return rects;
  };
  const auto before = places();
  for (const char* name : {"lblFilterHi", "lblNotchC", "lblOutVol", "lblNB", "lblBFO", "lblAGCDecay",
                           "lblSMeter", "lblStatsVal(0)", "lblStatsVal(5)", "lblTuningRate", "lblNotch"}) {
    panel.Get<Label>(name).Caption = std::string("8");
  }
  panel.Get<Picture>("imgTuneStepLock").Visible = false;
  panel.Get<Label>("lblIFHi").Visible = false;
  window.Clock().Flush();
  Settle();
  EXPECT_EQ(places(), before);
}

}  // namespace
}  // namespace quorl
