#include "diagnostics/LogBook.h"

#include <gtest/gtest.h>

#include "diagnostics/Profiler.h"
#include "platform/virtual/VirtualClock.h"
#include "platform/virtual/VirtualFiles.h"

namespace quorl {
namespace {

constexpr const char* kPath = "/home/listener/.local/state/quorlsdr/QUORLSDR.log";
constexpr const char* kFirstLine = "QUORLSDR Log File Started at Date=2026-03-09 Time=07:05:01\n";

class LogBookTest : public testing::Test {
 protected:
  LogBookTest() { clock_.SetNow({2026, 3, 9, 7, 5, 1, 0}); }

  std::string File() {
    Failure failure;
    return files_.Read(kPath, failure).value_or("(no file)");
  }

  VirtualClock clock_;
  VirtualFiles files_;
  LogBook log_{files_, clock_, kPath};
};

TEST_F(LogBookTest, TracingWritesADatedFileAnewAndEveryLineAtOnce) {
  files_.Put(kPath, "last week's lines\n");
  log_.Start(true);
  EXPECT_EQ(File(), kFirstLine);
  log_.AddLog("frmMain:frmMain:Form_Initialize : Start");
  EXPECT_EQ(File(), std::string(kFirstLine) + "frmMain:frmMain:Form_Initialize : Start\n");
  log_.AddError("frmMain:Form_Load", 53, "File not found", "modBandPlan");
  EXPECT_TRUE(
      File().ends_with("Error:frmMain:Form_Load,Code=53,Description=File not found,Source=modBandPlan\n"));
  EXPECT_EQ(log_.Lines().size(), 2u);
  EXPECT_EQ(log_.SelectedLine(), 1);
}

TEST_F(LogBookTest, WithoutTracingOnlyTheListGrows) {
  files_.Put(kPath, "last week's lines\n");
  log_.Start(false);
  EXPECT_EQ(log_.SelectedLine(), -1);
  std::string told;
  const Listening hearing = log_.OnLine.Listen([&](const std::string& line) { told += line; });
  log_.AddLog("one");
  log_.AddLog("two");
  EXPECT_EQ(File(), "last week's lines\n");
  EXPECT_EQ(log_.Lines(), (std::deque<std::string>{"one", "two"}));
  EXPECT_EQ(told, "onetwo");
}

TEST_F(LogBookTest, AFullDiskIsToldOnceAndTheFileGoesOnWhenThereIsRoom) {
  log_.Start(true);
  files_.Fail(FileOperation::Append, {28, "the disk is full"});
  log_.AddLog("one");
  log_.AddLog("two");
  files_.ClearFailures();
  log_.AddLog("three");
  EXPECT_EQ(log_.Lines(), (std::deque<std::string>{"the disk is full", "one", "two", "three"}));
  EXPECT_EQ(File(), std::string(kFirstLine) + "three\n");
}

TEST_F(LogBookTest, TheListForgetsItsOldestLines) {
  for (std::size_t i = 0; i <= LogBook::kMostLines; ++i) log_.AddLog(std::to_string(i));
  EXPECT_EQ(log_.Lines().size(), LogBook::kMostLines);
  EXPECT_EQ(log_.Lines().front(), "1");
  EXPECT_EQ(log_.SelectedLine(), static_cast<int>(LogBook::kMostLines) - 1);
}

TEST(ProfilerTest, TimesFromTheLastStartAndRunsOn) {
  VirtualClock clock;
  Profiler profiler(clock);
  clock.Advance(std::chrono::seconds(9));
  profiler.Start();
  clock.Advance(std::chrono::microseconds(1234));
  profiler.StopTiming();
  EXPECT_EQ(profiler.ElapsedTime(), 1234.0);
  clock.Advance(std::chrono::microseconds(1234565765));
  EXPECT_EQ(profiler.ElapsedTime(), 1234.0);
  EXPECT_EQ(profiler.Stopp(), "1,234,566.999 ms");
  profiler.StartTiming();
  EXPECT_EQ(profiler.Stopp(), "0.000 ms");
  EXPECT_EQ(static_cast<double>(profiler.ElapsedTicks()) / static_cast<double>(profiler.CPUFreq()), 0.0);
}

}  // namespace
}  // namespace quorl
