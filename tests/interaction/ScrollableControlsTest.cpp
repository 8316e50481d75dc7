// Turning values with wheel and keys, entering and leaving them, and the colours that tell which one is
// active.
#include <gtest/gtest.h>

#include <set>

#include "interaction/PanelColours.h"
#include "interaction/ScrollableControls.h"

namespace quorl {
namespace {

constexpr Modifiers kNone{}, kShift{true, false, false}, kCtrl{false, true, false}, kBoth{true, true, false},
    kAlt{false, false, true};

class ScrollableControlsTest : public testing::Test {
 protected:
  void BindAll() {
    mouse.Bind(CtlIndex::NotchW, width, [this] { ++changes; });
    mouse.Bind(CtlIndex::FilterLo, filterLo, [this] { ++changes; });
    mouse.Bind(CtlIndex::BFO, bfo, [this] { ++changes; });
  }
  void Hover(Label& label) { label.MouseMove({}); }
  float Width() { return mouse(CtlIndex::NotchW).Value; }
  void Press(int code, Modifiers with = kNone) { mouse.KeyDown({code, with}); }

  ControlRegistry registry;
  ColourSchemes scheme;
  ScrollableControls mouse{scheme};
  Label width{registry, "lblNotchW"}, filterLo{registry, "lblFilterLo"}, bfo{registry, "lblBFO"};
  int changes = 0;
};

TEST_F(ScrollableControlsTest, EveryStartValueOfTheTableIsReachableByTheWheelExceptWhereAPresetSetsIt) {
  std::set<std::string> labels;
  for (int i = 1; i < CtlIndex::Count; ++i) {
    const ScrollableControl& control = mouse(i);
    if (i != CtlIndex::AGCDecay) {
      EXPECT_LE(control.MinValue, control.Value) << i;
    }
    EXPECT_LE(control.Value, control.MaxValue) << i;
    EXPECT_LE(control.SmallStep, control.NormalStep) << i;
    EXPECT_LE(control.NormalStep, control.LargeStep) << i;
    if (const char* name = kScrollableStarts[static_cast<std::size_t>(i)].Label) {
      EXPECT_TRUE(labels.insert(name).second);
    }
  }
  EXPECT_EQ(labels.size(), 23U);
}

TEST_F(ScrollableControlsTest, ANumberIsReadAndSetInItsOwnUnitWithinItsEnds) {
  Label blanker{registry, "lblNB"};
  mouse.Bind(CtlIndex::NB, blanker, [this] { ++changes; });
  EXPECT_TRUE(blanker.UserSet("10"));
  EXPECT_EQ(mouse(CtlIndex::NB).Value, 5000.0F) << "percent, of which the table counts five hundredths";
  EXPECT_DOUBLE_EQ(blanker.Number().Value, 10.0);
  EXPECT_DOUBLE_EQ(blanker.Number().Maximum, 20.0);
  EXPECT_TRUE(blanker.UserSet("1e9"));
  EXPECT_EQ(mouse(CtlIndex::NB).Value, 10000.0F);
  EXPECT_EQ(changes, 2);
  blanker.Enabled = false;
  EXPECT_TRUE(blanker.UserSet("1"));
  EXPECT_FALSE(blanker.UserSet("loud"));
  EXPECT_EQ(changes, 2);
}

TEST_F(ScrollableControlsTest, ModifiersChooseTheStepAndDisagreeBetweenWheelAndKeys) {
  BindAll();
  Hover(width);
  struct Case {
    Modifiers with;
    float byWheel, byKey;
  };
  for (const Case& c : {Case{kNone, 10, 10}, Case{kShift, 50, 50}, Case{kCtrl, 1, 1}, Case{kBoth, 1, 50},
                        Case{kAlt, 10, 0}}) {
    mouse.SetValue(CtlIndex::NotchW, 1000);
    changes = 0;
    mouse.Wheel(1, c.with);
    EXPECT_EQ(Width(), 1000 + c.byWheel);
    mouse.Wheel(-1, c.with);
    EXPECT_EQ(Width(), 1000);
    Press(Key::A, c.with);
    EXPECT_EQ(Width(), 1000 + c.byKey);
    Press(Key::Z, c.with);
    EXPECT_EQ(Width(), 1000);
    Press(Key::Up, c.with);
    Press(Key::Down, c.with);
    EXPECT_EQ(changes, 6);
  }
}

TEST_F(ScrollableControlsTest, OneMessageIsOneStepAndTheEndsHoldButStillTellTheOwner) {
  BindAll();
  Hover(width);
  mouse.Wheel(5, kNone);
  EXPECT_EQ(Width(), 110);
  EXPECT_EQ(width.Caption(), "110");
  mouse.SetValue(CtlIndex::NotchW, 4990);
  changes = 0;
  mouse.Wheel(1, kShift);
  mouse.Wheel(1, kShift);
  EXPECT_EQ(Width(), 5000);
  EXPECT_EQ(changes, 2);
  mouse.SetValue(CtlIndex::NotchW, 3);
  Press(Key::Down);
  EXPECT_EQ(Width(), 0);
  mouse.Wheel(-1, kNone);
  EXPECT_EQ(Width(), 0);
  EXPECT_EQ(width.Caption(), "0");
}

TEST_F(ScrollableControlsTest, OnlyTheActiveEntryListens) {
  BindAll();
  EXPECT_FALSE(mouse.Wheel(1, kNone));
  EXPECT_FALSE(mouse.KeyDown({Key::Up, kNone}));
  mouse.EnterControl(CtlIndex::Frequency);
  EXPECT_FALSE(mouse.Wheel(1, kNone));
  EXPECT_FALSE(mouse.KeyDown({Key::Up, kNone}));
  Hover(width);
  mouse.SetEnabled(CtlIndex::NotchW, false);
  EXPECT_EQ(mouse.ActiveCtl(), 0);
  Hover(width);
  EXPECT_EQ(mouse.ActiveCtl(), 0);
  mouse.RestoreDefault(CtlIndex::NotchW);
  EXPECT_EQ(changes, 0);
  mouse.SetEnabled(CtlIndex::NotchW, true);
  mouse.SetVisible(CtlIndex::NotchW, false);
  Hover(width);
  EXPECT_EQ(mouse.ActiveCtl(), 0);
  mouse.EnterControl(CtlIndex::ScopeXWidth);  // nobody has bound it
  EXPECT_EQ(mouse.ActiveCtl(), 0);
}

TEST_F(ScrollableControlsTest, ALabelTakesItsOwnWheelWithoutBeingHovered) {
  BindAll();
  Hover(bfo);
  width.Wheel(1, {.With = kNone});
  EXPECT_EQ(Width(), 110);
  EXPECT_EQ(mouse(CtlIndex::BFO).Value, 0);
  EXPECT_EQ(bfo.ForeColour(), scheme.SDRTuningColour);
}

TEST_F(ScrollableControlsTest, KeysStayWhereTheKeyboardBroughtThemAndLeaveWithThePointer) {
  BindAll();
  width.GotFocus();
  mouse.DarkenControls();  // the pointer passes elsewhere
  width.KeyDown({Key::Up, kNone});
  EXPECT_EQ(Width(), 110);
  Hover(width);
  mouse.DarkenControls();
  width.KeyDown({Key::Up, kNone});
  EXPECT_EQ(Width(), 110);
  EXPECT_EQ(mouse.ActiveCtl(), CtlIndex::None);
}

TEST_F(ScrollableControlsTest, ArrowsGiveTheKeyboardAndPassOverWhatIsNotShown) {
  BindAll();
  Picture display{registry, "picFreqDisp"};
  mouse.BindKeys(CtlIndex::Frequency, display);
  std::string given;
  mouse.GiveFocus = [&](Control& control) {
    given = control.Name();
    control.GotFocus();
  };
  mouse.IsShown = [&](const Control& control) { return &control != &filterLo; };
  Hover(width);
  Press(Key::Left);
  EXPECT_EQ(mouse.ActiveCtl(), CtlIndex::Frequency);
  EXPECT_EQ(given, "picFreqDisp");
  mouse.DarkenControls();
  mouse.Revive(CtlIndex::Frequency);
  EXPECT_EQ(mouse.ActiveCtl(), CtlIndex::Frequency);
}

TEST_F(ScrollableControlsTest, HoverHighlightsOneLabelAndLeavingPutsItsOwnColourBack) {
  BindAll();
  scheme.SDRTuningColour = 0x123456;
  mouse.HiLiteBorder = true;
  Hover(bfo);
  EXPECT_EQ(bfo.ForeColour(), scheme.ScrollableLabelFocusColour);
  EXPECT_TRUE(bfo.Border());
  Hover(width);
  EXPECT_EQ(bfo.ForeColour(), scheme.SDRTuningColour);
  EXPECT_FALSE(bfo.Border());
  EXPECT_EQ(width.ForeColour(), scheme.ScrollableLabelFocusColour);
  bfo.GotFocus();
  EXPECT_EQ(mouse.ActiveCtl(), CtlIndex::BFO);
  EXPECT_EQ(width.ForeColour(), scheme.ScrollableLabelNormalColour);
  width.LostFocus();
  EXPECT_EQ(mouse.ActiveCtl(), CtlIndex::BFO);
  bfo.LostFocus();
  EXPECT_EQ(mouse.ActiveCtl(), 0);
}

TEST_F(ScrollableControlsTest, ArrowsGoRoundTheEntriesThatMayBeActive) {
  BindAll();
  mouse.EnterControl(CtlIndex::Frequency);
  mouse.StepActive(-1);
  EXPECT_EQ(mouse.ActiveCtl(), CtlIndex::BFO);
  Press(Key::Left);
  EXPECT_EQ(mouse.ActiveCtl(), CtlIndex::NotchW);
  EXPECT_EQ(width.ForeColour(), scheme.ScrollableLabelFocusColour);
  Press(Key::Right);
  Press(Key::Right);
  EXPECT_EQ(mouse.ActiveCtl(), CtlIndex::Frequency);
  mouse.StepActive(1);
  EXPECT_EQ(mouse.ActiveCtl(), CtlIndex::FilterLo);
}

TEST_F(ScrollableControlsTest, SpaceAndTheRightButtonRestoreTheDefaultOfNow) {
  BindAll();
  float table = 300;
  mouse(CtlIndex::FilterLo).TableDefault = [&table] { return table; };
  Hover(filterLo);
  mouse.Wheel(1, kNone);
  Press(Key::Space);
  EXPECT_EQ(filterLo.Caption(), "300");
  table = 50;
  filterLo.MouseDown({.Button = MouseButton::Left});
  EXPECT_EQ(filterLo.Caption(), "300");
  filterLo.MouseDown({.Button = MouseButton::Right});
  EXPECT_EQ(filterLo.Caption(), "50");
  EXPECT_EQ(changes, 3);
}

TEST_F(ScrollableControlsTest, AMessageFromWithinAChangeIsNotWorkedOn) {
  mouse.Bind(CtlIndex::NotchW, width, [this] {
    ++changes;
    mouse.Wheel(1, kNone);
    Press(Key::Up);
  });
  Hover(width);
  mouse.Wheel(1, kNone);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(Width(), 110);
}

TEST_F(ScrollableControlsTest, OneFrameIsLitAndThePanelCanBeRepainted) {
  BindAll();
  PanelColours colours(registry, scheme, mouse);
  Frame one(registry, "frOne"), two(registry, "frTwo");
  Label words(registry, "lblWords"), warning(registry, "lblWarning");
  warning.ForeColour = 0x38A8FFU;
  colours.Add(one);
  colours.Add(two);
  int darkened = 0, repainted = 0;
  mouse.AddDarkened([&darkened] { ++darkened; });
  colours.AddRepaint([&repainted] { ++repainted; });
  Hover(width);
  one.MouseMove({});
  two.MouseMove({});
  EXPECT_EQ(one.ForeColour(), scheme.SDRFrameNormalColour);
  EXPECT_EQ(two.ForeColour(), scheme.SDRFrameFocusColour);
  EXPECT_EQ(mouse.ActiveCtl(), 0);
  EXPECT_EQ(darkened, 3);
  scheme.SDRFrameNormalColour = 1;
  scheme.SDRLabelColour = 2;
  scheme.ScrollableLabelNormalColour = 3;
  scheme.SDRBackgroundColour = 4;
  scheme.SDRTuningColour = 5;
  colours.ReColour();
  EXPECT_EQ(two.ForeColour(), 1U);
  EXPECT_EQ(words.ForeColour(), 2U);
  EXPECT_EQ(width.ForeColour(), 3U);
  EXPECT_EQ(words.BackColour(), 4U);
  EXPECT_EQ(bfo.ForeColour(), 5U);
  EXPECT_EQ(repainted, 1);
  EXPECT_EQ(warning.ForeColour(), 0x38A8FFU) << "its colour says something";
  warning.ForeColour = scheme.SDRLabelColour;  // no longer
  scheme.SDRLabelColour = 6;
  colours.ReColour();
  EXPECT_EQ(words.ForeColour(), 6U);
  EXPECT_EQ(warning.ForeColour(), 6U);
}

}  // namespace
}  // namespace quorl
