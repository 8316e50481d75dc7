// The decoder's launcher against a process table of memory.
#include <gtest/gtest.h>

#include "drm/modDream.h"
#include "platform/virtual/VirtualClock.h"
#include "platform/virtual/VirtualDialogs.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualFiles.h"
#include "platform/virtual/VirtualProcesses.h"

namespace quorl {
namespace {

struct ModDreamTest : testing::Test {
  ModDreamTest() {
    Storage.MakeDirectory("home");
    DreamLinks links;
    links.CaptureDevice = [] { return 3; };
    links.PlaybackDevice = [] { return 2; };
    links.TunedFrequency = [this] { return TunedFrequency; };
    links.LowSideLO = [this] { return LowSideLO; };
    links.Log = [this](const std::string& line) { Log.push_back(line); };
    Dream = std::make_unique<modDream>(DreamMachine{Queue, Clock, Boxes, Storage, Programs}, "home",
                                       std::move(links));
    Dream->RunDreamOnDRM = true;
    Dream->PathToDream = "/opt/drm/Decoder";
  }
  std::string Box() { return Boxes.Messages.empty() ? "" : Boxes.Messages.back().Text; }
  std::string Ini() {
    Failure failure;
    return Storage.Read("home/Dream.ini", failure).value_or("(none)");
  }
  void Run(double seconds) {
    Queue.AdvanceBy(std::chrono::microseconds(static_cast<std::int64_t>(seconds * 1e6)));
  }

  VirtualClock Clock;
  VirtualEventQueue Queue{Clock};
  VirtualDialogs Boxes;
  VirtualFiles Storage;
  VirtualProcesses Programs;
  std::int32_t TunedFrequency = 70509999;
  bool LowSideLO = true;
  std::vector<std::string> Log;
  std::unique_ptr<modDream> Dream;
};

TEST_F(ModDreamTest, AStartIsToldDevicesAndFrequencyAndFindsItsControlFile) {
  Storage.Put("home/Dream.ini", "[receiver]\r\nflipspectrum=0\r\nother=7\r\n");
  Dream->DreamProgArgs = "-f %CurFreq% -n \"at %CurFreq%\"";
  Programs.OnStart = [this](int) {
    EXPECT_NE(Ini().find("flipspectrum=1\r\nother=7\r\n"), std::string::npos) << "edited before the start";
  };
  Dream->RunDREAM();
  ASSERT_EQ(Programs.Starts.size(), 1U);
  EXPECT_EQ(Programs.Starts[0].Program, "/opt/drm/Decoder");
  EXPECT_EQ(Programs.Starts[0].Arguments, " -M 0 -I 3 -O 2  -f 7050 -n \"at 7050\"");
  EXPECT_EQ(Programs.Starts[0].Directory, "home");
  EXPECT_EQ(Dream->DreamProcessId, 1000);
  EXPECT_EQ(Ini(), "[receiver]\r\nflipspectrum=1\r\nother=7\r\n[window geometry]\r\nanaldemvis=0\r\n");

  Programs.End(1000);
  Programs.OnStart = [](int) {};
  LowSideLO = false;
  Dream->DreamProgArgs = "-x";
  for (const auto& [style, wish] : {std::pair{0, WindowWish::Behind},
                                    {1, WindowWish::MinimisedBehind},
                                    {2, WindowWish::Hidden},
                                    {3, WindowWish::Focused},
                                    {-7, WindowWish::Focused}}) {
    Dream->DreamWindowStyle = style;
    Dream->RunDREAM();
    EXPECT_EQ(Programs.Starts.back().Window, wish) << style;
    EXPECT_EQ(Programs.Starts.back().Arguments, " -M 0 -I 3 -O 2  -x");
    Programs.End(Dream->DreamProcessId);
  }
  EXPECT_NE(Ini().find("flipspectrum=0"), std::string::npos);
  EXPECT_TRUE(Boxes.Messages.empty());
}

TEST_F(ModDreamTest, ADecoderIsNeverStartedTwice) {
  Dream->RunDREAM();
  Dream->RunDREAM();
  EXPECT_EQ(Programs.Starts.size(), 1U) << "known by its own name";
  Programs.Running[1000] = "something else";
  Dream->RunDREAM();
  EXPECT_EQ(Programs.Starts.size(), 1U) << "known by its number, whatever it calls itself";
  Programs.End(1000);

  // Started by hand, and not ours to close.
  Programs.Running = {{7, "dream.EXE"}};
  Dream->RunDREAM();
  Programs.Running = {{7, "decoder"}};
  Dream->RunDREAM();
  EXPECT_EQ(Programs.Starts.size(), 1U);
  EXPECT_EQ(Dream->DreamProcessId, 1000);
  Dream->CloseDream();
  EXPECT_TRUE(Programs.Closed.empty() && Programs.Running.contains(7));

  // A second call from an event of the launch.
  Programs.Running.clear();
  Programs.OnStart = [this](int) {
    EXPECT_TRUE(Dream->RunDreamBusy);
    Queue.Post([this] {
      Programs.Running.clear();
      Dream->RunDREAM();
    });
  };
  Dream->RunDREAM();
  EXPECT_EQ(Programs.Starts.size(), 2U);
  EXPECT_FALSE(Dream->RunDreamBusy);
  EXPECT_TRUE(Boxes.Messages.empty());
}

TEST_F(ModDreamTest, WhatIsNotWantedOrGoesWrong) {
  Dream->RunDreamOnDRM = false;
  Dream->RunDREAM();
  Dream->RunDreamOnDRM = true;
  Dream->PathToDream.clear();
  Dream->RunDREAM();
  EXPECT_TRUE(Programs.Starts.empty() && Boxes.Messages.empty());
  EXPECT_EQ(Ini(), "(none)");

  Dream->PathToDream = "/gone/Decoder";
  Programs.ListFailure = Error{13, "no list"};
  EXPECT_EQ(Dream->IsProcessRunning("DREAM.exe"), -1);
  Dream->RunDREAM();
  EXPECT_EQ(Box(), "System Error checking for process DREAM.EXE - Please report Problem to QUORL");
  EXPECT_TRUE(Programs.Starts.empty());

  Programs.ListFailure.reset();
  Programs.StartFailure = Error{2, "Can't start /gone/Decoder: No such file"};
  Dream->RunDREAM();
  EXPECT_EQ(Box(), "DREAM program located at : /gone/Decoder\n failed to execute");
  EXPECT_EQ(Log.back(), "Can't start /gone/Decoder: No such file");
  EXPECT_EQ(Dream->DreamProcessId, 0);
  EXPECT_FALSE(Dream->RunDreamBusy);

  // A control file that can't be written is told, and the decoder starts nevertheless.
  Programs.StartFailure.reset();
  Storage.Put("home/Dream.ini", "");
  Storage.Fail(FileOperation::Replace, Error{30, "Can't write home/Dream.ini"});
  Dream->RunDREAM();
  EXPECT_EQ(Box(), "ProfileSaveItem: 30 Can't write home/Dream.ini");
  EXPECT_EQ(Dream->DreamProcessId, 1000);
}

TEST_F(ModDreamTest, ClosingAsksAWindowElseTheProgramAndHasThreeSeconds) {
  Dream->CloseDream();
  Dream->RunDREAM();
  Programs.HasWindows = true;
  Dream->CloseDream();
  EXPECT_EQ(Programs.ClosedWindows, std::vector<Processes::WindowNumber>{1000});
  EXPECT_EQ(Dream->DreamWindow, 1000U);
  EXPECT_FALSE(Dream->IsClosing());

  Programs.HasWindows = false;
  Programs.OnClose = [](int) {};
  Dream->RunDREAM();
  Dream->CloseDream();
  Dream->CloseDream();
  EXPECT_EQ(Programs.Closed, std::vector{1001}) << "asked once";
  Run(2.9);
  EXPECT_TRUE(Dream->IsClosing());
  Run(0.2);
  EXPECT_FALSE(Dream->IsClosing());
  Log.clear();
  Dream->RunDREAM();
  EXPECT_EQ(Programs.Starts.size(), 2U);
  EXPECT_EQ(Log, std::vector<std::string>{"The decoder was asked to close, and stays"});
  Dream->CloseDream();
  EXPECT_EQ(Programs.Closed.size(), 2U) << "asked anew";
  Programs.End(1001);
  EXPECT_FALSE(Dream->IsClosing());
}

}  // namespace
}  // namespace quorl
