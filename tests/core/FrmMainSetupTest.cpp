// Level meter, test tone and the page of the first start over the whole radio.
#include <gtest/gtest.h>

#include "core/FrameRig.h"

namespace quorl::test {
namespace {

class FrmMainSetup : public testing::Test, public FrameRig {
 protected:
  using FrameRig::Run;

  FrmMainSetup() { KeepAudio = false; }
  // The configuration, open at its Sound page.
  void OpenSound() {
    ASSERT_TRUE(Start());
    Click("cmdConfig");
    Press("frmConfig.TabStrip1", 2);
  }
  // Who captures, by the blocks of a second: the radio's are a quarter of the meter's.
  std::string Captures() {
    const auto before = Sound.Statistics().CapturedBlocks;
    Run(1);
    const auto blocks = Sound.Statistics().CapturedBlocks - before;
    return blocks < 3 ? "nobody" : blocks < 12 ? "meter" : blocks < 26 ? "radio" : "both";
  }
  std::string Level() { return Text("frmConfig.lblLevel(0)"); }
};

TEST_F(FrmMainSetup, TheLevelIsThatOfTheChosenInputAndCostsNothingUnseen) {
  OpenSound();
  Run(1);
  EXPECT_NE(Level(), "");
  EXPECT_EQ(Captures(), "meter") << "the radio is off";
  Press("optPwr", 0);
  EXPECT_EQ(Captures(), "radio") << "its own blocks are enough";
  EXPECT_NE(Level(), "");
  EXPECT_GT(Blocks, 0);
  Set("frmConfig.cboCapDevices", "Microphone");
  EXPECT_EQ(Captures(), "both");
  Click("frmConfig.cmdApply");
  Run(1);
  EXPECT_EQ(Captures(), "radio") << "it has taken the other one";
  EXPECT_NE(Level(), "");
  Set("frmConfig.cboCapDevices", "Line In");
  Run(1);
  Press("frmConfig.TabStrip1", 0);
  EXPECT_EQ(Captures(), "radio");
  EXPECT_EQ(Level(), "");
  Press("frmConfig.TabStrip1", 2);
  Run(1);
  Click("frmConfig.cmdCancel");
  Press("optPwr", 1);
  EXPECT_EQ(Captures(), "nobody");
  Press("optPwr", 0);
  EXPECT_EQ(Captures(), "radio") << "what the meter had let go of is opened anew";
}

TEST_F(FrmMainSetup, ADeviceOfTheMeterThatVanishesLeavesTheRadioPlaying) {
  OpenSound();
  Press("optPwr", 0);
  Set("frmConfig.cboCapDevices", "Microphone");
  Run(1);
  Sound.Unplug("Microphone");
  Run(1);
  EXPECT_TRUE(Frame().IsOn());
  EXPECT_TRUE(Boxes.Messages.empty());
  EXPECT_EQ(Text("frmConfig.lblLevelHint"), "\"Microphone\" is not connected");
  Sound.Unplug("Line In");
  Run(1);
  EXPECT_FALSE(Frame().IsOn());
  EXPECT_EQ(Boxes.Messages.size(), 1U);
}

TEST_F(FrmMainSetup, WhileADecoderHasTheCardNothingOfItIsOpened) {
  Storage.Put(kSettings, StoredText() + "[frmMain]\nDRM.CloseSoundcardOnDRM=True\n");
  OpenSound();
  Press("optPwr", 0);
  Press("optMode", DemodMode::DRM);
  Run(1);
  EXPECT_EQ(Captures(), "nobody");
  EXPECT_EQ(Text("frmConfig.lblLevelHint"), "The decoder has the sound card.");
  Press("optMode", DemodMode::AM);
  Run(5);
  EXPECT_EQ(Captures(), "radio");
  EXPECT_NE(Level(), "");
}

TEST_F(FrmMainSetup, TheFirstStartFillsTheFieldsForApply) {
  OpenSound();
  Press("optPwr", 0);
  Press("frmConfig.TabStrip1", 0);
  Click("frmConfig.cmdFirstStart");
  ASSERT_TRUE(At("frmFirstStart").Visible());
  EXPECT_EQ(Text("frmFirstStart.optBoard(0)"), "1") << "what the radio has";
  Press("frmFirstStart.optBoard", 1);
  Press("frmFirstStart.optIF", 0);
  Set("frmFirstStart.txtPortAddress", "&H278");
  Set("frmFirstStart.cboCapDevices", "Microphone");
  Set("frmFirstStart.cboPlayDevices", "Headset");
  Run(1);
  EXPECT_NE(Text("frmFirstStart.lblLevel(0)"), "");
  Click("frmFirstStart.cmdStart");
  EXPECT_FALSE(At("frmFirstStart").Visible());
  EXPECT_EQ(Text("frmConfig.cboSDRModel"), "ELEKTOR DRM");
  EXPECT_EQ(Text("frmConfig.optIF(0)"), "1");
  EXPECT_EQ(Text("frmConfig.txtPortAddress"), "&H278");
  EXPECT_EQ(Text("frmConfig.txtDDSClkin"), "50 000 000");
  EXPECT_EQ(Text("frmConfig.cboCapDevices"), "Microphone");
  EXPECT_EQ(Vars().SDRModelNo, 0) << "nothing acts before Apply";
  EXPECT_EQ(Captures(), "radio");
  Click("frmConfig.cmdApply");
  Run(1);
  EXPECT_EQ(Vars().SDRModelNo, 1);
  EXPECT_EQ(Frame().Radio().SoundCard().CurrentCaptureDevice, 2);
  EXPECT_EQ(Frame().Radio().SoundCard().CurrentPlaybackDevice, 2);
  EXPECT_EQ(Frame().Radio().Tuning().ParallelIF().PortAddress, 0x278);
  EXPECT_TRUE(Frame().IsOn());
  // None is for the next start; closing the configuration closes the page.
  Click("frmConfig.cmdFirstStart");
  Press("frmFirstStart.optBoard", 4);
  Click("frmFirstStart.cmdStart");
  EXPECT_EQ(Store().GetSetting("frmMain", "Board", ""), "none");
  EXPECT_EQ(Text("frmConfig.cboSDRModel"), "ELEKTOR DRM");
  Click("frmConfig.cmdFirstStart");
  Click("frmConfig.cmdCancel");
  EXPECT_FALSE(At("frmFirstStart").Visible());
}

TEST_F(FrmMainSetup, WhoeverRunsTheProgramMayAskInItsPlace) {
  OpenSound();
  int asked = 0;
  Frame().OnFirstStart = [&asked] { return ++asked > 0; };
  Click("frmConfig.cmdFirstStart");
  EXPECT_EQ(asked, 1);
  EXPECT_FALSE(At("frmFirstStart").Visible());
}

TEST_F(FrmMainSetup, TheAboutPageLeadsToTheGuide) {
  OpenSound();
  int read = 0;
  Frame().OnGuide = [&read] { ++read; };
  Click("frmConfig.cmdGuide");
  EXPECT_EQ(read, 1);
}

}  // namespace
}  // namespace quorl::test
