// A real decoder's part played by a program of this project, installed under a decoder's names.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

#include "drm/HandOver.h"
#include "drm/modDream.h"
#include "platform/ScratchDirectory.h"
#include "platform/linux/system/LinuxClock.h"
#include "platform/linux/system/LinuxEventQueue.h"
#include "platform/linux/system/LinuxFiles.h"
#include "platform/linux/system/LinuxProcesses.h"
#include "platform/virtual/VirtualDialogs.h"

namespace quorl {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

struct StandIn : testing::Test {
  StandIn() {
    DreamLinks links;
    links.TunedFrequency = [] { return 70500000; };
    Dream = std::make_unique<modDream>(DreamMachine{Queue, Clock, Boxes, Storage, Programs}, Scratch.Path(),
                                       std::move(links));
    HandOverLinks hands;
    hands.InDRM = [this] { return InDRM; };
    hands.ReleaseSound = [this] { SoundIsOpen = false; };
    hands.OpenSound = [this] { SoundIsOpen = true; };
    Hands = std::make_unique<HandOver>(Queue, *Dream, std::move(hands));
    Dream->RunDreamOnDRM = Dream->DreamCloseOnModeChange = Hands->CloseSoundcardOnDRM = true;
  }
  void Install(const std::string& name, const std::string& manner) {
    Dream->PathToDream = Scratch.Path(name);
    fs::copy_file(QUORL_STAND_IN_DECODER, Dream->PathToDream);
    std::ofstream(Dream->PathToDream + ".how") << manner;
  }
  std::string Record() {
    std::ostringstream text;
    text << std::ifstream(Dream->PathToDream + ".txt").rdbuf();
    return text.str();
  }
  bool Recorded(const std::string& line) { return Record().find(line + "\n") != std::string::npos; }
  void SetDRM(bool on) {
    InDRM = on;
    Hands->ModeChanged();
  }
  // Real time, as the program that is waited for has a life of its own.
  bool Eventually(const std::function<bool()>& holds) {
    const auto end = steady_clock::now() + std::chrono::seconds(20);
    while (!holds() && steady_clock::now() < end) Queue.Wait(milliseconds(5));
    return holds();
  }
  // The one that was started last has written down how.
  bool HasStarted() {
    return Programs.IsRunning(Dream->DreamProcessId) &&
           Recorded("process " + std::to_string(Dream->DreamProcessId));
  }
  bool Stands(int process) { return fs::exists("/proc/" + std::to_string(process)); }

  ScratchDirectory Scratch;
  LinuxClock Clock;
  LinuxEventQueue Queue;
  VirtualDialogs Boxes;
  LinuxFiles Storage;
  LinuxProcesses Programs{&Queue};
  std::unique_ptr<modDream> Dream;
  std::unique_ptr<HandOver> Hands;
  bool InDRM = false, SoundIsOpen = true;
};

TEST_F(StandIn, ADecoderGetsItsArgumentsAndIsGoneWhenTheSoundCardIsBack) {
  Install("DREAM.exe", "obey");
  Dream->DreamProgArgs = "--frequency %CurFreq%";
  for (int round = 0; round < 20; ++round) {
    SetDRM(true);
    ASSERT_TRUE(Eventually([&] { return !SoundIsOpen && HasStarted(); }));
    const int process = Dream->DreamProcessId;
    SetDRM(false);
    ASSERT_TRUE(Eventually([&] { return SoundIsOpen; }));
    EXPECT_FALSE(Stands(process)) << "gone from the system's table, too";
  }
  const std::string record = Record(), first = record.substr(0, record.find("process"));
  EXPECT_EQ(
      first,
      "argument -M\nargument 0\nargument -I\nargument 1\nargument -O\nargument 1\nargument --frequency\n"
      "argument 7050\ndirectory " +
          Scratch.Path() + "\nini [window geometry]\nini analdemvis=0\nini [receiver]\nini flipspectrum=0\n");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_TRUE(Boxes.Messages.empty());
}

TEST_F(StandIn, ASlowDecoderIsWaitedForAndOneThatStaysIsNotStartedAgain) {
  Install("my decoder", "slow");
  SetDRM(true);
  ASSERT_TRUE(Eventually([&] { return HasStarted(); }));
  const auto asked = steady_clock::now();
  SetDRM(false);
  SetDRM(true);
  SetDRM(false);
  ASSERT_TRUE(Eventually([&] { return SoundIsOpen; }));
  EXPECT_GE(steady_clock::now() - asked, milliseconds(1400));
  EXPECT_TRUE(Recorded("end"));
  EXPECT_FALSE(Stands(Dream->DreamProcessId));

  std::ofstream(Dream->PathToDream + ".how") << "refuse";
  SetDRM(true);
  ASSERT_TRUE(Eventually([&] { return HasStarted(); }));
  const int process = Dream->DreamProcessId;
  SetDRM(false);
  ASSERT_TRUE(Eventually([&] { return SoundIsOpen; })) << "after three seconds";
  EXPECT_TRUE(Stands(process));
  SetDRM(true);
  ASSERT_TRUE(Eventually([&] { return !Hands->tmrHandOver.Enabled(); }));
  EXPECT_EQ(Dream->DreamProcessId, process);
  Failure failure;
  EXPECT_EQ(Programs.Find("my decoder", failure), std::vector{process});
  kill(process, SIGKILL);
  EXPECT_TRUE(Eventually([&] { return !Stands(process); }));
}

TEST_F(StandIn, ADecoderThatDiesAtOnceLeavesNothing) {
  Install("DREAM.exe", "die");
  SetDRM(true);
  ASSERT_TRUE(Eventually([&] { return Recorded("end"); }));
  const int process = Dream->DreamProcessId;
  EXPECT_TRUE(Eventually([&] { return !Stands(process); }));
  SetDRM(false);
  EXPECT_TRUE(Eventually([&] { return SoundIsOpen; }));
  EXPECT_TRUE(Boxes.Messages.empty());
}

}  // namespace
}  // namespace quorl
