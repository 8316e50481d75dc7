// The scope's card as it stands in the window.
#include <QLayout>
#include <QTest>
#include <map>

#include "DesktopTest.h"
#include "desktop/views/ScopeView.h"
#include "desktop/views/Skin.h"
#include "desktop/window/PanelWindow.h"

namespace quorl {
namespace {

class ScopeCardTest : public DesktopTest {
 protected:
  ScopeCardTest() {
    panel.SwitchOn({"chkSpectrumAnalyser"});
    window.show();
    Renew();
  }
  void Renew() {
    window.Clock().Flush();
    Settle();
    window.Clock().Flush();
    Settle();
  }
  View* Named(const std::string& name) {
    return dynamic_cast<View*>(window.findChild<QWidget*>(QString::fromStdString(name)));
  }
  QRect PlaceOf(const QWidget& widget) const { return {widget.mapTo(&window, QPoint(0, 0)), widget.size()}; }
  // What is seen on the card and has nothing else on it.
  std::vector<View*> Leaves() {
    std::vector<View*> leaves;
    for (QWidget* widget : Named("frScope")->findChildren<QWidget*>()) {
      auto* view = dynamic_cast<View*>(widget);
      if (view && view->isVisible() && view->Role() != QAccessible::Grouping) leaves.push_back(view);
    }
    return leaves;
  }
  void ExpectRoomForAll(const std::string& where) {
    const QRect card = PlaceOf(*Named("frScope"));
    const std::vector<View*> leaves = Leaves();
    EXPECT_GT(leaves.size(), 20U) << where;
    for (const View* view : leaves) {
      const std::string name = where + view->Shown().Name();
      EXPECT_TRUE(card.contains(PlaceOf(*view))) << name;
      EXPECT_GE(view->width(), view->minimumSizeHint().width()) << name;
      EXPECT_GE(view->height(), view->minimumSizeHint().height()) << name;
      for (const View* other : leaves) {
        if (other == view) break;
        EXPECT_FALSE(PlaceOf(*view).intersects(PlaceOf(*other))) << name << " and " << other->Shown().Name();
      }
    }
  }

  RealPanel panel;
  PanelWindow window{panel.Registry(), {}};
};

TEST_F(ScopeCardTest, EverythingHasItsPlaceInTheSmallestWindow) {
  for (const QSize size : {QSize(1024, 700), QSize(1280, 800), QSize(1430, 900)}) {
    window.resize(size);
    for (const int display : {0, 1, 3}) {
      panel.Press("optDisplaySize", display);
      for (const int mode : {0, 1, 2}) {
        panel.Press("chkScopeMode", mode);
        Renew();
        EXPECT_EQ(window.size(), size);
        ExpectRoomForAll(std::to_string(size.width()) + " " + std::to_string(display) + std::to_string(mode) +
                         " ");
        EXPECT_GT(Named("picScope")->height(), 80);
      }
    }
  }
}

TEST_F(ScopeCardTest, TheLongestNumbersMoveNothing) {
  const auto places = [this] {
    std::map<std::string, QRect> all;
    for (View* view : Leaves()) all[view->Shown().Name()] = PlaceOf(*view);
    return all;
  };
  window.resize(1024, 700);
  Renew();
  const auto before = places();
  const std::pair<const char*, const char*> widest[] = {
      {"lblScopeChn1Gain", "99.0"},
      {"lblScopeChn2Shift", "-100"},
      {"lblY1Bright", "1"},
      {"lblScopeXWidth", "10"},
      {"lblScopeXCentre", "1,023"},
      {"lblSpectrumSmooth", "24"},
      {"lblScopeTop", "-60"},
      {"lblScopeFloor", "-160"},
      {"lblScopeCtl(6)", "YGain : -60 dB"},
      {"lblScopeCursor", "30 000 000 Hz  -160.0 dB  17:05:30"}};
  for (const auto& [name, text] : widest) panel.Get<Label>(name).Caption = std::string(text);
  Renew();
  EXPECT_EQ(places(), before);
  for (const auto& [name, text] : widest) {
    const QFont font = name == std::string("lblScopeCtl(6)")
                           ? skin::WordFont(12)
                           : skin::NumberFont(name == std::string("lblScopeCursor") ? 12 : 15);
    EXPECT_LE(skin::TextWidth(font, text), Named(name)->width()) << name;
  }
}

TEST_F(ScopeCardTest, TheSpectrumTakesEverySparePixel) {
  window.resize(1280, 800);
  Renew();
  const auto tall = [this] { return Named("picScope")->height(); };
  const int low = tall(), wide = Named("picScope")->width();
  window.resize(1380, 950);
  Renew();
  EXPECT_EQ(Named("picScope")->width(), wide + 75) << "the column takes its quarter";
  EXPECT_GT(tall(), low);
  const int lower = Named("picWaterfall")->isVisible() ? Named("picWaterfall")->height() + 8 : 0;
  const int foot = PlaceOf(*Named("lblScopeXWidth")).top();
  EXPECT_LE(foot - PlaceOf(*Named("picScope")).top() - tall() - lower, 40);
}

}  // namespace
}  // namespace quorl
