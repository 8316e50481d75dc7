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

}  // namespace
}  // namespace quorl::test
