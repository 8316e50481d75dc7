// The bar, the reading and the floor of the S-meter.
#include "display/SMeterPanel.h"

#include <gtest/gtest.h>

#include <cmath>

#include "controls/ControlRegistry.h"

namespace quorl {
namespace {

struct SMeterPanelTest : testing::Test {
  int Bars() {
    int bars = 0;
    for (int i = 0; i < SMeterPanel::kElements; ++i) bars += meter.shpSMeterGrid(i).Visible() ? 1 : 0;
    return bars;
  }
  void Feed(float level) {
    vars.SignalLevelRing.fill(level);
    meter.Update();
  }

  ControlRegistry registry;
  PublicVars vars;
  SMeterPanel meter{registry, vars};
};

TEST_F(SMeterPanelTest, EachSixDecibelsLightOneMoreBar) {
  struct Case {
    float level;
    int bars;
    const char* reading;
  };
  for (const Case& c : {Case{0.0F, 0, "S0"}, Case{1.9F, 0, "S0"}, Case{2.0F, 2, "S1"}, Case{501.0F, 9, "S8"},
                        Case{502.0F, 10, "S9"}, Case{1000.0F, 11, "S9 +6 dB"},
                        Case{32767.0F, 16, "S9 +36 dB"}, Case{1e30F, 28, "S9 +546 dB"}}) {
    meter.DrawSMeter(c.level);
    EXPECT_EQ(Bars(), c.bars) << c.level;
    EXPECT_EQ(meter.lblSMeter.Caption(), c.reading) << c.level;
  }
}

TEST_F(SMeterPanelTest, TheFloorIsTakenOffAndNothingGoesBelowIt) {
  EXPECT_EQ(meter.picSmeter.ToolTip(), "Meter Backoff=20.00 dB");
  vars.SignalLevelRing = {110.0F, 110.0F, 110.0F, 110.0F,
                          5000.0F};  // the last element is no part of the mean
  meter.Update();
  EXPECT_FLOAT_EQ(meter.SignalLevel, 100.0F);
  Feed(5.0F);
  EXPECT_EQ(meter.SignalLevel, 0.0F);
  EXPECT_EQ(Bars(), 0);
}

TEST_F(SMeterPanelTest, CalibratingTakesTheLevelOfTheLastSecondsOnce) {
  // Blocks of root mean square 100 in all entries but one, which stands for the ring's upper bound.
  vars.SignalPowerRing.fill(100.0F * 100.0F * SamplesPerEvent);
  vars.SignalPowerRing.back() = 0.0F;
  Feed(300.0F);
  EXPECT_FLOAT_EQ(meter.SignalLevel, 290.0F);
  registry.Find("cmdCalibrateSMeter")->UserClick();
  Feed(300.0F);
  EXPECT_NEAR(meter.NoiseFloor, 100.0F, 0.01F);
  EXPECT_NEAR(meter.SignalLevel, 200.0F, 0.01F);
  EXPECT_EQ(meter.picSmeter.ToolTip(), "Meter Backoff=40.00 dB");
  vars.SignalPowerRing.fill(0.0F);
  Feed(300.0F);
  EXPECT_NEAR(meter.NoiseFloor, 100.0F, 0.01F);
}

TEST_F(SMeterPanelTest, AMeterThatWasCalibratedOnAStationComesBackByARightClick) {
  vars.SignalPowerRing.fill(5000.0F * 5000.0F * SamplesPerEvent);
  meter.cmdCalibrateSMeter.UserClick();
  Feed(5000.0F);
  EXPECT_EQ(meter.lblSMeter.Caption(), "S0");
  meter.cmdCalibrateSMeter.MouseDown({.Button = MouseButton::Left});
  Feed(5000.0F);
  EXPECT_EQ(meter.lblSMeter.Caption(), "S0");
  meter.cmdCalibrateSMeter.UserClick();  // and a click that still waits is forgotten
  meter.cmdCalibrateSMeter.MouseDown({.Button = MouseButton::Right});
  Feed(5000.0F);
  EXPECT_EQ(meter.lblSMeter.Caption(), "S9 +19 dB");
  EXPECT_EQ(meter.picSmeter.ToolTip(), "Meter Backoff=20.00 dB");
}

TEST_F(SMeterPanelTest, AtRestTheBarIsOutAndAskingForAFloorIsForgotten) {
  Feed(5000.0F);
  meter.cmdCalibrateSMeter.UserClick();
  meter.Rest();
  EXPECT_EQ(Bars(), 0);
  EXPECT_EQ(meter.lblSMeter.Caption(), "S0");
  EXPECT_FALSE(meter.cmdCalibrateSMeter.Enabled());
  Feed(5000.0F);
  EXPECT_TRUE(meter.cmdCalibrateSMeter.Enabled());
  EXPECT_FLOAT_EQ(meter.NoiseFloor, SMeterPanel::kFloor);
}

TEST_F(SMeterPanelTest, TheScaleCountsSUnitsThenDecibelsOverS9) {
  // The last element that a level lights is the one over its mark.
  for (const auto& [decibels, mark] :
       {std::pair{6.5, "1"}, {42.5, "7"}, {54.5, "9"}, {74.5, "+20"}, {114.5, "+60"}, {154.5, "+100"}}) {
    meter.DrawSMeter(static_cast<float>(std::pow(10.0, decibels / 20.0)));
    std::string over;
    for (int i = 0; i < SMeterPanel::kElements; ++i) {
      if (meter.shpSMeterGrid(i).Visible()) over = meter.shpSMeterGrid(i).Caption();
    }
    EXPECT_EQ(over, mark);
  }
}

}  // namespace
}  // namespace quorl
