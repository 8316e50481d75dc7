// The scope on the running radio: what is seen is what is tuned, on every board, and it costs no block.
#include <gtest/gtest.h>

#include "core/FrameRig.h"
#include "display/scope/TraceCanvas.h"

namespace quorl::test {
namespace {

constexpr double kBin = 23.4375;
constexpr double kCarrier = 7206300;  // Hz, the heterodyne of the tiny band

constexpr char kScopeOn[] = "[frmMain]\nSpectrumAnalyserOn=1\n";

// A frame with surfaces for its scope, as a window would lend them.
struct ScopedRig : FrameRig {
  explicit ScopedRig(const std::string& moreSettings = kScopeOn, int model = 0, bool lowSide = false)
      : FrameRig(moreSettings, model, lowSide) {}
  void Lend() {
    picture = &Frame().Scope().picScope;
    picture->SetPlace({0, 0, 1200, 400});
    picture->SetSurfaces(&front, &back);
  }
  void Begin() {
    ASSERT_TRUE(Start());
    Lend();
    Click("optPwr(0)");
    Run(1.0);
  }
  TraceCanvas& Latest() { return front.Visible ? front : back; }
  int Frames() const { return front.Frames + back.Frames; }
  // The share of the width at which a carrier near `hertz` has its peak.
  double PeakNear(double hertz) {
    const FrequencyScale scale = Frame().Scope().SpectrumAnalyser.Frequencies();
    const double share = scale.XAt(hertz) / scale.Width(), reach = 40.0 / scale.Width();
    return Latest().PeakShare(share - reach, share + reach);
  }
  double Tuned() { return VFO().TunedFrequency() / 10.0; }

  TraceCanvas front{1200, 400}, back{1200, 400};
  CanvasPicture* picture = nullptr;
};

struct ScopeBoard {
  int Model;
  bool LowSide;
};
class FrmMainScopeBoard : public testing::TestWithParam<ScopeBoard> {};

TEST_P(FrmMainScopeBoard, AClickOnACarriersPeakTunesIt) {
  const auto [model, lowSide] = GetParam();
  const std::string side = std::string("HiSideLo=") + (lowSide ? "False" : "True") + "\n";
  std::string settings = std::string(kScopeOn) + "SDRModelNo=" + std::to_string(model) +
                         "\n[DDSAD9835]\nClkIn=50000000\n[SpectrumAnalyser]\n.Mode.0.FastMode=True\n";
  for (const char* vfo : {"VFO1.DRT1", "VFO1.ElektorDRM", "VFO1.RXIQ"}) {
    settings += std::string("[") + vfo + "]\nTunedFrequency=72030000\n" + side;
  }
  ScopedRig rig(settings, model, lowSide);
  rig.Begin();
  ASSERT_EQ(rig.Vars().LowSideLO, lowSide);
  for (const bool zoomed : {false, true}) {
    rig.Frame().Radio().Tuning().Tune().MoveTo(72030000);
    if (zoomed) {
      rig.Set("sldXWidth", "50");
      // The carrier lies 3300 Hz above the tuned frequency, which is in the middle.
      rig.Set("sldXCentre", std::to_string(512 + 141));
    }
    rig.Run(0.5);
    // Where the trace is highest, which is found without the scope's own idea of frequencies.
    const double share = zoomed ? rig.Latest().PeakShare(0.0, 1.0) : rig.Latest().PeakShare(0.6, 0.7);
    ASSERT_GT(share, 0.0);
    hand::Click(*rig.picture, {.X = share, .Y = 0.5, .Button = MouseButton::Left});
    EXPECT_NEAR(rig.Tuned(), kCarrier, kBin) << (zoomed ? "zoomed" : "whole");
    // It then stands in the middle of the band.
    rig.Run(0.5);
    if (!zoomed) {
      EXPECT_NEAR(rig.PeakNear(rig.Tuned()), 512.0 / 1023.0, 2.0 / 1023.0);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Boards, FrmMainScopeBoard,
                         testing::Values(ScopeBoard{0, false}, ScopeBoard{0, true}, ScopeBoard{1, false},
                                         ScopeBoard{1, true}, ScopeBoard{2, false}, ScopeBoard{2, true},
                                         ScopeBoard{3, false}, ScopeBoard{3, true}));

TEST(FrmMainScope, AFrozenPictureTunesWhatItShows) {
  ScopedRig rig(std::string(kScopeOn) + "[SpectrumAnalyser]\n.Mode.0.FastMode=True\n");
  rig.Begin();
  const double share = rig.PeakNear(kCarrier);
  ASSERT_GT(share, 0.0);
  rig.Click("chkScopeFreeze");
  rig.Wheel("lbl7Seg(1)", 3);
  rig.Run(1.0);
  ASSERT_NEAR(rig.Tuned(), 10205000.0, 1.0);
  EXPECT_EQ(rig.PeakNear(kCarrier), share);
  hand::Click(*rig.picture, {.X = share, .Y = 0.5, .Button = MouseButton::Left});
  EXPECT_NEAR(rig.Tuned(), kCarrier, kBin);
  // So does the picture of a radio that has been switched off.
  rig.Click("chkScopeFreeze");
  rig.Run(0.5);
  const double station = rig.PeakNear(7205000.0);
  rig.Click("optPwr(1)");
  rig.Run(0.5);
  rig.Wheel("lbl7Seg(2)", 1);
  hand::Click(*rig.picture, {.X = station, .Y = 0.5, .Button = MouseButton::Left});
  EXPECT_NEAR(rig.Tuned(), 7205000.0, kBin);
}

TEST(FrmMainScope, APictureForEachBlockAndNoneUnseen) {
  ScopedRig rig;
  rig.Begin();
  int frames = rig.Frames();
  const std::int64_t blocks = rig.Blocks;
  rig.Run(4.0);
  EXPECT_NEAR(rig.Frames() - frames, double(rig.Blocks - blocks), 2.0);
  rig.Frame().SetSeen(false);
  rig.Run(0.1);
  frames = rig.Frames();
  rig.Run(2.0);
  EXPECT_EQ(rig.Frames(), frames);
  rig.Frame().SetSeen(true);
  rig.Run(1.0);
  EXPECT_NEAR(rig.Frames() - frames, 23, 2);
  rig.Click("optDisplaySize(2)");  // no room for it
  frames = rig.Frames();
  rig.Run(1.0);
  EXPECT_EQ(rig.Frames(), frames);
  rig.Click("optDisplaySize(3)");
  rig.Click("optPwr(1)");
  frames = rig.Frames();
  rig.Run(2.0);
  EXPECT_NEAR(rig.Frames() - frames, 20, 1);
}

TEST(FrmMainScope, AWindowThatStartsUnseenDrawsNothing) {
  ScopedRig rig;
  rig.OnForm = [&] { rig.Frame().SetSeen(false); };
  rig.Begin();
  EXPECT_EQ(rig.Frames(), 0);
  rig.Frame().SetSeen(true);
  rig.Run(1.0);
  EXPECT_NEAR(rig.Frames(), 23, 2);
}

// Drawing that takes two thirds of a block's time, and a pump whose blocks come in the middle of it.
TEST(FrmMainScope, ASlowDisplayLosesNoBlock) {
  ScopedRig rig;
  rig.front.OnTrace = rig.back.OnTrace = [&rig] { rig.Clock.Advance(std::chrono::milliseconds(14)); };
  rig.Begin();
  rig.Click("optDisplaySize(3)");
  const std::int64_t blocks = rig.Blocks, start = rig.Clock.Microseconds();
  const int frames = rig.Frames();
  rig.Run(10.0);
  const double seconds = static_cast<double>(rig.Clock.Microseconds() - start) / 1e6;
  EXPECT_NEAR(static_cast<double>(rig.Blocks - blocks), seconds * BlocksPerSecond, 2.0);
  EXPECT_GT(rig.Frames() - frames, 100);
  EXPECT_EQ(rig.Sound.Statistics().Overruns, 0);
}

TEST(FrmMainScope, AnythingMayHappenInTheMiddleOfAFrame) {
  ScopedRig rig;
  rig.Begin();
  const std::vector<std::function<void()>> deeds{
      [&] { rig.Set("sldXWidth", "10"); },
      [&] { rig.Click("chkScopeMode(1)"); },
      [&] { rig.Set("chkTrigOn(1)", "1"); },
      [&] { rig.Click("chkScopeMode(2)"); },
      [&] { rig.Click("chkScopeMode(0)"); },
      [&] { hand::Click(rig.At("sldXWidth"), {.Button = MouseButton::Right}); },
      [&] { rig.Click("optSpectrumSource(3)"); },
      [&] { rig.Set("chkTuneLo", "1"); },
      [&] { rig.Click("optSpectrumSource(0)"); },
      [&] { rig.Click("optDisplaySize(2)"); },
      [&] { rig.Click("optDisplaySize(3)"); },
      [&] { rig.Click("optPwr(1)"); },
      [&] { rig.Click("optPwr(0)"); },
      [&] { rig.picture->SetSurfaces(nullptr, nullptr); },
      [&] { rig.picture->SetSurfaces(&rig.front, &rig.back); },
      [&] { rig.Frame().Form_Unload(); },
  };
  std::size_t done = 0;
  bool armed = false;
  rig.front.OnTrace = rig.back.OnTrace = [&] {
    if (std::exchange(armed, false)) deeds[done++]();
  };
  while (done < deeds.size()) {
    const std::size_t before = done;
    armed = true;
    rig.Run(0.5);
    // With nothing to draw on, or nothing to draw, it happens between two frames.
    if (done == before) deeds[done++]();
    armed = false;
    rig.Run(0.2);
  }
  EXPECT_TRUE(rig.Boxes.Messages.empty());
}

TEST(FrmMainScope, TheWheelOverThePictureTunesAsOverADigit) {
  ScopedRig rig(std::string(kScopeOn) + "ScrollWheelEnableOverScope=True\n");
  rig.Begin();
  hand::Turn(*rig.picture, 1, {.X = 0.5, .Y = 1.0});
  EXPECT_NEAR(rig.Tuned(), 7206000.0, 0.1);
  EXPECT_EQ(rig.Text("lblTuningRate"), "1 KHz");
  hand::Turn(*rig.picture, -2, {.X = 0.5, .Y = 0.1});
  EXPECT_NEAR(rig.Tuned(), 7205800.0, 0.1);
  Raise(rig.At("frmMain").KeyDown, Key{Key::Up, {}});
  EXPECT_NEAR(rig.Tuned(), 7205900.0, 0.1);
  rig.Click("lblTuningRate");  // a locked rate stays
  hand::Turn(*rig.picture, 1, {.X = 0.5, .Y = 1.0});
  EXPECT_NEAR(rig.Tuned(), 7206000.0, 0.1);
  EXPECT_EQ(rig.Text("lblTuningRate"), "100 Hz");
}

TEST(FrmMainScope, ADigitOverThePictureBeginsAFrequency) {
  ScopedRig rig;
  rig.Begin();
  const auto type = [&](const std::string& keys) {
    for (const char key : keys) Raise(rig.At("frmMain").KeyDown, Key{key, {}});
  };
  hand::Hover(*rig.picture, {.X = 0.3});
  type("7100");
  EXPECT_TRUE(rig.At("txtFrequency").Visible());
  EXPECT_EQ(rig.Text("txtFrequency"), "7100");
  Raise(rig.At("frmMain").KeyDown, Key{Key::Enter, {}});
  EXPECT_FALSE(rig.At("txtFrequency").Visible());
  EXPECT_NEAR(rig.Tuned(), 7100000.0, 0.1);
  hand::Hover(rig.At("lblFilterHi"));  // a value has the keys
  type("7");
  EXPECT_FALSE(rig.At("txtFrequency").Visible());
  hand::Hover(rig.At("lbl7Seg(4)"));
  type("9");
  EXPECT_TRUE(rig.At("txtFrequency").Visible());
  Raise(rig.At("frmMain").KeyDown, Key{Key::Escape, {}});
  EXPECT_FALSE(rig.At("txtFrequency").Visible());
  EXPECT_NEAR(rig.Tuned(), 7100000.0, 0.1);
}

TEST(FrmMainScope, WhatTheUserSetIsThereAgain) {
  ScopedRig rig(
      "[SpectrumAnalyser]\nMode=7\nSpectrumSmooth=0\n.Mode.0.Chn1.Gain=nan\n[Scope]\nPalette=pink\nTop="
      "abc\n");
  rig.Begin();
  EXPECT_TRUE(rig.Boxes.Messages.empty());
  EXPECT_EQ(rig.Text("chkScopeMode(2)"), "1");
  rig.Click("chkScopeMode(0)");
  rig.Set("mnuScope", "Waterfall");
  rig.Set("sldScopeSplit", "700");
  rig.Click("chkScopeMode(1)");
  rig.Set("chkSpectrumAnalyser", "1");
  rig.Click("optSpectrumSource(2)");
  rig.Set("sldXWidth", "200");
  rig.Restart();
  EXPECT_EQ(rig.Text("chkScopeMode(1)"), "1");
  EXPECT_EQ(rig.Text("chkSpectrumAnalyser"), "1");
  EXPECT_EQ(rig.Text("optSpectrumSource(2)"), "1");
  EXPECT_EQ(rig.Text("sldXWidth"), "200");
  EXPECT_EQ(rig.Text("sldScopeSplit"), "700");
  EXPECT_FALSE(rig.At("picWaterfall").Visible());  // that belongs to the spectrum
  rig.Click("chkScopeMode(0)");
  EXPECT_TRUE(rig.At("picWaterfall").Visible());
}

}  // namespace
}  // namespace quorl::test
