// The running radio worked by the names of its controls: what is switched can be heard.
#include <gtest/gtest.h>

#include "core/FrameRig.h"

namespace quorl::test {
namespace {

// On the air, AGC off, so that levels are the receiver's own.
class FrmMainRadio : public testing::Test {
 protected:
  FrmMainRadio() {
    EXPECT_TRUE(rig.Start());
    rig.Click("optPwr(0)");
    rig.Set("chkAGC", "1");
    rig.Click("optAGC(0)");
    rig.Run(1.5);
  }
  FrameRig rig;
};

TEST_F(FrmMainRadio, PowerOffIsSilentAndTunableAndOnAgainIsHeard) {
  EXPECT_GT(rig.Loudness(), 50.0);
  rig.Set("chkPerfStatsOn", "1");
  rig.Run(0.2);
  EXPECT_TRUE(rig.At("shpSMeterGrid(1)").Visible());
  EXPECT_EQ(rig.At("optPwr(0)").BackColour(), 0x00C000U);
  EXPECT_EQ(rig.At("optPwr(1)").BackColour(), 0x0000FFU);
  rig.Click("optPwr(2)");
  EXPECT_EQ(rig.Closed, 0);  // closes from Off only
  rig.Click("optPwr(1)");
  EXPECT_EQ(rig.At("optPwr(0)").BackColour(), 0x00FF00U);
  EXPECT_EQ(rig.At("optPwr(1)").BackColour(), 0x0000C0U);
  const std::int64_t blocks = rig.Blocks;
  rig.Wheel("lbl7Seg(2)", 1);
  rig.Run(2.0);
  EXPECT_EQ(rig.Blocks, blocks);
  EXPECT_EQ(rig.Text("lblSMeter"), "S0");
  EXPECT_FALSE(rig.At("shpSMeterGrid(1)").Visible() || rig.At("cmdCalibrateSMeter").Enabled());
  for (const int blank : {0, 1, 2, 4, 5}) EXPECT_EQ(rig.Text(IndexedName("lblStatsVal", blank)), "");
  EXPECT_EQ(rig.Digits(), "073050000");
  EXPECT_EQ(rig.Oscillator(), 523050000);
  rig.Wheel("lbl7Seg(2)", -1);
  rig.Click("optPwr(0)");
  rig.Run(1.5);
  EXPECT_GT(rig.Blocks, blocks + 20);
  EXPECT_TRUE(rig.At("shpSMeterGrid(1)").Visible());
  EXPECT_NE(rig.Text("lblStatsVal(0)"), "");
  EXPECT_GT(rig.Loudness(), 50.0);
  rig.Click("optPwr(1)");
  rig.Click("optPwr(2)");
  EXPECT_EQ(rig.Closed, 1);
}

TEST_F(FrmMainRadio, AClickWhileThePowerIsSwitchedIsCarriedOutAfterwards) {
  const auto agrees = [this](bool on) {
    EXPECT_EQ(rig.Frame().IsOn(), on);
    EXPECT_EQ(rig.Frame().Radio().SoundCard().InAction, on);
    EXPECT_EQ(rig.Text("optPwr(0)"), on ? "1" : "0");
    EXPECT_EQ(rig.At("optPwr(1)").BackColour(), on ? 0x0000FFU : 0x0000C0U);
    EXPECT_EQ(rig.At("optPwr(2)").Enabled(), !on);
  };
  rig.Queue.Post([this] { rig.Click("optPwr(0)"); });  // falls into the yields of switching off
  rig.Click("optPwr(1)");
  agrees(true);
  rig.Click("optPwr(1)");
  rig.Frame().Radio().SoundCard().ReleaseDevices();
  rig.Queue.Post([this] { rig.Click("optPwr(1)"); });  // and into those of opening the devices
  rig.Click("optPwr(0)");
  agrees(false);
  rig.Click("optPwr(0)");
  agrees(true);
  EXPECT_EQ(rig.Closed, 0);
}

TEST(FrmMainPower, TheTitleBarGoesWithThePowerWhereThatIsWanted) {
  for (const bool wanted : {false, true}) {
    FrameRig rig(std::string("[frmMain]\nFormCaptionOffOnPwrOn=") + (wanted ? "True\n" : "False\n"));
    ASSERT_TRUE(rig.Start());
    std::vector<bool> shown;
    rig.Frame().OnCaption = [&](bool is) { shown.push_back(is); };
    rig.Click("optPwr(0)");
    rig.Click("optPwr(1)");
    EXPECT_EQ(shown, wanted ? (std::vector<bool>{false, true}) : std::vector<bool>{});
    EXPECT_FALSE(rig.Frame().CaptionRemoved());
  }
}

TEST(FrmMainPower, AWindowOfARadioThatStartsByItselfCanAskForItsTitleBar) {
  FrameRig rig("[frmMain]\nFormCaptionOffOnPwrOn=True\nAutoStartSDR=True\n");
  ASSERT_TRUE(rig.Start());
  EXPECT_TRUE(rig.Frame().CaptionRemoved());
}

TEST_F(FrmMainRadio, EachBlockIsFollowedByOneRoundOfHousekeeping) {
  int rounds = 0;
  rig.Frame().Radio().OnHousekept = [&](double) { ++rounds; };
  const std::int64_t blocks = rig.Blocks;
  rig.Run(5.0);
  EXPECT_GT(rig.Blocks - blocks, 110);
  EXPECT_NEAR(rounds, static_cast<double>(rig.Blocks - blocks), 1.0);
}

TEST_F(FrmMainRadio, EveryModeAndFilterHasItsAudio) {
  for (int mode = 0; mode < DemodMode::Count; ++mode) {
    rig.Click(IndexedName("optMode", mode));
    for (int filter = 0; filter < FilterModeCount; ++filter) {
      rig.Click(IndexedName("optFilter", filter));
      const std::int64_t blocks = rig.Blocks;
      rig.Run(0.3);
      const PublicVars& vars = rig.Vars();
      EXPECT_EQ(vars.CurrentDemodMode, mode);
      EXPECT_EQ(vars.CurrentFilterMode, filter);
      EXPECT_EQ(vars.FilterHi, vars.FilterSettings[static_cast<std::size_t>(filter)].CurrentHi);
      EXPECT_FALSE(vars.FiltersDirty) << "housekeeping has not rebuilt the filters";
      EXPECT_GE(rig.Blocks, blocks + 6);
    }
  }
}

TEST_F(FrmMainRadio, TheFilterTakesAToneOutAndTheSidebandIsTheRightOne) {
  const double open = rig.Tone(1300.0);
  ASSERT_GT(open, 20.0);
  rig.Click("optFilter(1)");  // 200 to 600 Hz
  rig.Run(1.5);
  EXPECT_LT(rig.Tone(1300.0), open / 100.0);
  EXPECT_GT(rig.Tone(500.0), 10.0);
  // The talker's sideband lies below 7100 kHz.
  rig.Frame().Radio().VFO().SetTunedFrequency(71000000);
  rig.Click("optFilter(2)");
  rig.Click("optMode(2)");
  rig.Run(1.5);
  const double lower = rig.Tone(800.0);
  rig.Click("optMode(1)");
  rig.Run(1.5);
  EXPECT_GT(lower, 50.0);
  EXPECT_LT(rig.Tone(800.0), lower / 100.0);
  rig.Set("chkTuneLo", "1");
  rig.Click("optMode(2)");
  rig.Run(1.5);
  EXPECT_EQ(rig.Oscillator(), 379000000);
}

TEST_F(FrmMainRadio, TheNotchTakesTheHeterodyneOutByHandAndByItself) {
  const double before = rig.Tone(1300.0), wanted = rig.Tone(500.0);
  ASSERT_GT(before, 50.0);
  rig.Click("chkNotchOn");
  rig.Set("sldNotch", "1300");
  rig.Run(2.0);
  EXPECT_LT(rig.Tone(1300.0), before / 100.0) << "40 dB";
  EXPECT_NEAR(rig.Tone(500.0), wanted, 0.1 * wanted);

  rig.Set("sldNotch", "3500");
  rig.Run(2.0);
  EXPECT_NEAR(rig.Tone(1300.0), before, 0.1 * before);
  rig.Click("optNotch(1)");
  EXPECT_EQ(rig.Text("chkNotchAuto"), "1");
  rig.Run(6.0);
  EXPECT_NEAR(rig.Vars().PeakFrequency, 1300, 40);
  EXPECT_LT(rig.Tone(1300.0), before / 100.0) << "40 dB";
  EXPECT_NEAR(ParseDouble(rig.Text("lblNotch")).value_or(0.0), 1300.0, 40.0);

  rig.Click("optNotch(0)");
  rig.Set("sldNotch", "1300");
  rig.Click("chkNotchMirror");
  rig.Run(2.0);
  EXPECT_GT(rig.Tone(1300.0), before / 3.0);
  EXPECT_LT(rig.Tone(500.0), wanted / 10.0);
  rig.Click("chkNotchOn");
  rig.Run(2.0);
  EXPECT_NEAR(rig.Tone(500.0), wanted, 0.1 * wanted);
}

TEST_F(FrmMainRadio, AGCLevelsAndTheVolumeActsOnTheCard) {
  const double loud = rig.Loudness();
  rig.Click("optAGC(1)");
  rig.Run(6.0);
  EXPECT_NE(rig.Vars().AGCMeterGain, 1.0F);
  const double levelled = rig.Loudness();
  EXPECT_GT(levelled, 5.0 * loud);
  EXPECT_LT(*std::max_element(rig.Heard.begin(), rig.Heard.end()), 32767);
  rig.Set("sldOutVolume", "-2000");
  rig.Run(0.2);
  EXPECT_EQ(rig.Attenuation, -2000);
  EXPECT_EQ(rig.Text("dialOutVol"), "-2000");
  rig.At("lblOutVol").MouseDown({.Button = MouseButton::Right});
  EXPECT_EQ(rig.Text("sldOutVolume"), "0");
  rig.Click("optAGC(3)");
  EXPECT_EQ(rig.Vars().AGCMode, AGCPreset::Slow);
  rig.Click("chkAGC");
  rig.Click("optAGC(1)");
  EXPECT_EQ(rig.Text("optAGC(3)"), "1");  // off: the presets stand
  EXPECT_EQ(rig.Vars().AGCMode, AGCPreset::Slow);
}

TEST_F(FrmMainRadio, MuteSilencesTheCardUntilTheVolumeIsTurned) {
  rig.Set("sldOutVolume", "-2000");
  const auto hears = [this](std::int32_t attenuation) {
    rig.Run(0.2);
    EXPECT_EQ(rig.Attenuation, attenuation);
    EXPECT_EQ(rig.Frame().Radio().SoundCard().OutputAttenuation(), attenuation / 100);
  };
  hears(-2000);
  rig.Click("chkMute");
  hears(-10000);
  EXPECT_EQ(rig.Text("lblOutVol"), "-26.0");
  EXPECT_TRUE(rig.At("lblOutVol").Faded());
  rig.At("frmMain").KeyDown(Key{'M', {}});
  hears(-2000);
  rig.At("frmMain").KeyDown(Key{'M', {}});
  hears(-10000);
  rig.Wheel("lblOutVol", 2);
  EXPECT_EQ(rig.Text("chkMute"), "0");
  hears(-1900);
}

TEST_F(FrmMainRadio, TheBlankerCutsAtItsThreshold) {
  const double before = rig.Tone(1300.0);
  rig.Click("chkNB");
  rig.Set("sldNB", "10000");
  rig.Run(1.0);
  EXPECT_TRUE(rig.Vars().NBOn);
  EXPECT_NEAR(rig.Vars().NBThreshold, 0.2F, 0.001F);
  EXPECT_GT(rig.Tone(1300.0), before / 2.0);  // the strongest lines stay
  rig.Click("chkNB");
  rig.Run(1.5);
  EXPECT_NEAR(rig.Tone(1300.0), before, 0.1 * before);
}

TEST_F(FrmMainRadio, HousekeepingShowsRebuildsThenTracksOncePerBlock) {
  rig.Set("chkPerfStatsOn", "1");
  rig.Run(3.0);
  EXPECT_NE(rig.Text("lblStatsVal(0)"), "0");
  std::vector<std::string> calls;
  LiveRadio& radio = rig.Frame().Radio();
  PublicVars& vars = rig.Vars();
  const auto before = radio.BeforeFilters;
  radio.BeforeFilters = [&] {
    calls.push_back(vars.FiltersDirty ? "dirty" : "clean");
    before();
    radio.Housekeeping();  // not entered again
  };
  const auto after = radio.AfterFilters;
  radio.AfterFilters = [&](bool moved) {
    calls.push_back(vars.FiltersDirty ? "still dirty" : "rebuilt");
    after(moved);
  };
  const std::int64_t blocks = rig.Blocks;
  vars.FiltersDirty = true;
  rig.Run(0.1);
  const auto rounds = static_cast<std::size_t>(rig.Blocks - blocks);
  ASSERT_GE(rounds, 2U);
  EXPECT_NEAR(static_cast<double>(calls.size()), 2.0 * static_cast<double>(rounds), 2.0);
  ASSERT_GE(calls.size(), 4U);
  EXPECT_EQ(calls[0], "dirty");
  EXPECT_EQ(calls[1], "rebuilt");
  EXPECT_EQ(calls[2], "clean");
  const std::string frequency = rig.Text("lblStatsVal(3)");
  rig.VFO().SetTunedFrequency(60000000);
  rig.Run(0.1);
  EXPECT_EQ(rig.Text("lblStatsVal(3)"), "51 000 000 Hz");
  radio.BeforeFilters = [] {};
  radio.AfterFilters = [](bool) {};
}

TEST_F(FrmMainRadio, AnUnseenPanelFollowsAtItsLeisureAndIsRightWhenItComesBack) {
  rig.Frame().SetSeen(false);
  rig.Run(0.6);
  rig.VFO().SetTunedFrequency(71000000);
  rig.Run(0.1);
  EXPECT_EQ(rig.Digits(), "072050000");
  rig.Run(0.5);
  EXPECT_EQ(rig.Digits(), "071000000");
  rig.VFO().SetTunedFrequency(72050000);
  rig.Frame().SetSeen(true);
  rig.Run(0.06);
  EXPECT_EQ(rig.Digits(), "072050000");
}

TEST_F(FrmMainRadio, AStalledSoundServerStopsNothingElse) {
  rig.Sound.SetStalled(true);
  const std::int64_t blocks = rig.Blocks;
  rig.Run(5.0);
  EXPECT_EQ(rig.Blocks, blocks);
  rig.Wheel("lbl7Seg(4)", 1);
  rig.Run(0.1);
  EXPECT_EQ(rig.Digits(), "072060000");
  rig.Wheel("lbl7Seg(4)", -1);
  rig.Sound.SetStalled(false);
  rig.Run(1.5);
  EXPECT_GT(rig.Blocks, blocks + 20);
  EXPECT_GT(rig.Loudness(), 50.0);
  // A thread that stood still for two seconds: late blocks are lost, the rest comes.
  rig.Clock.Advance(std::chrono::seconds(2));
  rig.Run(1.5);
  EXPECT_GT(rig.Loudness(), 50.0);
}

// As a memory or a remote client does it.
TEST_F(FrmMainRadio, TheOscillatorFollowsTheReceiverToTheOtherSide) {
  rig.Frame().Radio().Rx.SetLowSideLO(true);
  EXPECT_EQ(rig.Text("chkTuneLo"), "1");
  rig.Run(0.1);
  EXPECT_EQ(rig.Oscillator(), 450000000 - 72050000);
}

TEST_F(FrmMainRadio, ADeviceThatVanishesSwitchesOffAndIsOpenedAnewWhenItIsBack) {
  rig.Sound.Unplug("Line In");
  EXPECT_FALSE(rig.Frame().IsOn());
  EXPECT_EQ(rig.Text("optPwr(1)"), "1");
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  EXPECT_EQ(rig.Boxes.Messages[0].Text, "\"Line In\" has vanished");
  rig.Wheel("lbl7Seg(4)", 1);
  rig.Run(0.5);
  EXPECT_EQ(rig.Digits(), "072060000");
  rig.Wheel("lbl7Seg(4)", -1);
  rig.Click("optPwr(0)");  // still gone
  EXPECT_FALSE(rig.Frame().IsOn());
  EXPECT_EQ(rig.Boxes.Messages.size(), 2U);
  EXPECT_TRUE(rig.At("optPwr(2)").Enabled());
  rig.Sound.Plug("Line In");
  rig.Click("optPwr(0)");
  EXPECT_TRUE(rig.Frame().IsOn());
  rig.Run(1.5);
  EXPECT_GT(rig.Loudness(), 50.0);
}

TEST_F(FrmMainRadio, ADeviceThatWentWhileThePowerWasOffIsTold) {
  rig.Click("optPwr(1)");
  rig.Sound.Unplug("Loudspeaker");
  rig.Sound.Unplug("Line In");
  EXPECT_TRUE(rig.Boxes.Messages.empty());
  rig.Click("optPwr(0)");
  EXPECT_FALSE(rig.Frame().IsOn());
  EXPECT_EQ(rig.Boxes.Messages.size(), 1U);
  rig.Sound.Plug("Loudspeaker");
  rig.Sound.Plug("Line In");
  rig.Click("optPwr(0)");
  rig.Run(1.5);
  EXPECT_TRUE(rig.Frame().IsOn());
  EXPECT_GT(rig.Loudness(), 50.0);
}

}  // namespace
}  // namespace quorl::test
