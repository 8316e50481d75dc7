// The keys that no control takes.
#include <gtest/gtest.h>

#include "core/FrameRig.h"

namespace quorl::test {
namespace {

TEST(FrmMainKeys, PageKeysTuneWhereverThePointerIs) {
  FrameRig rig;
  ASSERT_TRUE(rig.Start());
  rig.At("lblNB").MouseMove({});
  rig.At("frmMain").KeyDown({Key::PageUp, {.Shift = true}});
  rig.Run(0.1);
  EXPECT_EQ(rig.Digits(), "072060000");
}

// The step of the last time, finer than the grid that a board starts with.
TEST(FrmMainKeys, AStoredFineStepTunesOnAndOn) {
  FrameRig rig("TuneStep=10\n");
  ASSERT_TRUE(rig.Start());
  for (int i = 0; i < 3; ++i) rig.At("frmMain").KeyDown({Key::PageUp, {}});
  rig.Run(0.1);
  EXPECT_EQ(rig.Digits(), "072050030");
}

TEST(FrmMainKeys, AClickOnAModeLeavesUpAndDownToTuning) {
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

TEST(FrmMainKeys, KeysOfTheWindowOrOfAMenuDoNotTune) {
  FrameRig rig;
  ASSERT_TRUE(rig.Start());
  for (const char* under : {"lbl7Seg(4)", "frDemod"}) {
    for (const Key& key :
         {Key{Key::A, {.Ctrl = true}}, Key{Key::Z, {.Ctrl = true}}, Key{Key::A, {.Alt = true}},
          Key{Key::Up, {.Alt = true}}, Key{Key::Down, {.Alt = true}}, Key{Key::Left, {.Alt = true}}}) {
      rig.At(under).MouseMove({});
      rig.At("frmMain").KeyDown(key);
      rig.At("frmMain").KeyUp(key);
      EXPECT_EQ(rig.Digits(), "072050000") << under << " " << key.Code;
      EXPECT_EQ(rig.Text("lblTuningRate"), "1 KHz") << under << " " << key.Code;
    }
  }
  rig.At("frmMain").KeyDown({Key::Up, {.Ctrl = true}});
  EXPECT_EQ(rig.Digits(), "072060000");
}

}  // namespace
}  // namespace quorl::test
