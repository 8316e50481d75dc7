// Memories on the running radio.
#include <gtest/gtest.h>

#include "core/FrameRig.h"

namespace quorl::test {
namespace {

TEST(FrmMainMemories, APresetIsHeardWithinThreeBlocksAndFoundAgainAfterARestart) {
  FrameRig rig("[frmMain]\nAutoStartSDR=True\n");
  rig.Storage.Put("plans/Amateur.bpl", kTinyPlan);
  ASSERT_TRUE(rig.Start());
  rig.Run(0.5);
  EXPECT_EQ(rig.Digits(), "072050000");
  const std::int64_t before = rig.Blocks;
  hand::Click(rig.At("optPreset(0)"), {.Button = MouseButton::Left});
  while (rig.Blocks < before + 3) rig.Run(0.002);
  EXPECT_EQ(rig.Oscillator(), 450000000 + 71000000);
  EXPECT_FALSE(rig.Vars().FiltersDirty);
  rig.Run(2.0);
  EXPECT_GT(rig.Tone(800), 300.0) << "the talker of the lower sideband";
  rig.Restart();
  EXPECT_EQ(rig.Digits(), "071000000");
  EXPECT_EQ(rig.Text("optPreset(0)"), "1");
  EXPECT_EQ(rig.Vars().CurrentDemodMode, DemodMode::LSB);
}

// A plan that was never opened in a run keeps its file, whatever happens to that.
TEST(FrmMainMemories, APlanThatWasNotOpenedIsNotTouched) {
  FrameRig rig("[frmMain]\nAutoStartSDR=True\n");
  rig.Storage.Put("plans/Broadcast.bpl", "not even a plan");
  ASSERT_TRUE(rig.Start());
  rig.Run(70.0);
  rig.Storage.Remove("plans/Broadcast.bpl");
  rig.Run(70.0);
  rig.Stop();
  EXPECT_FALSE(rig.Storage.Exists("plans/Broadcast.bpl"));
  EXPECT_TRUE(rig.Boxes.Messages.empty());
}

// What a program that was killed while it saved has left behind goes with the next start.
TEST(FrmMainMemories, APlansFolderIsTidiedAtTheStart) {
  FrameRig rig;
  rig.Storage.Put("plans/Amateur.bpl.1.new", "[Main");
  rig.Storage.Put("plans/Amateur.bpl.bak", "the user's");
  ASSERT_TRUE(rig.Start());
  EXPECT_FALSE(rig.Storage.Exists("plans/Amateur.bpl.1.new"));
  EXPECT_TRUE(rig.Storage.Exists("plans/Amateur.bpl.bak"));
}

std::string StoredPlan(FrameRig& rig, const std::string& name) {
  Failure failure;
  return rig.Storage.Read("plans/" + name + ".bpl", failure).value_or("");
}

TEST(FrmMainMemories, ACloseInTheMiddleOfALoadEndsWithEverythingSaved) {
  FrameRig rig;
  rig.Storage.Put("plans/Amateur.bpl", kTinyPlan);
  rig.Storage.Put("plans/Broadcast.bpl", "[SubBand.0]\r\nFreqMin=6000000\r\nFreqCurrent=6070000\r\n");
  ASSERT_TRUE(rig.Start());
  hand::Click(rig.At("optPreset(3)"), {.Button = MouseButton::Right, .With = {.Shift = true}});
  rig.Worker.SetCallTime(std::chrono::milliseconds(200));
  bool loading = false;
  rig.Queue.Post([&] {
    loading = rig.Frame().Memories().IsLoading();
    rig.Click("optPwr(2)");
    rig.Frame().Form_Unload();
  });
  rig.Get<ComboBox>("cboBandSelect").SetListIndex(1);
  EXPECT_TRUE(loading);
  EXPECT_EQ(rig.Closed, 1);
  EXPECT_EQ(rig.Text("frPresets"), "Broadcast") << "the load went on to its end";
  EXPECT_EQ(StoredPlan(rig, "Amateur").find("[Preset.0.3]"), std::string::npos);
  rig.Run(0.1);
  EXPECT_NE(StoredPlan(rig, "Amateur").find("[Preset.0.3]"), std::string::npos);
  EXPECT_NE(StoredPlan(rig, "Broadcast").find("FreqMin=6000000\r\nFreqCurrent=6070000\r\nIndex="),
            std::string::npos);
  EXPECT_NE(rig.StoredText().find("CurrentMainBandName=Broadcast\n"), std::string::npos);
  EXPECT_TRUE(rig.Boxes.Messages.empty());
}

// The minute goes by while the user thinks about what a load asks.
TEST(FrmMainMemories, ASaveThatFallsIntoALoadComesAfterIt) {
  FrameRig rig;
  rig.Storage.Put("plans/Amateur.bpl", kTinyPlan);
  rig.Storage.Put("plans/Broadcast.bpl", "[SubBand.0]\nFreqMin=6000000\nFreqCurrent=6070000\n");
  ASSERT_TRUE(rig.Start());
  hand::Click(rig.At("optPreset(3)"), {.Button = MouseButton::Right, .With = {.Shift = true}});
  rig.Boxes.MessageAnswers.push_back(MessageAnswer::Yes);
  rig.Boxes.WhileOpen = [&] { rig.Run(70.0); };
  rig.Get<ComboBox>("cboBandSelect").SetListIndex(1);
  rig.Boxes.WhileOpen = {};
  EXPECT_EQ(rig.Boxes.Messages.size(), 1U);
  EXPECT_EQ(rig.Digits(), "060700000") << "recalled as it was in the file";
  rig.Run(1.0);
  EXPECT_NE(StoredPlan(rig, "Amateur").find("[Preset.0.3]"), std::string::npos);
}

}  // namespace
}  // namespace quorl::test
