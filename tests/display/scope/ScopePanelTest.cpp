// Modes, sources and channels: each mode has its own controls and its own values.
#include "display/BlankCanvas.h"
#include "display/scope/ScopeRig.h"
#include "sound/AllocationCounter.h"

namespace quorl::test {
namespace {

TEST(ScopePanel, EachModeShowsWhatItHasAUseFor) {
  ScopeRig rig;
  struct Row {
    const char* Name;
    bool Frequency, Time, XY;
  };
  const Row rows[]{
      {"frScopeYMode", true, true, true},
      {"chkChn1On", true, true, true},
      {"chkChn2On", true, true, true},
      {"frScopeSweep", true, true, false},
      {"lblScopeXWidth", true, true, false},
      {"sldXWidth", true, true, false},
      {"lblScopeCtl(2)", true, true, false},
      {"lblScopeCtl(3)", true, true, false},
      {"chkTrigOn(1)", false, true, false},
      {"chkTrigOn(2)", false, true, false},
      {"chkLog", true, false, false},
      {"chkSmoothSpectrum", true, true, false},
      {"chkScopeShowFilters", true, false, false},
      {"lblScopeXCentre", true, false, false},
      {"sldXCentre", true, false, false},
      {"lblScopeCtl(7)", true, false, false},
  };
  for (const int mode : {ScopeMode::Time, ScopeMode::XY, ScopeMode::Frequency}) {
    rig.Click(IndexedName("chkScopeMode", mode));
    EXPECT_EQ(rig.analyser.Mode(), mode);
    for (const Row& row : rows) {
      const bool wanted = mode == ScopeMode::Frequency ? row.Frequency
                          : mode == ScopeMode::Time    ? row.Time
                                                       : row.XY;
      EXPECT_EQ(rig.Seen(row.Name), wanted) << row.Name << " in mode " << mode;
    }
    if (mode == ScopeMode::XY) continue;
    EXPECT_EQ(rig.Text("lblScopeCtl(2)"), mode == ScopeMode::Time ? "Timebase" : "Sweep");
    EXPECT_EQ(rig.Text("lblScopeCtl(3)"), mode == ScopeMode::Time ? "ms/Div" : "Hz/Div");
  }
}

TEST(ScopePanel, EachModeKeepsItsOwnChannels) {
  ScopeRig rig;
  rig.Set("chkChn2On", "0");
  rig.Set("chkLog", "1");
  rig.Wheel("lblScopeChn1Gain", 2);
  rig.Wheel("lblScopeChn1Shift", -1, {.Shift = true});
  rig.Click("chkScopeMode(1)");
  EXPECT_EQ(rig.Text("chkChn2On"), "1");
  EXPECT_EQ(rig.Text("lblScopeChn1Gain"), "1.0");
  EXPECT_EQ(rig.Text("lblScopeChn1Shift"), "0");
  rig.Set("chkChn1On", "0");
  rig.Set("chkTrigOn(2)", "1");
  EXPECT_EQ(rig.analyser.TriggerChn(), 2);
  EXPECT_EQ(rig.Text("chkTrigOn(1)"), "0");
  rig.Set("chkTrigOn(2)", "0");
  EXPECT_EQ(rig.analyser.TriggerChn(), 0);
  rig.Click("chkScopeMode(2)");
  EXPECT_EQ(rig.Text("chkChn1On"), "1");
  EXPECT_EQ(rig.Text("chkChn2On"), "1");
  rig.Click("chkScopeMode(0)");
  EXPECT_EQ(rig.Text("chkChn2On"), "0");
  EXPECT_EQ(rig.Text("chkLog"), "1");
  EXPECT_TRUE(rig.analyser.LogMode());
  EXPECT_EQ(rig.Text("lblScopeChn1Gain"), "1.2");
  EXPECT_NEAR(rig.analyser.Chn1Gain(), 1.2F, 1e-5F);
  EXPECT_EQ(rig.Text("lblScopeChn1Shift"), "-10");
  rig.Click("chkScopeMode(1)");
  EXPECT_EQ(rig.Text("chkChn1On"), "0");
}

TEST(ScopePanel, TheLogarithmBringsCurveAndShiftsToItsScale) {
  ScopeRig rig;
  rig.Set("lblScopeChn1Shift", "75");
  rig.radio.Vars.FiltersDirty = false;
  rig.Set("chkLog", "1");
  EXPECT_TRUE(rig.radio.Vars.FiltersDirty);
  // The offset of the new scale, not that of 2^25 high: it is the shift's share of the range.
  rig.Play(12000.0);
  const double highest = rig.analyser.YScaleMax();
  EXPECT_NEAR(highest, 12.0, 1e-6);
  EXPECT_EQ(rig.Text("lblScopeChn1Shift"), "75");
}

TEST(ScopePanel, SmoothingIsShownWithItsTickAndItsDefaultIsTheUsersOwn) {
  ScopeRig rig("[SpectrumAnalyser]\nSpectrumSmooth=5\nDefaultSmoothCount=7\n");
  EXPECT_EQ(rig.Text("lblSpectrumSmooth"), "5");
  rig.Set("chkSmoothSpectrum", "1");
  EXPECT_FALSE(rig.analyser.FastMode());
  EXPECT_TRUE(rig.Seen("lblSpectrumSmooth"));
  hand::Click(rig.At("lblSpectrumSmooth"), {.Button = MouseButton::Right});
  EXPECT_EQ(rig.Text("lblSpectrumSmooth"), "7");
  EXPECT_EQ(rig.analyser.SpectrumSmooth(), 7);
  rig.Set("chkSmoothSpectrum", "0");
  EXPECT_TRUE(rig.analyser.FastMode());
  EXPECT_FALSE(rig.Seen("lblSpectrumSmooth"));
}

TEST(ScopePanel, TheGainSliderIsLeftAloneByTheAutomaticGain) {
  ScopeRig rig;
  EXPECT_EQ(rig.Text("lblScopeCtl(6)"), "YGain : 0 dB");
  rig.Set("sldSpectrumGain", "8");
  EXPECT_EQ(rig.Text("lblScopeCtl(6)"), "YGain : 12 dB");
  EXPECT_EQ(rig.analyser.MasterGain, 4.0);
  rig.Set("chkSpectrumAutoGain", "1");
  EXPECT_TRUE(rig.analyser.AutoGain);
  rig.Set("sldSpectrumGain", "20");
  EXPECT_EQ(rig.analyser.MasterGain, 4.0);
  rig.Set("chkSpectrumAutoGain", "0");
  hand::Click(rig.At("sldSpectrumGain"), {.Button = MouseButton::Right});
  EXPECT_EQ(rig.analyser.MasterGain, 1.0);
}

TEST(ScopePanel, ASourceBringsItsScale) {
  ScopeRig rig;
  const auto expect = [&](bool onAir, std::int32_t offset, bool ascending, const std::string& what) {
    EXPECT_EQ(rig.analyser.OnAir, onAir) << what;
    EXPECT_EQ(rig.analyser.FOffset, offset) << what;
    EXPECT_EQ(rig.analyser.ReverseSpectrum, ascending) << what;
  };
  expect(true, 7205000 - 12000, false, "IF in");
  rig.radio.SetLowSideLO(true);
  expect(true, 7205000 - 12000, true, "IF in, low side");
  rig.radio.Vars.FiltersDirty = false;
  rig.Click("optSpectrumSource(3)");
  EXPECT_TRUE(rig.radio.Vars.FiltersDirty);
  expect(false, 0, true, "AF out");
  rig.radio.SetLowSideLO(false);
  expect(false, 0, true, "AF out, high side");
  rig.Click("optSpectrumSource(2)");
  expect(true, 7205000 - 12000, false, "AM");
  rig.radio.SetDemodMode(DemodMode::USB);
  expect(false, 0, true, "USB");
  rig.radio.SetDemodMode(DemodMode::AM);
  rig.Click("optSpectrumSource(0)");
  rig.playing = true;
  rig.scope.Periodic();
  expect(false, 0, true, "a recording");
  rig.playing = false;
  rig.scope.Periodic();
  expect(true, 7205000 - 12000, false, "the antenna again");
}

TEST(ScopePanel, BothSidesOfTheOscillatorAreTwiceAsManyBins) {
  for (const bool low : {false, true}) {
    ScopeRig rig;
    rig.radio.Vars.SDRModelNo = SDRModel::IQXtalRX;
    rig.radio.SetLowSideLO(low);
    rig.Choose("mnuScope", "Both sides (IQ board)");
    EXPECT_EQ(rig.analyser.StopX, 2046) << low;
    EXPECT_EQ(rig.analyser.FOffset, 7205000 - (low ? 36000 : 12000)) << low;
    rig.Set("sldXWidth", "100");
    EXPECT_EQ(rig.analyser.StopX - rig.analyser.StartX, 200) << low;
    rig.Play(12000.0);
    rig.Press(0.5, 0.5);
    const double middle = rig.analyser.StartX + 100.0;
    EXPECT_NEAR(rig.tuned / 10.0, 7205000 - (low ? 36000 : 12000) + middle * 23.4375, 1.0) << low;
    rig.Click("optSpectrumSource(3)");  // audio has one side
    EXPECT_EQ(rig.analyser.StopX - rig.analyser.StartX, 100) << low;
  }
}

TEST(ScopePanel, DrawsWithEachBlockTenTimesASecondWhenOffAndNeverUnseen) {
  ScopeRig rig;
  const auto frames = [&] { return rig.front.Frames + rig.back.Frames; };
  rig.Play(12000.0);
  int before = frames();
  rig.queue.AdvanceBy(std::chrono::seconds(1));
  EXPECT_EQ(frames(), before);  // no block, no picture
  for (int i = 0; i < 5; ++i) rig.Play(12000.0);
  EXPECT_EQ(frames(), before + 5);
  rig.scope.SetPower(false);
  EXPECT_TRUE(rig.analyser.Freeze);
  before = frames();
  rig.queue.AdvanceBy(std::chrono::seconds(1));
  EXPECT_EQ(frames(), before + 10);
  rig.scope.SetSeen(false);
  rig.queue.AdvanceBy(std::chrono::seconds(1));
  rig.Play(12000.0);
  EXPECT_EQ(frames(), before + 10);
  rig.scope.SetSeen(true);
  rig.Play(12000.0);
  EXPECT_EQ(frames(), before + 11);
  rig.scope.SetRoom(false);
  rig.Play(12000.0);
  EXPECT_EQ(frames(), before + 11);
}

TEST(ScopePanel, WhatIsStoredComesBackAndNonsenseDoesNot) {
  ScopeRig rig(
      "[SpectrumAnalyser]\nMode=7\n.Mode.2.Chn1.Gain=nan\nSpectrumSmooth=0\n"
      "[Scope]\nPalette=pink\nWindow=round\nWaterfallBlocks=3\nTimeMarks=-5\nTop=900\nFloor=5\nSplit=-1\n"
      "XWidth=99999\nXCentre=-3\nSource=12\nY1Bright=nan\nLevelView=perhaps\nPeakHold=7\n");
  const ScopeOptions& options = rig.scope.Options;
  EXPECT_EQ(rig.Text("chkScopeMode(2)"), "1");
  EXPECT_EQ(rig.Text("lblScopeChn1Gain"), "1.0");
  EXPECT_EQ(rig.analyser.SpectrumSmooth(), 1);
  EXPECT_EQ(options.Palette, 0);
  EXPECT_EQ(options.Window, SpectrumWindow::None);
  EXPECT_TRUE(options.LineBlocks == 2 || options.LineBlocks == 4);
  EXPECT_EQ(options.TimeMarks, 0);
  EXPECT_EQ(rig.scope.Levels.Top(), 20.0);
  EXPECT_EQ(rig.scope.Levels.Floor(), -20.0);
  EXPECT_EQ(rig.Text("sldScopeSplit"), "100");
  EXPECT_EQ(rig.Text("sldXWidth"), "1023");
  EXPECT_EQ(rig.Text("sldXCentre"), "0");
  EXPECT_EQ(rig.Text("optSpectrumSource(3)"), "1");
  EXPECT_EQ(rig.Text("lblY1Bright"), "100");
  EXPECT_FALSE(options.LevelView);
  EXPECT_EQ(options.PeakHold, PeakHolding::Off);

  SettingsStore stored;
  rig.Choose("mnuScope", "Level view");
  rig.Choose("mnuScope", "Peaks stay");
  rig.Choose("mnuScope", "Hann window");
  rig.Choose("mnuWaterfall", "Inferno");
  rig.Choose("mnuWaterfall", "Mark every 5 minutes");
  rig.Set("lblY2Bright", "40");
  rig.scope.WriteSettings(stored);
  ScopeRig again(stored.Serialise());
  EXPECT_TRUE(again.scope.Options.LevelView);
  EXPECT_TRUE(again.analyser.LevelView);
  EXPECT_EQ(again.scope.Options.PeakHold, PeakHolding::Staying);
  EXPECT_EQ(again.analyser.Window, SpectrumWindow::Hann);
  EXPECT_EQ(again.scope.Options.Palette, 1);
  EXPECT_EQ(again.scope.Options.TimeMarks, 300);
  EXPECT_EQ(again.Text("lblY2Bright"), "40");
}

TEST(ScopePanel, AFrameWithAllItsLayersTakesNoMemory) {
  SettingsStore first;
  PutScopeDefaults(first);
  BlankCanvas surfaces[2], waterfall[2];
  ScopeRig rig(first.Serialise());
  rig.scope.picScope.SetSurfaces(&surfaces[0], &surfaces[1]);
  rig.scope.picWaterfall.SetSurfaces(&waterfall[0], &waterfall[1]);
  rig.scope.Marks.Source = [](double low, double high, ScopeMarks& marks) {
    marks.Marks.push_back({(low + high) / 2.0, "A station with a long name"});
    marks.Spans.push_back({low, high, "A band with a long name"});
  };
  for (int i = 0; i < 3; ++i) rig.Play(9000.0);
  rig.scope.Periodic();
  rig.analyser.Freeze = false;
  const std::int64_t before = AllocationsOfThisThread();
  const int rectangles = surfaces[0].Rectangles + surfaces[1].Rectangles;
  for (int i = 0; i < 20; ++i) {
    rig.analyser.Display();
    rig.scope.Waterfall.Redraw();
  }
  EXPECT_EQ(AllocationsOfThisThread() - before, 0);
  EXPECT_EQ(surfaces[0].Rectangles + surfaces[1].Rectangles - rectangles, 40);  // passband and band
}

TEST(ScopePanel, AMenuTicksWhatIsInForce) {
  ScopeRig rig;
  const auto place = [&](const std::string& item) {
    const auto& captions = rig.scope.Menus.mnuScope.Captions();
    return static_cast<int>(std::find(captions.begin(), captions.end(), item) - captions.begin());
  };
  int opened = 0;
  const Listening menu = rig.scope.Menus.mnuScope.OnPopup.Listen([&] { ++opened; });
  rig.Press(0.5, 0.5, {}, MouseButton::Right);
  rig.Click("cmdScopeView");
  EXPECT_EQ(opened, 2);
  EXPECT_EQ(rig.tunings, 0);
  EXPECT_FALSE(rig.scope.Menus.mnuScope.Ticked(place("Cursor")));
  EXPECT_TRUE(rig.scope.Menus.mnuScope.Ticked(place("No window")));
  EXPECT_FALSE(rig.Seen("lblScopeCursor"));
  rig.Choose("mnuScope", "Cursor");
  EXPECT_TRUE(rig.scope.Menus.mnuScope.Ticked(place("Cursor")));
  EXPECT_TRUE(rig.Seen("lblScopeCursor"));
}

TEST(ScopePanel, AFirstStartHasAScopeAndALaterOneKeepsTheUsers) {
  SettingsStore fresh;
  PutScopeDefaults(fresh);
  ScopeRig rig(fresh.Serialise());
  EXPECT_EQ(fresh.GetSetting("frmMain", "SpectrumAnalyserOn", ""), "1");
  EXPECT_TRUE(rig.analyser.LogMode());
  EXPECT_FALSE(rig.analyser.Chn2Enabled());
  EXPECT_TRUE(rig.scope.Options.LevelView && rig.scope.Options.Gestures && rig.scope.Options.Names);
  EXPECT_EQ(rig.scope.Options.Window, SpectrumWindow::BlackmanHarris);
  EXPECT_FALSE(rig.scope.Options.EdgeDrag || rig.scope.Options.Fill || rig.scope.Options.TwoSided);
  rig.Click("chkScopeMode(1)");
  EXPECT_TRUE(rig.analyser.FastMode());
  SettingsStore used;
  used.Parse("[SpectrumAnalyser]\nMode=0\n");
  PutScopeDefaults(used);
  EXPECT_EQ(used.GetSetting("Scope", "LevelView", "none"), "none");
  EXPECT_EQ(used.GetSetting("frmMain", "SpectrumAnalyserOn", "none"), "none");
}

}  // namespace
}  // namespace quorl::test
