// What a screen reader is told, when the window draws, and how its sizes follow the controls.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDeadlineTimer>
#include <QLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QTest>
#include <QWindow>
#include <map>
#include <set>

#include "DesktopTest.h"
#include "desktop/views/FocusRing.h"
#include "desktop/window/PanelWindow.h"
#include "desktop/window/Shot.h"
#include "desktop/window/SidePanels.h"

namespace quorl {
namespace {

class WindowTest : public DesktopTest {
 protected:
  // Counts the paint events of the window and all in it.
  class PaintCounter : public QObject {
   public:
    explicit PaintCounter(QWidget& window) {
      window.installEventFilter(this);
      for (QWidget* widget : window.findChildren<QWidget*>()) widget->installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::Paint) ++Paints;
      return false;
    }
    int Paints = 0;
  };

  QAccessibleInterface& Access(const char* name) {
    auto* widget = window.findChild<QWidget*>(name);
    if (!widget) throw std::logic_error(name);
    return *QAccessible::queryAccessibleInterface(widget);
  }
  QString Spoken(const char* name, QAccessible::Text kind) { return Access(name).text(kind); }
  // Whether the name spells out the unit that the value ends in.
  static bool SaysUnitTwice(const View& view) {
    constexpr std::pair<const char*, const char*> kUnits[] = {
        {" Hz", "hertz"}, {" dB", "decibel"}, {" %", "percent"}, {" s", "second"}, {" ms", "second"}};
    return std::any_of(std::begin(kUnits), std::end(kUnits), [&view](const auto& unit) {
      return view.SpokenValue().endsWith(unit.first) && view.SpokenName().contains(unit.second);
    });
  }
  static void Pass(int milliseconds) { QTest::qWait(milliseconds); }

  RealPanel panel;
  std::vector<bool> seen;
  std::vector<QSize> sizes;
  PanelWindow window{panel.Registry(),
                     {.Seen = [this](bool is) { seen.push_back(is); },
                      .Sized =
                          [this](int width, int height) {
                            sizes.push_back({width, height});
                          }}};
};

TEST_F(WindowTest, AScreenReaderReadsDigitsAndMeter) {
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

TEST_F(WindowTest, AScreenReaderWorksTheControls) {
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

TEST_F(WindowTest, AScreenReaderIsOfferedWhatDoesSomething) {
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

TEST_F(WindowTest, EveryControlHasANameAndTheKeyboardReachesIt) {
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
  EXPECT_LT(reached.size(), 75U);
  EXPECT_EQ(stops.size(), 10U);
  for (const auto& [group, count] : stops) EXPECT_EQ(count, 1) << group;
}

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

TEST_F(WindowTest, TheTitleBarGoesAndComesWithoutThePanelMoving) {
  window.show();
  Settle();
  const QSize size = window.size();
  for (const bool shown : {false, false, true}) {
    window.ShowCaption(shown);
    Settle();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.size(), size);
    EXPECT_EQ(window.windowFlags().testFlag(Qt::FramelessWindowHint), !shown);
    EXPECT_TRUE(window.Clock().IsAwake());
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
    for (int i = 0; i < 80; ++i) {
      panel.Get<Label>(each.Name).Caption = std::to_string(i);
      Pass(10);
    }
    EXPECT_GE(window.Clock().TakenOver() - before, each.Least) << each.Name;
    EXPECT_LE(window.Clock().TakenOver() - before, each.Most) << each.Name;
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

TEST_F(WindowTest, TheFourSizesFitTheirLeastHeight) {
  window.resize(1024, 700);
  window.show();
  const QWidget* column = window.findChild<QWidget*>("optFilter(0)");
  const QWidget* setup = window.findChild<QWidget*>("chkPerfStatsOn");
  struct Expected {
    bool Column, Setup;
    int Height;
  };
  constexpr Expected kSizes[] = {
      {false, true, 700}, {true, false, 700}, {false, false, 192}, {true, true, 700}};
  for (int i = 0; i < 4; ++i) {
    panel.Press("optDisplaySize", i);
    window.Clock().Flush();
    Settle();
    EXPECT_EQ(column->isVisible(), kSizes[i].Column) << i;
    EXPECT_EQ(setup->isVisible(), kSizes[i].Setup) << i;
    for (const char* name : {"optMode(0)", "sldOutVolume", "chkMute"}) {
      EXPECT_TRUE(window.findChild<QWidget*>(name)->isVisible()) << name;
    }
    EXPECT_EQ(window.height(), kSizes[i].Height) << i;
    EXPECT_EQ(window.width(), 1024) << i;
    EXPECT_LE(window.layout()->minimumSize().height(), window.height()) << "cut off in size " << i;
    EXPECT_LE(window.layout()->minimumSize().width(), window.width()) << "cut off in size " << i;
  }
}

TEST_F(WindowTest, ASizeThatAHandChoseIsToldAndTheSlidersGainFromIt) {
  const QWidget* slider = window.findChild<QWidget*>("sldNotch");
  window.resize(1024, 700);
  EXPECT_TRUE(sizes.empty()) << "not seen yet";
  window.show();
  Settle();
  sizes.clear();
  const int narrow = slider->width();
  EXPECT_LT(6000.0 / narrow, 60.0) << "hertz a pixel";
  window.resize(1900, 760);
  Settle();
  EXPECT_GT(slider->width(), narrow * 3 / 2);
  EXPECT_EQ(sizes.back(), QSize(1900, 760));
  panel.Press("optDisplaySize", 2);
  window.Clock().Flush();
  window.resize(1100, window.height());
  Settle();
  EXPECT_EQ(sizes.back(), QSize(1100, 760)) << "the height of the sizes that can be chosen";
}

TEST_F(WindowTest, TheRingStaysAroundItsControlWhenTheWindowGrows) {
  window.resize(1024, 700);
  window.show();
  Settle();
  window.PressKey({Key::Right, {}}, true);  // the keyboard is in use
  ASSERT_TRUE(window.FocusByKeyboard("sldBW(1)"));
  const QWidget* ring = nullptr;
  for (const QWidget* child : window.findChildren<QWidget*>()) {
    if (dynamic_cast<const FocusRing*>(child)) ring = child;
  }
  ASSERT_TRUE(ring && ring->isVisible());
  for (const int width : {1024, 1700, 1100}) {
    window.resize(width, 760);
    Settle();
    const QWidget* slider = window.focusWidget();
    const QRect around(slider->mapTo(&window, QPoint(0, 0)), slider->size());
    EXPECT_EQ(ring->geometry().adjusted(3, 3, -3, -3), around) << width;
  }
}

TEST_F(WindowTest, AnotherSizeLeavesTheKeyboardWhereItIsUnlessThatHides) {
  window.show();
  Settle();
  ASSERT_TRUE(window.FocusByKeyboard("optDisplaySize(1)"));
  window.PressKey({Key::Right, {}}, true);
  window.Clock().Flush();
  EXPECT_EQ(panel.Pressed("optDisplaySize"), 2);
  EXPECT_EQ(window.focusWidget(), window.findChild<QWidget*>("optDisplaySize(2)"));
  window.PressKey({Key::Left, {}}, true);
  window.Clock().Flush();
  ASSERT_TRUE(window.FocusByKeyboard("sldBW(1)"));
  panel.Press("optDisplaySize", 2);
  window.Clock().Flush();
  EXPECT_EQ(window.focusWidget(), &window) << "no neighbour takes it";
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

TEST_F(WindowTest, F1OpensTheHelpAndCloseAsks) {
  bool asked = false;
  PanelWindow own(panel.Registry(), {{}, [&] {
                                       asked = true;
                                       return false;
                                     }});
  own.show();
  QTest::keyClick(&own, Qt::Key_F1);
  EXPECT_NE(own.findChild<QWidget*>("frmHelp"), nullptr);
  EXPECT_FALSE(own.close());
  EXPECT_TRUE(asked);
}

TEST_F(WindowTest, AShotHasItsScale) {
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

TEST_F(WindowTest, TheLogIsPaintedWithItsLinesBeforeTheProgramGoesOn) {
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

TEST_F(WindowTest, TheLogFollowsItsForm) {
  Control& form = panel.At("frmLog");
  LogWindow log(panel.Registry(), [](const std::string& line) { FAIL() << line; });
  EXPECT_FALSE(log.isVisible());
  form.Visible = true;
  EXPECT_TRUE(log.isVisible());
  log.close();
  EXPECT_FALSE(form.Visible());
}

}  // namespace
}  // namespace quorl
