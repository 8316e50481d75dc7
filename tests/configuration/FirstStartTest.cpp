#include "configuration/FirstStart.h"

#include <gtest/gtest.h>

#include <optional>

#include "configuration/SoundRig.h"
#include "platform/virtual/VirtualDialogs.h"
#include "state/PublicConstants.h"

namespace quorl {
namespace {

constexpr int kNone = 4;  // place in optBoard

struct FirstStartRig : test::SoundRig {
  FirstStartRig() {
    LineIn = {.Left = 5000, .Right = 5000, .Degrees = 90};
    Serial.Ports = {{"/dev/serial/by-id/usb-FTDI_FT232R_A5-if00-port0", "/dev/ttyUSB0"},
                    {"/dev/ttyS0", "/dev/ttyS0"}};
    Page.OnDone = [this](const FirstStartAnswers& answers) { Done = answers; };
    Page.OnSkip = [this] { ++Skipped; };
  }
  std::string Stored(const char* section, const char* key) { return Store.GetSetting(section, key, "-"); }

  SettingsStore Store;
  clsDDSSerialIF Interface{Serial, Queue, Boxes, Store};
  FirstStartMachine Machine() {
    return {Sound, Serial, [this]() -> const clsDDSSerialIF& { return Interface; }, Queue};
  }
  FirstStart Page{Controls, Machine()};
  std::optional<FirstStartAnswers> Done;
  int Skipped = 0;
};

TEST(FirstStart, ItsAnswersAreWhatTheRadioStartsFrom) {
  struct Case {
    int Model;
    const char *ChipSection, *Clock;
  };
  for (const Case& each :
       {Case{SDRModel::DRT1, "DDSAD9951", "360096000"}, Case{SDRModel::ElektorDRM, "DDSAD9835", "50000000"},
        Case{SDRModel::IQXtalRX, "DDSAD9951", "360096000"},
        Case{SDRModel::RealToIQRX, "DDSAD9951", "360096000"}}) {
    FirstStartRig rig;
    EXPECT_EQ(ReadKnownBoard(rig.Store), KnownBoard::Unasked);
    rig.Page.Open({});
    rig.Press("frmFirstStart.optBoard", each.Model);
    rig.Set("frmFirstStart.cboComPort", "1");
    rig.Set("frmFirstStart.cboCapDevices", "Microphone");
    rig.Set("frmFirstStart.cboPlayDevices", "Headset");
    EXPECT_EQ(rig.Text("frmFirstStart.cmdStart"), "&Start the radio");
    rig.Click("frmFirstStart.cmdStart");
    ASSERT_TRUE(rig.Done);
    EXPECT_FALSE(rig.Page.IsOpen());
    StoreAnswers(rig.Store, *rig.Done);
    EXPECT_EQ(ReadKnownBoard(rig.Store), KnownBoard::Chosen);
    EXPECT_EQ(rig.Stored("frmMain", "SDRModelNo"), std::to_string(each.Model));
    EXPECT_EQ(rig.Stored("frmMain", "VFO1.IFType"), "0");
    EXPECT_EQ(rig.Stored(each.ChipSection, "ClkIn"), each.Clock);
    EXPECT_EQ(rig.Stored("frmMain", "CurrentCaptureDevice"), "2");
    EXPECT_EQ(rig.Stored("frmMain", "CurrentCaptureDeviceName"), "Microphone");
    EXPECT_EQ(rig.Stored("frmMain", "CurrentPlaybackDeviceName"), "Headset");
    // The built-in port is COM1 by itself; the adapter has the lowest number that is free.
    EXPECT_EQ(rig.Stored("DDSSerialIF", "PortNo"), "2");
    EXPECT_EQ(rig.Stored("DDSSerialIF", "COM2"), "/dev/serial/by-id/usb-FTDI_FT232R_A5-if00-port0");
    EXPECT_EQ(rig.Stored("DDSSerialIF", "COM1"), "-");
    EXPECT_EQ(rig.Stored("DDSParallelIF", "PortAddress"), "-");
  }
}

TEST(FirstStart, AClockThatWasCalibratedStays) {
  FirstStartRig rig;
  rig.Store.SaveSetting("DDSAD9951", "ClkIn", "360096123");
  FirstStartAnswers answers;
  answers.SDRModelNo = SDRModel::DRT1;
  StoreAnswers(rig.Store, answers);
  EXPECT_EQ(rig.Stored("DDSAD9951", "ClkIn"), "360096123");
  rig.Store.SaveSetting("DDSAD9951", "ClkIn", "50000000");
  StoreClock(rig.Store, 0);
  EXPECT_EQ(rig.Stored("DDSAD9951", "ClkIn"), "360096000") << "the one of a radio that was never told any";
  EXPECT_EQ(rig.Stored("frmMain", "CurrentCaptureDevice"), "-");  // there is none
}

TEST(FirstStart, TheParallelPortIsForTheBoardWhoseChipTakesIt) {
  FirstStartRig rig;
  rig.Page.Open({});
  for (const int model : {0, 2, 3, kNone}) {
    rig.Press("frmFirstStart.optBoard", model);
    EXPECT_FALSE(rig.At("frmFirstStart.optIF(0)").Enabled) << model;
    EXPECT_EQ(rig.Page.optIF.Pressed(), 1) << model;
  }
  rig.Press("frmFirstStart.optBoard", SDRModel::ElektorDRM);
  rig.Press("frmFirstStart.optIF", 0);
  EXPECT_TRUE(rig.At("frmFirstStart.txtPortAddress").Visible);
  EXPECT_FALSE(rig.At("frmFirstStart.cboComPort").Visible);
  EXPECT_EQ(rig.Text("frmFirstStart.txtPortAddress"), "&H378");
  for (const char* wrong : {"", "lpt1", "-1", "65536", "&H"}) {
    rig.Set("frmFirstStart.txtPortAddress", wrong);
    EXPECT_EQ(rig.At("frmFirstStart.txtPortAddress").Fault(), "") << wrong;
    rig.Click("frmFirstStart.cmdStart");
    EXPECT_FALSE(rig.Done) << wrong;
    EXPECT_NE(rig.At("frmFirstStart.txtPortAddress").Fault(), "") << wrong;
  }
  rig.Set("frmFirstStart.txtPortAddress", "0x278");
  rig.Click("frmFirstStart.cmdStart");
  ASSERT_TRUE(rig.Done);
  StoreAnswers(rig.Store, *rig.Done);
  EXPECT_EQ(rig.Stored("DDSParallelIF", "PortAddress"), "632");
  EXPECT_EQ(rig.Stored("frmMain", "VFO1.IFType"), "1");
  // Another board goes back to the serial one.
  rig.Page.Open(*rig.Done);
  EXPECT_EQ(rig.Page.optIF.Pressed(), 0);
  rig.Press("frmFirstStart.optBoard", SDRModel::DRT1);
  EXPECT_EQ(rig.Page.optIF.Pressed(), 1);
}

TEST(FirstStart, HoldsTheInputOnlyWhileThePageAsksForIt) {
  FirstStartRig rig;
  rig.Page.Open({});
  rig.Run(0.5);
  EXPECT_TRUE(rig.Sound.Opened("Line In").empty());  // no board yet
  rig.Press("frmFirstStart.optBoard", SDRModel::IQXtalRX);
  rig.Run(2);
  EXPECT_EQ(rig.Text("frmFirstStart.lblLevelHint"), "The level is right.");
  rig.LineIn = {.Left = 5000, .Right = 5000};
  rig.Run(2);
  EXPECT_EQ(rig.Text("frmFirstStart.lblLevelHint").substr(0, 28), "Both channels carry the same");
  rig.Set("frmFirstStart.cboCapDevices", "Microphone");
  EXPECT_TRUE(rig.Sound.Opened("Line In").empty());
  EXPECT_FALSE(rig.Sound.Opened("Microphone").empty());
  rig.Click("frmFirstStart.cmdTestTone");
  EXPECT_FALSE(rig.Sound.Opened("Loudspeaker").empty());
  rig.Page.OnDone = [&rig](const FirstStartAnswers&) {
    EXPECT_TRUE(rig.Sound.Opened("Microphone").empty());
    EXPECT_TRUE(rig.Sound.Opened("Loudspeaker").empty());
  };
  rig.Click("frmFirstStart.cmdStart");
}

TEST(FirstStart, NoneAndSkippedAreRemembered) {
  FirstStartRig rig;
  rig.Page.Open({});
  EXPECT_EQ(rig.Text("frmFirstStart.cmdStart"), "&Start the demo");
  rig.Click("frmFirstStart.cmdStart");
  ASSERT_TRUE(rig.Done);
  StoreAnswers(rig.Store, *rig.Done);
  EXPECT_EQ(ReadKnownBoard(rig.Store), KnownBoard::None);
  EXPECT_EQ(rig.Stored("frmMain", "SDRModelNo"), "-");
  // Also where a radio has stored its settings before.
  rig.Store.SaveSetting("frmMain", "SDRModelNo", "0");
  EXPECT_EQ(ReadKnownBoard(rig.Store), KnownBoard::None);
  rig.Page.Open({});
  rig.At("frmFirstStart").KeyDown(Key{Key::Escape, {}});
  EXPECT_EQ(rig.Skipped, 1);
  EXPECT_FALSE(rig.Page.IsOpen());
  StoreKnownBoard(rig.Store, KnownBoard::Later);
  EXPECT_EQ(ReadKnownBoard(rig.Store), KnownBoard::Later);
}

TEST(FirstStart, ManagesWithoutPortsAndDevicesAndFindsThemWhenTheyCome) {
  FirstStartRig rig;
  rig.Serial.Ports.clear();
  test::WatchedSound none(rig.Queue, rig.Clock);
  ControlRegistry controls;
  FirstStartMachine bare{none, rig.Serial, rig.Machine().Interface, rig.Queue};
  FirstStart page(controls, bare);
  page.OnDone = rig.Page.OnDone;
  page.Open({});
  page.optBoard.Press(SDRModel::DRT1);
  rig.Run(0.5);
  EXPECT_EQ(page.Level.lblLevelHint.Caption(), "There is no sound input.");
  EXPECT_EQ(page.lblPort.Caption(), "No serial port: plug in the adapter and look again.");
  EXPECT_FALSE(page.cboComPort.Enabled);
  rig.Serial.Ports = {{"/dev/ttyUSB0", "/dev/ttyUSB0"}};
  page.cmdRefresh.UserClick();
  EXPECT_EQ(page.lblPort.Caption(), "");
  EXPECT_TRUE(page.cboComPort.Enabled);
  EXPECT_EQ(page.optBoard.Pressed(), SDRModel::DRT1);
  page.cmdStart.UserClick();
  ASSERT_TRUE(rig.Done);
  EXPECT_EQ(rig.Done->PortPath, "/dev/ttyUSB0");
  EXPECT_EQ(rig.Done->Capture, 0);
}

}  // namespace
}  // namespace quorl
