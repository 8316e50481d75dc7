// Texts and inks of the statistics, and the log's list.
#include "diagnostics/StatsPanel.h"

#include <gtest/gtest.h>

#include "controls/ControlRegistry.h"
#include "diagnostics/LogPanel.h"
#include "platform/virtual/VirtualClock.h"
#include "platform/virtual/VirtualFiles.h"

namespace quorl {
namespace {

constexpr Colour kGreen = 0x00FF00, kYellow = 0x00FFFF, kRed = 0x0000FF;

struct StatsPanelTest : testing::Test {
  std::string Text(int index) { return panel.lblStatsVal(index).Caption(); }
  Colour Ink(int index) { return panel.lblStatsVal(index).ForeColour(); }

  ControlRegistry registry;
  PublicVars vars;
  PumpStatistics statistics;
  StatsPanel panel{registry, vars, statistics};
};

TEST_F(StatsPanelTest, NothingMovesWhileStatisticsAreOff) {
  statistics.PeakInRing.fill(5000);
  const std::string before = Text(0);
  panel.Update();
  EXPECT_EQ(Text(0), before);
  registry.Find("chkPerfStatsOn")->UserClick();
  EXPECT_TRUE(vars.PerfStatsOn);
  panel.Update();
  EXPECT_EQ(Text(0), "5,000  -16 dB");
}

TEST_F(StatsPanelTest, WhatNothingMeasuresHoldsNoNumber) {
  vars.PerfStatsOn = true;
  panel.Update();
  for (int i = StatsPanel::kThreads; i < StatsPanel::kCount; ++i) EXPECT_EQ(Text(i), "") << i;
  EXPECT_NE(Text(StatsPanel::kLoad), "");
}

TEST_F(StatsPanelTest, LevelsTellWhetherTheInputIsInItsMiddleBand) {
  vars.PerfStatsOn = true;
  struct Case {
    std::int16_t peak;
    Colour ink;
    const char* text;
  };
  for (const Case& c : {Case{0, kYellow, "0  0 dB"}, Case{2047, kYellow, "2,047  -24 dB"},
                        Case{2048, kGreen, "2,048  -24 dB"}, Case{16383, kGreen, "16,383  -6 dB"},
                        Case{16384, kRed, "16,384  -6 dB"}, Case{32767, kRed, "32,767  0 dB"}}) {
    statistics.PeakInRing.fill(c.peak);
    statistics.PeakOutRing.fill(c.peak);
    const Colour untouched = Ink(1);
    panel.Update();
    EXPECT_EQ(Ink(0), c.ink) << c.peak;
    EXPECT_EQ(Text(0), c.text);
    EXPECT_EQ(Text(1), c.text);
    EXPECT_EQ(Ink(1), untouched);
  }
}

TEST_F(StatsPanelTest, LoadGoesFromGreenToRedWhereBlocksRunOut) {
  vars.PerfStatsOn = true;
  statistics.PumpTimeRing.fill(38399);
  panel.Update();
  EXPECT_EQ(Text(4), "90%");
  EXPECT_EQ(Text(5), "38,399 uS");
  EXPECT_EQ(Ink(4), kGreen);
  statistics.PumpTimeRing.fill(38401);
  panel.Update();
  EXPECT_EQ(Ink(4), kRed);
  EXPECT_EQ(Ink(5), kRed);
  statistics.PumpTimeRing.fill(427);
  panel.Update();
  EXPECT_EQ(Text(4), "1%");
  EXPECT_EQ(Ink(5), kGreen);
}

TEST_F(StatsPanelTest, GainAndOscillatorHaveTheirOwnTexts) {
  vars.PerfStatsOn = true;
  vars.AGCMeterGain = 11.75F;
  panel.Update();
  EXPECT_EQ(Text(2), "11.75  21.4 dB");
  panel.ShowOscOut(521085004);
  EXPECT_EQ(Text(3), "52 108 500 Hz");
  const std::string thread = Text(9);
  panel.Update();
  EXPECT_EQ(Text(9), thread);
}

TEST(LogPanelTest, TheListFollowsTheLogWithTheLastLineInViewAndForgetsTheOldest) {
  VirtualClock clock;
  VirtualFiles files;
  LogBook log(files, clock, "quorl.log");
  log.AddLog("before");
  ControlRegistry registry;
  {
    LogPanel panel(registry, log);
    EXPECT_FALSE(panel.frmLog.Visible());
    EXPECT_EQ(panel.lstLog.Text(), "before");
    for (std::size_t i = 0; i < LogBook::kMostLines; ++i) log.AddLog(std::to_string(i));
    EXPECT_EQ(panel.lstLog.Items().size(), LogBook::kMostLines);
    EXPECT_EQ(panel.lstLog.Items().front(), "0");
    EXPECT_EQ(panel.lstLog.Text(), std::to_string(LogBook::kMostLines - 1));
  }
  log.AddLog("after");
}

}  // namespace
}  // namespace quorl
