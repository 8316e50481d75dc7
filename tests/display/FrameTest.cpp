// A frame as a whole: surfaces, yields, what may happen in the middle of one, overlays.
#include <functional>
#include <random>
#include <utility>

#include "display/BlankCanvas.h"
#include "display/ScopeRig.h"
#include "sound/AllocationCounter.h"

namespace quorl::test {
namespace {

using FrameTest = ScopeRig;

TEST_F(FrameTest, TheHiddenSurfaceIsDrawnAndThenShownWhole) {
  int yields = 0;
  onYield = [&] {
    ++yields;
    // What is seen is the picture before, whole.
    const bool first = canvases[0].Frames + canvases[1].Frames == 1;
    EXPECT_EQ(canvases[0].Visible + canvases[1].Visible, first ? 0 : 1);
    EXPECT_TRUE(first || !Shown().Traces.empty());
    const SampleBuffer block = BlockOf(ToneAt(1));
    scope.Display_S(block.data(), block.data());  // one frame at a time
    scope.DisplayFrozen();
  };
  for (int k = 1; k <= 4; ++k) {
    Show(ToneAt(300));
    EXPECT_EQ(canvases[0].Frames + canvases[1].Frames, k);
    EXPECT_EQ(yields, 16 * k);
    EXPECT_NE(canvases[0].Visible, canvases[1].Visible);
    EXPECT_EQ(PeakOf(Heights1()), 724);
  }
}

TEST_F(FrameTest, ABlockInWorkGoesFirst) {
  int yields = 0;
  onYield = [&] {
    ++yields;
    vars.DSPRunning = yields < 5;
  };
  Window(0, 70);
  Show(ToneAt(300));
  EXPECT_EQ(yields, 5);  // one turn, and four more until the block was done
}

TEST_F(FrameTest, WhatChangesInTheMiddleComesWithTheNextFrame) {
  const std::vector<std::function<void()>> changes = {
      [&] { Window(600, 610); },
      [&] { scope.SetMode(ScopeMode::Time); },
      [&] { scope.SetMode(ScopeMode::XY); },
      [&] { scope.Active = false; },
      [&] { scope.Freeze = true; },
      [&] { scope.LevelView = !scope.LevelView; },
      [&] { scope.SetLogMode(true), scope.SetChn1Gain(7.0F); },
      [&] { scope.SetChannelBrightness(0, 40); },
      [&] { scope.SetLowSideLO(true), scope.TwoSided = true; },
      [&] { scope.SetSpectrumSmooth(24); },
  };
  for (const bool levels : {false, true}) {
    for (std::size_t k = 0; k < changes.size(); ++k) {
      scope.SetMode(ScopeMode::Frequency);
      scope.Active = true;
      scope.Freeze = scope.TwoSided = false;
      scope.LevelView = levels;
      scope.SetLogMode(false);
      scope.SetChn1Gain(1.0F);
      scope.SetChannelBrightness(0, 100);
      Window(100, 400);
      onYield = [] {};
      Show(ToneAt(800));
      const std::vector<float> undisturbed = Heights1();
      const CanvasScale scale = Shown().Scale();
      const Colour colour = scope.Y1Colour;
      onYield = changes[k];
      Show(ToneAt(800));
      EXPECT_EQ(Heights(colour), undisturbed) << k;
      EXPECT_EQ(Shown().Scale().Width, scale.Width) << k;
      EXPECT_EQ(Shown().Scale().Height, scale.Height) << k;
      onYield = [] {};
      scope.DisplayFrozen();
      Show(ToneAt(800));
    }
  }
}

TEST_F(FrameTest, SurfacesThatGoInTheMiddleAreLeftAloneAndNewOnesGetTheFrame) {
  std::array<RecordingCanvas, 2> others{RecordingCanvas(600, 200), RecordingCanvas(600, 200)};
  std::size_t traces = 0;
  bool taken = false;
  onYield = [&] {
    if (std::exchange(taken, true)) return;
    scope.picDisplay0(&others[0]);
    scope.picDisplay1(&others[1]);
    traces = canvases[0].Traces.size() + canvases[1].Traces.size();
  };
  Show(ToneAt(300));
  EXPECT_EQ(canvases[0].Traces.size() + canvases[1].Traces.size(), traces);
  EXPECT_EQ(others[0].Visible + others[1].Visible, 1);
  EXPECT_EQ(others[others[1].Visible].Traces.size(), 1u);
  // Gone for good: the window closes.
  onYield = [&] {
    scope.picDisplay0(nullptr);
    scope.picDisplay1(nullptr);
  };
  const int frames = others[0].Frames + others[1].Frames;
  Show(ToneAt(300));
  EXPECT_EQ(others[0].Frames + others[1].Frames, frames + 1);
  EXPECT_EQ(others[0].Visible + others[1].Visible, 1);
  // Lines and levels are there all the same.
  int lines = 0;
  scope.OnLine = [&](const SpectrumLine&) { ++lines; };
  Show(ToneAt(400));
  EXPECT_EQ(lines, 1);
  EXPECT_NEAR(scope.LevelAt(1024 - 400), 0.0F, 0.01F);
}

TEST_F(FrameTest, NothingHappensBeforeInitOrWhileInactive) {
  clsSpectrumAnalyser raw(settings, vars, [] {});
  const SampleBuffer block = BlockOf(ToneAt(100));
  raw.Active = true;
  raw.picDisplay0(&canvases[0]);
  raw.picDisplay1(&canvases[1]);
  raw.LoadSamples_S(block.data(), block.data());
  raw.Display();
  raw.DisplayFrozen();
  EXPECT_FALSE(raw.DrawSpectrum(canvases[0]) && canvases[0].Frames > 0);
  scope.Active = false;
  Show(ToneAt(100));
  scope.DisplayFrozen();
  EXPECT_EQ(canvases[0].Frames + canvases[1].Frames, 0);
}

TEST_F(FrameTest, AFrameTakesNoMemory) {
  std::array<BlankCanvas, 2> blank;
  scope.picDisplay0(&blank[0]);
  scope.picDisplay1(&blank[1]);
  const SampleBuffer block = BlockOf(ToneAt(300));
  std::array<std::int16_t, 2048> raw{};
  scope.ShowFilter = scope.ShowNotch = scope.Fill = scope.AutoGain = true;
  scope.PeakHold = PeakHolding::Falling;
  vars.SDRModelNo = SDRModel::IQXtalRX;
  std::size_t points = 0;
  for (const std::int32_t mode : {0, 1, 2}) {
    for (int way = 0; way < 16; ++way) {
      scope.SetMode(mode);
      scope.SetChn2Enabled(true);
      scope.SetFastMode(way % 2 == 0);
      scope.SetLogMode(way / 2 % 2 == 0);
      scope.LevelView = way / 4 % 2 == 0;
      scope.TwoSided = way / 8 % 2 == 0;
      const std::int64_t before = AllocationsOfThisThread();
      for (int k = 0; k < 50; ++k) {
        scope.LoadSamples_S(block.data(), block.data());
        scope.LoadSamples_INT16(raw.data(), raw.data());
        scope.Display();
        scope.DisplayFrozen();
      }
      EXPECT_EQ(AllocationsOfThisThread(), before) << mode << " " << way;
      EXPECT_GT(blank[0].Points, points);
      points = blank[0].Points;
    }
  }
}

TEST_F(FrameTest, TheNotchStandsWhereItIsHeard) {
  struct Case {
    std::int32_t source, type, mode;
    bool low;
    std::vector<double> edges;  // Hz from the tuned frequency, or of the audio
  };
  vars.NotchLo = 1406;  // bin 60
  vars.NotchHi = 1875;  // bin 80
  vars.BFOOffset = 100;
  const std::vector<double> none;
  for (const Case& c : {
           Case{1, NotchTypes::Audio, DemodMode::USB, false, {1506, 1975}},
           Case{1, NotchTypes::Audio, DemodMode::USB, true, {1506, 1975}},
           Case{0, NotchTypes::Audio, DemodMode::LSB, true, {-1306, -1775}},
           Case{2, NotchTypes::Audio, DemodMode::AM, false, {1506, 1975, -1306, -1775}},
           Case{0, NotchTypes::Audio, DemodMode::FM, false, none},
           Case{0, NotchTypes::IF, DemodMode::FM, false, {12000 - 1406, 12000 - 1875}},
           Case{0, NotchTypes::IF, DemodMode::AM, true, {1406 - 12000, 1875 - 12000}},
           Case{3, NotchTypes::Audio, DemodMode::AM, false, {1406, 1875}},
           Case{3, NotchTypes::IF, DemodMode::AM, false, none},
       }) {
    vars.NotchType = c.type;
    vars.CurrentDemodMode = c.mode;
    scope.SpectrumSource = c.source;
    low = c.low;
    scope.ShowNotch = true;
    Show(ToneAt(300));
    const std::vector<double> places = Shown().LinesOf(scope.NotchFilterColour);
    ASSERT_EQ(places.size(), c.edges.size()) << c.source << c.mode;
    for (std::size_t k = 0; k < places.size(); ++k) {
      const double hertz = scope.Frequencies().FrequencyAt(places[k]) - (scope.OnAir ? tuned : 0);
      EXPECT_NEAR(hertz, c.edges[k], 0.01) << c.source << c.mode;
    }
    scope.ShowNotch = false;
    Show(ToneAt(300));
    EXPECT_TRUE(Shown().LinesOf(scope.NotchFilterColour).empty());
  }
}

TEST_F(FrameTest, TheFilterCurveStandsUnderTheTopOfItsScale) {
  // Taps of a filter that passes everything: one of them.
  SampleBuffer taps(2049);
  taps[100] = 1.0F;
  scope.ShowFilter = true;
  const auto curve = [&] {
    scope.LoadFilterCoeffs_T_S(taps.data());
    Show(ToneAt(300));
    return Heights(scope.FilterCurveColour);
  };
  scope.SetLogMode(true);
  scope.FilterCurveColour = 0x123456;
  EXPECT_NEAR(curve()[500], std::log10(13.01) * 12.0 * 0.89, 1e-3);
  scope.SetChn1Gain(0.5F);
  scope.SetChn1Shift(15.0F);
  EXPECT_NEAR(curve()[500], std::log10(13.01) * 12.0 * 0.89 * 0.5 + 1.2, 1e-3);
  scope.SetChn1Gain(1.0F);
  scope.SetChn1Shift(0.0F);
  scope.SetLogMode(false);
  scope.SetChn1Shift(0.0F);
  EXPECT_NEAR(curve()[500] / 33554432.0F, 1.0F, 1e-5F);
  scope.LevelView = true;
  EXPECT_NEAR(curve()[500], -6.0F, 0.01F);  // a twentieth of 120 dB under the top
  taps[100] = 0.1F;
  EXPECT_NEAR(curve()[500], -26.0F, 0.01F);
  scope.LevelView = false;
  SampleBuffer magnitudes(2048, 10.0F);
  scope.LoadFilterCoeffs_F_S(magnitudes.data());
  scope.SetLogMode(true);
  Show(ToneAt(300));
  EXPECT_NEAR(Heights(scope.FilterCurveColour)[500], 20.0F, 1e-4F);
}

TEST_F(FrameTest, BrightnessScalesTheBaseColour) {
  scope.SetY1BaseColour(0x80FF40);
  scope.SetChannelBrightness(0, 50);
  EXPECT_EQ(scope.Y1Colour, 0x408020u);
  scope.SetY1BaseColour(0x0000FF);  // keeps the brightness
  EXPECT_EQ(scope.Y1Colour, 0x000080u);
  EXPECT_EQ(scope.Y2Colour, 0xFFFFu);
}

// Nothing that settings, samples and events can be does any harm.
TEST_F(FrameTest, AnySettingsAnySamplesAnyMoment) {
  std::mt19937 random(20);
  const auto any = [&](int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); };
  const float odd[] = {0.0F, 1.0F, -3.0F, 1e30F, 1e-30F, std::nanf(""), INFINITY, -INFINITY, 99.0F};
  const auto number = [&] { return odd[any(0, 8)]; };
  std::array<RecordingCanvas, 4> all{RecordingCanvas(1, 1), RecordingCanvas(1200, 400), RecordingCanvas(0, 0),
                                     RecordingCanvas(37, 5)};
  const std::function<void()> changes[] = {
      [&] { scope.SetMode(any(-1, 3)); },
      [&] { Window(any(-100, 2100), any(-100, 2100)); },
      [&] { scope.DisplayWidth = any(-5, 3000); },
      [&] { scope.SetTriggerChn(any(0, 3)); },
      [&] { scope.SetChn1Gain(number()); },
      [&] { scope.SetChn2Shift(number()); },
      [&] { scope.SetLogMode(any(0, 1)); },
      [&] { scope.SetFastMode(any(0, 1)); },
      [&] { scope.Freeze = any(0, 1); },
      [&] { scope.LevelView = any(0, 3); },
      [&] { scope.TwoSided = any(0, 1); },
      [&] { scope.Window = static_cast<SpectrumWindow>(any(0, 2)); },
      [&] { scope.PeakHold = static_cast<PeakHolding>(any(0, 2)); },
      [&] { scope.SpectrumSource = any(-1, 4); },
      [&] { vars.SDRModelNo = any(0, 3); },
      [&] { vars.CurrentDemodMode = any(0, 5); },
      [&] { scope.SetLowSideLO(any(0, 1)); },
      [&] { scope.SetSpectrumSmooth(any(-3, 40)); },
      [&] { scope.LevelTop = static_cast<double>(number()); },
      [&] { scope.LevelFloor = static_cast<double>(number()); },
      [&] { scope.SetYScaleMax(odd[any(0, 4)]); },
      [&] { scope.picDisplay0(any(0, 9) == 0 ? nullptr : &all[std::size_t(any(0, 1))]); },
      [&] { scope.picDisplay1(any(0, 9) == 0 ? nullptr : &all[std::size_t(any(2, 3))]); },
      [&] { scope.MasterGain = static_cast<double>(number()); },
      [&] {
        scope.SetChn1Enabled(any(0, 3));
        scope.SetChn2Enabled(any(0, 1));
        vars.NotchLo = any(-90000, 90000);
      },
  };
  const auto shake = [&] {
    for (int k = 0; k < 4; ++k) changes[any(0, int(std::size(changes)) - 1)]();
  };
  scope.ShowFilter = scope.ShowNotch = scope.Fill = scope.AutoGain = true;
  int onYields = 0;
  onYield = [&] {
    if (any(0, 30) == 0) shake();
    ++onYields;
  };
  SampleBuffer left(2049), right(2049);
  for (int k = 0; k < 4000; ++k) {
    shake();
    scope.Active = true;
    const float level = k % 50 == 0 ? number() : 32767.0F;
    for (std::size_t n = 0; n < 2048; n += 7)
      left[n] = right[2047 - n] = level * static_cast<float>(any(-1, 1));
    scope.LoadSamples_S(left.data(), right.data());
    any(0, 3) == 0 ? scope.DisplayFrozen() : scope.Display();
    EXPECT_GE(scope.LevelAt(any(-10, 3000)), -2000.0F);
    for (const RecordingCanvas& canvas : all) {
      for (const auto& trace : canvas.Traces) {
        for (const CanvasPoint& point : trace.Points) ASSERT_TRUE(std::isfinite(point.X)) << k;
      }
    }
  }
  EXPECT_GT(onYields, 1000);
}

}  // namespace
}  // namespace quorl::test
