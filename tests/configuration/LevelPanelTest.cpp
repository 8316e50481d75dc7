#include "configuration/LevelPanel.h"

#include <gtest/gtest.h>

#include "configuration/SoundRig.h"
#include "state/PublicConstants.h"

namespace quorl {
namespace {

struct LevelRig : test::SoundRig {
  LevelRig() {
    Panel.ChooseInput(1);
    Panel.ChooseOutput(1);
  }
  std::string Hint() { return Panel.lblLevelHint.Caption(); }
  // What the radio does with a block that it has captured.
  void RadioBlocks(int count, std::int16_t left, std::int16_t right) {
    const std::vector<std::int16_t> l(2048, left), r(2048, right);
    for (int i = 0; i < count; ++i) Panel.NoteBlock(l.data(), r.data(), 2048);
  }
  // Whether anybody has the input open.
  bool IsInputOpen() { return !Sound.Opened("Line In").empty(); }

  bool Hears = false, Lent = false;
  int Freed = 0;
  LevelPanel Panel{
      Controls, "frmTest", Sound, Queue,
      LevelLinks{[this](int) { return Hears; }, [this] { return ++Freed > 0; }, [this] { return Lent; }}};
};

TEST(LevelPanel, ShowsBothChannelsInTheirBandsWhileItIsSeen) {
  LevelRig rig;
  rig.LineIn = {.Left = 1000, .Right = 30000, .Degrees = 90};
  rig.Run(1);
  EXPECT_FALSE(rig.IsInputOpen());
  EXPECT_EQ(rig.Text("frmTest.lblLevel(0)"), "");
  rig.Panel.Show(true);
  EXPECT_EQ(rig.Freed, 1);  // before it was opened
  rig.Run(0.5);
  EXPECT_TRUE(rig.IsInputOpen());
  EXPECT_EQ(rig.Text("frmTest.lblLevel(0)"), "-30 dB  low");
  EXPECT_EQ(rig.Text("frmTest.lblLevel(1)"), "-1 dB  too loud");
  EXPECT_EQ(rig.At("frmTest.lblLevel(0)").ForeColour(), 0x00FFFFU);
  EXPECT_EQ(rig.At("frmTest.picLevel(1)").ForeColour(), 0x0000FFU);
  EXPECT_NEAR(rig.Panel.picLevel(0).Level, 0.5, 0.01);
  EXPECT_EQ(rig.Hint().substr(0, 4), "Low:");  // the board of a real signal uses the left one
  rig.LineIn = {.Left = 5000, .Right = 5000, .Degrees = 90};
  rig.Run(2);
  EXPECT_EQ(rig.Text("frmTest.lblLevel(0)"), "-16 dB  right");
  EXPECT_EQ(rig.Hint(), "The level is right.");
  rig.Panel.Show(false);
  EXPECT_FALSE(rig.IsInputOpen());
  EXPECT_EQ(rig.Text("frmTest.lblLevel(0)"), "");
  EXPECT_EQ(rig.Hint(), "");
  EXPECT_EQ(rig.Panel.picLevel(0).Level, 0.0);
}

TEST(LevelPanel, SaysWhatIsWrongWithTheCableForTheBoardInUse) {
  struct Case {
    test::SoundRig::Tone LineIn;
    const char *Pair, *Real;  // how the hint begins
  };
  const Case cases[] = {
      {{.Left = 5000, .Right = 5000, .Degrees = 90}, "The level is right", "The level is right"},
      {{.Left = 5000, .Right = 0}, "The right channel is silent", "The level is right"},
      {{.Left = 0, .Right = 5000},
       "The left channel is silent: this board needs both",
       "The left channel is silent: this board's signal belongs there"},
      {{.Left = 5000, .Right = 4000}, "Both channels carry the same", "The level is right"},
      {{.Left = 0, .Right = 0}, "Silence", "Silence"},
  };
  for (const Case& each : cases) {
    for (const int model : {SDRModel::DRT1, SDRModel::IQXtalRX, SDRModel::RealToIQRX}) {
      LevelRig rig;
      rig.LineIn = each.LineIn;
      rig.Panel.ChooseBoard(model);
      rig.Panel.Show(true);
      rig.Run(2);
      const std::string wanted = model == SDRModel::IQXtalRX ? each.Pair : each.Real;
      EXPECT_EQ(rig.Hint().substr(0, wanted.size()), wanted) << model;
    }
  }
}

TEST(LevelPanel, TakesTheRadiosOwnBlocksAndGetsOutOfItsWay) {
  LevelRig rig;
  rig.LineIn = {.Left = 5000, .Right = 5000};
  rig.Panel.Show(true);
  rig.Run(0.5);
  ASSERT_TRUE(rig.IsInputOpen());
  // The radio opens the device: it is free at once, and stays so while the radio is at it.
  rig.Panel.LetGo();
  EXPECT_FALSE(rig.IsInputOpen());
  rig.Run(1);
  EXPECT_FALSE(rig.IsInputOpen());
  rig.Hears = true;
  rig.RadioBlocks(3, 20000, 20);
  rig.Run(0.2);
  EXPECT_FALSE(rig.IsInputOpen());
  EXPECT_EQ(rig.Text("frmTest.lblLevel(0)"), "-4 dB  too loud");
  // It hears nothing any more; then it is switched off, or goes to another device.
  rig.Run(3);
  EXPECT_EQ(rig.Hint(), "Nothing comes from this input.");
  rig.Hears = false;
  rig.RadioBlocks(3, 20000, 20);
  rig.Run(0.5);
  EXPECT_TRUE(rig.IsInputOpen());
  EXPECT_EQ(rig.Text("frmTest.lblLevel(0)"), "-16 dB  right");
}

TEST(LevelPanel, RestsWhileTheCardIsLentAndWhereThereIsNoInput) {
  LevelRig rig;
  rig.LineIn = {.Left = 5000, .Right = 5000};
  rig.Panel.Show(true);
  rig.Run(0.5);
  rig.Click("frmTest.cmdTestTone");
  rig.Run(0.2);
  ASSERT_FALSE(rig.Sound.Opened("Loudspeaker").empty());
  rig.Lent = true;
  rig.Run(0.5);
  EXPECT_FALSE(rig.IsInputOpen());
  EXPECT_TRUE(rig.Sound.Opened("Loudspeaker").empty());
  EXPECT_EQ(rig.Hint(), "The decoder has the sound card.");
  rig.Click("frmTest.cmdTestTone");
  EXPECT_TRUE(rig.Sound.Opened("Loudspeaker").empty());
  EXPECT_EQ(rig.Text("frmTest.lblTestTone"), "The decoder has the sound card.");
  rig.Lent = false;
  rig.Run(0.5);
  EXPECT_TRUE(rig.IsInputOpen());
  rig.Panel.ChooseInput(0);
  EXPECT_FALSE(rig.IsInputOpen());
  EXPECT_EQ(rig.Hint(), "There is no sound input.");
}

TEST(LevelPanel, AnInputThatRefusesSaysSoAndIsTriedAgain) {
  LevelRig rig;
  rig.LineIn = {.Left = 5000, .Right = 5000};
  rig.Sound.RefuseCapture(Error{7, "\"Line In\" is busy"});
  rig.Panel.Show(true);
  rig.Run(1);
  EXPECT_EQ(rig.Hint(), "\"Line In\" is busy");
  EXPECT_LE(rig.Freed, 1);
  rig.Sound.RefuseCapture({});
  rig.Run(4);
  EXPECT_EQ(rig.Hint(), "The level is right.");
  rig.Sound.Unplug("Line In");
  rig.Run(1);
  EXPECT_EQ(rig.Hint(), "\"Line In\" is not connected");
  EXPECT_EQ(rig.Text("frmTest.lblLevel(0)"), "");
}

TEST(LevelPanel, TheTestToneIsHeardOnTheChosenOutputAndCanBeEnded) {
  LevelRig rig;
  rig.Panel.Show(true);
  rig.Panel.ChooseOutput(2);
  rig.Click("frmTest.cmdTestTone");
  EXPECT_EQ(rig.Text("frmTest.cmdTestTone"), "&End tone");
  rig.Run(0.5);
  EXPECT_FALSE(rig.Sound.Opened("Headset").empty());
  rig.Run(2);
  EXPECT_TRUE(rig.Sound.Opened("Headset").empty());
  EXPECT_EQ(rig.Text("frmTest.cmdTestTone"), "T&est tone");
  rig.Click("frmTest.cmdTestTone");
  rig.Click("frmTest.cmdTestTone");
  EXPECT_TRUE(rig.Sound.Opened("Headset").empty());
  rig.Sound.RefusePlayback(Error{7, "\"Headset\" is busy"});
  rig.Click("frmTest.cmdTestTone");
  EXPECT_EQ(rig.Text("frmTest.lblTestTone"), "\"Headset\" is busy");
  rig.Sound.RefusePlayback({});
  rig.Click("frmTest.cmdTestTone");
  EXPECT_EQ(rig.Text("frmTest.lblTestTone"), "");
  rig.Panel.Show(false);
  EXPECT_TRUE(rig.Sound.Opened("Headset").empty());
}

}  // namespace
}  // namespace quorl
