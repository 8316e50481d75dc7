// What is stored when, and what comes back after a restart.
#include <gtest/gtest.h>

#include "core/FrameRig.h"

namespace quorl::test {
namespace {

TEST(FrmMainSettings, SoundStopsThenSettingsThenTheVFOThenOneWrite) {
  FrameRig rig;
  ASSERT_TRUE(rig.Start());
  rig.Click("optPwr(0)");
  rig.Run(1.0);
  rig.Wheel("lbl7Seg(3)", 1);
  ASSERT_EQ(rig.Storage.Writes, 0);
  const std::int64_t blocks = rig.Sound.Statistics().CapturedBlocks;
  rig.Stop();
  EXPECT_EQ(rig.Storage.Writes, 1);
  rig.Run(1.0);
  EXPECT_EQ(rig.Sound.Statistics().CapturedBlocks, blocks);
  const std::string text = rig.StoredText();
  for (const char* line :
       {"\nLastTunedFrequency=72150000\n", "\nTunedFrequency=72150000\n", "\nAGCMode=2\n",
        "\nIFFilterSettings(5).FilterSettings(2).CurrentLo=", "\nStandardDisplay=True\n"}) {
    EXPECT_NE(text.find(line), std::string::npos) << line;
  }
  EXPECT_TRUE(rig.Boxes.Messages.empty());
}

TEST(FrmMainSettings, WhatTheTableReadsBackIsThereAgain) {
  FrameRig rig(
      "[frmMain]\nSDRTuningColour=1193046\nMouseOverS.HiLiteBorder=True\nDRM.PathToDream=/opt/dream\n"
      "KBDSupport=True\nNoiseFloor=loud\nShaftAutoRate=nonsense\nLastOutputVolume=99999\n");
  ASSERT_TRUE(rig.Start());
  EXPECT_EQ(rig.Text("picSmeter"), "Meter Backoff=20.00 dB");  // a broken value is no value
  EXPECT_EQ(rig.Text("sldOutVolume"), "8000");
  EXPECT_EQ(rig.At("lblBFO").ForeColour(), 1193046U);
  rig.Set("chkTuneLo", "1");
  rig.Wheel("lbl7Seg(6)", 3);
  rig.Click("optDisplaySize(3)");
  rig.Set("chkPerfStatsOn", "1");
  rig.Set("sldOutVolume", "-1500");
  rig.Click("chkMute");
  rig.Frame().NoteWindowSize(1200, 760);
  rig.Click("cmdCalibrateSMeter");
  rig.Click("optPwr(0)");
  rig.Run(3.0);
  rig.Click("cmdCalibrateSMeter");
  rig.Run(1.0);
  rig.Frame().Radio().SoundCard().CurrentPlaybackDevice = 2;
  rig.VFO().AutoUpdate = true;
  const std::string floor = rig.Text("picSmeter");
  ASSERT_NE(floor, "Meter Backoff=20.00 dB");

  rig.Restart();
  EXPECT_FALSE(rig.Frame().IsOn());
  EXPECT_EQ(rig.Text("chkTuneLo"), "1");
  EXPECT_TRUE(rig.Vars().LowSideLO);
  EXPECT_EQ(rig.Oscillator(), 377949700);
  rig.Run(0.1);
  EXPECT_EQ(rig.Digits(), "072050300");
  EXPECT_EQ(rig.Text("lblTuningRate"), "10 Hz");
  EXPECT_EQ(rig.Text("optDisplaySize(3)"), "1");
  EXPECT_EQ(rig.Text("chkPerfStatsOn"), "1");
  EXPECT_TRUE(rig.Vars().PerfStatsOn);
  EXPECT_EQ(rig.Text("picSmeter"), floor);
  EXPECT_EQ(rig.Text("sldOutVolume"), "-1500");
  EXPECT_EQ(rig.Vars().OutputAttenuation, -1500.0F);
  EXPECT_EQ(rig.Text("chkMute"), "0");
  EXPECT_EQ(rig.Frame().WindowWidth(), 1200);
  EXPECT_EQ(rig.Frame().WindowHeight(), 760);
  EXPECT_EQ(rig.Frame().Radio().SoundCard().CurrentPlaybackDevice, 2);
  EXPECT_TRUE(rig.VFO().AutoUpdate);
  EXPECT_EQ(rig.At("lblBFO").ForeColour(), 1193046U);
  EXPECT_TRUE(rig.Frame().Scrollables().HiLiteBorder);
  EXPECT_EQ(rig.Store().GetSetting("frmMain", "DRM.PathToDream", ""), "/opt/dream");
  EXPECT_TRUE(rig.Frame().Tuning().KBDSupport);

  rig.Set("chkTuneLo", "0");
  rig.Restart();
  EXPECT_EQ(rig.Text("chkTuneLo"), "0");
  EXPECT_FALSE(rig.Vars().LowSideLO);
  EXPECT_EQ(rig.Oscillator(), 522050300);
}

TEST(FrmMainSettings, DefaultsFillWhatAStoredFileLacks) {
  FrameRig rig;
  rig.Options.Defaults = [](SettingsStore& store) {
    if (store.GetSetting("VFO1.DRT1", "TunedFrequency", "").empty()) {
      ADD_FAILURE() << "not read yet";
    }
    store.SaveSetting("frmMain", "AutoStartSDR", "True");
  };
  ASSERT_TRUE(rig.Start());
  EXPECT_TRUE(rig.Frame().IsOn());
}

TEST(FrmMainSettings, WhatTheWindowTellsWhileItOpensIsNotReadOver) {
  FrameRig rig("[frmMain]\nWindowWidth=1200\nWindowHeight=760\nSDRModelNo=0\nEnableShaftEncoder=True\n");
  rig.OnForm = [&] {
    EXPECT_EQ(rig.Frame().WindowWidth(), 1200);
    rig.Frame().NoteWindowSize(1100, 720);  // the screen is a smaller one by now
  };
  ASSERT_TRUE(rig.Start());
  EXPECT_EQ(rig.Frame().WindowWidth(), 1100);
  EXPECT_TRUE(rig.Frame().Tuning().ShaftEnabled);
  rig.Frame().Tuning().ShaftEnabled = false;
  rig.Stop();
  EXPECT_NE(rig.StoredText().find("\nWindowHeight=720\n"), std::string::npos);
  EXPECT_NE(rig.StoredText().find("\nEnableShaftEncoder=False\n"), std::string::npos);
}

TEST(FrmMainSettings, ThePanelsRefreshOptionWinsOverTheVFOs) {
  FrameRig rig("AutoUpdate=True\n[frmMain]\nAutoDDSRefresh=False\n");
  ASSERT_TRUE(rig.Start());
  EXPECT_FALSE(rig.VFO().AutoUpdate);
}

TEST(FrmMainSettings, DevicesAreFoundByNameAndADeviceThatIsGoneKeepsItsPlace) {
  FrameRig rig(
      "[frmMain]\nCurrentCaptureDevice=1\nCurrentCaptureDeviceName=Microphone\n"
      "CurrentPlaybackDevice=2\nCurrentPlaybackDeviceName=USB headset\n");
  ASSERT_TRUE(rig.Start());
  EXPECT_EQ(rig.Frame().Radio().SoundCard().CurrentCaptureDevice, 2);
  rig.Click("optPwr(0)");
  EXPECT_FALSE(rig.Frame().IsOn());  // no other loudspeaker is taken in its place
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  const auto isReason = [](const std::string& line) {
    return line.find("playback device 3 \"USB headset\", 48000 Hz") != std::string::npos;
  };
  EXPECT_EQ(std::count_if(rig.Log->Lines().begin(), rig.Log->Lines().end(), isReason), 1);
  rig.Restart();
  EXPECT_EQ(rig.Store().GetSetting("frmMain", "CurrentPlaybackDeviceName", ""), "USB headset");
  rig.Sound.AddPlaybackDevice("USB headset", nullptr);
  rig.Click("optPwr(0)");
  EXPECT_TRUE(rig.Frame().IsOn());
  EXPECT_EQ(rig.Frame().Radio().SoundCard().CurrentPlaybackDevice, 3);
}

TEST(FrmMainSettings, APowerCutCostsAMinuteAtMost) {
  FrameRig rig;
  ASSERT_TRUE(rig.Start());
  rig.Run(59.0);
  EXPECT_EQ(rig.Storage.Writes, 0);
  rig.Wheel("lbl7Seg(4)", 1);
  rig.Run(2.0);
  EXPECT_EQ(rig.Storage.Writes, 1);
  EXPECT_NE(rig.StoredText().find("\nTunedFrequency=72060000\n"), std::string::npos);
  rig.Run(180.0);
  EXPECT_EQ(rig.Storage.Writes, 1);  // nothing has changed
  rig.Click("optPwr(0)");
  rig.Wheel("lbl7Seg(4)", 1);
  rig.Click("optPwr(1)");
  EXPECT_EQ(rig.Storage.Writes, 2);
  EXPECT_NE(rig.StoredText().find("\nTunedFrequency=72070000\n"), std::string::npos);
}

TEST(FrmMainSettings, ADiskThatStallsHoldsUpNeitherSoundNorTheLastSave) {
  FrameRig rig("[frmMain]\nAutoStartSDR=True\n");
  ASSERT_TRUE(rig.Start());
  rig.Run(0.1);  // the recorder has asked for the disk's space
  rig.Worker.Stall();
  rig.Wheel("lbl7Seg(4)", 1);
  const std::int64_t before = rig.Blocks;
  rig.Run(130.0);
  EXPECT_GE(rig.Blocks - before, 130 * 48000 / 2048 - 1);
  EXPECT_EQ(rig.Storage.Writes, 0);
  EXPECT_EQ(rig.Worker.Waiting(), 2);  // settings and plan, once and not each minute
  rig.Wheel("lbl7Seg(4)", 1);
  rig.Worker.Resume();
  rig.Stop();
  EXPECT_NE(rig.StoredText().find("\nTunedFrequency=72070000\n"), std::string::npos);
}

TEST(FrmMainSettings, ASaveWaitsForAStepThatIsBeingSent) {
  FrameRig rig;
  ASSERT_TRUE(rig.Start());
  rig.VFO().AutoUpdate = true;
  rig.Click("optPwr(0)");
  rig.Queue.Post([&] { rig.Click("optPwr(1)"); });  // falls into the frame to the chip
  rig.Wheel("lbl7Seg(4)", 1);
  EXPECT_EQ(rig.Storage.Writes, 0);
  rig.Run(0.2);
  EXPECT_EQ(rig.Storage.Writes, 1);
  EXPECT_NE(rig.StoredText().find("\nAutoUpdate=True\n"), std::string::npos);
  EXPECT_NE(rig.StoredText().find("\nAutoDDSRefresh=True\n"), std::string::npos);
}

}  // namespace
}  // namespace quorl::test
