// What the fields of the configuration show, and what Apply refuses, marks and keeps.
#include "core/ConfigRig.h"

namespace quorl::test {
namespace {

class FrmMainConfig : public ConfigRig {};

TEST_F(FrmMainConfig, FieldsShowTheRadioAndFollowItUntilTheyAreChanged) {
  Open("[VFO1.DRT1]\nHiSideLo=False\n[DDSParallelIF]\nPortAddress=632\n[frmMain]\nAutoTrackPresets=False\n");
  EXPECT_EQ(Field("cboSDRModel"), "DRT1");
  EXPECT_EQ(Field("txtIFFrequency"), "45 000 000");
  EXPECT_EQ(Field("txtDDSClkin"), "360 096 000");
  EXPECT_EQ(Field("chkLoLO"), "1");
  EXPECT_EQ(Field("optIF(1)"), "1");
  EXPECT_EQ(Field("txtPortAddress"), "&H278");
  EXPECT_EQ(Field("txtBitPeriod"), "0.0000043403");
  EXPECT_EQ(Field("cboCapDevices"), "Line In");
  EXPECT_EQ(Field("cboPlayDevices"), "Loudspeaker");
  EXPECT_EQ(Field("chkAutoTrackPresets"), "0");
  EXPECT_FALSE(At("frmConfig.chkUseSPL").Enabled());
  EXPECT_TRUE(At("frmConfig.frConfigs(0)").Visible());
  EXPECT_FALSE(At("frmConfig.frConfigs(1)").Visible());

  Enter("txtIFFrequency", "44 000 000");
  Click("chkTuneLo");
  VFO().SetIFFrequency(45001000);
  Run(0.5);
  EXPECT_EQ(Field("chkLoLO"), "0") << "an untouched field follows";
  EXPECT_EQ(Field("txtIFFrequency"), "44 000 000") << "what was typed stays";
  Click("frmConfig.cmdCancel");
  EXPECT_FALSE(At("frmConfig").Visible());
  Click("cmdConfig");
  EXPECT_EQ(Field("txtIFFrequency"), "45 001 000");
  // An untouched side is not the radio's of before.
  Click("chkTuneLo");
  Apply();
  EXPECT_EQ(Text("chkTuneLo"), "1");
}

TEST_F(FrmMainConfig, AnotherBoardComesWithItsOwnValuesAndTheTunedFrequencyStays) {
  Open("[VFO1.ElektorDRM]\nIFFrequency=456000\nTunedFrequency=60000000\n");
  Enter("cboSDRModel", "ELEKTOR DRM");
  EXPECT_EQ(Field("txtIFFrequency"), "456 000");
  EXPECT_EQ(Field("txtDDSClkin"), "50 000 000");
  EXPECT_EQ(Oscillator(), 522050000) << "nothing acts before Apply";
  Apply();
  EXPECT_EQ(Vars().SDRModelNo, 1);
  EXPECT_EQ(Digits(), "072050000");
  EXPECT_NEAR(static_cast<double>(Oscillator()), 72050000 + 4560000, 1);
  EXPECT_EQ(Stored("frmMain", "SDRModelNo"), "1") << "stored at once";
  EXPECT_TRUE(Boxes.Messages.empty());
}

TEST_F(FrmMainConfig, TwoBoxesEndApplyAndWhatCameBeforeStaysApplied) {
  Open();
  Enter("cboSDRModel", "IQ Xtal RX");
  Enter("txtIFFrequency", "-1");
  Enter("chkLoLO", "1");
  Apply();
  ASSERT_EQ(Boxes.Messages.size(), 1U);
  EXPECT_EQ(Boxes.Messages[0].Text, "IF Frequency must be greater than 0.4 MHZ");
  EXPECT_EQ(Boxes.Messages[0].Title, "QUORLSDR CLKIN - ERROR");
  EXPECT_EQ(Vars().SDRModelNo, 2);
  EXPECT_EQ(Stored("frmMain", "SDRModelNo"), "2");
  EXPECT_TRUE(VFO().HiSideLO);
  EXPECT_NE(FaultOf("txtIFFrequency"), "");

  Enter("txtIFFrequency", "0");
  Enter("txtDDSClkin", "1.0");
  Enter("cboPlayDevices", "Headset");
  Click("frmConfig.cmdOK");
  ASSERT_EQ(Boxes.Messages.size(), 2U) << "the marked field was told by its box";
  EXPECT_EQ(Boxes.Messages[1].Text, "CLKIN must be greater than 1.0000 MHZ");
  EXPECT_EQ(Boxes.Messages[1].Title, "QUORLSDR CLKIN - ERROR");
  EXPECT_EQ(VFO().IFFrequency(), 0);
  EXPECT_EQ(Text("chkTuneLo"), "1");
  EXPECT_EQ(Frame().Radio().Tuning().Driver()->ClkIn(), 360096000);
  EXPECT_EQ(Frame().Radio().SoundCard().CurrentPlaybackDevice, 1);
  EXPECT_FALSE(At("frmConfig").Visible()) << "OK closes also after a refusal";
}

TEST_F(FrmMainConfig, WhatIsNoValueIsMarkedAndTheRestGoesOn) {
  Open("[frmMain]\nSDRModelNo=1\n");
  const auto& tuning = Frame().Radio().Tuning();
  struct Case {
    const char* Field;
    std::vector<const char*> Texts;
  };
  const Case cases[] = {{"txtIFFrequency", {"", "abc", "214748365"}},
                        {"txtDDSClkin", {"", "fast", "429496730"}},
                        {"txtPortAddress", {"", "65536", "&H10000", "-1", "0x", "&HXY", "3.5"}},
                        {"txtParallelPortBitPeriod", {"", "-0.1", "x"}},
                        {"txtBitPeriod", {"", "-1", "1e"}},
                        {"txtSpectrumDisplaySmoothingCount", {"", "0", "25", "2.5"}}};
  for (const Case& each : cases) {
    Click(each.Field == std::string("txtBitPeriod") ? "frmConfig.optIF(1)" : "frmConfig.optIF(0)");
    for (const char* text : each.Texts) {
      const bool flag = Text("frmConfig.chkAutoStartSDR") == "0";
      Enter(each.Field, text);
      Enter("chkAutoStartSDR", flag ? "1" : "0");
      Apply();
      EXPECT_NE(FaultOf(each.Field), "") << each.Field << " '" << text << "'";
      EXPECT_EQ(Field("lblConfigMessage"), FaultOf(each.Field));
      EXPECT_EQ(Stored("frmMain", "AutoStartSDR"), flag ? "True" : "False") << "the rest goes on";
    }
    Click("frmConfig.cmdCancel");
    Click("cmdConfig");
    EXPECT_EQ(FaultOf(each.Field), "");
  }
  EXPECT_TRUE(Boxes.Messages.empty());
  EXPECT_EQ(VFO().IFFrequency(), 455000);
  EXPECT_EQ(tuning.Driver()->ClkIn(), 50000000);

  Enter("txtIFFrequency", "x");
  Apply();
  EXPECT_TRUE(Get<OptionButton>("frmConfig.TabStrip1(0)").Marked());
  EXPECT_FALSE(Get<OptionButton>("frmConfig.TabStrip1(4)").Marked());
  Enter("txtIFFrequency", "xx");
  EXPECT_FALSE(Get<OptionButton>("frmConfig.TabStrip1(0)").Marked()) << "until it is changed";
  Enter("txtDDSClkin", "y");
  EXPECT_EQ(Field("lblConfigMessage"), "");
  Click("frmConfig.cmdOK");
  ASSERT_EQ(Boxes.Messages.size(), 1U) << "one box for all, before OK closes";
  EXPECT_NE(Boxes.Messages[0].Text.find("\"xx\""), std::string::npos);
  EXPECT_NE(Boxes.Messages[0].Text.find("\"y\""), std::string::npos);
  EXPECT_FALSE(At("frmConfig").Visible());
}

TEST_F(FrmMainConfig, NumbersAreReadAsPeopleTypeThem) {
  Open("[frmMain]\nSDRModelNo=1\n");
  Click("frmConfig.optIF(0)");
  for (const char* address : {"&H278", "0x278", "632", " &h278 "}) {
    Enter("txtPortAddress", "888");
    Apply();
    Enter("txtPortAddress", address);
    Enter("txtIFFrequency", "454 000");
    Enter("txtDDSClkin", "49 999 900");
    Apply();
    EXPECT_EQ(Frame().Radio().Tuning().ParallelIF().PortAddress, 632) << address;
    EXPECT_EQ(Field("txtPortAddress"), "&H278");
  }
  EXPECT_EQ(VFO().IFFrequency(), 454000);
  EXPECT_EQ(Frame().Radio().Tuning().Driver()->ClkIn(), 49999900);
  Click("frmConfig.cmdParallelPortDefaults");
  Apply();
  EXPECT_EQ(Frame().Radio().Tuning().ParallelIF().PortAddress, 0x378);
  EXPECT_EQ(Frame().Radio().Tuning().ParallelIF().WaitTime, clsDDSParallelIF::kDefaultWaitTime);
}

TEST_F(FrmMainConfig, AClockThatStaysUntouchedIsNotRoundedAndATooLowOneIsTakenWithAMark) {
  Open();
  const auto clock = [this] { return Frame().Radio().Tuning().Driver()->Clock(); };
  Frame().Radio().Tuning().Driver()->SetClkIn(360096000.25);
  Run(0.5);
  Apply();
  EXPECT_EQ(clock(), 360096000.25);
  EXPECT_EQ(FaultOf("txtDDSClkin"), "");
  Enter("txtDDSClkin", "80 000 000");
  Apply();
  EXPECT_EQ(clock(), 80000000.0);
  EXPECT_NE(FaultOf("txtDDSClkin"), "");
  EXPECT_TRUE(Boxes.Messages.empty());
}

TEST_F(FrmMainConfig, TheBoardOfAnAD9951TakesTheSerialInterfaceOnly) {
  Open();
  for (const char* model : {"DRT1", "IQ Xtal RX", "Real to IQ RX"}) {
    Enter("cboSDRModel", model);
    Click("frmConfig.optIF(0)");
    EXPECT_EQ(Field("optIF(1)"), "1") << model;
    EXPECT_NE(FaultOf("optIF(0)"), "");
    EXPECT_FALSE(At("frmConfig.txtPortAddress").Enabled());
  }
  Enter("cboSDRModel", "ELEKTOR DRM");
  Click("frmConfig.optIF(0)");
  EXPECT_EQ(FaultOf("optIF(0)"), "");
  EXPECT_TRUE(At("frmConfig.txtPortAddress").Enabled());
  EXPECT_FALSE(At("frmConfig.cboComPort").Enabled());
  Apply();
  EXPECT_EQ(VFO().DDSInterfaceType, 1);
  Enter("cboSDRModel", "DRT1");
  EXPECT_EQ(Field("optIF(1)"), "1") << "a board that can't have it lets go of the printer port";
  Apply();
  EXPECT_EQ(Stored("frmMain", "VFO1.IFType"), "0");
  EXPECT_EQ(Oscillator(), 522050000);
}

TEST_F(FrmMainConfig, TheDecodersPageIsTakenWholeAndGoesBackToItsDefaults) {
  Open("[frmMain]\nDRM.PlaybackDevice=Null Sink\nDRM.DreamWindowStyle=7\n");
  EXPECT_EQ(Field("chkDreamCloseOnExit"), "1");
  EXPECT_EQ(Field("optDreamWindow(3)"), "1");
  EXPECT_EQ(Field("cboDRMPlayDevices"), "Null Sink  (not there)");
  Apply();
  EXPECT_EQ(Frame().Decoder().PlaybackDevice, "Null Sink") << "a device that is away is not forgotten";
  EXPECT_EQ(Frame().Dream().DreamWindowStyle, 7);

  for (const char* box :
       {"chkDreamRunOnDRM", "chkMuteAFOnDRM", "chkCloseSoundCardOnDRM", "chkDreamCloseOnModeChange"})
    Enter(box, "1");
  Enter("chkDreamCloseOnExit", "0");
  Click("frmConfig.optDreamWindow(2)");
  Enter("cboDRMPlayDevices", "Headset");
  Boxes.OpenFileAnswers = {"/opt/dream/dream", "/usr/bin/other"};
  Click("frmConfig.cmdFindDREAM");
  Click("frmConfig.cmdFindDREAM");
  ASSERT_EQ(Boxes.OpenFileRequests.size(), 2U);
  EXPECT_EQ(Boxes.OpenFileRequests[0].Title, "Select DREAM executable");
  EXPECT_EQ(Boxes.OpenFileRequests[0].Directory, "/usr/bin");
  EXPECT_EQ(Boxes.OpenFileRequests[1].Directory, "/opt/dream");
  EXPECT_EQ(Boxes.OpenFileRequests[1].Filter.rfind("Executables (*.exe)|*.exe|", 0), 0U);
  Enter("txtDreamProgArgs", "-f %CurFreq%");
  Apply();
  const modDream& dream = Frame().Dream();
  EXPECT_TRUE(dream.RunDreamOnDRM && dream.DreamCloseOnModeChange && !dream.DreamCloseOnExit);
  EXPECT_TRUE(Frame().Decoder().CloseSoundcardOnDRM && Frame().Radio().Rx.MuteAFOnDRM);
  EXPECT_EQ(dream.DreamWindowStyle, 2);
  EXPECT_EQ(dream.PathToDream, "/usr/bin/other");
  EXPECT_EQ(dream.DreamProgArgs, "-f %CurFreq%");
  EXPECT_EQ(Stored("frmMain", "DRM.PlaybackDevice"), "Headset");

  Click("frmConfig.cmdDreamDefault");
  Apply();
  EXPECT_TRUE(dream.DreamCloseOnExit && !dream.RunDreamOnDRM && !dream.DreamCloseOnModeChange);
  EXPECT_EQ(dream.DreamWindowStyle, 1);
  EXPECT_EQ(dream.PathToDream, "/usr/bin/other") << "the path is none of them";
}

TEST_F(FrmMainConfig, WhatTheDecoderHasIsOnlyStored) {
  OpenPlaying();
  for (const char* box : {"chkCloseSoundCardOnDRM", "chkMuteAFOnDRM"}) Enter(box, "1");
  Apply();
  Click("optMode(3)");
  Run(0.5);
  ASSERT_FALSE(Frame().Radio().SoundCard().Prepared());
  Enter("cboPlayDevices", "Headset");
  Apply();
  EXPECT_FALSE(Frame().Radio().SoundCard().Prepared());
  EXPECT_EQ(Stored("frmMain", "CurrentPlaybackDeviceName"), "Headset");
  EXPECT_TRUE(Vars().DRMAudioMuted);
  Enter("chkMuteAFOnDRM", "0");
  Apply();
  EXPECT_FALSE(Vars().DRMAudioMuted) << "in force at once";
  Click("optMode(0)");
  EXPECT_TRUE(Plays());
  EXPECT_EQ(Frame().Radio().SoundCard().CurrentPlaybackDevice, 2);
}

TEST_F(FrmMainConfig, WhileTheClockIsCalibratedNothingIsApplied) {
  Open();
  Click("frmConfig.cmdCalDDS");
  ASSERT_TRUE(At("frmCalibrate").Visible());
  Enter("cboSDRModel", "ELEKTOR DRM");
  Apply();
  Click("frmConfig.cmdOK");
  Click("frmConfig.cmdCancel");
  EXPECT_TRUE(At("frmConfig").Visible());
  EXPECT_EQ(Vars().SDRModelNo, 0);
  Click("frmCalibrate.cmdCancel");
  Apply();
  EXPECT_EQ(Vars().SDRModelNo, 1);
}

}  // namespace
}  // namespace quorl::test
