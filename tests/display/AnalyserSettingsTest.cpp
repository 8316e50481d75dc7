// What the instrument keeps between two runs.
#include "display/ScopeRig.h"

namespace quorl::test {
namespace {

using AnalyserSettingsTest = ScopeRig;
constexpr char kSection[] = "SpectrumAnalyser";

TEST_F(AnalyserSettingsTest, AnEmptyStoreGivesTheDefaults) {
  scope.SetChn1Gain(9.0F);
  scope.ReadSettings(SettingsStore());
  EXPECT_EQ(scope.Mode(), 0);
  EXPECT_EQ(scope.SpectrumSmooth(), 8);
  EXPECT_EQ(scope.YTextColour, 0xFF7F00u);
  for (const std::int32_t mode : {0, 1, 2}) {
    scope.SetMode(mode);
    EXPECT_EQ(scope.Chn1Gain(), 1.0F);
    EXPECT_TRUE(scope.Chn1Enabled() && scope.Chn2Enabled() && scope.Chn1Trig());
    EXPECT_FALSE(scope.Chn2Trig() || scope.FastMode() || scope.LogMode());
    EXPECT_EQ(scope.TriggerChn(), 1);  // as the stored tick says
  }
}

TEST_F(AnalyserSettingsTest, EveryModeComesBackAsItWas) {
  scope.SetMode(1);
  scope.SetChn1Gain(3.5F);
  scope.SetChn2Shift(-40.0F);
  scope.SetTriggerChn(2);
  scope.SetMode(0);
  scope.SetLogMode(true);
  scope.SetChn1Gain(2.0F);
  scope.SetChn1Shift(30.0F);
  scope.SetSpectrumSmooth(12);
  scope.SetY2BaseColour(0xABCDEF);
  scope.HideFreqToolTip = true;
  SettingsStore store;
  scope.WriteSettings(store);
  EXPECT_EQ(store.GetSetting(kSection, ".Mode.1.Chn1.Gain", ""), "3.5");
  EXPECT_EQ(store.GetSetting(kSection, "Chn1.Gain", ""), "2");
  EXPECT_EQ(store.GetSetting(kSection, "HideFreqTooltip", ""), "True");

  clsSpectrumAnalyser other(settings, vars, [] {});
  other.ReadSettings(store);
  EXPECT_EQ(other.Mode(), 0);
  EXPECT_TRUE(other.LogMode());
  EXPECT_EQ(other.Chn1Gain(), 2.0F);
  EXPECT_EQ(other.Chn1Shift(), 30.0F);
  EXPECT_EQ(other.SpectrumSmooth(), 12);
  EXPECT_EQ(other.Y2BaseColour(), 0xABCDEFu);
  EXPECT_TRUE(other.HideFreqToolTip);
  other.SetMode(1);
  EXPECT_EQ(other.Chn1Gain(), 3.5F);
  EXPECT_EQ(other.Chn2Shift(), -40.0F);
  EXPECT_EQ(other.TriggerChn(), 2);
  // The offset is that of the mode's own range.
  other.SetMode(0);
  SettingsStore again;
  other.WriteSettings(again);
  EXPECT_EQ(again.Serialise(), store.Serialise());
}

TEST_F(AnalyserSettingsTest, KeysWithoutAModeCountWhereTheOthersAreMissing) {
  SettingsStore store;
  store.SaveSetting(kSection, "Chn1.Gain", "4");
  store.SaveSetting(kSection, "LogMode", "True");
  store.SaveSetting(kSection, ".Mode.1.Chn1.Gain", "6");
  scope.ReadSettings(store);
  EXPECT_EQ(scope.Chn1Gain(), 4.0F);
  EXPECT_TRUE(scope.LogMode());
  scope.SetMode(1);
  EXPECT_EQ(scope.Chn1Gain(), 6.0F);
}

TEST_F(AnalyserSettingsTest, BadValuesBecomeTheNearestGoodOnesOrTheDefault) {
  SettingsStore store;
  for (const auto& [key, value] : {std::pair{"Mode", "7"},
                                   {"SpectrumSmooth", "0"},
                                   {".Mode.2.Chn1.Gain", "NaN"},
                                   {".Mode.2.Chn2.Gain", "1e9"},
                                   {".Mode.2.Chn1.Shift", "-5000"},
                                   {"DefaultSmoothCount", "99"},
                                   {"Y1BaseColour", "green"}})
    store.SaveSetting(kSection, key, value);
  scope.ReadSettings(store);
  EXPECT_EQ(scope.Mode(), 2);
  EXPECT_EQ(scope.SpectrumSmooth(), 1);
  EXPECT_EQ(scope.Chn1Gain(), 1.0F);
  EXPECT_EQ(scope.Chn2Gain(), 99.0F);
  EXPECT_EQ(scope.Chn1Shift(), -100.0F);
  EXPECT_EQ(scope.DefaultSmoothCount, 24);
  EXPECT_EQ(scope.Y1BaseColour(), 0xFF00u);
}

TEST_F(AnalyserSettingsTest, AnXYPictureAlwaysHasBothChannels) {
  SettingsStore store;
  store.SaveSetting(kSection, ".Mode.2.Chn2.Enabled", "False");
  store.SaveSetting(kSection, "Mode", "2");
  scope.ReadSettings(store);
  EXPECT_TRUE(scope.Chn2Enabled());
}

TEST_F(AnalyserSettingsTest, AShiftIsAShareOfTheRangeAtTheTimeItWasSet) {
  scope.SetChn1Shift(30.0F);
  scope.SetYScaleMax(16777216.0F);
  Show([](int) { return 0.0; });
  EXPECT_FLOAT_EQ(Heights1()[500], 0.2F * 33554432.0F);
}

}  // namespace
}  // namespace quorl::test
