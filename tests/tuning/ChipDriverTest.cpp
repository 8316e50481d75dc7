#include <gtest/gtest.h>

#include "TuningRig.h"
#include "tuning/TuningError.h"
#include "tuning/clsAD9835.h"
#include "tuning/clsAD9951.h"
#include "tuning/clsDDSParallelIF.h"
#include "tuning/clsDDSSerialIF.h"

namespace quorl {
namespace {

using Frames = std::vector<WireTap::Frame>;

class Drivers : public ::testing::Test, protected TuningRig {
 protected:
  Drivers() { serialIF->OpenPort(false); }

  std::shared_ptr<clsDDSSerialIF> serialIF = std::make_shared<clsDDSSerialIF>(Serial, Queue, Boxes, Settings);
  std::shared_ptr<clsDDSParallelIF> parallelIF = std::make_shared<clsDDSParallelIF>(Printer, Queue, Settings);
};

class AD9951 : public Drivers {
 protected:
  AD9951() { chip.IFHandler = serialIF; }
  clsAD9951 chip{Settings, Boxes};
};

class AD9835 : public Drivers {
 protected:
  AD9835() {
    chip.IFHandler = serialIF;
    Sent();
  }
  // The frame of a frequency with these four bytes, the highest first.
  static Frames Words(int w3, int w2, int w1, int w0) {
    return {{0xF8, 0x00}, {0x30, w0}, {0x21, w1}, {0x32, w2}, {0x23, w3}, {0x80, 0x00}, {0xC0, 0x00}};
  }
  clsAD9835 chip{Settings, Boxes};
};

TEST_F(AD9951, RegisterWritesByteForByte) {
  chip.SetClkIn(360096000);
  chip.Initialise();
  EXPECT_EQ(Sent(), (Frames{{0, 0, 0, 2, 2}, {1, 0, 0, 0x47}}));
  chip.Initialise();
  EXPECT_EQ(Sent().size(), 2U);
  EXPECT_EQ(chip.SetFrequency(520500000), 520500000);
  EXPECT_EQ(chip.CurrentTuningWord, 620815138);  // 520500000 * 2^32 / 3600960000
  EXPECT_EQ(Sent(), (Frames{{4, 0x25, 0x00, 0xE3, 0x22}}));
  EXPECT_FALSE(Serial.Line(SerialLine::Dtr)) << "the update line rests at 1";
  chip.Refresh();
  EXPECT_EQ(Sent(), (Frames{{4, 0x25, 0x00, 0xE3, 0x22}}));
  for (const auto& [clock, cfr2] : {std::pair{200.0, 0x43}, std::pair{201.0, 0x47}}) {
    chip.SetClkIn(clock);
    chip.Initialise();
    EXPECT_EQ(Sent().back(), (WireTap::Frame{1, 0, 0, cfr2})) << clock;
  }
}

TEST_F(AD9951, LimitsOfTheTuningWord) {
  chip.SetClkIn(360000000);
  EXPECT_EQ(chip.MaxFreq, 1800000000);
  struct {
    std::int32_t Asked, Used, Word;
  } const cases[] = {
      {0, 0, 0},
      {1, 1, 1},  // 1.193 counts
      {1799999999, 1799999999, 2147483647},
      {1800000000, 1800000000, 2},  // 2^31 doesn't fit and leaves a near-zero frequency
      {1800000001, 1800000000, 2},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(chip.SetFrequency(each.Asked), each.Used);
    EXPECT_EQ(chip.CurrentTuningWord, each.Word) << each.Asked;
  }
  EXPECT_EQ(Sent().front(), (WireTap::Frame{4, 0, 0, 0, 0}));
}

TEST_F(AD9951, WithoutClockOnlyAMessageComes) {
  Sent();
  EXPECT_EQ(chip.SetFrequency(70500000), 70500000);
  ASSERT_EQ(Boxes.Messages.size(), 1U);
  EXPECT_EQ(Boxes.Messages[0].Text, "Clkin is not set correctly, Clkin=36009600");
  EXPECT_TRUE(Sent().empty());
  chip.Refresh();
  EXPECT_EQ(Sent(), Frames{{}}) << "nothing was kept: the update line alone moves";
}

TEST_F(AD9951, RefusedClocksLeaveAllAsItWas) {
  chip.SetClkIn(360000000);
  EXPECT_EQ(chip.SetClkIn(0)->Code, static_cast<int>(TuningError::DivisionByZero));
  EXPECT_EQ(chip.SetClkIn(430000000)->Code, static_cast<int>(TuningError::Overflow));
  EXPECT_EQ(chip.ClkIn(), 360000000);
  EXPECT_EQ(chip.MaxFreq, 1800000000);
  chip.SetFrequency(900000000);
  EXPECT_EQ(chip.CurrentTuningWord, 0x40000000);
}

TEST_F(AD9951, ASecondFrameNeverEntersARunningOne) {
  chip.SetClkIn(360096000);
  std::int32_t dropped = 0;
  Queue.Post([&] {
    dropped = chip.SetFrequency(123);
    chip.Refresh();
    chip.Initialise();
  });
  chip.SetFrequency(520500000);
  EXPECT_EQ(dropped, 123);
  EXPECT_EQ(Sent(), (Frames{{4, 0x25, 0x00, 0xE3, 0x22}}));
  Queue.Post([&] { chip.Initialise(); });
  chip.Initialise();
  EXPECT_EQ(Sent().size(), 2U);
  EXPECT_FALSE(chip.CMDOutActive);
}

TEST_F(AD9951, AnInterfaceTakenAwayInMidFrameStillEndsTheFrame) {
  chip.SetClkIn(360096000);
  serialIF.reset();
  Queue.Post([&] { chip.IFHandler.reset(); });
  chip.SetFrequency(520500000);
  EXPECT_EQ(Sent(), (Frames{{4, 0x25, 0x00, 0xE3, 0x22}}));
  EXPECT_FALSE(Serial.IsOpen()) << "the last reference went with the frame";
  chip.SetFrequency(1);
  EXPECT_TRUE(Sent().empty());
  EXPECT_TRUE(Boxes.Messages.empty());
}

TEST_F(Drivers, AD9951KeepsItsClockInTheStore) {
  {
    clsAD9951 chip(Settings, Boxes);
    chip.Name = "DDSAD9951";
    chip.Save();
  }
  EXPECT_EQ(Settings.GetSetting("DDSAD9951", "ClkIn", "none"), "none") << "it never had one";
  {
    clsAD9951 chip(Settings, Boxes);
    chip.Name = "DDSAD9951";
    EXPECT_FALSE(chip.RestoreSettings());
    EXPECT_EQ(chip.ClkIn(), 50000000);
    chip.SetClkIn(360096000);
    chip.Save();
  }
  clsAD9951 chip(Settings, Boxes);
  chip.Name = "DDSAD9951";
  chip.RestoreSettings();
  EXPECT_EQ(chip.ClkIn(), 360096000);
}

TEST_F(AD9835, SevenWordsOverEitherInterface) {
  EXPECT_EQ(chip.ClkIn(), 50000000);
  for (const std::shared_ptr<DDSInterface>& handler :
       {std::shared_ptr<DDSInterface>(serialIF), std::shared_ptr<DDSInterface>(parallelIF)}) {
    chip.IFHandler = handler;
    chip.CurrentTuningWord = 0;
    handler->IOUPD(1);
    Sent();
    EXPECT_EQ(chip.SetFrequency(100000000), 100000000);
    EXPECT_EQ(Sent(), Words(0x33, 0x33, 0x33, 0x33));
    EXPECT_EQ(chip.CurrentTuningWord, 858993459);
    chip.SetFrequency(74550000);  // 640379623.8
    EXPECT_EQ(Sent(), Words(0x26, 0x2B, 0x6A, 0xE8));
    chip.SetFrequency(300000000);
    EXPECT_EQ(Sent(), Words(0, 0, 0, 2)) << "clamped to half the clock, whose word doesn't fit";
  }
  EXPECT_EQ(Printer.Value(), 0) << "the select line rests at 1, which drops all lines";
}

TEST_F(AD9835, InitialiseTakesTheStoredClockAndSendsNothing) {
  chip.Name = "DDSAD9835";
  chip.SetClkIn(40000000);
  EXPECT_FALSE(chip.Initialise());
  EXPECT_EQ(chip.ClkIn(), 50000000);
  Settings.SaveSetting("DDSAD9835", "CLKIn", "49999000");
  chip.Initialise();
  EXPECT_EQ(chip.ClkIn(), 49999000);
  EXPECT_EQ(chip.MaxFreq, 249995000);
  EXPECT_TRUE(Sent().empty());
  EXPECT_FALSE(chip.CMDOutActive);
}

TEST_F(Drivers, AD9835StoresItsClockAndLooksForItUnderItsOwnNumber) {
  Settings.SaveSetting("clsAD9835", "5000000", "40000000");
  {
    clsAD9835 chip(Settings, Boxes);
    EXPECT_EQ(chip.ClkIn(), 40000000);
    chip.Name = "DDSAD9835";
    chip.Save();
  }
  EXPECT_EQ(Settings.GetSetting("DDSAD9835", "ClkIn", ""), "40000000");
}

TEST_F(AD9835, NothingEntersARunningFrame) {
  Queue.Post([&] {
    chip.SetFrequency(1);
    chip.Refresh();
  });
  chip.SetFrequency(100000000);
  EXPECT_EQ(Sent(), Words(0x33, 0x33, 0x33, 0x33));
}

TEST_F(AD9835, RefreshMovesTheSelectLineOnly) {
  chip.SetFrequency(100000000);
  Sent();
  chip.Refresh();
  EXPECT_EQ(Sent(), Frames{{}});
  chip.IFHandler.reset();
  chip.SetFrequency(1);
  EXPECT_TRUE(Boxes.Messages.empty());
  chip.Refresh();
  ASSERT_EQ(Boxes.Messages.size(), 1U);
  EXPECT_EQ(Boxes.Messages[0].Text, "Set IFHandler Object in clsAD9951 to an object to handle the Interface");
}

}  // namespace
}  // namespace quorl
