// Mode, audio filter and IF filter: what a click sets, what follows it, and what is undone.
#include "reception/ReceptionRig.h"

namespace quorl {
namespace {

struct FilterPanelTest : testing::Test, ReceptionRig {
  void ExpectEdges(std::int32_t low, std::int32_t high) {
    EXPECT_EQ(vars.FilterLo, low);
    EXPECT_EQ(vars.FilterHi, high);
    EXPECT_EQ(Text("lblFilterLo"), std::to_string(low));
    EXPECT_EQ(Text("lblFilterHi"), std::to_string(high));
    EXPECT_EQ(Text("sldBW(0)"), std::to_string(1999 - low));
    EXPECT_EQ(Text("sldBW(1)"), std::to_string(12000 - high));
  }
};

TEST_F(FilterPanelTest, AFilterBringsItsEdgesAndLeavesThemToWheelSliderAndDefaults) {
  Click("optFilter(2)");
  ExpectEdges(300, 2300);
  EXPECT_TRUE(vars.FiltersDirty);
  EXPECT_EQ(filters.DynFilter.FLow, 500);
  EXPECT_EQ(filters.DynFilter.FHigh, 2100);
  EXPECT_EQ(At("optFilter(2)").BackColour(), kSelectedColour);
  EXPECT_EQ(At("optFilter(0)").BackColour(), kUnselectedColour);
  vars.FiltersDirty = false;
  Wheel("lblFilterHi", 3);
  ExpectEdges(300, 2330);
  EXPECT_TRUE(vars.FiltersDirty);
  EXPECT_EQ(Text("lblFHi"), "Fhi : 2,330 Hz");
  Set("sldBW(0)", "1599");
  ExpectEdges(400, 2330);
  EXPECT_EQ(Text("lblFLo"), "Flo : 400 Hz");
  RightClick("sldBW(0)");
  RightClick("sldBW(1)");
  ExpectEdges(300, 2300);
  Wheel("lblFilterLo", -50);
  ExpectEdges(0, 2300);
  RightClick("lblFilterLo");
  ExpectEdges(300, 2300);
  Click("optFilter(1)");
  At("lblFilterHi").MouseMove({});
  Wheel("lblFilterHi", 1, {true, false, false});
  ExpectEdges(200, 650);
  mouse.KeyDown({Key::Space, {}});
  ExpectEdges(200, 600);
}

TEST_F(FilterPanelTest, MusicReachesDownAndEachFilterRemembersItsOwn) {
  Click("optFilter(2)");
  Click("chkMusic");
  ExpectEdges(50, 2300);
  EXPECT_TRUE(vars.MusicMode);
  Set("sldBW(0)", "1000");
  RightClick("sldBW(0)");
  ExpectEdges(50, 2300);
  Click("optFilter(3)");
  EXPECT_EQ(Text("chkMusic"), "0");
  EXPECT_FALSE(vars.MusicMode);
  ExpectEdges(300, 3000);
  EXPECT_EQ(vars.FilterSettings[2].MusicLoSave, 300);
  Click("optFilter(2)");
  EXPECT_EQ(Text("chkMusic"), "1");
  EXPECT_EQ(At("chkMusic").BackColour(), kSelectedColour);
  ExpectEdges(50, 2300);
  Click("chkMusic");
  ExpectEdges(300, 2300);
  Set("sldBW(0)", "1000");
  RightClick("sldBW(0)");
  ExpectEdges(300, 2300);
  Click("optFilter(3)");
  Click("optFilter(2)");
  EXPECT_EQ(Text("chkMusic"), "0");
}

TEST_F(FilterPanelTest, TheDynamicFilterGoesBackToTheEdgesOfTheFilter) {
  Click("optFilter(2)");
  Click("chkDynFilter");
  EXPECT_TRUE(vars.DynFilterActive && filters.DynFilter.Active);
  Wheel("lblFilterHi", 10, {true, false, false});
  EXPECT_EQ(vars.FilterHi, 2800);
  Click("chkDynFilter");
  EXPECT_FALSE(vars.DynFilterActive || filters.DynFilter.Active);
  ExpectEdges(300, 2300);
}

TEST_F(FilterPanelTest, AModeSwitchesItsFiltersAndDRMIsHandedOver) {
  std::vector<int> changes;
  radio.OnModeChange = [&] { changes.push_back(vars.CurrentDemodMode); };
  radio.MuteAFOnDRM = true;
  for (int mode = DemodMode::Count - 1; mode >= 0; --mode) {
    vars.FiltersDirty = false;
    Click(IndexedName("optMode", mode));
    EXPECT_EQ(vars.CurrentDemodMode, mode);
    EXPECT_TRUE(vars.FiltersDirty);
    EXPECT_EQ(filters.AFFilter.Active, mode != DemodMode::DRM) << mode;
    EXPECT_EQ(filters.SSBFilterQ.Active, mode == DemodMode::USB || mode == DemodMode::LSB) << mode;
    EXPECT_EQ(vars.DRMAudioMuted, mode == DemodMode::DRM) << mode;
  }
  EXPECT_EQ(changes, (std::vector{5, 4, 3, 2, 1, 0}));
  Click("optMode(0)");
  EXPECT_EQ(changes.size(), 6U) << "the mode in force is none that has changed";
  // Leaving DRM takes the filter's own edges again.
  Click("optMode(3)");
  Wheel("lblFilterHi", 1);
  EXPECT_EQ(vars.FilterHi, 5010);
  Click("optMode(1)");
  ExpectEdges(50, 5000);
  radio.MuteAFOnDRM = false;
  Click("optMode(3)");
  EXPECT_FALSE(vars.DRMAudioMuted);
}

TEST_F(FilterPanelTest, AClickWhileTheModeChangesIsTakenBack) {
  AtNextYield([this] { Click("optMode(4)"); });
  Click("optMode(1)");
  EXPECT_EQ(vars.CurrentDemodMode, DemodMode::USB);
  EXPECT_EQ(demod.optMode.Pressed(), DemodMode::USB);
  for (int i = 0; i < DemodMode::Count; ++i) {
    EXPECT_EQ(demod.optMode(i).BackColour(), i == DemodMode::USB ? kSelectedColour : kUnselectedColour);
  }
}

TEST_F(FilterPanelTest, TheIFFilterIsLockedUntilItIsOn) {
  Click("optIFFilter(2)");
  EXPECT_EQ(ifFilter.optIFFilter.Pressed(), IFFilterMode::Manual);
  EXPECT_EQ(vars.CurrentIFFilterMode, IFFilterMode::Manual);
  EXPECT_EQ(At("optIFFilter(1)").BackColour(), kSelectedColour);
  EXPECT_TRUE(At("optIFFilter(1)").Faded() && At("optIFFilter(2)").Faded());
  EXPECT_FALSE(vars.FiltersDirty);
  EXPECT_FALSE(At("lblIFHi").Enabled());
  Click("chkIFFilter");
  EXPECT_TRUE(vars.IFFilterActive && filters.IFFilterI.Active);
  EXPECT_FALSE(At("optIFFilter(1)").Faded() || At("optIFFilter(2)").Faded());
  EXPECT_TRUE(At("lblIFHi").Enabled());
  EXPECT_EQ(Text("lblIFHi"), "4500");
  Click("chkIFFilter");
  EXPECT_FALSE(filters.IFFilterI.Active || At("lblIFLo").Enabled());
  Click("optIFFilter(2)");  // once it was on, the selector brings it back
  EXPECT_EQ(Text("chkIFFilter"), "1");
  EXPECT_TRUE(filters.IFFilterI.Active);
}

TEST_F(FilterPanelTest, OffInTheSelectorSwitchesOffAndTheOthersOnAgain) {
  Click("chkIFFilter");
  Click("optIFFilter(0)");
  EXPECT_EQ(Text("chkIFFilter"), "0");
  EXPECT_FALSE(filters.IFFilterI.Active);
  EXPECT_FALSE(At("lblIFHi").Enabled());
  Click("optIFFilter(1)");
  EXPECT_TRUE(filters.IFFilterI.Active && At("lblIFHi").Enabled());
  Click("optIFFilter(0)");
  Click("chkIFFilter");  // nothing to switch on while the choice is off
  EXPECT_EQ(Text("chkIFFilter"), "0");
  EXPECT_FALSE(filters.IFFilterI.Active);
  Click("optIFFilter(2)");
  EXPECT_EQ(Text("chkIFFilter"), "1");
  EXPECT_TRUE(filters.IFFilterI.Active);
  EXPECT_FALSE(At("lblIFHi").Visible() || At("lblIFLo").Visible());
  EXPECT_FALSE(At("lblIFHiDesc").Visible() || At("lblIFLoDesc").Visible());
  Click("optIFFilter(1)");
  EXPECT_TRUE(At("lblIFHi").Visible() && At("lblIFHi").Enabled() && At("lblIFLoDesc").Visible());
}

TEST_F(FilterPanelTest, ManualIFEdgesBelongToTheirMode) {
  Click("chkIFFilter");
  Wheel("lblIFHi", -2);
  EXPECT_EQ(vars.IFFilterSettings[1][DemodMode::AM].CurrentHi, 4480);
  EXPECT_EQ(vars.IFHi, 4480);
  Click("optMode(1)");
  EXPECT_EQ(Text("lblIFHi"), "4500");
  EXPECT_EQ(Text("lblIFLo"), "50");
  Wheel("lblIFLo", 1);
  EXPECT_EQ(vars.IFFilterSettings[1][DemodMode::USB].CurrentLo, 60);
  Click("optMode(0)");
  EXPECT_EQ(Text("lblIFHi"), "4480");
  EXPECT_EQ(Text("lblIFLo"), "4500");
  RightClick("lblIFHi");
  EXPECT_EQ(vars.IFFilterSettings[1][DemodMode::AM].CurrentHi, 4500);
}

TEST_F(FilterPanelTest, ATrackingIFFilterFollowsTheAudioFilterOnItsSideband) {
  Click("chkIFFilter");
  Click("optIFFilter(2)");
  struct Case {
    int mode;
    std::int32_t high, low;
  };
  for (const Case& c :
       {Case{DemodMode::USB, 600, 200}, Case{DemodMode::LSB, -600, -200}, Case{DemodMode::AM, 600, -600}}) {
    Click("optFilter(0)");
    Click(IndexedName("optMode", c.mode));
    Click("optFilter(1)");
    const FilterSettingsRecord& record = vars.IFFilterSettings[2].at(static_cast<std::size_t>(c.mode));
    EXPECT_EQ(record.CurrentHi, c.high) << c.mode;
    EXPECT_EQ(record.CurrentLo, c.low) << c.mode;
  }
  EXPECT_EQ(VariableFilters::IFEdges(vars).High, IFCentre + 600);
}

TEST_F(FilterPanelTest, TheBFOShiftsMixerAndFiltersBySide) {
  Wheel("lblBFO", 3);
  EXPECT_EQ(vars.MixerFrequency, IFCentre + 60);
  EXPECT_EQ(vars.BFOOffset, -60);
  EXPECT_TRUE(vars.FiltersDirty);
  EXPECT_EQ(Text("lblBFO"), "60");
  radio.SetLowSideLO(true);
  Wheel("lblBFO", 1, {false, true, false});
  EXPECT_EQ(vars.BFOOffset, 61);
  RightClick("lblBFO");
  EXPECT_EQ(vars.MixerFrequency, IFCentre);
}

TEST_F(FilterPanelTest, AwayFromTheUserWidensByTheSliderToo) {
  for (const int edge : {FilterPanel::kLow, FilterPanel::kHigh}) {
    const std::int32_t low = vars.FilterLo, high = vars.FilterHi;
    Wheel(IndexedName("sldBW", edge), 1);
    EXPECT_EQ(vars.FilterLo > low, edge == FilterPanel::kLow);
    EXPECT_EQ(vars.FilterHi > high, edge == FilterPanel::kHigh);
  }
}

}  // namespace
}  // namespace quorl
