// The window's sizes: title bar, regions, what grows, where the keyboard stays.
#include <gtest/gtest.h>

#include <set>

#include "WindowRig.h"
#include "desktop/views/FocusRing.h"

namespace quorl {
namespace {

class WindowSizeTest : public WindowRig {};

TEST_F(WindowSizeTest, TheTitleBarGoesAndComesWithoutThePanelMoving) {
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

TEST_F(WindowSizeTest, TheFourSizesFitTheirLeastHeight) {
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

TEST_F(WindowSizeTest, SubBandsShareTheirRowAndTakeASecondOneWhereANameWouldBeCut) {
  window.resize(1024, 700);
  window.show();
  panel.Press("optDisplaySize", 3);
  struct Expected {
    const char* Caption;
    int Shown, Rows;
  };
  for (const Expected& each : {Expected{"10m", 18, 1}, Expected{"WMWMWM", 18, 2},
                               Expected{"\xC3\x84\xC3\x96\xC3\x9CW\xC3\x84\xC3\x96", 17, 2},
                               Expected{"Navtex", 7, 1}, Expected{"40m", 1, 1}}) {
    SCOPED_TRACE(each.Caption);
    for (int i = 0; i < 18; ++i) {
      panel.Get<OptionButton>(IndexedName("optSubBand", i)).Caption = std::string(each.Caption);
      panel.At(IndexedName("optSubBand", i)).Visible = i < each.Shown;
    }
    window.Clock().Flush();
    Settle();
    const QWidget* preset = window.findChild<QWidget*>("optPreset(0)");
    const QRect presets(preset->mapTo(&window, QPoint()), preset->size());
    std::set<int> rows;
    QRect before;
    for (int i = 0; i < each.Shown; ++i) {
      const auto* face = window.findChild<FaceView*>(QString::fromStdString(IndexedName("optSubBand", i)));
      const QRect place(face->mapTo(&window, QPoint()), face->size());
      EXPECT_GE(place.width(), face->LeastWidth()) << i;
      EXPECT_LE(place.width(), 120) << i;
      EXPECT_LT(place.bottom(), presets.top()) << i;
      EXPECT_FALSE(place.intersects(before)) << i;
      rows.insert(place.top());
      before = place;
    }
    EXPECT_EQ(rows.size(), each.Rows);
    EXPECT_LE(window.layout()->minimumSize().height(), 700);
  }
}

TEST_F(WindowSizeTest, AHintAtTheWindowsEdgesIsWholeAndLeavesItsButtonReadable) {
  window.resize(1024, 700);
  window.show();
  Settle();
  panel.At("optPreset(0)").KeyDown(Key{Key::Control, {.Ctrl = true}});
  for (const int size : {1, 0}) {  // with the column beside the buttons, and without
    panel.Press("optDisplaySize", size);
    for (const int index : {0, 11}) {
      const std::string name = IndexedName("optPreset", index);
      panel.At(name).MouseMove({.X = 0.9, .Y = 0.9});
      window.Clock().Flush();
      Settle();
      window.Clock().Flush();  // the layout may have moved the button
      const QWidget* hint = window.findChild<QWidget*>("lblPresetDesc");
      const QWidget* button = window.findChild<QWidget*>(QString::fromStdString(name));
      EXPECT_TRUE(hint->isVisible()) << name;
      EXPECT_TRUE(window.rect().contains(hint->geometry())) << name;
      EXPECT_FALSE(hint->geometry().intersects({button->mapTo(&window, QPoint()), button->size()})) << name;
    }
  }
}

TEST_F(WindowSizeTest, ASizeThatAHandChoseIsToldAndTheSlidersGainFromIt) {
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

TEST_F(WindowSizeTest, TheRingStaysAroundItsControlWhenTheWindowGrows) {
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

TEST_F(WindowSizeTest, AnotherSizeLeavesTheKeyboardWhereItIsUnlessThatHides) {
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

}  // namespace
}  // namespace quorl
