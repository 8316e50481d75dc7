// Gain, ramp, volume and limiter of the chain's last stage.
#include "dsp/chain/AGC.h"

#include <gtest/gtest.h>

#include "dsp/Signals.h"

namespace quorl::test {
namespace {

constexpr float kRelative = 1e-6F;  // a few roundings of 32-bit floats

struct Level : OutputLevel {
  void SetOutputAttenuation(std::int32_t value) override { Attenuation = value; }
  std::int32_t Attenuation = 12345;
};

class AGCTest : public testing::Test {
 protected:
  AGCTest() {
    agc.ApplyPreset(AGCPreset::Normal);
    agc.FillDelayLine();
  }

  // A block of one level through the stage.
  SampleBuffer Run(float level) {
    SampleBuffer block(SamplesPerEvent, level);
    agc.ApplyAGC(block.data());
    return block;
  }

  PublicVars vars;
  Level output;
  AGC agc{vars, output};
};

void ExpectNear(float got, float expected) {
  EXPECT_NEAR(got, expected, kRelative * std::abs(expected));
}

TEST_F(AGCTest, FallsAtOnceAndRecoversAsThePeakAges) {
  agc.ApplyPreset(AGCPreset::Fast);
  const std::int32_t n = vars.AGCDelayCallbacks;
  EXPECT_EQ(n, 59);  // 2.5 s
  for (int block = 0; block < n; ++block) Run(1000.0F);
  ExpectNear(agc.Gain(), 16.383F);
  const SampleBuffer loud = Run(10000.0F);
  ExpectNear(agc.Gain(), 1.6383F);
  // The ramp's start still has the old gain; the limiter takes the whole block down by its peak.
  ExpectNear(loud.back(), 16383.0F * 16384.0F / 163830.0F);
  // The peak's weight falls in equal steps; from a tenth of it the newer peaks rule.
  for (std::int32_t age = 1; age < n; ++age) {
    Run(1000.0F);
    const float weight = 1.0F - static_cast<float>(age) / static_cast<float>(n - 1);
    EXPECT_NEAR(agc.Gain(), 16383.0F / std::max(10000.0F * weight, 1000.0F), 1e-4F) << age;
  }
}

TEST_F(AGCTest, RampsFromTheLastGainOverTheStartOfTheBlock) {
  agc.ApplyPreset(AGCPreset::Normal);
  EXPECT_EQ(vars.AGCSmoothSamples, 480);  // 10 ms
  agc.FillDelayLine();
  const SampleBuffer first = Run(16383.0F);
  ExpectNear(agc.Gain(), 1.0F);
  SampleBuffer quiet = Run(16383.0F * 2);  // gain halves
  EXPECT_NEAR(quiet[0], 16384.0F, 1.0F);   // twice the level at gain one meets the limiter
  EXPECT_NEAR(quiet[479] / quiet[0], 0.5F, 1e-5F);
  EXPECT_NEAR(quiet[240] / quiet[0], 1.0F - 0.5F * 240.0F / 479.0F, 1e-5F);
  EXPECT_EQ(quiet[480], quiet[2047]);
  agc.SetRamp(0.0F);
  for (const float sample : Run(16383.0F * 4)) ExpectNear(sample, 16383.0F);
}

TEST_F(AGCTest, SilenceNeitherAgesNorEntersTheLine) {
  agc.ApplyPreset(AGCPreset::Fast);
  Run(20000.0F);
  const float gain = agc.Gain();
  for (int block = 0; block < 200; ++block) Run(block % 2 == 0 ? 0.0F : 0.0099F);
  EXPECT_EQ(agc.Gain(), gain);
  for (int block = 0; block < 59; ++block) Run(0.02F);
  EXPECT_GT(agc.Gain(), 100000.0F);
}

TEST_F(AGCTest, NothingHeardLeavesTheBlockAsItIs) {
  PublicVars fresh;
  AGC deaf(fresh, output);
  deaf.ApplyPreset(AGCPreset::Normal);
  deaf.SetVolume(8000.0F);
  SampleBuffer block(SamplesPerEvent);
  deaf.ApplyAGC(block.data());
  EXPECT_EQ(deaf.Gain(), 1.0F);
  EXPECT_EQ(output.Attenuation, 12345);  // the volume is not reached either
}

TEST_F(AGCTest, OffPassesTheLevelButGainAndLimiterGoOn) {
  vars.AGCON = false;
  agc.ApplyPreset(AGCPreset::Fast);
  agc.SetVolume(0.0F);
  for (int block = 0; block < 59; ++block) EXPECT_EQ(Run(100.0F)[1000], 100.0F);
  ExpectNear(agc.Gain(), 163.83F);
  EXPECT_EQ(vars.AGCMeterGain, 1.0F);  // what is not applied is not shown
  EXPECT_NEAR(Run(-30000.0F)[0], -16384.0F, 0.01F);
  vars.AGCON = true;  // no jump: the ramp starts where the gain stands
  EXPECT_NEAR(Run(30000.0F)[0], 16383.0F, 1.0F);
  EXPECT_EQ(vars.AGCMeterGain, agc.Gain());
  agc.SetDelay(0.0F);
  Run(100.0F);
  EXPECT_EQ(vars.AGCMeterGain, 1.0F);
}

TEST_F(AGCTest, ALineOfNoneOrOneBlock) {
  agc.ApplyPreset(AGCPreset::Off);
  EXPECT_EQ(vars.AGCDelayCallbacks, 0);
  EXPECT_EQ(Run(50.0F)[7], 50.0F);
  EXPECT_NEAR(Run(32767.0F)[7], 16384.0F, 0.01F);
  EXPECT_EQ(output.Attenuation, 0);
  agc.SetDelay(0.4F);
  EXPECT_EQ(vars.AGCDelayCallbacks, 1);
  for (const float level : {50.0F, 20000.0F, 3.0F}) {
    Run(level);
    ExpectNear(agc.Gain(), 16383.0F / level);
  }
}

TEST_F(AGCTest, VolumeIsAttenuationBelowAndGainAbove) {
  vars.AGCON = false;
  struct {
    float Control, Stored, Level;
    std::int32_t Attenuation;
  } const rows[] = {{-10000.0F, -10000.0F, 100.0F, -10000},
                    {-51.0F, -51.0F, 100.0F, -51},
                    {-50.0F, -51.0F, 100.0F, -51},  // keeps what it was
                    {-2.0F, -51.0F, 100.0F, -51},
                    {-1.0F, 0.0F, 100.0F, 0},
                    {1.0F, 0.0F, 100.0F, 0},
                    {1000.0F, 2.0F, 200.0F, 0},
                    {8000.0F, 9.0F, 900.0F, 0}};
  for (const auto& row : rows) {
    agc.SetVolume(row.Control);
    EXPECT_EQ(vars.OutputAttenuation, row.Stored) << row.Control;
    ExpectNear(Run(100.0F)[0], row.Level);
    EXPECT_EQ(output.Attenuation, row.Attenuation) << row.Control;
  }
  EXPECT_NEAR(Run(10000.0F)[0], 16384.0F, 0.01F);  // the gain acts ahead of the limiter
}

TEST_F(AGCTest, PresetsKeepTheirOwnTimes) {
  struct {
    std::int32_t Mode, Callbacks, Samples;
  } const rows[] = {{AGCPreset::Off, 0, 0},
                    {AGCPreset::Fast, 59, 240},
                    {AGCPreset::Normal, 117, 480},
                    {AGCPreset::Slow, 234, 960},
                    {AGCPreset::User, 117, 480}};
  for (const auto& row : rows) {
    agc.ApplyPreset(row.Mode);
    EXPECT_EQ(vars.AGCDelayCallbacks, row.Callbacks) << row.Mode;
    EXPECT_EQ(vars.AGCSmoothSamples, row.Samples) << row.Mode;
  }
  agc.ApplyPreset(AGCPreset::Fast);
  agc.SetDelay(40.0F);
  agc.SetRamp(15.0F);
  EXPECT_EQ(vars.AGCSmoothTime, 2);  // 1.5 ms, half to even
  agc.ApplyPreset(AGCPreset::Slow);
  agc.ApplyPreset(AGCPreset::Fast);
  EXPECT_EQ(vars.AGCDelayTime, 4.0F);
  EXPECT_EQ(vars.AGCSettings[AGCPreset::Slow].CurrentDelay, 100);
}

}  // namespace
}  // namespace quorl::test
