// Someone who works every control at random: the state stays within its ranges, and the radio plays on.
#include "core/Monkey.h"

namespace quorl::test {
namespace {

TEST(FrmMainMonkey, AMinuteOfRandomGestures) {
  Surfaces surfaces;
  FrameRig rig;
  rig.Storage.Put("plans/Amateur.bpl", kTinyPlan);
  rig.KeepAudio = false;
  ASSERT_TRUE(rig.Start());
  surfaces.LendTo(rig);
  rig.Set("chkSpectrumAnalyser", "1");
  Monkey monkey(rig, 20241122);
  int gestures = 0;
  for (const std::int64_t end = rig.Clock.Microseconds() + 60000000; rig.Clock.Microseconds() < end;) {
    monkey.Gesture();
    rig.Run(monkey.Pause());
    ++gestures;
    ASSERT_EQ(Fault(rig), "") << "after gesture " << gestures << " on " << monkey.last;
    if (!rig.Frame().IsOn() && monkey.Chance(20)) rig.Click("optPwr(0)");
  }
  EXPECT_GT(gestures, 300);
  EXPECT_GT(rig.Blocks, 500);
  if (!rig.Frame().IsOn()) rig.Click("optPwr(0)");
  const std::int64_t blocks = rig.Blocks;
  rig.Run(2.0);
  EXPECT_GT(rig.Blocks, blocks + 40);
  rig.Restart();
  EXPECT_EQ(Fault(rig), "");
}

}  // namespace
}  // namespace quorl::test
