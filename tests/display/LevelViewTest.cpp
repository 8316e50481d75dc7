// The picture in decibels below a full-scale sine: levels, windows, gain, peaks, ends, both halves of I and
// Q.
#include <random>

#include "display/ScopeRig.h"

namespace quorl::test {
namespace {

struct LevelViewTest : ScopeRig {
  LevelViewTest() { scope.LevelView = true; }

  static double LabelAt(const RecordingCanvas::Label& label) { return std::stod(label.Words); }
  // A tone of I - jQ at `hertz`, of either sign.
  void ShowPair(double hertz, double level = 32768.0) {
    Show([=](int n) { return level * std::cos(Radians(hertz) * n); },
         [=](int n) { return -level * std::sin(Radians(hertz) * n); });
  }
};

TEST_F(LevelViewTest, AFullScaleToneIsZeroDecibelsAndHalfABinCostsWhatTheWindowCosts) {
  struct Case {
    SpectrumWindow window;
    double halfBinLoss;
  };
  for (const Case& c : {Case{SpectrumWindow::None, 3.92}, Case{SpectrumWindow::Hann, 1.42},
                        Case{SpectrumWindow::BlackmanHarris, 0.83}}) {
    scope.Window = c.window;
    for (const bool side : {false, true}) {
      low = side;
      const int x = low ? 300 : 1024 - 300;
      Show(ToneAt(300));
      EXPECT_NEAR(Heights1()[std::size_t(x)], 0.0F, 0.01F) << side;
      EXPECT_EQ(PeakOf(Heights1()), x);
      EXPECT_NEAR(scope.LevelAt(x), 0.0F, 0.01F);
      Show(ToneAt(300.5));
      const int neighbour = low ? x + 1 : x - 1;
      EXPECT_NEAR(scope.LevelAt(x), -c.halfBinLoss, 0.02) << side;
      EXPECT_NEAR(scope.LevelAt(neighbour), -c.halfBinLoss, 0.02);
    }
  }
  // What a carrier between two bins spreads 1.2 kHz away.
  low = true;
  scope.Window = SpectrumWindow::None;
  Show(ToneAt(300.5));
  EXPECT_NEAR(scope.LevelAt(351), -40.0 - 3.9, 1.5);
  scope.Window = SpectrumWindow::BlackmanHarris;
  Show(ToneAt(300.5));
  EXPECT_LT(scope.LevelAt(351), -92.0);
}

TEST_F(LevelViewTest, GainMasterAndShiftLiftTheTraceAndItsLabelsButNotTheLevel) {
  Window(200, 800);
  low = true;
  const auto rows = [&] {
    std::vector<double> values;
    for (const auto& label : Shown().LabelsOf(scope.YTextColour))
      values.push_back(LabelAt(label) - label.At.Y);
    return values;
  };
  Show(ToneAt(300, 3276.8));
  EXPECT_NEAR(Heights1()[100], -20.0F, 0.01F);
  for (const double lift : rows()) EXPECT_NEAR(lift, 0.0, 1e-4);
  scope.SetChn1Gain(2.0F);
  scope.MasterGain = 4.0;
  scope.SetChn1Shift(-30.0F);
  Show(ToneAt(300, 3276.8));
  const double lift = 18.06 - 24.0;  // shift/150 of 120 dB
  EXPECT_NEAR(Heights1()[100], -20.0 + lift, 0.01);
  EXPECT_NEAR(scope.LevelAt(100), -20.0F, 0.01F);
  ASSERT_FALSE(rows().empty());
  for (const double away : rows()) EXPECT_NEAR(away, -lift, 0.01);
  EXPECT_EQ(Shown().Scale().Top, 0.0);
  EXPECT_EQ(Shown().Scale().Height, -120.0);
}

TEST_F(LevelViewTest, GridStandsOnRoundFrequenciesAndTens) {
  tuned = 7203333;
  for (const auto& [start, stop] : {std::pair{0, 1023}, std::pair{300, 350}, std::pair{500, 510}}) {
    Window(start, stop);
    Show(ToneAt(500));
    const auto labels = Shown().LabelsOf(scope.XTextColour);
    ASSERT_GE(labels.size(), 3u);
    const double step = std::round((LabelAt(labels[1]) - LabelAt(labels[0])) * 1e6) / 1e6;
    const double power = std::pow(10.0, std::floor(std::log10(step) + 1e-9)), digit = step / power;
    EXPECT_TRUE(std::fabs(digit - 1) < 1e-6 || std::fabs(digit - 2) < 1e-6 || std::fabs(digit - 5) < 1e-6)
        << step;
    for (const auto& label : labels) {
      EXPECT_NEAR(std::remainder(LabelAt(label), step), 0.0, 1e-6);
      const double middle = label.At.X + Shown().UnitX() * Shown().TextWidth(label.Words) / 2.0;
      EXPECT_NEAR(scope.Frequencies().FrequencyAt(middle) / 1000.0, LabelAt(label), step / 50.0);
    }
  }
  for (const auto& label : Shown().LabelsOf(scope.YTextColour))
    EXPECT_EQ(std::remainder(LabelAt(label), 10.0), 0.0);
}

TEST_F(LevelViewTest, TheRightEdgeOfTheWholeBandTakesTheHighestBin) {
  for (const bool side : {false, true}) {
    low = side;
    Window(0, 1024);
    Show(ToneAt(1023));
    const std::vector<float> heights = Heights1();
    ASSERT_EQ(heights.size(), 1025u);
    EXPECT_EQ(heights[side ? 1024 : 0], heights[side ? 1023 : 1]);
    EXPECT_EQ(scope.LevelAt(-1), clsSpectrumAnalyser::kNoLevel);
    EXPECT_EQ(scope.LevelAt(1025), clsSpectrumAnalyser::kNoLevel);
  }
}

TEST_F(LevelViewTest, PeaksHoldTwoSecondsThenFallOrStay) {
  low = true;
  scope.PeakHold = PeakHolding::Falling;
  const Wave quiet = ToneAt(700, 30);
  Show(ToneAt(300, 32768));
  const auto peak = [&] { return scope.Peaks()[300]; };
  const int held = static_cast<int>(2.0 / 0.042667);
  for (int k = 0; k < held; ++k) Show(quiet);
  EXPECT_NEAR(peak(), 0.0F, 0.01F);
  for (int k = 0; k < 24; ++k) Show(quiet);  // a second more
  EXPECT_NEAR(peak(), -20.0F, 1.0F);
  // Where frames are left out, the blocks that came count.
  for (int k = 0; k < 23; ++k) {
    const SampleBuffer block = BlockOf(quiet);
    scope.LoadSamples_S(block.data(), block.data());
  }
  Show(quiet);
  EXPECT_NEAR(peak(), -40.5F, 1.0F);
  ASSERT_EQ(Shown().Traces.size(), 2u);
  EXPECT_NEAR(Shown().Traces[1].Points[300].Y, peak(), 1e-4F);

  scope.PeakHold = PeakHolding::Staying;
  Show(ToneAt(300, 32768));
  for (int k = 0; k < 100; ++k) Show(quiet);
  EXPECT_NEAR(peak(), 0.0F, 0.01F);
  const auto startsAnew = [&](const char* what) {
    Show(quiet);
    EXPECT_LT(peak(), -60.0F) << what;
    Show(ToneAt(300, 32768));
    EXPECT_NEAR(peak(), 0.0F, 0.1F) << what;
  };
  tuned += 100;
  startsAnew("frequency");
  scope.Window = SpectrumWindow::Hann;
  startsAnew("window");
  scope.SpectrumSource = SpectrumSource::PreDemod;
  startsAnew("source");
  scope.Freeze = true;
  Show(ToneAt(400, 32768));
  EXPECT_LT(scope.Peaks()[400], -60.0F);
}

TEST_F(LevelViewTest, EndsFitWhatTwoSecondsHaveShown) {
  std::mt19937 random(3);
  std::normal_distribution<double> noise(0.0, 100.0);
  const auto block = [&] { Show([&](int n) { return ToneAt(300, 3276.8)(n) + noise(random); }); };
  EXPECT_FALSE(scope.FitLevels());
  block();
  EXPECT_TRUE(scope.FitLevels());
  EXPECT_EQ(scope.LevelTop, -14.0);
  // Noise of variance v lies at 10 log10(N v) - 150.5 dB; its median, of a Rayleigh distribution, 1.6 dB
  // lower.
  const double median = 10.0 * std::log10(2048.0 * 1e4) - 150.51 - 1.59;
  EXPECT_NEAR(scope.LevelFloor, median - 6.0, 1.0);
  int fits = 0;
  scope.OnLevelsFitted = [&] { ++fits; };
  scope.AutoGain = true;
  scope.LevelTop = 0.0;
  for (int k = 0; k < 47; ++k) block();
  EXPECT_EQ(fits, 1);
  EXPECT_EQ(scope.LevelTop, -14.0);
  for (int k = 0; k < 46; ++k) block();
  EXPECT_EQ(fits, 1);
  // Only what is seen counts: without the carrier there is little above the noise.
  Window(100, 200);
  for (int k = 0; k < 47; ++k) block();
  EXPECT_LT(scope.LevelTop, -50.0);
  EXPECT_GE(scope.LevelTop, -60.0);
  EXPECT_GE(scope.LevelTop - scope.LevelFloor, 10.0);
}

TEST_F(LevelViewTest, TwoSidedShowsBothHalvesAroundTheTunedFrequency) {
  vars.SDRModelNo = SDRModel::IQXtalRX;
  scope.TwoSided = true;
  for (const bool side : {false, true}) {
    low = side;
    for (const SpectrumWindow window : {SpectrumWindow::None, SpectrumWindow::BlackmanHarris}) {
      scope.Window = window;
      for (const double bin : {-900.0, -213.0, 512.0, 1000.0}) {
        Window(0, 2048);
        ShowPair(bin * kBin);
        ASSERT_EQ(scope.Bins(), 2048);
        ASSERT_EQ(Heights1().size(), 2049u);
        const double onAir = low ? tuned - 12000 + bin * kBin : tuned + 12000 - bin * kBin;
        const int peak = PeakOf(Heights1());
        EXPECT_NEAR(scope.Frequencies().FrequencyAt(peak), onAir, 0.5) << side << bin;
        EXPECT_NEAR(Heights1()[std::size_t(peak)], 0.0F, 0.01F);
      }
    }
    EXPECT_EQ(scope.FOffset, low ? tuned - 36000 : tuned - 12000);
    Window(600, 610);
    ShowPair(512 * kBin);
    EXPECT_EQ(Heights1().size(), 11u);
  }
  // One transform of a real signal elsewhere.
  Window(0, 1023);
  scope.SpectrumSource = SpectrumSource::AFOut;
  Show(ToneAt(100));
  EXPECT_EQ(scope.Bins(), 1024);
  EXPECT_EQ(PeakOf(Heights1()), 100);
}

TEST_F(LevelViewTest, SecondChannelFillAndLayersComeInTheirOrder) {
  struct Note : ScopeLayer {
    void Draw(Canvas&, const ScopeFrame& frame) override {
      Seen = frame;
      Levels.assign(frame.Levels.begin(), frame.Levels.end());
    }
    ScopeFrame Seen;
    std::vector<float> Levels;
  } note;
  scope.Layers = {&note};
  scope.SetChn2Enabled(true);
  scope.SetChn2Gain(10.0F);
  scope.Fill = true;
  Window(100, 300);
  low = true;
  Show(ToneAt(200), ToneAt(250, 3276.8));
  EXPECT_NEAR(Heights2()[150], 0.0F, 0.01F);
  ASSERT_EQ(Shown().Fills.size(), 1u);
  EXPECT_EQ(Shown().Fills[0].Points.size(), 201u);
  EXPECT_LT(Shown().Fills[0].With.Opacity, 0.5F);
  EXPECT_TRUE(note.Seen.LevelView);
  ASSERT_EQ(note.Levels.size(), 1025u);
  EXPECT_NEAR(note.Levels[200], 0.0F, 0.01F);
  EXPECT_EQ(note.Seen.Frequencies.StartX, 100);
}

}  // namespace
}  // namespace quorl::test
