// What a start tells where something is wrong: once, in its place, and goes on where it can.
#include <gtest/gtest.h>

#include "core/FrameRig.h"

namespace quorl::test {
namespace {

TEST(FrmMainFaults, SecondInstanceIsToldBeforeAnythingIsShown) {
  FrameRig rig;
  FileInstanceLock other(rig.Storage);
  ASSERT_FALSE(other.Acquire(FrameRig::kSettings));
  rig.Storage.Put("log/quorl.log", "the other one's lines\n");
  rig.Options.CommandLine = "trace";
  EXPECT_FALSE(rig.Start());
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  EXPECT_EQ(rig.Boxes.Messages[0].Text, "QUORLSDR is already running");
  EXPECT_TRUE(rig.Splash.empty());
  EXPECT_TRUE(rig.Log->Lines().empty());
  Failure failure;
  EXPECT_EQ(rig.Storage.Read("log/quorl.log", failure), "the other one's lines\n");
  const std::string before = rig.StoredText();
  rig.Stop();
  EXPECT_EQ(rig.StoredText(), before);
}

TEST(FrmMainFaults, ASettingsLineThatIsNoneIsToldInTheLog) {
  FrameRig rig("[DDSSerialIF]\nCOM1 /dev/ttyUSB0\n");
  ASSERT_TRUE(rig.Start());
  EXPECT_EQ(rig.Log->Lines().front(),
            "config/settings.ini, line 10 isn't a setting and stays in the file as it "
            "stands: \"COM1 /dev/ttyUSB0\"");
  rig.Stop();
  EXPECT_NE(rig.StoredText().find("\nCOM1 /dev/ttyUSB0\n"), std::string::npos);
}

TEST(FrmMainFaults, WithoutBandPlansNothingIsTouched) {
  FrameRig rig;
  rig.Options.ApplicationFolder = "elsewhere";
  EXPECT_FALSE(rig.Start());
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  EXPECT_EQ(rig.Boxes.Messages[0].Title, "QUORLSDR - No Bandplan found");
  EXPECT_EQ(rig.Boxes.Messages[0].Icon, MessageIcon::Critical);
  EXPECT_EQ(rig.Log->Lines().back(), "frmMain:frmMain:Form_Initialize:No BandPlans found in elsewhere");
  EXPECT_TRUE(rig.Serial.OpenedDevices().empty());
  EXPECT_EQ(rig.Sound.Statistics().CapturedBlocks, 0);
  EXPECT_FALSE(rig.Splash.back());
}

TEST(FrmMainFaults, APortThatDoesNotOpenLeavesARadioThatTunesNothing) {
  FrameRig rig("[DDSSerialIF]\nPortNo=3\n");
  rig.Serial.FailOpen(Error{5, "busy"});
  ASSERT_TRUE(rig.Start());
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  const std::string text = rig.Boxes.Messages.back().Text;
  const auto& lines = rig.Log->Lines();
  EXPECT_NE(std::find(lines.begin(), lines.end(), "COM3: busy"), lines.end());
  EXPECT_EQ(text.rfind("Unable to open Serial Interface COM3\nfrmMain:frmMain:Form_Load:", 0), 0U) << text;
  EXPECT_TRUE(text.ends_with("\nError Code=5\nError Desc=busy")) << text;
  rig.Wheel("lbl7Seg(4)", 2);
  rig.Run(0.2);
  EXPECT_EQ(rig.Digits(), "072070000");
  EXPECT_EQ(rig.Oscillator(), 0);
  rig.Click("optPwr(0)");
  rig.Run(1.0);
  EXPECT_TRUE(rig.Frame().IsOn());
  EXPECT_GT(rig.Blocks, 10);
}

TEST(FrmMainFaults, APrinterPortOutOfReachIsToldOnce) {
  FrameRig rig("[frmMain]\nVFO1.IFType=1\nSDRModelNo=1\n");
  rig.Printer.FailCheck(Error{13, "Can't reach the printer port. Join the group lp."});
  ASSERT_TRUE(rig.Start());
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  EXPECT_EQ(rig.Boxes.Messages[0].Text, "Can't reach the printer port. Join the group lp.");
  const auto& lines = rig.Log->Lines();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), rig.Boxes.Messages[0].Text), 1);
}

TEST(FrmMainFaults, APortThatVanishesIsToldOnceAndTakenAgain) {
  FrameRig rig("[frmMain]\nAutoStartSDR=True\n");
  ASSERT_TRUE(rig.Start());
  rig.Run(0.5);
  rig.Serial.Unplug();
  rig.Run(0.5);
  rig.Wheel("lbl7Seg(4)", 3);
  rig.Run(5.0);
  EXPECT_EQ(rig.Oscillator(), 522050000);
  ASSERT_EQ(rig.Boxes.Notices.size(), 1U);
  EXPECT_EQ(rig.Boxes.Notices[0].Text,
            "COM1: The serial port /dev/ttyS0 has vanished. Tuning has no effect until it is back.");
  EXPECT_TRUE(rig.Boxes.Messages.empty());
  EXPECT_TRUE(rig.Frame().IsOn());
  rig.Serial.Plug();
  rig.Run(0.5);
  EXPECT_EQ(rig.Oscillator(), 522080000);
  EXPECT_EQ(rig.Log->Lines().back(), "COM1: The serial port is back");
  EXPECT_EQ(rig.Boxes.Notices.size(), 1U);
}

TEST(FrmMainFaults, AnUnknownInterfaceIsToldAndTheStartGoesOn) {
  FrameRig rig("[frmMain]\nVFO1.IFType=7\n");
  ASSERT_TRUE(rig.Start());
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  EXPECT_EQ(rig.Boxes.Messages[0].Text,
            "Unknown DDSIFType specified in Registry - Check DDSIFType key - No interface initialised");
  EXPECT_EQ(rig.Log->Lines().back(), "frmMain:frmMain:Form_Initialize:End");
}

TEST(FrmMainFaults, ABoardWhoseClockIsTooLowIsToldInOneBox) {
  FrameRig rig("[DDSAD9951]\nClkIn=50000000\n");
  ASSERT_TRUE(rig.Start());
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  for (const char* word :
       {"50000000 Hz", "45000000 Hz", "in the configuration", "ClkIn in section [DDSAD9951]"})
    EXPECT_NE(rig.Boxes.Messages[0].Text.find(word), std::string::npos) << word;
  rig.Wheel("lbl7Seg(4)", 3);
  rig.Run(3.0);
  EXPECT_EQ(rig.Boxes.Messages.size(), 1U);
}

TEST(FrmMainFaults, AnErrorInsideAStepEndsTheProgram) {
  FrameRig rig;
  rig.Sound.Breaks = true;
  EXPECT_FALSE(rig.Start());
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  EXPECT_EQ(rig.Boxes.Messages[0].Title, "Error");
  const std::string text = rig.Boxes.Messages[0].Text;
  EXPECT_EQ(text.rfind("frmMain:frmMain:Form_Load:", 0), 0U) << text;
  EXPECT_NE(text.find("\nCode=0\nDescription=the sound system is out of order\nSource=QUORLSDR"),
            std::string::npos)
      << text;
  const auto& lines = rig.Log->Lines();
  EXPECT_EQ(lines[lines.size() - 2], "frmMain:frmMain:Form_Load:New QUORLDX8");
  EXPECT_EQ(lines.back().rfind("frmMain:frmMain:Form_LoadError:", 0), 0U) << lines.back();
  EXPECT_NE(lines.back().find(",Code=0,Description=the sound system is out of order,Source="),
            std::string::npos);
}

TEST(FrmMainFaults, AFullDiskIsTold) {
  FrameRig rig;
  ASSERT_TRUE(rig.Start());
  rig.Storage.Watched.clear();
  rig.Storage.Fail(FileOperation::MakeDirectory, Error{28, "no space left"});
  rig.Stop();
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  EXPECT_NE(rig.Boxes.Messages[0].Text.find("no space left"), std::string::npos);
}

}  // namespace
}  // namespace quorl::test
