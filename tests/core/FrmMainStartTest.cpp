// The order of the start: each line before its work, nothing before its line.
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
                    ":Creating SpectrumAnalyser Object", ":Making Form Visible", ":Setting Colour Scheme",
                    ":Creating Wavfile Object", ":Positioning Presets", ":Initialising MouseOverS",
                    ":Initialising 7Segment Display Tuning", ":Initialising dialtuner"});
  for (const int index : {2, 3, 4, 5, 7, 8, 9}) {
    add("Form_Load", {":Initialising CtlArray(" + std::to_string(index) + ")"});
  }
  add("Form_Load", {":Initialising sldNB", ":Initialising dialNB", ":Initialising CtlArray(10)",
                    ":Initialising dialOutVol", ":Initialising sldOutVolume"});
  for (const int index : {11, 12, 13, 14, 15, 6}) {
    add("Form_Load", {":Initialising CtlArray(" + std::to_string(index) + ")"});
  }
  add("Form_Load", {":Initialising ctlArray(PicScopeIndex)"});
  for (const int index : {17, 18, 19}) {
    add("Form_Load", {":Initialising ctlArray(" + std::to_string(index) + ")"});
  }
  add("Form_Load",
      {":Initialising cboBandSelect", ":Initialising optSubBand", ":Initialising optPreset", ":New QUORLDX8",
       ":New clsFFTReal", ":Initialising FFTReal", " : Initialising Interface Objects",
       ":Initialising sldAGCAttack", ":Initialising sldAGCDecay", ":Initialising SpectrumAnalyser"});
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
       ":Select Band in use last time", ":Set the last tuned frequency for Spectrum Analyser",
       ":Call modWheelMouse.init", ":Set up default values in the AGC delayline",
       ":Call MouseOverS.lblFilterHi_Wheel", ":Call MouseOverS.lblFilterLo_Wheel",
       ":Initialise WavFile Object", ":Call tmrPerfStats_Timer", ":Enable Power Butons", ":Enable TmrTune",
       ":Enable TmrVFOUpdate", ":Enable TmrShaft", ":Enable TmrClock", ":Enable TmrSubBands",
       ":Initialise the Tuning Step Selector Drop Down List", ":Call DarkenControls"});
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
  EXPECT_EQ(rig.Frame().MainBands()[1].FileName, "plans/Broadcast.bpl");
  EXPECT_TRUE(rig.Boxes.Messages.empty());
}

TEST(FrmMainStart, ThePowerWaitsForTheEndOfTheStart) {
  FrameRig rig;
  std::vector<std::string> captions;
  bool touched = false;
  Listening hearing;
  rig.Sound.OnList = [&] {
    if (touched) return;
    touched = true;
    for (const char* name : {"optPwr(0)", "optPwr(1)", "optPwr(2)"}) {
      EXPECT_FALSE(rig.At(name).Enabled()) << name;
      rig.Click(name);
    }
    hearing = rig.Log->OnLine.Listen([&](const std::string& line) {
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
  Listening hearing;
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
    hearing = rig.Log->OnLine.Listen([&](const std::string& line) {
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
  EXPECT_EQ(rig.Text("lstLog"), rig.Log->Lines().back()) << "the panel goes on hearing beside the test";
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

}  // namespace
}  // namespace quorl::test
