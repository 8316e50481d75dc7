// The frequency picture: levels, sweeps, scales, labels, what stands still.
#include <random>

#include "display/ScopeRig.h"

namespace quorl::test {
namespace {

struct SpectrumTest : ScopeRig {
  double FrequencyOfPeak() { return scope.Frequencies().FrequencyAt(PeakOf(Heights1())); }
};

TEST_F(SpectrumTest, AFullScaleToneReadsItsLogarithm) {
  scope.SetLogMode(true);
  Show(ToneAt(300));
  std::vector<float> heights = Heights1();
  ASSERT_EQ(heights.size(), 1025u);
  EXPECT_EQ(PeakOf(heights), 1024 - 300);  // a high-side oscillator mirrors the band
  EXPECT_NEAR(heights[1024 - 300], 7.53F, 0.005F);
  EXPECT_LT(heights[1024 - 290], 3.0F);
  EXPECT_EQ(Shown().Scale().Top, 12.0);
  low = true;
  Show(ToneAt(300));
  heights = Heights1();
  EXPECT_EQ(PeakOf(heights), 300);
  EXPECT_NEAR(heights[300], 11.53F, 0.005F);
  EXPECT_EQ(Shown().TraceOf(scope.Y1Colour)->Points[300].X, 300.0F);
}

// What each direction does with gain and shift, on a line of known height.
TEST_F(SpectrumTest, EachDirectionScalesInItsOwnWay) {
  const float range = 33554432.0F, tone = range / 4.0F;
  Window(100, 400);
  struct Case {
    bool low, log;
    float inside, atLeftEdge;
  };
  const float gain = 2.0F, offset = 0.1F * range;
  const float line = std::log10(tone);
  for (const Case& c :
       {Case{false, false, tone * gain + offset, (tone * gain + offset + offset) * gain},
        Case{true, false, (tone * gain + offset + offset) * gain, 0.0F},
        Case{false, true, line, (line + 4.0F) * gain}, Case{true, true, (line + 4.0F) * gain, 0.0F}}) {
    low = c.low;
    scope.SetLogMode(c.log);
    scope.SetChn1Gain(gain);
    scope.SetChn1Shift(15.0F);
    // Tones at the left edge and in the middle of the window, wherever the sweep finds them.
    const int edge = low ? 100 : 1024 - 100, middle = low ? 200 : 1024 - 200;
    Show([&](int n) { return ToneAt(edge, 8192)(n) + ToneAt(middle, 8192)(n); });
    const std::vector<float> heights = Heights1();
    ASSERT_EQ(heights.size(), 301u);
    EXPECT_NEAR(heights[100] / c.inside, 1.0F, 1e-4F) << c.low << c.log;
    if (c.low) continue;
    EXPECT_NEAR(heights[0] / c.atLeftEdge, 1.0F, 1e-4F) << c.log;
  }
}

TEST_F(SpectrumTest, ThreeZoomsAndBothSidesShowTheToneWhereItIsOnTheAir) {
  for (const bool side : {false, true}) {
    low = side;
    for (const auto& [start, stop] : {std::pair{0, 1023}, std::pair{400, 700}, std::pair{600, 610}}) {
      Window(start, stop);
      // A station 2250 Hz above the tuned frequency, which lies in all of the windows.
      const double hertz = (low ? 12000.0 + 2250.0 : 12000.0 - 2250.0);
      Show(ToneAt(hertz / kBin, 1000));
      ASSERT_EQ(Heights1().size(), std::size_t(stop - start + 1));
      EXPECT_EQ(scope.StopBin() - scope.StartBin(), stop - start);
      EXPECT_NEAR(FrequencyOfPeak(), 7207250.0, 1.0) << side << start;
      EXPECT_EQ(scope.Frequencies().XAt(7207250.0), 608 - start);
    }
  }
}

TEST_F(SpectrumTest, PlainAudioAscendsFromZeroWhateverSideIsTold) {
  struct Case {
    std::int32_t source, mode;
    bool playing, onAir;
  };
  for (const Case& c : {Case{0, DemodMode::AM, false, true}, Case{0, DemodMode::AM, true, false},
                        Case{1, DemodMode::USB, true, true}, Case{2, DemodMode::USB, false, false},
                        Case{2, DemodMode::LSB, false, false}, Case{2, DemodMode::AM, false, true},
                        Case{2, DemodMode::DRM, false, true}, Case{3, DemodMode::FM, false, false}}) {
    scope.SpectrumSource = c.source;
    vars.CurrentDemodMode = c.mode;
    scope.Playing = [&] { return c.playing; };
    Show(ToneAt(100));
    EXPECT_EQ(scope.OnAir, c.onAir);
    EXPECT_EQ(scope.FOffset, c.onAir ? tuned - 12000 : 0);
    EXPECT_NEAR(FrequencyOfPeak(), c.onAir ? tuned + 12000 - 100 * kBin : 100 * kBin, 0.5)
        << c.source << c.mode;
  }
}

TEST_F(SpectrumTest, LinesOfTwoTonesAndNoiseHaveTheirPowers) {
  std::mt19937 random(5);
  std::normal_distribution<double> noise(0.0, 200.0);
  low = true;
  double lines = 0.0, between = 0.0;
  constexpr int kBlocks = 40;
  scope.OnLine = [&](const SpectrumLine& line) {
    ASSERT_EQ(line.Bins.size(), 1024u);
    EXPECT_NEAR(line.Bins[250] / 1024.0F, 8000.0F, 100.0F);
    EXPECT_NEAR(line.Bins[260] / 1024.0F, 80.0F, 60.0F);
    for (std::size_t k = 400; k < 1000; ++k) between += double(line.Bins[k]) * double(line.Bins[k]);
    ++lines;
  };
  for (int block = 0; block < kBlocks; ++block)
    Show([&](int n) { return ToneAt(250, 8000)(n) + ToneAt(260, 80)(n) + noise(random); });
  EXPECT_EQ(lines, kBlocks);
  // N samples of variance v: N v in each bin.
  EXPECT_NEAR(std::sqrt(between / kBlocks / 600 / 2048), 200.0, 3.0);
}

// The same two tones and noise on either side and in any window: the level that is read is theirs.
TEST_F(SpectrumTest, LevelsAreTheSignalsWhateverTheSideAndTheWindow) {
  scope.LevelView = true;
  std::mt19937 random(6);
  std::normal_distribution<double> noise(0.0, 20.0);
  for (const bool side : {false, true}) {
    low = side;
    for (const auto& [start, stop] : {std::pair{0, 1023}, std::pair{420, 720}, std::pair{600, 650}}) {
      Window(start, stop);
      // Stations 2250 Hz and 2812.5 Hz above the tuned frequency: 96 and 120 bins.
      const double sign = low ? 1.0 : -1.0;
      Show([&](int n) {
        return ToneAt(512 + sign * 96, 8192)(n) + ToneAt(512 + sign * 120, 81.92)(n) + noise(random);
      });
      const FrequencyScale at = scope.Frequencies();
      const auto level = [&](double hertz) { return scope.LevelAt(at.XAt(hertz)); };
      EXPECT_NEAR(level(7207250.0), -12.04, 0.2) << side << start;
      EXPECT_NEAR(level(7207812.5), -52.04, 4.0) << side << start;
      double power = 0.0;
      int count = 0;
      for (int x = 0; x < stop - start; ++x) {
        const double hertz = at.FrequencyAt(x);
        if (std::abs(hertz - 7207250.0) < 200 || std::abs(hertz - 7207812.5) < 200) continue;
        power += std::pow(10.0, double(scope.LevelAt(x)) / 10.0);
        ++count;
      }
      // Noise of deviation 20 in a bin of 2048 samples, against half of 2048 times full scale.
      EXPECT_NEAR(10.0 * std::log10(power / count),
                  20.0 * std::log10(20.0 * std::sqrt(2048.0) / (32768.0 * 1024.0)), 2.0)
          << side << start;
      EXPECT_NEAR(scope.Frequencies().FrequencyAt(PeakOf(Heights1())), 7207250.0, 1.0);
    }
  }
}

TEST_F(SpectrumTest, AFrozenPictureRepeatsItselfAndAgesNothing) {
  scope.SetFastMode(false);
  for (const bool log : {false, true}) {
    scope.SetLogMode(log);
    scope.SetChn1Gain(2.0F);
    scope.SetChn1Shift(10.0F);
    for (int k = 0; k < 12; ++k) Show(ToneAt(200 + k));
    const std::vector<float> heights = Heights1();
    const auto labels = Shown().LabelsOf(scope.XTextColour);
    ASSERT_FALSE(labels.empty());
    scope.Freeze = true;
    tuned += 5000;
    for (int k = 0; k < 3; ++k) {
      const SampleBuffer other = BlockOf(ToneAt(700));
      scope.LoadSamples_S(other.data(), other.data());
      scope.SetFrequencyReference(tuned - 12000);
      scope.SetLowSideLO(!low);
      scope.DisplayFrozen();
      EXPECT_EQ(Heights1(), heights) << log;
      EXPECT_EQ(Shown().LabelsOf(scope.XTextColour)[0].Words, labels[0].Words);
    }
    EXPECT_EQ(scope.Frequencies().Offset, tuned - 5000 - 12000);
    scope.Freeze = false;
  }
  // A frame made of samples while frozen ages nothing either.
  scope.SetLogMode(false);
  scope.SetChn1Gain(1.0F);
  scope.SetChn1Shift(0.0F);
  for (int k = 0; k < 30; ++k) Show(ToneAt(300));
  scope.Freeze = true;
  Show(ToneAt(600));
  scope.Freeze = false;
  Show(ToneAt(300));
  EXPECT_NEAR(Heights1()[1024 - 600], 0.0F, 200.0F);
}

TEST_F(SpectrumTest, TheSmoothedLineRisesSlowlyAndForgets) {
  scope.SetFastMode(false);
  EXPECT_EQ(scope.SpectrumSmooth(), 8);
  low = true;
  std::vector<float> rise;
  for (int k = 0; k < 9; ++k) {
    Show(ToneAt(300, 1024));
    rise.push_back(Heights1()[300] / (1024.0F * 1024.0F));
  }
  EXPECT_NEAR(rise[0], 1.0F / 36.0F, 1e-4F);  // the newest of eight weighs 1 of 1 + 2 + ... + 8
  EXPECT_NEAR(rise[1], 3.0F / 36.0F, 1e-4F);
  EXPECT_NEAR(rise[7], 1.0F, 1e-4F);
  EXPECT_NEAR(rise[8], 1.0F, 1e-4F);
  scope.SetSpectrumSmooth(1);
  Show(ToneAt(500, 1024));
  EXPECT_NEAR(Heights1()[300], 0.0F, 10.0F);
}

TEST_F(SpectrumTest, ScaleFollowsTheLogarithmInFrequencyModeOnly) {
  EXPECT_EQ(scope.YScaleMax(), 33554432.0F);
  scope.SetLogMode(true);
  EXPECT_EQ(scope.YScaleRange(), 12.0F);
  scope.SetYScaleMax(9.0F);
  scope.SetYScaleMin(3.0F);
  EXPECT_EQ(scope.YScaleRange(), 6.0F);
  scope.SetChn1Shift(50.0F);
  Show(ToneAt(10));
  EXPECT_EQ(Shown().Scale().Top, 9.0);
  EXPECT_EQ(Shown().Scale().Height, -6.0);
  // 20 (Y - offset) / gain.
  EXPECT_NEAR(std::stod(Shown().LabelsOf(scope.YTextColour)[0].Words), 20.0 * (9.0 - 2.0), 0.5);
  scope.SetChn1Gain(0.0F);
  Show(ToneAt(10));
  EXPECT_TRUE(Shown().LabelsOf(scope.YTextColour).empty());
  scope.SetLogMode(false);
  EXPECT_EQ(scope.YScaleRange(), 33554432.0F);
  scope.SetMode(ScopeMode::Time);
  scope.SetLogMode(true);
  EXPECT_EQ(scope.YScaleRange(), 65536.0F);
}

TEST_F(SpectrumTest, ColumnLabelsTellKilohertzUpwardsAndNeverMeet) {
  for (const bool side : {false, true}) {
    low = side;
    for (const auto& [start, stop] : {std::pair{0, 1023}, std::pair{510, 520}}) {
      Window(start, stop);
      Show(ToneAt(10));
      const auto labels = Shown().LabelsOf(scope.XTextColour);
      ASSERT_GE(labels.size(), 8u);
      double last = 0.0, end = 0.0;
      for (const auto& label : labels) {
        const double kilohertz = std::stod(label.Words), x = label.At.X;
        EXPECT_NEAR(kilohertz, scope.Frequencies().FrequencyAt(x) / 1000.0, 0.002 * (stop - start));
        EXPECT_GT(kilohertz, last);
        EXPECT_GE(x / Shown().UnitX(), end);
        last = kilohertz;
        end = x / Shown().UnitX() + Shown().TextWidth(label.Words);
      }
      EXPECT_LE(end, Shown().Width());
    }
  }
}

}  // namespace
}  // namespace quorl::test
