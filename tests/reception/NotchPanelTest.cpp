// The notch's controls: what is undone, what Auto takes over, how audio and IF swap their ranges.
#include "reception/ReceptionRig.h"

namespace quorl {
namespace {

struct NotchPanelTest : testing::Test, ReceptionRig {};

TEST_F(NotchPanelTest, WithTheNotchOffEveryClickIsUndone) {
  for (const char* name : {"optNotch(1)", "chkNotchAuto", "chkNotchType", "chkNotchMirror"}) Click(name);
  EXPECT_EQ(notch.optNotch.Pressed(), NotchModes::Manual);
  for (const char* name : {"chkNotchAuto", "chkNotchType", "chkNotchMirror"}) {
    EXPECT_EQ(Text(name), "0") << name;
    EXPECT_EQ(At(name).BackColour(), kUnselectedColour) << name;
    EXPECT_TRUE(At(name).Faded()) << name;
  }
  EXPECT_TRUE(At("optNotch(0)").Faded()) << "the pressed one, too";
  EXPECT_EQ(vars.NotchMode, NotchModes::Manual);
  EXPECT_EQ(vars.NotchType, NotchTypes::Audio);
  EXPECT_FALSE(vars.NotchMirror || vars.NotchDirty || filters.NotchFilterI.Active);
  EXPECT_FALSE(At("lblNotchC").Enabled() || At("lblNotchW").Enabled() || At("sldNotch").Enabled());
}

TEST_F(NotchPanelTest, OnAndOffReachTheFilterAndTheDisplay) {
  std::vector<bool> shown;
  notch.ShowNotch = [&shown](bool on) { shown.push_back(on); };
  Click("chkNotchOn");
  EXPECT_TRUE(vars.NotchActive && filters.NotchFilterI.Active && vars.NotchDirty);
  EXPECT_TRUE(At("lblNotchC").Enabled() && At("lblNotchW").Enabled());
  for (const char* name : {"optNotch(0)", "optNotch(1)", "chkNotchAuto", "chkNotchType", "chkNotchMirror"}) {
    EXPECT_FALSE(At(name).Faded()) << name;
  }
  Click("chkNotchOn");
  EXPECT_FALSE(vars.NotchActive || filters.NotchFilterI.Active);
  EXPECT_EQ(shown, (std::vector{true, false}));
}

TEST_F(NotchPanelTest, LabelsAndSlidersMoveEachOther) {
  EXPECT_EQ(vars.NotchWidth, 100);
  EXPECT_EQ(Text("sldNotchWidth"), "100");
  Click("chkNotchOn");
  vars.NotchDirty = false;
  Wheel("lblNotchC", 2);
  EXPECT_EQ(vars.NotchCentre, 1020);
  EXPECT_EQ(vars.NotchLo, 970);
  EXPECT_EQ(vars.NotchHi, 1070);
  EXPECT_TRUE(vars.NotchDirty);
  EXPECT_EQ(Text("sldNotch"), "1020");
  Set("sldNotch", "2500");
  EXPECT_EQ(Text("lblNotchC"), "2500");
  EXPECT_EQ(At("sldNotch").ToolTip(), "Notch Centre : 2,500 Hz");
  Set("sldNotchWidth", "201");
  EXPECT_EQ(Text("lblNotchW"), "201");
  EXPECT_EQ(At("sldNotchWidth").ToolTip(), "Notch Width : 201 Hz");
  EXPECT_EQ(vars.NotchLastWidth, 100);
  EXPECT_EQ(vars.NotchLo, 2400);
  EXPECT_EQ(vars.NotchHi, 2600);
  Wheel("lblNotchW", 1);
  EXPECT_EQ(Text("sldNotchWidth"), "211");
  RightClick("lblNotchW");
  EXPECT_EQ(vars.NotchWidth, 100);
}

TEST_F(NotchPanelTest, AWideNotchDoesNotReachBelowTheFirstStep) {
  Click("chkNotchOn");
  Set("sldNotch", "300");
  Set("sldNotchWidth", "5000");
  EXPECT_EQ(vars.NotchLo, 10);
  EXPECT_EQ(vars.NotchHi, 2800);
}

TEST_F(NotchPanelTest, AudioAndIFKeepTheirOwnRangeAndValue) {
  Click("chkNotchOn");
  Set("sldNotch", "800");
  Click("chkNotchType");
  EXPECT_EQ(vars.NotchType, NotchTypes::IF);
  EXPECT_EQ(Text("lblNotchC"), "1000");
  EXPECT_EQ(vars.NotchCentre, IFCentre + 1000);
  Set("sldNotch", "-2000");
  EXPECT_EQ(Text("lblNotchC"), "-2000");
  EXPECT_EQ(vars.NotchCentre, IFCentre - 2000);
  vars.NotchDirty = false;
  radio.SetLowSideLO(true);
  EXPECT_EQ(vars.NotchCentre, IFCentre + 2000);
  EXPECT_EQ(vars.NotchHi - vars.NotchLo, vars.NotchWidth);
  EXPECT_TRUE(vars.NotchDirty);
  Wheel("lblNotchC", 1);
  EXPECT_EQ(vars.NotchCentre, IFCentre + 1990);
  Click("chkNotchType");
  EXPECT_EQ(Text("lblNotchC"), "800");
  radio.SetLowSideLO(false);
  radio.SetLowSideLO(true);
  EXPECT_EQ(vars.NotchCentre, 800);
  Wheel("lblNotchC", -100, {true, false, false});
  EXPECT_EQ(vars.NotchCentre, 0);
  Click("chkNotchType");
  EXPECT_EQ(Text("lblNotchC"), "-1990");
  EXPECT_EQ(Text("sldNotch"), "-1990");
}

TEST_F(NotchPanelTest, AutoTakesTheControlsOverAndTracksAudioFromEitherButton) {
  Click("chkNotchOn");
  Click("chkNotchType");
  Set("sldNotch", "-500");
  Click("optNotch(1)");
  EXPECT_EQ(vars.NotchMode, NotchModes::Auto);
  EXPECT_EQ(Text("chkNotchAuto"), "1");
  EXPECT_EQ(vars.NotchType, NotchTypes::Audio);
  EXPECT_EQ(Text("chkNotchType"), "0");
  EXPECT_EQ(mouse(CtlIndex::NotchC).MinValue, 0);
  for (const char* name : {"lblNotchC", "lblNotchCDesc", "lblNotchW", "lblNotchWDesc", "chkNotchType"}) {
    EXPECT_FALSE(At(name).Enabled()) << name;
  }
  vars.PeakFrequency = 1234;
  notch.ShowPeak();
  EXPECT_EQ(Text("lblNotch"), "1234");
  EXPECT_EQ(At("sldNotch").ToolTip(), "Fcentre : 1,234 Hz");
  EXPECT_TRUE(At("lblNotch").Visible());
  Click("chkNotchOn");
  EXPECT_FALSE(At("lblNotch").Visible());
  Click("chkNotchOn");
  EXPECT_TRUE(At("lblNotch").Visible());
  Click("chkNotchAuto");
  EXPECT_FALSE(At("lblNotch").Visible());
  EXPECT_EQ(vars.NotchMode, NotchModes::Manual);
  EXPECT_EQ(notch.optNotch.Pressed(), NotchModes::Manual);
  for (const char* name : {"lblNotchC", "lblNotchCDesc", "lblNotchW", "lblNotchWDesc", "chkNotchType"}) {
    EXPECT_TRUE(At(name).Enabled()) << name;
  }
  EXPECT_EQ(vars.NotchCentre, 1000);
  Click("chkNotchType");
  EXPECT_EQ(Text("lblNotchC"), "-500");
  // Going to Auto from the audio leaves the IF's range alone.
  Click("chkNotchType");
  Click("chkNotchAuto");
  EXPECT_EQ(vars.NotchSettings.IFMin, -6000);
  EXPECT_EQ(vars.NotchSettings.IFCurrent, -500);
  Click("chkNotchOn");
  Click("chkNotchAuto");
  EXPECT_EQ(Text("chkNotchAuto"), "1");
}

TEST_F(NotchPanelTest, MirrorTurnsTheNotchRoundWhileItIsOn) {
  Click("chkNotchOn");
  vars.NotchDirty = false;
  Click("chkNotchMirror");
  EXPECT_TRUE(vars.NotchMirror && vars.NotchDirty);
  Click("chkNotchOn");
  Click("chkNotchMirror");
  EXPECT_TRUE(vars.NotchMirror);
  EXPECT_EQ(Text("chkNotchMirror"), "1");
}

}  // namespace
}  // namespace quorl
