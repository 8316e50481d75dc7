// The recorder on the running radio.
#include <gtest/gtest.h>

#include "core/FrameRig.h"
#include "recorder/files/RecordingHeader.h"

namespace quorl::test {
namespace {

constexpr char kTemporary[] = "plans/~QUORLWAV.TMP";

class FrmMainRecorder : public testing::Test {
 protected:
  FrmMainRecorder() {
    rig.Storage.MakeDirectory("music");
    rig.Storage.Put("plans/Amateur.bpl", kTinyPlan);
    EXPECT_TRUE(rig.Start());
    rig.Click("optPwr(0)");
    rig.Run(0.5);
  }
  void Button(int index) { rig.Press("cmdWavCtls", index); }
  Recording Read(const std::string& path) {
    Failure failure;
    const auto file = rig.Storage.Open(path, OpenMode::Read, failure);
    EXPECT_FALSE(failure) << failure->Text;
    return file ? ReadRecording(*file).Own.value_or(Recording{}) : Recording{};
  }

  FrameRig rig{"[WavFile]\nRecBlockSizeInSamples=32768\nDecimator=2\n"};
};

// Whoever tunes: a hand, or a memory.
TEST_F(FrmMainRecorder, ATourIsLoggedAndComesBackThroughTheLoudspeaker) {
  EXPECT_EQ(rig.Text("optRecordSampleRate(1)"), "1");
  rig.Set("txtRecordFileName", "music/tour");
  Button(0);
  rig.Run(3.0);
  rig.Set("picFreqDisp", "7206300");
  rig.Run(3.0);
  hand::Click(rig.At("optPreset(0)"), {.Button = MouseButton::Left});
  rig.Run(3.0);
  Button(3);
  rig.Run(0.5);
  EXPECT_FALSE(rig.Frame().IsOn());
  EXPECT_TRUE(rig.Storage.Exists(kTemporary));
  Button(8);
  EXPECT_FALSE(rig.Storage.Exists(kTemporary));
  const Recording tour = Read("music/tour.wav");
  ASSERT_EQ(tour.Log.size(), 3U);
  EXPECT_EQ(tour.Log[0].Freq, 72050000);
  EXPECT_EQ(tour.Log[1].Freq, 72063000);
  EXPECT_EQ(tour.Log[2].Freq, 71000000);
  EXPECT_EQ(rig.Oscillator(), 450000000 + 71000000) << "far from what was heard first";

  Button(1);  // what has just been saved
  EXPECT_TRUE(rig.Frame().IsOn());
  EXPECT_FALSE(rig.At("frPresets").Visible());
  rig.Run(2.0);
  EXPECT_GT(rig.Tone(500), 300.0) << "the broadcaster";
  EXPECT_EQ(rig.Text("lblRecordTime"), "00:00:01");
  rig.Run(8.0);
  EXPECT_FALSE(rig.Frame().IsOn()) << "the end is a Stop";
  EXPECT_TRUE(rig.Boxes.Messages.empty());
}

// A night's recording is logged by the timer that shows the frequency.
TEST_F(FrmMainRecorder, AHiddenWindowDoesNotSlowTheLog) {
  Timer& timer = rig.Frame().Tuning().tmrTune;
  rig.Frame().SetSeen(false);
  EXPECT_EQ(timer.Interval(), 500);
  Button(0);
  EXPECT_EQ(timer.Interval(), 50);
  Button(3);
  rig.Boxes.MessageAnswers.push_back(MessageAnswer::No);
  Button(9);
  EXPECT_EQ(timer.Interval(), 500);
  Button(0);
  rig.Frame().SetSeen(true);
  rig.Frame().SetSeen(false);
  EXPECT_EQ(timer.Interval(), 50);
}

TEST_F(FrmMainRecorder, TheProgramsEndFinishesARecording) {
  Button(0);
  rig.Run(3.0);
  rig.Stop();
  const Recording left = Read(kTemporary);
  EXPECT_EQ(left.Format.Rate, 24000);
  EXPECT_EQ(left.Frames(), 4 * 32768 / 2) << "four full halves of 0.68 s";
  ASSERT_EQ(left.Log.size(), 1U);
  EXPECT_EQ(left.Log[0].Freq, 72050000);
}

// The window is closed while a slow disk takes the last half.
TEST_F(FrmMainRecorder, TheProgramsEndWaitsForASave) {
  rig.Set("txtRecordFileName", "music/night");
  Button(0);
  rig.Run(3.0);
  Button(3);
  rig.Run(0.1);
  rig.Worker.Stall();
  const int stored = rig.Storage.Writes;
  int ticks = 0;
  std::unique_ptr<QueueTimer> timer;
  timer = rig.Queue.CreateTimer([&] {
    EXPECT_TRUE(rig.Frame().WavFile().IsBusy());
    EXPECT_EQ(rig.Storage.Writes, stored) << "still there";
    ++ticks < 3 ? rig.Frame().Form_Unload() : rig.Worker.Resume();
    if (ticks == 3) timer->Stop();
  });
  timer->Start(std::chrono::milliseconds(100));
  Button(8);
  EXPECT_EQ(ticks, 3);
  rig.Run(1.0);
  EXPECT_GT(rig.Storage.Writes, stored);
  EXPECT_EQ(Read("music/night.wav").Frames(), 4 * 32768 / 2);
}

// A disk may take no long files: the length of the parts is a line of the settings, as long as a part holds
// what is written at once.
TEST_F(FrmMainRecorder, ThePartsAreAsLongAsTheSettingsSay) {
  rig.Stop();
  const std::string before = rig.StoredText();
  for (const int bytes : {327679, 327680}) {
    std::string settings = before;
    settings.insert(settings.find("RecBlockSizeInSamples="), "MostFileBytes=" + std::to_string(bytes) + "\n");
    rig.Storage.Put(FrameRig::kSettings, settings);
    ASSERT_TRUE(rig.Start());
    EXPECT_EQ(rig.Frame().WavFile().MostFileBytes, bytes < 327680 ? 2147483647 : bytes);
    if (bytes == 327680) break;
    rig.Stop();
    EXPECT_NE(rig.StoredText().find("MostFileBytes=327679"), std::string::npos) << "what was typed stays";
  }
  rig.Set("txtRecordFileName", "music/parts");
  rig.Click("optPwr(0)");
  Button(0);
  rig.Run(17.0);
  Button(3);
  Button(8);
  for (const char* name : {"music/parts.wav", "music/parts-2.wav", "music/parts-3.wav"}) {
    ASSERT_TRUE(rig.Storage.Exists(name)) << name;
    EXPECT_LE(Read(name).FileBytes, 327680);
  }
}

TEST_F(FrmMainRecorder, ItsSettingsAreKept) {
  rig.Press("optRecordSampleRate", 3);
  rig.Click("chkKeepTail");
  rig.Restart();
  EXPECT_EQ(rig.Text("optRecordSampleRate(3)"), "1");
  EXPECT_EQ(rig.Text("chkKeepTail"), "1");
  EXPECT_EQ(rig.Frame().WavFile().RecBlockSizeInSamples, 32768);
}

}  // namespace
}  // namespace quorl::test
