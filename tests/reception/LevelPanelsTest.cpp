// Noise blanker, AGC and volume: one value under label, slider and dial.
#include <cmath>

#include "dsp/chain/NoiseBlanker.h"
#include "reception/ReceptionRig.h"
#include "support/Text.h"

namespace quorl {
namespace {

struct LevelPanelsTest : testing::Test, ReceptionRig {};

TEST_F(LevelPanelsTest, LabelSliderAndDialOfTheBlankerStandTogether) {
  EXPECT_FALSE(At("lblNB").Enabled() || At("sldNB").Enabled() || At("dialNB").Enabled());
  Click("chkNB");
  EXPECT_TRUE(vars.NBOn && At("lblNB").Enabled() && At("sldNB").Enabled() && At("dialNB").Enabled());
  Set("sldNB", "5000");
  EXPECT_FLOAT_EQ(vars.NBThreshold, 0.1F);
  EXPECT_EQ(Text("lblNB"), "10.00");
  EXPECT_EQ(Text("dialNB"), "5000");
  Set("dialNB", "20000");
  EXPECT_FLOAT_EQ(vars.NBThreshold, 0.2F);
  EXPECT_EQ(Text("sldNB"), "10000");
  Wheel("lblNB", -1, {true, false, false});
  EXPECT_EQ(Text("lblNB"), "19.90");
  EXPECT_EQ(Text("dialNB"), "9950");
  // A hand that goes on while the others are brought after it is followed, and nothing drifts apart.
  AtNextYield([this] { Set("sldNB", "1"); });
  Wheel("lblNB", -1);
  EXPECT_EQ(Text("sldNB"), "1");
  EXPECT_EQ(Text("dialNB"), "1");
  EXPECT_EQ(mouse(CtlIndex::NB).Value, 1);
  EXPECT_EQ(vars.NBThreshold, NoiseBlanker::ThresholdOf(1));
  Click("chkNB");
  EXPECT_FALSE(vars.NBOn || At("lblNB").Enabled());
}

TEST_F(LevelPanelsTest, APresetBringsItsTimesAndKeepsWhatTheUserMadeOfIt) {
  EXPECT_EQ(Text("lblAGCAttack"), "5.0");
  EXPECT_EQ(Text("lblAGCDecay"), "10.0");
  EXPECT_FALSE(At("optAGC(4)").Visible());
  Click("optAGC(1)");
  EXPECT_EQ(vars.AGCMode, AGCPreset::Fast);
  EXPECT_FLOAT_EQ(vars.AGCDelayTime, 2.5F);
  EXPECT_EQ(vars.AGCDelayCallbacks, 59);
  EXPECT_EQ(vars.AGCSmoothSamples, 240);
  EXPECT_EQ(At("sldAGCAttack").ToolTip(), "AGC Decay=2.5 S");
  EXPECT_EQ(At("sldAGCDecay").ToolTip(), "AGC Attack=5 mS");
  Wheel("lblAGCAttack", 5);
  EXPECT_EQ(Text("lblAGCAttack"), "3.0");
  EXPECT_EQ(Text("sldAGCAttack"), "30");
  Set("sldAGCDecay", "120");
  EXPECT_EQ(Text("lblAGCDecay"), "12.0");
  EXPECT_EQ(vars.AGCSmoothSamples, 576);
  Click("optAGC(3)");
  EXPECT_EQ(vars.AGCDelayCallbacks, 234);
  Click("optAGC(1)");
  EXPECT_EQ(Text("lblAGCAttack"), "3.0");
  RightClick("lblAGCAttack");
  EXPECT_EQ(Text("lblAGCAttack"), "2.5");
  At("lblAGCDecay").MouseMove({});
  mouse.KeyDown({Key::Space, {}});
  EXPECT_EQ(Text("lblAGCDecay"), "5.0");
}

TEST_F(LevelPanelsTest, ThePresetOffStaysAtNothingAlthoughItsSlidersEndHigher) {
  Click("optAGC(0)");
  EXPECT_EQ(vars.AGCDelayCallbacks, 0);
  EXPECT_EQ(vars.AGCSmoothSamples, 0);
  EXPECT_EQ(vars.AGCSettings[AGCPreset::Off].CurrentDelay, 0);
  EXPECT_EQ(mouse(CtlIndex::AGCAttack).Value, 0);
  EXPECT_EQ(Text("sldAGCAttack"), "5");
}

TEST_F(LevelPanelsTest, WithTheAGCOffAPresetIsUndone) {
  Click("chkAGC");
  EXPECT_FALSE(vars.AGCON || At("lblAGCAttack").Enabled() || At("lblAGCDecay").Enabled());
  EXPECT_EQ(At("chkAGC").BackColour(), kUnselectedColour);
  EXPECT_TRUE(At("optAGC(1)").Faded() && At("optAGC(2)").Faded());
  Click("optAGC(1)");
  EXPECT_EQ(agcPanel.optAGC.Pressed(), AGCPreset::Normal);
  EXPECT_EQ(vars.AGCMode, AGCPreset::Normal);
  EXPECT_EQ(At("optAGC(2)").BackColour(), kSelectedColour);
  EXPECT_EQ(vars.AGCDelayCallbacks, 117);
  Click("chkAGC");
  EXPECT_FALSE(At("optAGC(1)").Faded() || At("optAGC(2)").Faded());
  Click("optAGC(1)");
  EXPECT_EQ(vars.AGCMode, AGCPreset::Fast);
}

TEST_F(LevelPanelsTest, VolumeIsAttenuationBelowTheMiddleAndGainAbove) {
  struct Case {
    int value;
    float attenuation;
    const char* text;
    const char* effect;
  };
  constexpr char kPlain[] = "Audio as it comes";
  for (const Case& c :
       {Case{8000, 9.0F, "+19.1", "Audio turned up by 19.1 dB, as far as the limiter lets it"},
        Case{1000, 2.0F, "+6.0", "Audio turned up by 6.0 dB, as far as the limiter lets it"},
        Case{1, 0.0F, "0.0", kPlain}, Case{-1000, -1000.0F, "-20.0", "Audio turned down by 10.0 dB"},
        Case{-10000, -10000.0F, "-40.0", "Audio turned down by 100.0 dB"},
        Case{-50, -10000.0F, "-40.0", "Audio turned down by 100.0 dB"}, Case{-1, 0.0F, "0.0", kPlain},
        Case{-51, -51.0F, "-5.8", "Audio turned down by 0.5 dB"},
        Case{-2, -51.0F, "-5.8", "Audio turned down by 0.5 dB"}}) {
    Set("sldOutVolume", std::to_string(c.value));
    EXPECT_FLOAT_EQ(vars.OutputAttenuation, c.attenuation) << c.value;
    EXPECT_EQ(Text("lblOutVol"), c.text) << c.value;
    EXPECT_EQ(At("dialOutVol").ToolTip(), c.effect) << c.value;
    EXPECT_EQ(At("lblOutVol").ToolTip().find(c.effect), 0U) << c.value;
    EXPECT_EQ(Text("dialOutVol"), std::to_string(c.value));
  }
  Set("dialOutVol", "0");
  EXPECT_EQ(Text("sldOutVolume"), "0");
  Wheel("lblOutVol", 1);
  EXPECT_EQ(Text("sldOutVolume"), "50");
  RightClick("lblOutVol");
  EXPECT_EQ(Text("lblOutVol"), "0.0");
}

TEST_F(LevelPanelsTest, WhatALabelReadsIsWhatItIsSetBy) {
  Set("chkNB", "1");
  Set("chkNotchOn", "1");
  int read = 0;
  for (int index = 1; index < CtlIndex::Count; ++index) {
    const ScrollableControl& control = mouse(index);
    if (control.Label == nullptr || control.NoFocus) continue;
    Label& label = *control.Label;
    for (const float share : {0.0F, 0.1F, 0.37F, 0.5F, 0.8F, 1.0F}) {
      mouse.SetValue(index, control.MinValue + share * (control.MaxValue - control.MinValue));
      const std::string text = label.Text();
      const Label::TurnedNumber number = label.Number();
      EXPECT_NEAR(ParseDouble(text).value(), number.Value, 0.51) << label.Name() << " " << text;
      EXPECT_LE(number.Minimum, number.Value + 1e-6) << label.Name();
      EXPECT_GE(number.Maximum, number.Value - 1e-6) << label.Name();
      EXPECT_TRUE(label.UserSet(text));
      EXPECT_EQ(label.Text(), text) << label.Name();
      ++read;
    }
  }
  EXPECT_GE(read, 6 * 8);
}

TEST_F(LevelPanelsTest, TheVolumeIsReadAndSetInTheDecibelsThatItShows) {
  for (const char* text : {"-26.0", "-40.0", "0.0", "+6.0", "+19.1"}) {
    EXPECT_TRUE(At("lblOutVol").UserSet(text));
    EXPECT_EQ(Text("lblOutVol"), text);
  }
  EXPECT_TRUE(At("lblOutVol").UserSet("-26.02"));
  EXPECT_NEAR(vars.OutputAttenuation, -2000.0F, 1.0F);
  EXPECT_TRUE(At("lblOutVol").UserSet("-99"));
  EXPECT_EQ(vars.OutputAttenuation, -10000.0F);
}

}  // namespace
}  // namespace quorl
