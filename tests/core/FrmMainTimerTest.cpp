// The timer on the whole radio.
#include <gtest/gtest.h>

#include "core/FrameRig.h"
#include "platform/CalendarDays.h"
#include "recorder/files/RecordingHeader.h"

namespace quorl::test {
namespace {

// One second past the start of the clock, for ten seconds.
std::string Programme(FrameRig& rig, const std::string& target, int rate = 0) {
  const double now = DaysOf(rig.Clock.Now()), second = 1.0 / 86400.0;
  return "True;" + DateText(now + second) + ";" + DateText(now + 11 * second) + ";Once;" +
         std::to_string(rate) + ";" + target;
}

class FrmMainTimer : public testing::Test {
 protected:
  // Line 1 of the timer is of that target: dHz, mode, filter, sub-band, preset, plan.
  void Start(const std::string& target, int rate = 0) {
    rig.Storage.MakeDirectory("music");
    rig.Storage.Put("plans/Amateur.bpl", kTinyPlan);
    rig.Storage.Put(FrameRig::kSettings,
                    rig.StoredText() + "[WavFile]\nRecBlockSizeInSamples=32768\nLastDirectory=music\n" +
                        "Decimator=2\n[Timer]\nTimer1=" + Programme(rig, target, rate) + "\n");
    EXPECT_TRUE(rig.Start());
  }
  std::vector<std::string> Names() { return rig.Storage.List("music", ".wav"); }
  Recording Read(const std::string& path) {
    Failure failure;
    const auto file = rig.Storage.Open(path, OpenMode::Read, failure);
    EXPECT_FALSE(failure) << path;
    return file ? ReadRecording(*file).Own.value_or(Recording{}) : Recording{};
  }
  bool IsLogged(const std::string& words) {
    const auto& lines = rig.Log->Lines();
    return std::any_of(lines.begin(), lines.end(),
                       [&words](const std::string& line) { return line.find(words) != std::string::npos; });
  }

  FrameRig rig;
};

TEST_F(FrmMainTimer, ItRecallsAPresetOfAPlanThatIsNotOpen) {
  Start("0;0;0;0;0;amateur");
  ASSERT_EQ(rig.Frame().Memories().Plan()->Name, "Amateur") << "the first one";
  rig.Frame().Memories().cboBandSelect.SetListIndex(1);
  EXPECT_FALSE(rig.Frame().IsOn());
  rig.Run(6.0);
  EXPECT_TRUE(rig.Frame().IsOn());
  EXPECT_EQ(rig.Vars().CurrentDemodMode, DemodMode::LSB);
  EXPECT_EQ(rig.VFO().TunedFrequency(), 71000000);
  EXPECT_GT(rig.Tone(800), 100.0) << "the talker is heard";
  EXPECT_EQ(rig.Text("lblRecorderState").substr(0, 23), "The timer records until");
  EXPECT_EQ(rig.Text("optRecordSampleRate(0)"), "1");
  rig.Run(10.0);
  EXPECT_FALSE(rig.Frame().IsOn());
  ASSERT_EQ(Names().size(), 1U);
  EXPECT_TRUE(Names()[0].ends_with(" 7100 kHz.wav")) << Names()[0];
  EXPECT_EQ(Read("music/" + Names()[0]).Format.Rate, 48000);
  EXPECT_EQ(rig.Text("optRecordSampleRate(1)"), "1");
  EXPECT_EQ(rig.Text("lblRecorderState"), "Ready");
  EXPECT_NE(rig.StoredText().find("Timer1=False;"), std::string::npos) << "it was meant for once";
  EXPECT_TRUE(rig.Boxes.Messages.empty());
}

TEST_F(FrmMainTimer, ItRecordsTheIFOfAFrequencyAndTheProgramMayEndMeanwhile) {
  Start("72063000;1;1;0;0;", TimerProgramme::kIF);
  rig.Click("optPwr(0)");
  rig.Run(5.0);
  EXPECT_EQ(rig.Vars().CurrentDemodMode, DemodMode::USB);
  EXPECT_EQ(rig.Vars().CurrentFilterMode, 1);
  EXPECT_EQ(rig.VFO().TunedFrequency(), 72063000);
  EXPECT_EQ(rig.Text("chkRecordIF"), "1");
  rig.Restart();
  EXPECT_EQ(rig.Text("chkRecordIF"), "0") << "what the user had chosen";
  EXPECT_EQ(rig.Text("optRecordSampleRate(1)"), "1");
  EXPECT_TRUE(Read("plans/~QUORLWAV.TMP").Format.IF);
}

TEST_F(FrmMainTimer, WhatIsGoneIsToldAndNothingIsTouched) {
  Start("0;0;0;0;7;Amateur");
  const std::int32_t tuned = rig.VFO().TunedFrequency();
  rig.Run(3.0);
  EXPECT_TRUE(IsLogged("The timer can't record: the plan Amateur has no such preset any more"));
  EXPECT_FALSE(rig.Frame().IsOn());
  EXPECT_EQ(rig.VFO().TunedFrequency(), tuned);
}

// Somebody is asked what is to become of a recording: that is decided first.
TEST_F(FrmMainTimer, ItWaitsForAnAnswer) {
  Start("72063000;1;1;0;0;");
  rig.Click("optPwr(0)");
  rig.Press("cmdWavCtls", 0);
  rig.Run(0.5);
  rig.Press("cmdWavCtls", 3);
  bool asked = false;
  rig.Boxes.WhileOpen = [&] {
    asked = true;
    rig.Run(4.0);
    EXPECT_NE(rig.Frame().WavFile().PlayerMode(), PlayerModes::Recording);
  };
  rig.Boxes.MessageAnswers.push_back(MessageAnswer::No);
  rig.Press("cmdWavCtls", 9);
  EXPECT_TRUE(asked);
  rig.Boxes.WhileOpen = {};
  rig.Run(2.0);
  EXPECT_TRUE(rig.Frame().WavFile().IsRecording());
}

// What a crash has left is saved by its date where nobody has answered for it when the next hour comes; what
// was refused, too. Neither costs the programme more than a few seconds.
class LeftBehind : public FrmMainTimer, public testing::WithParamInterface<MessageAnswer> {};

TEST_P(LeftBehind, IsSavedAndTheRestIsRecorded) {
  Start("72063000;1;1;0;0;");
  rig.Click("optPwr(0)");
  rig.Run(4.0);
  ASSERT_TRUE(rig.Frame().WavFile().IsRecording());
  rig.Stop();
  bool asked = false;
  rig.Boxes.WhileOpen = [&] {
    asked = true;
    if (GetParam() == MessageAnswer::No) return;  // at once
    rig.Run(4.0);
    EXPECT_TRUE(rig.Frame().WavFile().IsRecording()) << "with the question standing there";
  };
  rig.Boxes.MessageAnswers.push_back(GetParam());
  ASSERT_TRUE(rig.Start());
  rig.Run(4.0);
  EXPECT_TRUE(asked);
  EXPECT_TRUE(rig.Frame().WavFile().IsRecording());
  rig.Boxes.WhileOpen = {};
  rig.Run(12.0);
  EXPECT_EQ(Names().size(), 2U);
  EXPECT_EQ(rig.Boxes.Messages.size(), 1U) << "no box after the offer";
}

INSTANTIATE_TEST_SUITE_P(FrmMainTimer, LeftBehind, testing::Values(MessageAnswer::Yes, MessageAnswer::No));

}  // namespace
}  // namespace quorl::test
