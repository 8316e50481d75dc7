// The chip's clock told by ear and by number: a board whose crystal is wrong, and a station that isn't.
#include <gtest/gtest.h>

#include "core/FrameRig.h"
#include "support/NumberPicture.h"

namespace quorl::test {
namespace {

struct BoardCase {
  int Model;
  bool LowSide;
};

std::string SettingsFor(const BoardCase& board) {
  std::string settings = "[frmMain]\nAutoStartSDR=True\nSDRModelNo=" + std::to_string(board.Model) +
                         "\n[DDSAD9835]\nClkIn=50000000\n";
  for (const char* vfo : {"VFO1.DRT1", "VFO1.ElektorDRM", "VFO1.RXIQ"}) {
    settings += std::string("[") + vfo +
                "]\nTunedFrequency=72050000\nHiSideLo=" + (board.LowSide ? "False" : "True") + "\n";
  }
  return settings;
}

double NumberIn(const std::string& text) {
  return ParseTyped(text.substr(0, text.find("Hz"))).value_or(1e9);
}

struct CalibrateRig : FrameRig {
  explicit CalibrateRig(const BoardCase& board = {0, false})
      : FrameRig(SettingsFor(board), board.Model, board.LowSide) {
    if (!Start()) throw std::runtime_error("the radio does not start");
  }
  ~CalibrateRig() override { Stop(); }  // before what it tells goes
  void Open() {
    Frame().Calibrate().Open([this](bool applied) { Closed.push_back(applied); });
    Run(1.5);
  }
  // What stands there as the beat after it has had its time, Hz.
  double Beat() {
    Run(1.5);
    return NumberIn(Text("frmCalibrate.lblBeat"));
  }
  double Clock() { return Frame().Radio().Tuning().Driver()->Clock(); }
  double TuneTo(double hertz) {
    Set("picFreqDisp", FormatPicture(hertz, "0"));
    return Beat();
  }

  std::vector<bool> Closed;
};

class EveryBoard : public testing::TestWithParam<BoardCase> {};

TEST_P(EveryBoard, IsWithinAHertzOnceItsClockIsTold) {
  CalibrateRig rig(GetParam());
  const double nominal = rig.Clock();
  rig.Open();
  EXPECT_NEAR(rig.Beat(), 0.0, 0.1);
  EXPECT_NEAR(rig.TuneTo(7204700), 300.0, 0.1);
  rig.Board.Chip().SetClockError(GetParam().LowSide ? -7.0 : 7.0);
  EXPECT_GT(std::abs(rig.TuneTo(7205000)), 10.0);
  rig.Click("frmCalibrate.cmdZeroBeat");
  EXPECT_NEAR(rig.Beat(), 0.0, 0.15);
  rig.Set("frmCalibrate.txtOfficialFreq", "7 205 000");
  rig.Click("frmCalibrate.cmdApply");
  EXPECT_EQ(rig.Closed, std::vector<bool>{true});
  EXPECT_NEAR(rig.Clock() / nominal - 1, (GetParam().LowSide ? -7e-6 : 7e-6), 2e-8);
  rig.Open();
  EXPECT_NEAR(rig.TuneTo(7205000), 0.0, 1.0);
  rig.Click("frmCalibrate.cmdCancel");
  rig.Restart();
  rig.Open();
  EXPECT_NEAR(rig.TuneTo(7205000), 0.0, 1.0) << "after a restart";
}

INSTANTIATE_TEST_SUITE_P(Boards, EveryBoard,
                         testing::Values(BoardCase{0, false}, BoardCase{0, true}, BoardCase{1, false},
                                         BoardCase{1, true}, BoardCase{2, false}, BoardCase{2, true},
                                         BoardCase{3, false}),
                         [](const auto& board) {
                           return "Model" + std::to_string(board.param.Model) +
                                  (board.param.LowSide ? "Low" : "High");
                         });

TEST(FrmMainCalibrate, ATrialIsHeardAndCancelPutsTheClockBackToTheLastDigit) {
  CalibrateRig rig;
  const auto driver = rig.Frame().Radio().Tuning().Driver();
  driver->SetClkIn(360096000.37);
  rig.Open();
  const std::int64_t before = rig.Oscillator();
  rig.Set("frmCalibrate.txtOfficialFreq", "7 205 300");
  rig.Click("frmCalibrate.cmdTry");
  rig.Run(0.5);
  EXPECT_NEAR(static_cast<double>(rig.Oscillator() - before), -3000, 30) << "dHz, sent at once";
  rig.Click("frmCalibrate.cmdCancel");
  rig.Run(0.5);
  EXPECT_EQ(driver->Clock(), 360096000.37);
  EXPECT_NEAR(static_cast<double>(rig.Oscillator()), static_cast<double>(before), 1);
  EXPECT_EQ(rig.Closed, std::vector<bool>{false});
  EXPECT_FALSE(rig.Frame().Radio().Rx.Beat.Active());
}

TEST(FrmMainCalibrate, WhatIsNoFrequencySaysSoAndChangesNothing) {
  CalibrateRig rig;
  rig.Open();
  const double clock = rig.Clock();
  const std::string first = rig.Text("frmCalibrate.lblDDSClkinNew");
  EXPECT_NEAR(NumberIn(first), clock, 2.0);
  const auto type = [&rig](const char* text) {
    rig.Set("frmCalibrate.txtOfficialFreq", text);
    rig.Click("frmCalibrate.cmdTry");
    return rig.Text("frmCalibrate.lblDDSClkinNew");
  };
  EXPECT_EQ(type("0"), "Official Frequency must not be ZERO");
  EXPECT_EQ(type("seven"), "Official Frequency is no number");
  EXPECT_FALSE(rig.At("frmCalibrate.txtOfficialFreq").Fault().empty());
  EXPECT_EQ(type("99999999999"), "Official Frequency is no number");
  EXPECT_EQ(rig.Clock(), clock);
  EXPECT_EQ(type("1 000 000 000").find("No chip has a clock of "), 0U) << "beyond every chip";
  EXPECT_EQ(rig.Clock(), clock);
  rig.VFO().HiSideLO = false;
  EXPECT_EQ(type("7 205 000").find("Official"), std::string::npos);
  const std::string kept = rig.Text("frmCalibrate.lblDDSClkinNew");
  rig.Set("frmCalibrate.txtOfficialFreq", "45 000 000");
  EXPECT_EQ(rig.Text("frmCalibrate.lblDDSClkinNew"), kept) << "an oscillator at 0 Hz tells no clock";
  EXPECT_TRUE(rig.Boxes.Messages.empty());
}

}  // namespace
}  // namespace quorl::test
