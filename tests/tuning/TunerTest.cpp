// What is asked of the tuner while a frame is out, at the ends of its reach, and of a chip that has gone its
// own way.
#include "tuning/Tuner.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "TuningRig.h"
#include "sim/SimulatedReceiver.h"
#include "tuning/TuningChain.h"

namespace quorl {
namespace {

constexpr std::int32_t kStart = 72050000;

class TunerTest : public testing::Test, protected TuningRig {
 protected:
  TunerTest() {
    Serial.SetRecording(false);
    Settings.SaveSetting("DDSAD9951", "ClkIn", "360096000");
    Build(0);
  }
  void Build(int model) {
    board.emplace(model, nullptr, BoardOfModel(model));
    Serial.SetListener(&board->Cable());
    chain.emplace(TuningMachine{Serial, Printer, Queue, Boxes, Settings}, SettingsStore::LogSink{});
    chain->OpenInterface(InterfaceType::Serial, false);
    chain->CreateVFO(model, InterfaceType::Serial);
    chain->Tune().MoveTo(kStart);
  }
  // Runs `what` in the middle of a frame.
  void During(std::function<void()> what) { Queue.Post(std::move(what)); }
  Tuner& Tune() { return chain->Tune(); }
  clsVFO& VFO() { return *chain->VFO(); }
  // What the simulated chip's frequency brings in with the oscillator on the high side, dHz.
  double Received() { return board->Chip().OutputHz().value_or(0.0) * 10 - VFO().IFFrequency() * 10.0; }

  std::optional<SimulatedReceiver> board;
  std::optional<TuningChain> chain;
};

TEST_F(TunerTest, StepsAddUpAndTheLatestFrequencyCountsWhileAFrameIsOut) {
  During([&] {
    for (int i = 0; i < 5; ++i) Tune().StepBy(1000);
    EXPECT_EQ(VFO().TunedFrequency(), kStart + 1000);
    EXPECT_EQ(Tune().Wanted(), kStart + 6000);
  });
  EXPECT_EQ(Tune().StepBy(1000), kStart + 6000);
  EXPECT_NEAR(Received(), kStart + 6000, 1);
  During([&] {
    Tune().StepBy(1000);
    Tune().MoveTo(60000003);
    Tune().MoveTo(61000003);
    EXPECT_EQ(Tune().StepBy(-1000), 60999000) << "from the grid";
    During([&] { Tune().SetHiSideLO(false); });
  });
  Tune().MoveTo(50000000);
  EXPECT_EQ(VFO().TunedFrequency(), 60999000);
  EXPECT_NEAR(board->Chip().OutputHz().value_or(0.0) * 10, 450000000 - 60999000, 1);
}

TEST_F(TunerTest, AStepIsSentTwiceUnlessTheNextOneWaits) {
  Serial.SetListener(&Wire);
  Sent();
  Tune().StepBy(1000);
  EXPECT_EQ(Sent().size(), 2U);
  During([&] { Tune().StepBy(1000); });
  Tune().StepBy(1000);
  EXPECT_EQ(Sent().size(), 3U);
}

TEST_F(TunerTest, AChipThatStandsElsewhereIsSetRight) {
  for (const int model : {0, 1}) {
    Build(model);
    VFO().AutoUpdate = false;
    VFO().SetCalibOffset(12);  // changed under it, as a dialog does
    Tune().Settle();
    EXPECT_NEAR(Received(), kStart + 120, 1);
    // The frequency moves while another one is being repeated, so that its own frame is dropped.
    During([&] { VFO().SetTunedFrequency(71000000); });
    VFO().Refresh();
    EXPECT_NEAR(Received(), kStart + 120, 1);
    Tune().Settle();
    EXPECT_NEAR(Received(), 71000120, 1);
    // What has been cut short counts as not sent.
    During([&] { Serial.Close(); });
    Tune().MoveTo(73000000);
    Tune().Settle();
    EXPECT_NEAR(Received(), 71000120, 1);
    ASSERT_FALSE(Serial.Open("/dev/ttyS0"));
    Tune().Settle();
    EXPECT_NEAR(Received(), 73000120, 1);
  }
  Serial.SetRecording(true);
  Tune().Settle();
  EXPECT_TRUE(Serial.Levels().empty()) << "nothing is sent where all is well";
}

// A plug that wobbles cuts the board's power too.
TEST_F(TunerTest, AChipThatLosesItsPowerInTheMiddleOfAFrameIsBroughtUpAgain) {
  During([&] {
    Serial.Unplug();
    Serial.SetListener(nullptr);
    board.emplace(0, nullptr, BoardOfModel(0));
    Serial.SetListener(&board->Cable());
    Serial.Plug();
    Tune().StepBy(1000);
  });
  Tune().MoveTo(73000000);
  Queue.AdvanceBy(std::chrono::milliseconds(10));
  EXPECT_NEAR(Received(), 73001000, 1);
}

TEST_F(TunerTest, WhileARecordingPlaysNothingIsSentAndThenTheChipStandsWhereItWasWanted) {
  int refused = 0;
  Tune().OnRefused = [&] { ++refused; };
  During([&] {
    Tune().MoveTo(61000003);
    Tune().Play(50000000);
  });
  Tune().StepBy(1000);
  EXPECT_EQ(Tune().Wanted(), 50000000);
  EXPECT_EQ(Tune().Tuned(), 50000000);
  Serial.SetRecording(true);
  Serial.ClearLevels();
  EXPECT_EQ(Tune().MoveTo(72000000), 50000000);
  EXPECT_EQ(Tune().StepBy(1000), 50000000);
  EXPECT_EQ(refused, 2);
  Tune().SetHiSideLO(false);
  Tune().Revive();
  Tune().Resend();
  Tune().Settle();
  Tune().Play(50100000);
  EXPECT_TRUE(Serial.Levels().empty());
  EXPECT_TRUE(VFO().HiSideLO);
  Tune().EndPlay();
  EXPECT_EQ(Tune().Wanted(), 61000003);
  EXPECT_NEAR(Received(), 61000003, 1);
}

TEST_F(TunerTest, TuningStopsWhereChipAndIFEnd) {
  struct {
    int Model;
    bool HiSide;
    std::int32_t Highest;
  } const boards[] = {{0, true, 1350479999}, {1, true, 245449999}, {1, false, 249545000}};
  for (const auto& each : boards) {
    Build(each.Model);
    Tune().SetHiSideLO(each.HiSide);
    int stops = 0;
    Tune().OnStop = [&] { ++stops; };
    EXPECT_EQ(Tune().Highest(), each.Highest);
    EXPECT_EQ(Tune().MoveTo(each.Highest), each.Highest);
    EXPECT_EQ(stops, 0);
    EXPECT_EQ(Tune().StepBy(90000), each.Highest);
    EXPECT_EQ(Tune().MoveTo(2147483647), each.Highest);
    EXPECT_EQ(stops, 2);
    EXPECT_EQ(VFO().TunedFrequency(), each.Highest);
    EXPECT_NEAR(board->Chip().OutputHz().value_or(0.0) * 10, VFO().OscOut, 1);
    EXPECT_LT(Tune().StepBy(-1000), each.Highest);
    Tune().MoveTo(400);
    EXPECT_EQ(Tune().StepBy(-1000), 0);
    EXPECT_EQ(stops, 2);
  }
}

TEST_F(TunerTest, AClockThatIsTooLowLeavesTheFrequencyAsItIsWanted) {
  for (const char* clock : {"13", "80000000", "89999999"}) {
    Settings.SaveSetting("DDSAD9951", "ClkIn", clock);
    Build(0);
    EXPECT_EQ(Tune().MoveTo(69005000), 69005000) << clock;
    EXPECT_EQ(VFO().TunedFrequency(), 69005000) << clock;
  }
}

}  // namespace
}  // namespace quorl
