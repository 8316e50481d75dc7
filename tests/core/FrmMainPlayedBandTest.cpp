// An IF recording in the antenna's place: the radio is the recording's until it ends, and nobody else
// notices.
#include <gtest/gtest.h>

#include "core/FrameRig.h"

namespace quorl::test {
namespace {

constexpr IFOrigin kElektor{SDRModel::ElektorDRM, true};
constexpr std::int32_t kYesterday = 61000000;  // dHz
constexpr char kBandFile[] = "plans/yesterday.wav";

// The part of the settings file that VFO, panel and receiver keep.
std::string OfTheRadio(const std::string& stored) {
  const std::size_t begin = stored.find("[VFO1.DRT1]");
  return stored.substr(begin, stored.find("[SpectrumAnalyser]") - begin);
}

struct PlayedRig : FrameRig {
  explicit PlayedRig(const std::string& moreSettings = "[frmMain]\nAutoStartSDR=True\nSpectrumAnalyserOn=1\n")
      : FrameRig(moreSettings) {
    Storage.Put("plans/Amateur.bpl", kTinyPlan);
    Storage.Remove("plans/Broadcast.bpl");
  }
  PlayedBand& Band() { return Frame().Played(); }
  clsWavFile& Deck() { return Frame().WavFile(); }
  // A recording of four seconds, over and over.
  void Play(const std::vector<LogRecord>& log = {{0.0, kYesterday, 80, 400000}},
            const std::string& file = kBandFile) {
    constexpr std::int64_t kFrames = 192000;
    const RecordingFormat format{48000, 1, 16, kElektor};
    Storage.Put(file, MakeWavHeader(format, format.DataAt() + 2 * kFrames, kFrames) +
                          std::string(2 * kFrames, '\x11') + MakeTrailer(log));
    Deck().FileName = file;
    Deck().Looping = true;
    EXPECT_EQ(Deck().OpenFile(), 0);
    Press("cmdWavCtls", WavCtl::Play);
  }
  void Pause() { Press("cmdWavCtls", WavCtl::Pause); }
  std::string Plan() {
    Failure failure;
    return Storage.Read("plans/Amateur.bpl", failure).value_or("");
  }
  // What the listener has set, without what is measured.
  PublicVars Settings() {
    PublicVars vars = Vars();
    const PublicVars none;
    vars.SignalLevelRing = none.SignalLevelRing;
    vars.SignalPowerRing = none.SignalPowerRing;
    vars.SignalLevelIndex = vars.SignalPowerIndex = vars.PeakBinIndex = 0;
    vars.PeakBinRing = none.PeakBinRing;
    vars.AGCMeterGain = 0.0F;
    vars.FiltersDirty = vars.NotchDirty = false;
    return vars;
  }
  void TurnEverything() {
    Press("optMode", DemodMode::USB);
    Press("optFilter", 1);
    Set("chkIFFilter", "1");
    Set("chkNotchOn", "1");
    Set("chkNotchType", "1");
    Set("chkNB", "1");
    Set("chkDynFilter", "1");
    Press("optAGC", AGCPreset::Slow);
    Frame().Scrollables().SetValue(CtlIndex::BFO, 700.0F);
    Frame().Scrollables().SetValue(CtlIndex::FilterHi, 900.0F);
  }
};

TEST(FrmMainPlayedBand, TheRadioIsTheRecordingsAndTheWireStandsStill) {
  PlayedRig rig;
  ASSERT_TRUE(rig.Start());
  rig.Run(1.0);
  const std::int64_t oscillator = rig.Oscillator();
  const bool highSide = rig.VFO().HiSideLO;
  rig.Serial.SetRecording(true);
  rig.Serial.ClearLevels();
  rig.Play();
  EXPECT_EQ(rig.Vars().SDRModelNo, SDRModel::ElektorDRM);
  EXPECT_TRUE(rig.Vars().LowSideLO);
  EXPECT_EQ(rig.Text("chkTuneLo"), "1");
  EXPECT_EQ(rig.Digits(), "061000000");
  rig.Run(0.2);
  const clsSpectrumAnalyser& scope = rig.Frame().Scope().SpectrumAnalyser;
  EXPECT_NEAR(scope.Frequencies().FrequencyAt(scope.Frequencies().Width() / 2.0), 6100000.0, 30.0);

  const std::vector<std::function<void()>> ways = {
      [&] { rig.Wheel("lbl7Seg(4)", 3); },
      [&] {
        rig.At("frmMain").KeyDown({Key::PageUp, {}});
      },
      [&] { rig.Set("dialtuner", "7"); },
      [&] { rig.Frame().Radio().Tuning().Tune().MoveTo(72000000); },
      [&] { hand::Click(rig.At("optPreset(0)"), {.Button = MouseButton::Left}); },
      [&] { rig.Click("optSubBand(1)"); }};
  for (const auto& tune : ways) {
    tune();
    rig.Run(0.2);
    EXPECT_EQ(rig.Digits(), "061000000");
  }
  EXPECT_TRUE(rig.At("lblTuningLimit").Visible());
  EXPECT_EQ(rig.Text("lblTuningLimit"), "A recording plays: only the BFO tunes");
  rig.Set("chkTuneLo", "0");  // a wrong side can be put right for the ear
  EXPECT_FALSE(rig.Vars().LowSideLO);
  rig.Run(10.0);  // the chip's refreshing
  EXPECT_TRUE(rig.Serial.Levels().empty());

  rig.Pause();
  EXPECT_FALSE(rig.At("lblTuningLimit").Visible());
  EXPECT_EQ(rig.Digits(), "072050000");
  EXPECT_EQ(rig.VFO().HiSideLO, highSide);
  EXPECT_EQ(rig.Text("chkTuneLo"), highSide ? "0" : "1");
  EXPECT_EQ(rig.Oscillator(), oscillator);
  rig.Wheel("lbl7Seg(4)", 1);
  rig.Run(0.2);
  EXPECT_EQ(rig.Oscillator(), oscillator + 10000);
}

TEST(FrmMainPlayedBand, WhatIsSetForItGoesWithItAndComesBackAfterAPause) {
  PlayedRig rig;
  ASSERT_TRUE(rig.Start());
  rig.Press("optMode", DemodMode::LSB);
  rig.Set("chkNotchOn", "1");
  rig.Set("sldOutVolume", "-1500");
  rig.Run(1.0);
  const PublicVars live = rig.Settings();
  rig.Play();
  rig.TurnEverything();
  rig.Set("chkNotchOn", "0");
  rig.Run(1.0);
  const PublicVars heard = rig.Settings();
  EXPECT_EQ(heard.CurrentDemodMode, DemodMode::USB);
  EXPECT_EQ(heard.MixerFrequency, IFCentre + 700);

  rig.Pause();
  EXPECT_EQ(rig.Settings(), live);
  rig.Run(1.0);
  EXPECT_EQ(rig.Settings(), live);
  EXPECT_EQ(rig.Text("optMode(2)"), "1");
  EXPECT_EQ(rig.Text("chkNB"), "0");
  EXPECT_EQ(rig.Text("lblBFO"), "0");
  EXPECT_FALSE(rig.Frame().Radio().Rx.Filters.IFFilterI.Active);
  EXPECT_TRUE(rig.Frame().Radio().Rx.Filters.NotchFilterI.Active);

  rig.Set("sldOutVolume", "-2500");  // the volume is the listener's
  rig.Pause();
  PublicVars again = rig.Settings();
  EXPECT_EQ(again.OutputAttenuation, -2500.0F);
  again.OutputAttenuation = heard.OutputAttenuation;
  again.OutputVolume = heard.OutputVolume;
  EXPECT_EQ(again, heard);
  rig.Pause();
  EXPECT_EQ(rig.Vars().OutputAttenuation, -2500.0F);
  EXPECT_EQ(rig.Vars().OutputVolume, -2500.0F);

  // Another recording begins with what the radio is set to.
  rig.Play({}, "plans/other.wav");
  EXPECT_TRUE(rig.Band().IsPlaying());
  EXPECT_EQ(rig.Vars().CurrentDemodMode, DemodMode::LSB);
}

TEST(FrmMainPlayedBand, NothingGoesToMemoriesOrStoreWhereverItEnds) {
  for (const char* end : {"pause", "power off", "the program closed"}) {
    SCOPED_TRACE(end);
    PlayedRig rig;
    ASSERT_TRUE(rig.Start());
    hand::Click(rig.At("optPreset(0)"), {.Button = MouseButton::Left});
    rig.Run(61.0);
    const std::string stored = rig.StoredText(), plan = rig.Plan();
    ASSERT_NE(stored.find("\nTunedFrequency=71000000\n"), std::string::npos);
    rig.Play();
    rig.TurnEverything();
    hand::Click(rig.At("optPreset(1)"), {.Button = MouseButton::Right, .With = {.Shift = true}});
    rig.Run(130.0);
    EXPECT_EQ(rig.StoredText(), stored);
    EXPECT_EQ(rig.Plan(), plan);
    if (end == std::string("pause")) rig.Pause();
    if (end == std::string("power off")) rig.Click("optPwr(1)");
    EXPECT_EQ(rig.Band().IsPlaying(), end == std::string("the program closed"));
    rig.Restart();
    EXPECT_EQ(rig.Vars().SDRModelNo, SDRModel::DRT1);
    EXPECT_FALSE(rig.Vars().LowSideLO);
    EXPECT_EQ(rig.Vars().CurrentDemodMode, DemodMode::LSB);
    EXPECT_EQ(rig.Digits(), "071000000");
    EXPECT_EQ(rig.Text("chkTuneLo"), "0");
    EXPECT_EQ(rig.Plan(), plan);
    EXPECT_EQ(OfTheRadio(rig.StoredText()), OfTheRadio(stored));
  }
}

TEST(FrmMainPlayedBand, TheDisplayFollowsTheLog) {
  PlayedRig rig;
  ASSERT_TRUE(rig.Start());
  // Between the two nobody tells.
  rig.Play({{0.0, 61000000, 80, 100080}, {0.0, 70501000, 200080, 400000}});
  struct Step {
    std::int64_t Position;
    const char* Digits;
  };
  for (const Step& step : {Step{81, "061000000"}, Step{150081, "061000000"}, Step{200081, "070501000"},
                           Step{90001, "061000000"}}) {
    rig.Deck().SeekTo(step.Position);
    rig.Run(0.1);
    EXPECT_EQ(rig.Digits(), step.Digits) << step.Position;
  }
  rig.Pause();
  EXPECT_EQ(rig.Digits(), "072050000");
  rig.Pause();
  EXPECT_EQ(rig.Digits(), "061000000");
  rig.Play({}, "plans/other.wav");
  EXPECT_EQ(rig.Digits(), "000000000") << "a recording without a log";
}

}  // namespace
}  // namespace quorl::test
