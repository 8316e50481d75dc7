// Start and end of the program: order, failures, what comes back after a restart.
#include <gtest/gtest.h>

#include "core/FrameRig.h"

namespace quorl::test {
namespace {

std::vector<std::string> ExpectedLog() {
  std::vector<std::string> lines;
  const auto add = [&](const std::string& routine, const std::vector<std::string>& texts) {
    for (const std::string& text : texts) lines.push_back("frmMain:frmMain:" + routine + text);
  };
  add("Form_Initialize",
      {" : Start", " : QUORL.INIT", " : PublicVars.SDRColourSchemes.Defaults", ":Initialising BandPlans",
       ":Processing Amateur.bpl", ":Processing Broadcast.bpl", ":Initialising Digital Filter Objects",
       ":Creating Profiler Object", ":Initialising Tuning Step Array", ":Load Main Form"});
  add("Form_Load", {":Start", ":Resizing", ":Restoring SDR Colour Settings from Registry",
                    ":Making Form Visible", ":Setting Colour Scheme", ":Initialising MouseOverS",
                    ":Initialising 7Segment Display Tuning", ":Initialising dialtuner"});
  for (const int index : {2, 3, 4, 5, 7, 8, 9}) {
    add("Form_Load", {":Initialising CtlArray(" + std::to_string(index) + ")"});
  }
  add("Form_Load", {":Initialising sldNB", ":Initialising dialNB", ":Initialising CtlArray(10)",
                    ":Initialising dialOutVol", ":Initialising sldOutVolume"});
  for (const int index : {11, 12, 13, 14, 15, 6}) {
    add("Form_Load", {":Initialising CtlArray(" + std::to_string(index) + ")"});
  }
  for (const int index : {17, 18, 19}) {
    add("Form_Load", {":Initialising ctlArray(" + std::to_string(index) + ")"});
  }
  add("Form_Load",
      {":New QUORLDX8", ":New clsFFTReal", ":Initialising FFTReal", " : Initialising Interface Objects",
       ":Initialising sldAGCAttack", ":Initialising sldAGCDecay"});
  for (int i = 0; i <= 4; ++i) {
    add("Form_Load", {":Initialising Variable Filter Default Values (" + std::to_string(i) + ")"});
  }
  for (int i = 1; i <= 3; ++i) {
    add("Form_Load", {":Initialising Variable AGC Default Values (" + std::to_string(i) + ")"});
  }
  add("Form_Load", {":Initialising Variable IF Filter Default Values (0)",
                    ":Initialising NotchFilter Default Values", ":Restoring SDR Settings"});
  lines.push_back("RestoreSettings : Start");
  add("Form_Load",
      {":Initialising SoundCard Object", ":Set OutputLevel Attenuator to PublicVars.OutputAttenuation",
       ":Call modWheelMouse.init", ":Set up default values in the AGC delayline",
       ":Call MouseOverS.lblFilterHi_Wheel", ":Call MouseOverS.lblFilterLo_Wheel", ":Call tmrPerfStats_Timer",
       ":Enable Power Butons", ":Enable TmrTune", ":Enable TmrVFOUpdate", ":Enable TmrShaft",
       ":Enable TmrClock", ":Initialise the Tuning Step Selector Drop Down List", ":Call DarkenControls"});
  add("Form_Initialize", {":End"});
  return lines;
}

TEST(FrmMainStart, EveryStepIsToldInItsOrder) {
  FrameRig rig;
  rig.Options.CommandLine = "--verbose xtracex";
  ASSERT_TRUE(rig.Start());
  const std::vector<std::string> lines(rig.Log->Lines().begin(), rig.Log->Lines().end());
  EXPECT_EQ(lines, ExpectedLog());
  EXPECT_EQ(rig.Splash, (std::vector<bool>{true, false}));
  EXPECT_TRUE(rig.At("frmLog").Visible());
  Failure failure;
  EXPECT_NE(rig.Storage.Read("log/quorl.log", failure).value_or("").find(":Call DarkenControls"),
            std::string::npos);
  ASSERT_EQ(rig.Frame().MainBands().size(), 2U);
  EXPECT_EQ(rig.Frame().MainBands()[1].Name, "Broadcast");
  EXPECT_EQ(rig.Frame().MainBands()[1].Path, "plans/Broadcast.bpl");
  EXPECT_TRUE(rig.Boxes.Messages.empty());
}

TEST(FrmMainStart, ThePowerWaitsForTheEndOfTheStart) {
  FrameRig rig;
  std::vector<std::string> captions;
  bool touched = false;
  rig.Sound.OnList = [&] {
    if (touched) return;
    touched = true;
    for (const char* name : {"optPwr(0)", "optPwr(1)", "optPwr(2)"}) {
      EXPECT_FALSE(rig.At(name).Enabled()) << name;
      rig.Click(name);
    }
    rig.Log->OnLine([&](const std::string& line) {
      if (line.ends_with(":Call modWheelMouse.init")) captions = {rig.Text("lblFLo"), rig.Text("lblFHi")};
    });
  };
  ASSERT_TRUE(rig.Start());
  EXPECT_TRUE(touched);
  EXPECT_FALSE(rig.Frame().IsOn());
  EXPECT_EQ(rig.Closed, 0);
  for (const char* name : {"optPwr(0)", "optPwr(1)", "optPwr(2)"})
    EXPECT_TRUE(rig.At(name).Enabled()) << name;
  EXPECT_EQ(captions, (std::vector<std::string>{"2.0 kHz", "3.0 kHz"}));
  EXPECT_EQ(rig.Text("lblFHi"), "Fhi : 5,000 Hz");
}

TEST(FrmMainStart, BeforeItsStartAFrameReadsOpensAndWritesNothing) {
  FrameRig rig;
  rig.Make();
  EXPECT_FALSE(rig.Serial.IsOpen());
  EXPECT_TRUE(rig.Log->Lines().empty());
  EXPECT_TRUE(rig.Boxes.Messages.empty());
  EXPECT_EQ(rig.VFO().TunedFrequency(), 100000000);  // not the stored one
  EXPECT_EQ(rig.Vars().FilterHi, FilterDefaults[0].High);
  rig.Click("lbl7Seg(3)");
  rig.Wheel("lbl7Seg(3)", 1);
  rig.Click("optMode(1)");
  rig.Frame().SetSeen(true);
  rig.Stop();
  EXPECT_EQ(rig.Storage.Writes, 0);
}

TEST(FrmMainStart, TheWindowOpensAtItsStepWithEveryControlAndBeforeTheBoxes) {
  FrameRig rig("[DDSSerialIF]\nPortNo=3\n");
  rig.Serial.FailOpen(Error{5, "busy"});
  int forms = 0;
  ControlRegistry spare;
  const auto slider = [&](const char* name) -> Slider& { return dynamic_cast<Slider&>(rig.At(name)); };
  std::vector<std::pair<int, int>> leastAtLines;  // values of sldAGCAttack, sldAGCDecay
  rig.OnForm = [&] {
    ++forms;
    EXPECT_EQ(rig.Log->Lines().back(), "frmMain:frmMain:Form_Load:Making Form Visible");
    EXPECT_TRUE(rig.Boxes.Messages.empty());
    for (const char* name : {"optPwr(2)", "lbl7Seg(0)", "optMode(5)", "sldNotch", "optAGC(4)", "lblOutVol",
                             "picSmeter", "lblStatsVal(0)", "lblBFO"}) {
      EXPECT_NE(rig.Frame().Controls().Find(name), nullptr) << name;
    }
    // What a later line tells has not been done yet.
    EXPECT_EQ(slider("sldNotchWidth").Max(), Slider(spare, "fresh").Max());
    rig.Log->OnLine([&](const std::string& line) {
      if (line.find(":Initialising sldAGC") != std::string::npos)
        leastAtLines.emplace_back(slider("sldAGCAttack").Min(), slider("sldAGCDecay").Min());
    });
  };
  ASSERT_TRUE(rig.Start());
  EXPECT_EQ(forms, 1);
  EXPECT_EQ(rig.Boxes.Messages.size(), 1U);
  // At the line of each slider its work is still to come.
  EXPECT_EQ(leastAtLines, (std::vector<std::pair<int, int>>{{0, 0}, {5, 0}}));
  EXPECT_EQ(slider("sldAGCDecay").Min(), 10);
  EXPECT_EQ(slider("sldNotchWidth").Max(), 5000);
}

// What the loudspeaker plays.
struct Ear : SampleSink {
  void Accept(const std::int16_t* samples, int count) override {
    Samples.insert(Samples.end(), samples, samples + count);
  }
  std::vector<std::int16_t> Samples;
};

// Samples from the chain's end to the loudspeaker.
std::ptrdiff_t DelayToTheEar(const std::string& settings) {
  Ear ear;
  FrameRig rig("[frmMain]\nAutoStartSDR=True\nCurrentPlaybackDeviceName=Ear\n" + settings);
  rig.Sound.AddPlaybackDevice("Ear", &ear);
  EXPECT_TRUE(rig.Start());
  rig.Run(2.0);
  EXPECT_EQ(rig.Sound.Statistics().Underruns, 0);
  const auto sinceFirstSound = [](const std::vector<std::int16_t>& samples) {
    return samples.end() -
           std::find_if(samples.begin(), samples.end(), [](auto value) { return value != 0; });
  };
  return sinceFirstSound(rig.Heard) - sinceFirstSound(ear.Samples);
}

TEST(FrmMainStart, AShortDelayTakesFourBlocksFromTheWayToTheEar) {
  const auto usual = static_cast<double>(DelayToTheEar(""));
  const auto shorter = static_cast<double>(DelayToTheEar("ShortDelay=True\n"));
  EXPECT_NEAR(usual, 6.0 * SamplesPerEvent, 1.0 * SamplesPerEvent);
  EXPECT_NEAR(shorter, 2.0 * SamplesPerEvent, 1.0 * SamplesPerEvent);
  EXPECT_NEAR(usual - shorter, 4.0 * SamplesPerEvent, 0.1 * SamplesPerEvent);
}

TEST(FrmMainStart, SecondInstanceIsToldBeforeAnythingIsShown) {
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

TEST(FrmMainStart, ASettingsLineThatIsNoneIsToldInTheLog) {
  FrameRig rig("[DDSSerialIF]\nCOM1 /dev/ttyUSB0\n");
  ASSERT_TRUE(rig.Start());
  EXPECT_EQ(rig.Log->Lines().front(),
            "config/settings.ini, line 6 isn't a setting and stays in the file as it "
            "stands: \"COM1 /dev/ttyUSB0\"");
  rig.Stop();
  EXPECT_NE(rig.StoredText().find("\nCOM1 /dev/ttyUSB0\n"), std::string::npos);
}

TEST(FrmMainStart, WithoutBandPlansNothingIsTouched) {
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

TEST(FrmMainStart, APortThatDoesNotOpenLeavesARadioThatTunesNothing) {
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

TEST(FrmMainStart, APrinterPortOutOfReachIsToldOnce) {
  FrameRig rig("[frmMain]\nVFO1.IFType=1\nSDRModelNo=1\n");
  rig.Printer.FailCheck(Error{13, "Can't reach the printer port. Join the group lp."});
  ASSERT_TRUE(rig.Start());
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  EXPECT_EQ(rig.Boxes.Messages[0].Text, "Can't reach the printer port. Join the group lp.");
  const auto& lines = rig.Log->Lines();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), rig.Boxes.Messages[0].Text), 1);
}

TEST(FrmMainStart, APortThatVanishesIsToldOnceAndTakenAgain) {
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

TEST(FrmMainStart, AnUnknownInterfaceIsToldAndTheStartGoesOn) {
  FrameRig rig("[frmMain]\nVFO1.IFType=7\n");
  ASSERT_TRUE(rig.Start());
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  EXPECT_EQ(rig.Boxes.Messages[0].Text,
            "Unknown DDSIFType specified in Registry - Check DDSIFType key - No interface initialised");
  EXPECT_EQ(rig.Log->Lines().back(), "frmMain:frmMain:Form_Initialize:End");
}

TEST(FrmMainStart, AnErrorInsideAStepEndsTheProgram) {
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

TEST(FrmMainStart, PanelAgreesWithTheStateItShows) {
  FrameRig rig;
  ASSERT_TRUE(rig.Start());
  const PublicVars& vars = rig.Vars();
  EXPECT_EQ(rig.Text(IndexedName("optMode", vars.CurrentDemodMode)), "1");
  EXPECT_EQ(rig.Text(IndexedName("optFilter", vars.CurrentFilterMode)), "1");
  EXPECT_EQ(rig.Text(IndexedName("optIFFilter", vars.CurrentIFFilterMode)), "1");
  EXPECT_EQ(rig.Text(IndexedName("optAGC", vars.AGCMode)), "1");
  EXPECT_EQ(rig.Text("chkAGC") == "1", vars.AGCON);
  EXPECT_EQ(rig.Text("chkIFFilter") == "1", vars.IFFilterActive);
  EXPECT_EQ(rig.Text("chkNotchOn") == "1", vars.NotchActive);
  EXPECT_EQ(rig.Text("chkTuneLo") == "1", vars.LowSideLO);
  EXPECT_EQ(rig.Text("optDisplaySize(1)"), "1");
  EXPECT_EQ(rig.Text("optPwr(1)"), "1");
  EXPECT_TRUE(rig.At("optPwr(0)").Enabled());
  EXPECT_FALSE(rig.Frame().IsOn());
  EXPECT_FALSE(vars.FiltersDirty);
  EXPECT_TRUE(rig.VFO().AutoUpdate);  // the board's own
  rig.Run(0.1);
  EXPECT_EQ(rig.Digits(), "072050000");
  EXPECT_EQ(rig.Text("lblTuningRate"), "100 Hz");
  EXPECT_EQ(rig.Text("lblTuneDialRate"), "100 Hz");
  EXPECT_EQ(rig.Text("lblStatsVal(3)"), "52 205 000 Hz");
  EXPECT_EQ(rig.Oscillator(), 522050000);
}

TEST(FrmMainStart, DefaultsFillWhatAStoredFileLacks) {
  FrameRig rig;
  rig.Options.Defaults = [](SettingsStore& store) {
    if (store.GetSetting("VFO1.DRT1", "TunedFrequency", "").empty()) ADD_FAILURE() << "not read yet";
    store.SaveSetting("frmMain", "AutoStartSDR", "True");
  };
  ASSERT_TRUE(rig.Start());
  EXPECT_TRUE(rig.Frame().IsOn());
}

TEST(FrmMainStart, AutoStartReceivesAtTheEndOfTheStart) {
  FrameRig rig("[frmMain]\nAutoStartSDR=True\n");
  ASSERT_TRUE(rig.Start());
  EXPECT_TRUE(rig.Frame().IsOn());
  EXPECT_FALSE(rig.At("optPwr(2)").Enabled());
  const auto& lines = rig.Log->Lines();
  EXPECT_EQ(lines[lines.size() - 2], "optPwr_click : End");
  rig.Run(1.0);
  EXPECT_GT(rig.Blocks, 20);
  EXPECT_GT(rig.Loudness(), 50.0);
}

TEST(FrmMainEnd, SoundStopsThenSettingsThenTheVFOThenOneWrite) {
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

TEST(FrmMainEnd, AFullDiskIsTold) {
  FrameRig rig;
  ASSERT_TRUE(rig.Start());
  rig.Storage.Watched.clear();
  rig.Storage.Fail(FileOperation::MakeDirectory, Error{28, "no space left"});
  rig.Stop();
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  EXPECT_NE(rig.Boxes.Messages[0].Text.find("no space left"), std::string::npos);
}

TEST(FrmMainEnd, WhatTheTableReadsBackIsThereAgain) {
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
  EXPECT_EQ(rig.Oscillator(), 72050300 - 450000000 < 0 ? 377949700 : 0);
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

TEST(FrmMainEnd, ThePanelsRefreshOptionWinsOverTheVFOs) {
  FrameRig rig("AutoUpdate=True\n[frmMain]\nAutoDDSRefresh=False\n");
  ASSERT_TRUE(rig.Start());
  EXPECT_FALSE(rig.VFO().AutoUpdate);
}

TEST(FrmMainStart, ABoardWhoseClockIsTooLowIsToldInOneBox) {
  FrameRig rig("[DDSAD9951]\nClkIn=50000000\n");
  ASSERT_TRUE(rig.Start());
  ASSERT_EQ(rig.Boxes.Messages.size(), 1U);
  for (const char* word : {"50000000 Hz", "45000000 Hz", "set ClkIn in section [DDSAD9951]"})
    EXPECT_NE(rig.Boxes.Messages[0].Text.find(word), std::string::npos) << word;
  rig.Wheel("lbl7Seg(4)", 3);
  rig.Run(3.0);
  EXPECT_EQ(rig.Boxes.Messages.size(), 1U);
}

TEST(FrmMainStart, PageKeysTuneWhereverThePointerIs) {
  FrameRig rig;
  ASSERT_TRUE(rig.Start());
  rig.At("lblNB").MouseMove({});
  rig.At("frmMain").KeyDown({Key::PageUp, {.Shift = true}});
  rig.Run(0.1);
  EXPECT_EQ(rig.Digits(), "072060000");
}

TEST(FrmMainStart, AClickOnAModeLeavesUpAndDownToTuning) {
  FrameRig rig;
  ASSERT_TRUE(rig.Start());
  rig.At("lbl7Seg(4)").MouseMove({});
  rig.At("frDemod").MouseMove({});
  rig.Click("optMode(1)");
  rig.At("frmMain").KeyDown({Key::Up, {}});
  rig.At("frmMain").KeyUp({Key::Up, {}});
  EXPECT_EQ(rig.Digits(), "072060000");
  rig.At("lblOutVol").MouseMove({});  // a value under the pointer has the keys
  rig.At("frmMain").KeyDown({Key::Up, {}});
  rig.Run(0.1);
  EXPECT_EQ(rig.Digits(), "072060000");
}

TEST(FrmMainEnd, DevicesAreFoundByNameAndADeviceThatIsGoneKeepsItsPlace) {
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

TEST(FrmMainEnd, APowerCutCostsAMinuteAtMost) {
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

TEST(FrmMainEnd, ASaveWaitsForAStepThatIsBeingSent) {
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
