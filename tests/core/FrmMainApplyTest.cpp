// Apply on a radio that plays: the order of its steps, and what goes on meanwhile.
#include <algorithm>

#include "core/ConfigRig.h"

namespace quorl::test {
namespace {

constexpr double kBlock = 2048.0 / 48000.0;  // seconds

class FrmMainApply : public ConfigRig {
 protected:
  // Seconds from now to the longest wait for a block within `seconds`.
  double LongestGap(double seconds) {
    const std::int64_t end = Clock.Microseconds() + static_cast<std::int64_t>(seconds * 1e6);
    std::int64_t last = Clock.Microseconds(), longest = 0, blocks = Blocks;
    while (Clock.Microseconds() < end) {
      Run(0.001);
      if (Blocks == blocks) continue;
      blocks = Blocks;
      longest = std::max(longest, Clock.Microseconds() - last);
      last = Clock.Microseconds();
    }
    return static_cast<double>(std::max(longest, end - last)) / 1e6;
  }
  // Blocks that leave for the loudspeaker.
  void CountOut() {
    Frame().Radio().OnBlockOut = [this, before = Frame().Radio().OnBlockOut] {
      ++Out;
      before();
    };
  }
  // The carrier's level where the receiver hears it, whatever the board.
  double Carrier() {
    Heard.clear();
    KeepAudio = true;
    Run(1.2);
    KeepAudio = false;
    return Tone(500);
  }

  int Out = 0;
};

TEST_F(FrmMainApply, StepsComeInTheirOrder) {
  OpenPlaying("[frmMain]\nSDRModelNo=2\n[VFO1.RXIQ]\nTunedFrequency=72050000\n");
  std::vector<std::string> steps;
  const auto note = [&steps](const std::string& step) {
    if (std::find(steps.begin(), steps.end(), step) == steps.end()) steps.push_back(step);
  };
  std::vector<Listening> watching;
  watching.push_back(At("chkTuneLo").OnChanged.Listen([&] { note("side"); }));
  watching.push_back(At("lblSpectrumSmooth").OnChanged.Listen([&] {
    if (Text("lblSpectrumSmooth") == "12") note("smoothing");
  }));
  watching.push_back(At("frmMain").OnChanged.Listen([&] { note("paint"); }));
  Frame().OnCaption = [&](bool) { note("caption"); };
  std::int64_t clockAtSound = 0;
  Sound.OnOpen = [&](int) {
    clockAtSound = Oscillator();
    note("sound");
    EXPECT_EQ(Printer.Levels().size(), 0U) << "the interface comes after the sound";
    EXPECT_EQ(Vars().SDRModelNo, 1) << "the board comes first";
  };
  Printer.SetRecording(true);
  Enter("cboSDRModel", "ELEKTOR DRM");
  Click("frmConfig.chkLoLO");
  Enter("txtIFFrequency", "450 000");
  Enter("txtDDSClkin", "49 000 000");
  Enter("cboPlayDevices", "Headset");
  Click("frmConfig.optIF(0)");
  Enter("txtPortAddress", "0x278");
  Enter("txtSpectrumDisplaySmoothingCount", "12");
  Click("frmConfig.FormCaptionOffOnPwrOn");
  At("frmMain").BackColour = 0x123456;
  steps.clear();
  Apply();
  const std::vector<std::string> wanted{"side", "sound", "smoothing", "caption", "paint"};
  EXPECT_EQ(steps, wanted);
  // The word of the new clock, on the board's true 50 MHz, before the devices were touched.
  EXPECT_NEAR(static_cast<double>(clockAtSound), (72050000.0 - 4500000.0) * 50 / 49, 5);
  ASSERT_FALSE(Printer.Levels().empty());
  for (const PrinterLevel& level : Printer.Levels()) EXPECT_EQ(level.Address, 0x278);
  EXPECT_FALSE(Serial.IsOpen());
  EXPECT_TRUE(Plays());
}

TEST_F(FrmMainApply, ModelsInterfacePortAndDevicesFiftyTimesAndTheRadioPlaysOn) {
  OpenPlaying("[VFO1.RXIQ]\nTunedFrequency=50000000\n[DDSSerialIF]\nCOM3=/dev/ttyUSB7\n");
  const char* const models[] = {"ELEKTOR DRM", "IQ Xtal RX", "Real to IQ RX", "DRT1"};
  const double intermediate[] = {455e3, 45e6, 45e6, 45e6};
  for (int round = 0; round < 50; ++round) {
    const int model = round % 4;
    Enter("cboSDRModel", models[model]);
    const bool parallel = model == 0 && round % 8 == 0;
    Click(parallel ? "frmConfig.optIF(0)" : "frmConfig.optIF(1)");
    if (!parallel) Enter("cboComPort", std::to_string(round % 9));
    Enter("cboPlayDevices", round % 2 == 0 ? "Headset" : "Loudspeaker");
    Enter("cboCapDevices", round % 3 == 0 ? "Microphone" : "Line In");
    if (round % 5 == 0) Click("frmConfig.chkEnableEncoder");
    Apply();
    ASSERT_TRUE(Plays()) << round;
    ASSERT_EQ(Digits(), "072050000") << round;
    ASSERT_NEAR(static_cast<double>(Oscillator()), 72050000.0 + intermediate[model] * 10.0, 2) << round;
    ASSERT_EQ(Frame().Radio().SoundCard().CurrentPlaybackDevice, round % 2 == 0 ? 2 : 1) << round;
    ASSERT_EQ(Serial.IsOpen(), !parallel) << round;
    if (round % 13 >= 4) continue;
    ASSERT_GT(Carrier(), 100.0) << round << ": its station is heard";
  }
  EXPECT_TRUE(Boxes.Messages.empty());
}

TEST_F(FrmMainApply, OnlyOtherDevicesCostBlocks) {
  OpenPlaying();
  Serial.SetLineTime(std::chrono::microseconds(20));
  Enter("txtIFFrequency", "45 001 000");
  Enter("txtSpectrumDisplaySmoothingCount", "3");
  Queue.Post([this] { Apply(); });
  EXPECT_LT(LongestGap(1.0), 1.2 * kBlock) << "no device changed, no block lost";
  EXPECT_EQ(VFO().IFFrequency(), 45001000);

  CountOut();
  Enter("cboPlayDevices", "Headset");
  Enter("cboCapDevices", "Microphone");
  const std::int64_t before = Blocks;
  Out = 0;
  Apply();
  Run(5 * kBlock);
  EXPECT_GT(Blocks, before);
  Run(10 * kBlock);
  EXPECT_GT(Out, 0);
  EXPECT_EQ(Stored("frmMain", "CurrentPlaybackDeviceName"), "Headset");
  EXPECT_EQ(Stored("frmMain", "CurrentCaptureDevice"), "2");
}

TEST_F(FrmMainApply, DevicesGoBackAndForthAndOnesThatCanNotBeOpenedLeaveTheFormerOnes) {
  OpenPlaying();
  std::vector<int> opened;
  Sound.OnOpen = [&opened](int device) { opened.push_back(device); };
  for (const char* device : {"Headset", "Loudspeaker", "Headset"}) {
    Enter("cboPlayDevices", device);
    Apply();
    Apply();
  }
  EXPECT_EQ(opened, (std::vector<int>{2, 1, 2})) << "each once, and nothing where nothing changed";
  opened.clear();
  Sound.BrokenPlayback = 1;
  Enter("cboPlayDevices", "Loudspeaker");
  Apply();
  ASSERT_EQ(Boxes.Messages.size(), 1U);
  EXPECT_EQ(Boxes.Messages[0].Text, "Unable to start DirectSound. Check proper sound card installation");
  EXPECT_EQ(opened, (std::vector<int>{1, 2}));
  EXPECT_EQ(Field("cboPlayDevices"), "Headset");
  EXPECT_TRUE(Plays());
  EXPECT_EQ(Stored("frmMain", "CurrentPlaybackDeviceName"), "Headset");

  // Off, they are opened at once, and the power finds them.
  Click("optPwr(1)");
  Sound.BrokenPlayback = 0;
  Enter("cboPlayDevices", "Loudspeaker");
  Apply();
  EXPECT_EQ(opened.back(), 1);
  EXPECT_FALSE(Frame().IsOn());
  Click("optPwr(0)");
  EXPECT_TRUE(Plays());
}

TEST_F(FrmMainApply, APowerSwitchedOffWhileDevicesChangeStaysOff) {
  OpenPlaying();
  Sound.OnOpen = [this](int) { Click("optPwr(1)"); };
  Enter("cboPlayDevices", "Headset");
  Apply();
  Run(0.5);
  EXPECT_FALSE(Frame().IsOn());
  EXPECT_FALSE(Frame().Radio().SoundCard().InAction);
}

TEST_F(FrmMainApply, WaitsForTheFrameThatItInterrupts) {
  OpenPlaying();
  bool waited = false;
  Queue.Post([&] {
    Enter("cboSDRModel", "ELEKTOR DRM");
    Apply();
    waited = Vars().SDRModelNo == 0;
  });
  Wheel("lbl7Seg(4)", 3);  // the frame's bits deliver what is posted
  EXPECT_TRUE(waited) << "the frame lay below the click";
  Run(0.1);
  EXPECT_EQ(Vars().SDRModelNo, 1);
  EXPECT_EQ(Digits(), "072080000");
  EXPECT_NEAR(static_cast<double>(Oscillator()), 72080000 + 4550000, 2);
  EXPECT_TRUE(Plays());
}

TEST_F(FrmMainApply, ARecordingOfAnotherBoardPlaysOn) {
  OpenPlaying();
  clsWavFile& deck = Frame().WavFile();
  deck.RecordIF = true;
  ASSERT_EQ(deck.OpenRecording(), 0);
  Run(3.0);
  deck.StopRecording();
  ASSERT_EQ(deck.SaveAs("plans/night.wav"), 0);
  Enter("cboSDRModel", "IQ Xtal RX");
  Apply();
  deck.FileName = "plans/night.wav";
  ASSERT_EQ(deck.OpenFile(), 0);
  Click("cmdWavCtls(1)");
  Run(1.0);
  ASSERT_TRUE(Frame().Played().IsPlaying());
  EXPECT_EQ(Vars().SDRModelNo, 0) << "the recording's";
  EXPECT_EQ(Field("cboSDRModel"), "IQ Xtal RX") << "the radio's own";
  Enter("txtIFFrequency", "45 002 000");
  Apply();
  EXPECT_EQ(VFO().IFFrequency(), 45002000);
  EXPECT_EQ(Stored("frmMain", "SDRModelNo"), "2");
  EXPECT_EQ(Stored("VFO1.RXIQ", "IFFrequency"), "45002000");
  Run(0.2);
  EXPECT_TRUE(Frame().Played().IsPlaying()) << "it goes on";
  EXPECT_EQ(Vars().SDRModelNo, 0);
}

TEST_F(FrmMainApply, ABoardOfIAndQHasItsSecondFilter) {
  OpenPlaying();
  const FilterBank& filters = Frame().Radio().Rx.Filters;
  EXPECT_FALSE(filters.IFFilterQ.Active);
  Enter("cboSDRModel", "IQ Xtal RX");
  Apply();
  Run(0.3);
  EXPECT_TRUE(filters.IFFilterQ.Active);
  EXPECT_EQ(filters.IFFilterQ.FLow, filters.IFFilterI.FLow);
  EXPECT_EQ(filters.IFFilterQ.FHigh, filters.IFFilterI.FHigh);
}

TEST_F(FrmMainApply, APortIsReopenedWithItsModeAndOneThatFailsNamesItself) {
  Open("[DDSSerialIF]\nCOM5=/dev/gone\n");
  const auto opened = [this] { return Serial.OpenedDevices().back(); };
  Enter("cboComPort", "1");
  Click("frmConfig.chkEnableEncoder");
  Apply();
  EXPECT_EQ(opened(), "/dev/ttyS1");
  EXPECT_TRUE(Frame().Radio().Tuning().SerialIF().EventMode);
  // A port in event mode keeps its handle: closed and opened, it works all the same.
  const std::size_t count = Serial.OpenedDevices().size();
  Enter("cboComPort", "2");
  Apply();
  EXPECT_EQ(opened(), "/dev/ttyS2");
  Click("frmConfig.chkEnableEncoder");
  Apply();
  EXPECT_EQ(Serial.OpenedDevices().size(), count + 2);
  EXPECT_FALSE(Frame().Radio().Tuning().SerialIF().EventMode);
  EXPECT_EQ(Oscillator(), 522050000);
  Wheel("lbl7Seg(4)", 1);
  EXPECT_EQ(Oscillator(), 522060000);
  Apply();
  EXPECT_EQ(Serial.OpenedDevices().size(), count + 2) << "the same port stays open";

  Serial.FailOpen(Error{13, "Can't open the serial port /dev/gone. Add your user to the group dialout."});
  Enter("cboComPort", "4");
  Enter("chkAutoStartSDR", "1");
  Apply();
  ASSERT_EQ(Boxes.Messages.size(), 1U);
  EXPECT_EQ(Boxes.Messages[0].Text,
            "DDSSerialIF : PollMode : Unable to Open COM5\nPlease Set valid COM port in Configuration, then "
            "Close and Restart");
  EXPECT_EQ(FaultOf("cboComPort"),
            "COM5: Can't open the serial port /dev/gone. Add your user to the group dialout.");
  EXPECT_EQ(Stored("frmMain", "AutoStartSDR"), "True");
  EXPECT_EQ(Stored("DDSSerialIF", "PortNo"), "5");
  Apply();
  EXPECT_NE(FaultOf("cboComPort"), "") << "tried again without another box";
  EXPECT_EQ(Boxes.Messages.size(), 1U);
  Serial.FailOpen({});
  Apply();
  EXPECT_EQ(FaultOf("cboComPort"), "");
  EXPECT_TRUE(Serial.IsOpen());
  EXPECT_EQ(Oscillator(), 522060000);
}

TEST_F(FrmMainApply, AnAdapterWithoutANumberGetsTheLowestFreeOne) {
  Serial.Ports = {{"/dev/serial/by-id/usb-FTDI_FT232R_A5-if00-port0", "/dev/ttyUSB0"},
                  {"/dev/ttyS0", "/dev/ttyS0"},
                  {"/dev/ttyS2", "/dev/ttyS2"}};
  Open("[DDSSerialIF]\nCOM2=/dev/mine\n");
  const auto& items = Get<ComboBox>("frmConfig.cboComPort").Items();
  ASSERT_EQ(items.size(), 9U);
  EXPECT_EQ(items[0], "COM1  /dev/ttyS0");
  EXPECT_EQ(items[1], "COM2  (not there)");
  EXPECT_EQ(items[2], "COM3  /dev/ttyS2");
  EXPECT_EQ(items[3], "COM4  FTDI FT232R A5");
  Apply();
  EXPECT_EQ(Stored("DDSSerialIF", "COM4"), "") << "only what is chosen is stored";
  Enter("cboComPort", "3");
  Apply();
  EXPECT_EQ(Serial.OpenedDevices().back(), "/dev/serial/by-id/usb-FTDI_FT232R_A5-if00-port0");
  EXPECT_EQ(Stored("DDSSerialIF", "COM4"), "/dev/serial/by-id/usb-FTDI_FT232R_A5-if00-port0");
  Restart();
  EXPECT_EQ(Serial.OpenedDevices().back(), "/dev/serial/by-id/usb-FTDI_FT232R_A5-if00-port0");
}

TEST_F(FrmMainApply, OptionsActAtOnceAndAreStored) {
  OpenPlaying();
  const auto press = [this] {
    Frame().Scrollables().DarkenControls();
    At("frmMain").KeyDown(Key{Key::PageUp, {}});
  };
  std::vector<bool> captions;
  Frame().OnCaption = [&captions](bool shown) { captions.push_back(shown); };
  for (const char* box : {"chkShaftAutoRate", "chkScrollWheelEnableOverScope", "chkScollLabelHiliteBorder",
                          "chkSpectrumDisplayHideToolTip", "FormCaptionOffOnPwrOn", "chkAutoStartSDR"})
    Enter(box, "1");
  Enter("chkKBDSupport", "0");
  Enter("chkAutoTrackPresets", "0");
  Enter("txtSpectrumDisplaySmoothingCount", "5");
  Apply();
  EXPECT_TRUE(Frame().Tuning().ShaftAutoRateOn);
  EXPECT_TRUE(Frame().Scope().Pointer.WheelTunes());
  EXPECT_TRUE(Frame().Scrollables().HiLiteBorder);
  EXPECT_TRUE(Frame().Scope().SpectrumAnalyser.HideFreqToolTip);
  EXPECT_EQ(captions, std::vector<bool>{false});
  EXPECT_FALSE(Frame().Memories().AutoTrackPresets);
  EXPECT_EQ(Text("lblSpectrumSmooth"), "5");
  EXPECT_EQ(Stored("SpectrumAnalyser", "DefaultSmoothCount"), "5");
  press();
  EXPECT_EQ(Digits(), "072050000") << "the keys need the pointer over the frequency";
  Enter("chkKBDSupport", "1");
  Apply();
  press();
  EXPECT_EQ(Digits(), "072051000");
}

}  // namespace
}  // namespace quorl::test
