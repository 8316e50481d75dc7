// The scope's pictures in a window: surfaces, gestures, the bar between them, what stands over them.
#include <QApplication>
#include <QEnterEvent>
#include <QLineEdit>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "DesktopTest.h"
#include "desktop/views/Binder.h"
#include "desktop/views/Skin.h"
#include "desktop/window/Shot.h"

namespace quorl {
namespace {

// A window with nothing but the two pictures, and one more view.
class ScopeViewTest : public DesktopTest {
 protected:
  ScopeViewTest() {
    spectrum.OnSurfaces = [this] {
      ++lent;
      if (!spectrum.Surface0()) return;
      ratios.push_back(spectrum.Surface0()->Ratio());
      Show(*spectrum.Surface0(), 0xFF0000);
    };
    spectrum.KeyDown = [this](Key key) { Hear("key " + std::to_string(key.Code)); };
    text.Visible = false;
    split.Min = 100;
    split.Max = 900;
    split.Reversed = true;
    split.SetValue(400);
    auto* rows = new QVBoxLayout(&window);
    rows->setContentsMargins(0, 0, 0, 0);
    view = bind.Scope("picScope");
    below = bind.Scope("picWaterfall");
    bar = bind.Splitter("sldScopeSplit");
    pane = new SplitPane(view, bar, below);
    rows->addWidget(pane);
    floating = bind.Floating("lblSpectrumFreq", view);
    entry = bind.Entry("txtFrequency", below);
    window.resize(400, 208);
    window.show();
    QApplication::setActiveWindow(&window);
    clock.Flush();
    Settle();
  }
  static void Show(Canvas& surface, Colour ground) {
    surface.Clear(ground);
    surface.SetVisible(true);
  }
  void Hear(const std::string& what) { heard.push_back(what); }
  std::vector<std::string> Heard() { return std::exchange(heard, {}); }
  QRgb Seen() {
    QImage image(window.size(), QImage::Format_RGB32);
    window.render(&image);
    return image.pixel(10, 10);
  }

  ControlRegistry registry;
  CanvasPicture spectrum{registry, "picScope"}, waterfall{registry, "picWaterfall"};
  Slider split{registry, "sldScopeSplit"};
  FloatingLabel label{registry, "lblSpectrumFreq"};
  TextBox text{registry, "txtFrequency"};
  RefreshClock clock;
  Binder bind{registry, clock, [](const std::string& line) { ADD_FAILURE() << line; }};
  int lent = 0;
  std::vector<double> ratios;
  std::vector<std::string> heard;
  QWidget window;
  ScopeView *view = nullptr, *below = nullptr;
  SplitterView* bar = nullptr;
  SplitPane* pane = nullptr;
  FloatingLabelView* floating = nullptr;
  EntryView* entry = nullptr;
};

TEST_F(ScopeViewTest, TheSurfacesHaveTheSizeOfTheView) {
  ASSERT_NE(spectrum.Surface1(), nullptr);
  EXPECT_EQ(spectrum.Surface1()->Width(), 400);
  EXPECT_EQ(spectrum.Surface1()->Height(), 80);
  EXPECT_EQ(spectrum.Place().Width, 400);
  const int before = lent;
  window.resize(500, 308);
  Settle();
  EXPECT_GT(lent, before);
  EXPECT_EQ(spectrum.Surface0()->Width(), 500);
  EXPECT_EQ(spectrum.Surface0()->Height(), 120);
  // A second view borrows the picture; the first one's end takes nothing from it.
  auto second = std::unique_ptr<ScopeView>(bind.Scope("picScope"));
  second->resize(50, 60);
  second->show();
  EXPECT_EQ(spectrum.Surface0()->Width(), 50);
  delete view;
  EXPECT_NE(spectrum.Surface0(), nullptr);
  second.reset();
  EXPECT_EQ(spectrum.Surface0(), nullptr);
  delete pane;
}

TEST_F(ScopeViewTest, PaintingCopiesTheWholeSurfaceNeverTheOneInWork) {
  const QRgb blue = skin::ColourOf(0xFF0000).rgb();
  EXPECT_EQ(Seen(), blue);
  const int before = lent;
  spectrum.Surface1()->SetVisible(false);
  spectrum.Surface1()->Clear(0x00FF00);
  EXPECT_EQ(Seen(), blue) << "half a frame";
  spectrum.Surface1()->SetVisible(true);
  spectrum.Surface0()->SetVisible(false);
  EXPECT_EQ(Seen(), skin::ColourOf(0x00FF00).rgb());
  spectrum.Surface1()->SetVisible(false);
  EXPECT_EQ(Seen(), skin::Tones(QApplication::palette()).Ground().rgb()) << "nothing yet";
  EXPECT_EQ(lent, before) << "painting asks for nothing";
}

TEST_F(ScopeViewTest, ANewFrameIsPaintedAndAnotherPropertyIsNot) {
  class Counter : public QObject {
   public:
    bool eventFilter(QObject*, QEvent* event) override {
      Paints += event->type() == QEvent::Paint ? 1 : 0;
      return false;
    }
    int Paints = 0;
  } counter;
  Settle();
  view->installEventFilter(&counter);
  spectrum.Tag = std::string("7085000");
  clock.Flush();
  Settle();
  EXPECT_EQ(counter.Paints, 0) << "what is noted for a click isn't seen";
  Show(*spectrum.Surface1(), 0);
  Settle();
  EXPECT_EQ(counter.Paints, 1);
}

TEST_F(ScopeViewTest, APictureOfTheWindowHasItsFineness) {
  ratios.clear();
  EXPECT_TRUE(GrabShot(window, testing::TempDir() + "scope.png", 2.0));
  EXPECT_EQ(ratios, (std::vector<double>{2, 1}));
}

TEST_F(ScopeViewTest, APartIsCopiedPixelByPixelAtAnyRatio) {
  for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
    view->SetRatio(ratio);
    Canvas& surface = *spectrum.Surface0();
    surface.Clear(0);
    surface.SetScale({0, 0, surface.Width() * ratio, surface.Height() * ratio});
    for (float x = 0; x < 600; x += 2) surface.Line({x, 0}, {x, 200}, {0xFFFFFF});
    QImage image(view->size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::red);
    view->render(&image, QPoint(33, 21), QRegion(33, 21, 61, 33), {});
    int mixed = 0, seen = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QRgb pixel = image.pixel(x, y) | 0xFF000000;
        seen += pixel != 0xFFFF0000;
        mixed += pixel != 0xFFFF0000 && pixel != 0xFFFFFFFF && pixel != skin::kScopeGround;
      }
    }
    EXPECT_GT(seen, 1000) << ratio;
    EXPECT_EQ(mixed, 0) << ratio;
  }
  view->SetRatio(0);
}

TEST_F(ScopeViewTest, GesturesGoToTheControlWithTheirPlace) {
  const auto note = [this](const char* what) {
    return [this, what](const MouseEvent& at) {
      Hear(std::string(what) + " " + std::to_string(std::lround(100 * at.X)) + "," +
           std::to_string(std::lround(100 * at.Y)) + (at.With.Shift ? " shift" : "") +
           (at.With.Ctrl ? " ctrl" : ""));
    };
  };
  spectrum.MouseDown = note("down");
  spectrum.MouseMove = note("move");
  spectrum.MouseUp = note("up");
  spectrum.Wheel = [this](int notches, const MouseEvent& at) {
    Hear("wheel " + std::to_string(notches) + (at.With.Ctrl ? " ctrl" : ""));
  };
  const auto send = [this](QEvent::Type type, QPointF place, Qt::MouseButton button, Qt::MouseButtons held) {
    QMouseEvent event(type, place, view->mapToGlobal(place), button, held, Qt::ControlModifier);
    QApplication::sendEvent(view, &event);
  };
  send(QEvent::MouseButtonPress, {100, 20}, Qt::MiddleButton, Qt::MiddleButton);
  send(QEvent::MouseMove, {500, -40}, Qt::NoButton, Qt::MiddleButton);
  send(QEvent::MouseButtonRelease, {500, -40}, Qt::MiddleButton, Qt::NoButton);
  QWheelEvent wheel(QPointF(40, 20), view->mapToGlobal(QPointF(40, 20)), QPoint(), QPoint(0, -120),
                    Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(view, &wheel);
  EXPECT_EQ(Heard(), (std::vector<std::string>{"down 25,25 ctrl", "move 125,-50 ctrl", "up 125,-50 ctrl",
                                               "wheel -1 ctrl"}));
  // The pointer brings the keyboard, too.
  QEnterEvent enter(QPointF(2, 2), QPointF(2, 2), QPointF(2, 2));
  QApplication::sendEvent(view, &enter);
  EXPECT_TRUE(view->hasFocus());
  QTest::keyClick(view, Qt::Key_7);
  EXPECT_EQ(Heard().back(), "key 55");
  EXPECT_EQ(view->SpokenName(), "Scope");
  spectrum.AccessibleName = std::string("Spectrum");
  EXPECT_EQ(view->SpokenName(), "Spectrum");
}

TEST_F(ScopeViewTest, TheBarSharesOutTheHeightByHandKeysAndVoice) {
  EXPECT_EQ(view->height(), 80);
  EXPECT_EQ(below->geometry(), QRect(0, 88, 400, 120));
  QTest::mousePress(bar, Qt::LeftButton, Qt::NoModifier, QPoint(50, 2));
  QMouseEvent drag(QEvent::MouseMove, QPointF(50, 42), QPointF(), Qt::NoButton, Qt::LeftButton,
                   Qt::NoModifier);
  QApplication::sendEvent(bar, &drag);
  QTest::mouseRelease(bar, Qt::LeftButton, Qt::NoModifier, QPoint(50, 42));
  clock.Flush();
  EXPECT_EQ(split.Value(), 600) << "40 of 200 pixels";
  EXPECT_EQ(view->height(), 120) << "the place that is held stays under the pointer";
  QTest::keyClick(bar, Qt::Key_Up);
  EXPECT_EQ(split.Value(), 592) << "up is where the arrow points";
  QTest::keyClick(bar, Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(split.Value(), 672);
  EXPECT_EQ(bar->SpokenValue(), "67 %");
  const QPointF middle = QRectF(bar->rect()).center();
  QWheelEvent wheel(middle, bar->mapToGlobal(middle), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(bar, &wheel);
  EXPECT_EQ(split.Value(), 664) << "away from the user is up";
  bar->SetSpoken(5000);
  EXPECT_EQ(split.Value(), 900);
  bar->Step(-1);
  EXPECT_EQ(split.Value(), 892);

  split.Visible = waterfall.Visible = false;
  clock.Flush();
  EXPECT_EQ(view->geometry(), pane->rect());
  EXPECT_FALSE(bar->isVisible());
  split.Visible = waterfall.Visible = true;
  clock.Flush();
  Settle();
  EXPECT_EQ(below->geometry().bottom(), pane->rect().bottom());
}

TEST_F(ScopeViewTest, ALabelFollowsThePointerAndGoesWithIt) {
  label.Visible = false;
  label.Caption = std::string("07 085 000");
  clock.Flush();
  EXPECT_FALSE(floating->isVisible());
  const int width = label.Place().Width;
  EXPECT_TRUE(width > 60 && width < 200) << "its size is known before it is seen: " << width;
  label.Over = &spectrum;
  label.Left = 400 - width;
  label.Top = 30;
  label.Visible = true;
  clock.Flush();
  EXPECT_EQ(floating->geometry().topLeft(), QPoint(400 - width, 30));
  EXPECT_EQ(floating->geometry().right(), window.rect().right()) << "whole inside";
  label.Over = &waterfall;
  clock.Flush();
  EXPECT_EQ(floating->y(), below->y() + 30);

  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(below, &leave);
  EXPECT_FALSE(floating->isVisible());
  label.Caption = std::string("07 085 001");
  clock.Flush();
  EXPECT_FALSE(floating->isVisible()) << "new figures don't bring it back";
  label.Left = 20;
  clock.Flush();
  EXPECT_TRUE(floating->isVisible());
}

TEST_F(ScopeViewTest, AFrequencyIsTypedOverTheDisplay) {
  text.KeyDown = [this](Key key) { Hear(std::to_string(key.Code)); };
  clock.Flush();
  view->setFocus();
  text.SetValue("7");
  text.Visible = true;
  clock.Flush();
  ASSERT_TRUE(entry->Line().hasFocus());
  EXPECT_EQ(entry->geometry(), below->geometry());
  EXPECT_EQ(entry->Line().geometry(), entry->rect()) << "nothing of what is under it is seen";
  QTest::keyClicks(&entry->Line(), "205M");
  EXPECT_EQ(text.Value(), "7205M") << "goes on after the key that has brought it";
  for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Return, Qt::Key_Escape}) QTest::keyClick(&entry->Line(), key);
  EXPECT_EQ(Heard(), (std::vector<std::string>{"38", "13", "27"}));

  text.ForeColour = 0x0000FF;
  text.ToolTip = std::string("Beyond the chip");
  clock.Flush();
  const QColor wrong = entry->Line().palette().color(QPalette::Text);
  EXPECT_TRUE(skin::IsAlarm(wrong));
  EXPECT_GE(skin::Contrast(wrong, skin::Tones(QApplication::palette()).Face()), skin::kTitleContrast);
  EXPECT_EQ(QToolTip::text(), "Beyond the chip");
  text.ForeColour = kNoColour;
  text.ToolTip = std::string();
  clock.Flush();
  EXPECT_FALSE(skin::IsAlarm(entry->Line().palette().color(QPalette::Text)));

  text.LostFocus = [this] { Hear("lost"); };
  text.Visible = false;
  clock.Flush();
  EXPECT_TRUE(view->hasFocus()) << "the keyboard goes back to where it came from";
  EXPECT_TRUE(Heard().empty()) << "its panel has ended it";
  text.Visible = true;
  clock.Flush();
  bar->setFocus();
  EXPECT_EQ(Heard(), std::vector<std::string>{"lost"});
}

}  // namespace
}  // namespace quorl
