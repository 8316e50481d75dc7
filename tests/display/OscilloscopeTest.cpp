// The time and the XY picture, and the trigger.
#include "display/ScopeRig.h"

namespace quorl::test {
namespace {

struct OscilloscopeTest : ScopeRig {
  OscilloscopeTest() {
    scope.SetMode(ScopeMode::Time);
    scope.SetFastMode(true);
    scope.SetChn2Enabled(false);
    TimeWindow(100);
  }
  void TimeWindow(std::int32_t samples) {
    scope.DisplayWidth = samples;
    Window(0, samples - 1);
  }
  static double Pulse(int n, int at) { return n == at ? 20000.0 : 100.0 * std::sin(n); }
};

TEST_F(OscilloscopeTest, TheFirstChannelStartsAtItsPeakAndTheWindowStaysInTheBlock) {
  scope.SetTriggerChn(1);
  EXPECT_TRUE(scope.Chn1Trig());
  for (const int at : {0, 700, 1946}) {
    Show([&](int n) { return Pulse(n, at); });
    const std::vector<float> heights = Heights1();
    ASSERT_EQ(heights.size(), 100u) << at;
    EXPECT_EQ(heights[0], 20000.0F) << at;
    EXPECT_EQ(scope.StopBin(), at + 99);
  }
  // Beyond the last place from which a whole window fits, a peak doesn't count.
  Show([&](int n) { return Pulse(n, 1947) + Pulse(n, 55) / 2.0; });
  EXPECT_EQ(scope.StartBin(), 55);
  // A constant triggers at the block's start; where nothing fits, the window stays.
  Show([](int) { return 5.0; });
  EXPECT_EQ(scope.StartBin(), 0);
  scope.DisplayWidth = 2048;
  Show([&](int n) { return Pulse(n, 300); });
  EXPECT_EQ(scope.StartBin(), 0);
}

TEST_F(OscilloscopeTest, TheSecondChannelSearchesItsWindowAndCountsFromTheBlocksStart) {
  scope.SetChn2Enabled(true);
  scope.SetTriggerChn(2);
  EXPECT_FALSE(scope.Chn1Trig());
  const Wave silence = [](int) { return 0.0; };
  Show(silence, [&](int n) { return Pulse(n, 60); });
  EXPECT_EQ(scope.StartBin(), 60);
  EXPECT_EQ(scope.StopBin(), 159);
  Show(silence, [&](int n) { return Pulse(n, 70); });
  EXPECT_EQ(scope.StartBin(), 10);  // ten behind the start of the window
  // Wide windows never reach beyond the block.
  Window(0, 1500);
  Show(silence, [&](int n) { return Pulse(n, 549); });
  EXPECT_EQ(scope.StartBin(), 549);
  EXPECT_LE(scope.StopBin(), 2047);
  Window(0, 1500);
  Show(silence, [&](int n) { return Pulse(n, 560); });
  EXPECT_EQ(scope.StartBin(), 0);
}

TEST_F(OscilloscopeTest, WithoutTriggerTheWindowStaysWhereItWasSet) {
  scope.SetTriggerChn(0);
  scope.SetChn2Trig(true);  // the tick alone doesn't trigger
  Window(500, 599);
  Show([&](int n) { return Pulse(n, 520); });
  EXPECT_EQ(scope.StartBin(), 500);
  const std::vector<float> heights = Heights1();
  ASSERT_EQ(heights.size(), 100u);
  EXPECT_EQ(heights[20], 20000.0F);
}

TEST_F(OscilloscopeTest, GainThenOffsetOnceAndLabelsInSamples) {
  scope.SetTriggerChn(0);
  scope.SetChn1Gain(3.0F);
  scope.SetChn1Shift(15.0F);  // a tenth of the range
  Show([](int) { return 1000.0; });
  EXPECT_NEAR(Heights1()[50], 3000.0F + 6553.6F, 0.5F);
  EXPECT_EQ(Shown().Scale().Top, 32768.0);
  EXPECT_EQ(Shown().Scale().Height, -65536.0);
  const auto labels = Shown().LabelsOf(scope.YTextColour);
  ASSERT_GE(labels.size(), 9u);
  EXPECT_NEAR(std::stod(labels[0].Words), (32768.0 - 6553.6) / 3.0, 1.0);
  const auto times = Shown().LabelsOf(scope.XTextColour);
  ASSERT_GE(times.size(), 10u);
  EXPECT_NEAR(std::stod(times[6].Words), 6 * 99 / 12.01 / 48.0, 0.01);
}

TEST_F(OscilloscopeTest, TheAverageWeighsTheOldestMost) {
  scope.SetTriggerChn(0);
  scope.SetFastMode(false);
  scope.SetSpectrumSmooth(4);
  const double rows[] = {1000, 3000, 2000, 7000};
  for (const double value : rows) Show([=](int) { return value; });
  const double expected = (7000 * 0.25 + 2000 * 0.5 + 3000 * 0.75 + 1000 * 1.0) / 2.5;
  EXPECT_NEAR(Heights1()[10], expected, 0.1);
  scope.SetSpectrumSmooth(0);  // no frames to average over become one
  EXPECT_EQ(scope.SpectrumSmooth(), 1);
  Show([](int) { return 42.0; });
  EXPECT_EQ(Heights1()[10], 42.0F);
}

TEST_F(OscilloscopeTest, XYShowsBothChannelsOverTheTimeWindowInSquareUnits) {
  scope.SetTriggerChn(0);
  Window(200, 299);
  scope.SetMode(ScopeMode::XY);
  EXPECT_TRUE(scope.Chn1Enabled() && scope.Chn2Enabled());
  scope.SetFastMode(true);
  Show(ToneAt(32, 10000), ToneAt(32, 10000, 0.3 - M_PI / 2));
  const CanvasScale& scale = Shown().Scale();
  EXPECT_EQ(scale.Left, -3 * 32768.0);
  EXPECT_EQ(scale.Width, 3 * 65536.0);
  EXPECT_NEAR(Shown().UnitX(), -Shown().UnitY(), 1e-9);
  const RecordingCanvas::Trace* trace = Shown().TraceOf(scope.Y1Colour);
  ASSERT_NE(trace, nullptr);
  ASSERT_EQ(trace->Points.size(), 100u);
  for (const CanvasPoint& point : trace->Points) EXPECT_NEAR(std::hypot(point.X, point.Y), 10000.0, 1.0);
  EXPECT_NEAR(trace->Points[0].X, ToneAt(32, 10000)(200), 1.0);
}

TEST_F(OscilloscopeTest, AModeKeepsItsOwnSettings) {
  scope.SetChn1Gain(5.0F);
  scope.SetMode(ScopeMode::Frequency);
  EXPECT_EQ(scope.Chn1Gain(), 1.0F);
  scope.SetChn1Shift(75.0F);
  scope.SetMode(ScopeMode::Time);
  EXPECT_EQ(scope.Chn1Gain(), 5.0F);
  EXPECT_EQ(scope.Chn1Shift(), 0.0F);
}

}  // namespace
}  // namespace quorl::test
