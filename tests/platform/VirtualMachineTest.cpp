#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/virtual/VirtualClock.h"
#include "platform/virtual/VirtualDialogs.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualFiles.h"
#include "platform/virtual/VirtualPrinterPort.h"
#include "platform/virtual/VirtualProcesses.h"
#include "platform/virtual/VirtualSerialPort.h"

namespace quorl {
namespace {

using namespace std::chrono_literals;

class VirtualQueue : public ::testing::Test {
 protected:
  std::unique_ptr<QueueTimer> Timer(const std::string& name) {
    return queue.CreateTimer([this, name] { Note(name); });
  }
  void Note(const std::string& name) {
    history.push_back(name + "@" + std::to_string(clock.Microseconds() / 1000));
  }

  VirtualClock clock;
  VirtualEventQueue queue{clock};
  std::vector<std::string> history;
};

using History = std::vector<std::string>;

TEST_F(VirtualQueue, TimersAndTasksRunInTimeOrder) {
  const auto slow = Timer("slow"), fast = Timer("fast");
  slow->Start(30ms);
  fast->Start(20ms);
  queue.Post([this] { Note("task"); });
  queue.AdvanceBy(60ms);
  EXPECT_EQ(history, (History{"task@0", "fast@20", "slow@30", "fast@40", "slow@60", "fast@60"}));
  EXPECT_EQ(clock.Microseconds(), 60000);
}

TEST_F(VirtualQueue, LateTicksDoNotPileUpAndKeepTheirGrid) {
  const auto timer = Timer("tick");
  timer->Start(10ms);
  clock.Advance(35ms);
  queue.Yield();
  queue.AdvanceBy(5ms);
  EXPECT_EQ(history, (History{"tick@35", "tick@40"}));
}

TEST_F(VirtualQueue, HandlersMayRearmStopAndDestroyTheirTimer) {
  std::unique_ptr<QueueTimer> rearmed, stopped, destroyed;
  rearmed = queue.CreateTimer([&] {
    Note("rearmed");
    rearmed->Start(3ms);
  });
  stopped = queue.CreateTimer([&] {
    Note("stopped");
    stopped->Stop();
  });
  destroyed = queue.CreateTimer([this, &destroyed, name = std::string("destroyed")] {
    destroyed.reset();
    Note(name);
  });
  rearmed->Start(1ms);
  stopped->Start(2ms);
  destroyed->Start(3ms);
  queue.AdvanceBy(9ms);
  EXPECT_EQ(history, (History{"rearmed@1", "stopped@2", "destroyed@3", "rearmed@4", "rearmed@7"}));
}

TEST_F(VirtualQueue, YieldInsideAHandlerDeliversOthersButNotItsOwnReposts) {
  int reposts = 0;
  std::function<void()> repost = [&] {
    ++reposts;
    queue.Post(repost);
  };
  queue.Post([&] {
    queue.Post([this] { Note("inner"); });
    queue.Yield();
    Note("outer");
  });
  queue.Post(repost);
  queue.Yield();
  EXPECT_EQ(history, (History{"inner@0", "outer@0"}));
  EXPECT_EQ(reposts, 1);
}

TEST_F(VirtualQueue, WaitJumpsToTheNextEventOnly) {
  const auto timer = Timer("tick");
  timer->Start(70ms);
  queue.Wait(50ms);
  EXPECT_EQ(clock.Microseconds(), 50000);
  queue.Wait(50ms);
  EXPECT_EQ(history, (History{"tick@70"}));
}

TEST_F(VirtualQueue, SignalsOfAnotherThreadArriveOnceAndNotAfterTheirEnd) {
  auto signal = queue.CreateSignal([this] { Note("signal"); });
  std::thread([&] {
    signal->Raise();
    signal->Raise();
  }).join();
  queue.Yield();
  queue.Yield();
  EXPECT_EQ(history, (History{"signal@0"}));
  signal->Raise();
  signal.reset();
  queue.AdvanceBy(1ms);
  EXPECT_EQ(history.size(), 1U);
  EXPECT_TRUE(queue.IsIdle());
}

TEST_F(VirtualQueue, PollingLoopsEndWhereYieldsTakeTime) {
  queue.SetYieldTime(100us);
  while (clock.Microseconds() < 1000) queue.Yield();
  EXPECT_EQ(queue.YieldCount(), 10);
}

TEST(VirtualClock, CalendarRunsAlong) {
  VirtualClock clock;
  clock.Advance(5s);
  clock.SetNow(
      {.Year = 2023, .Month = 12, .Day = 31, .Hour = 23, .Minute = 59, .Second = 59, .Millisecond = 900});
  clock.Advance(150ms);
  const LocalTime now = clock.Now();
  EXPECT_EQ(now.Year, 2024);
  EXPECT_EQ(now.Month, 1);
  EXPECT_EQ(now.Day, 1);
  EXPECT_EQ(now.Hour + now.Minute + now.Second, 0);
  EXPECT_EQ(now.Millisecond, 50);
  EXPECT_EQ(clock.UtcMicroseconds(), 1704067200050000);
}

struct Listener : LineListener {
  void OnSerialLine(SerialLine line, bool on) override {
    Heard.push_back((line == SerialLine::Rts   ? "rts"
                     : line == SerialLine::Dtr ? "dtr"
                                               : "brk") +
                    std::string(on ? "+" : "-"));
  }
  void OnPrinterData(std::uint8_t value) override { Heard.push_back(std::to_string(value)); }
  std::vector<std::string> Heard;
};

TEST_F(VirtualQueue, SerialPortRecordsEveryCallAndTellsChanges) {
  VirtualSerialPort port(clock, queue);
  Listener listener;
  port.SetListener(&listener);
  port.SetLine(SerialLine::Dtr, true);
  EXPECT_TRUE(port.Levels().empty()) << "a closed port moves nothing";
  EXPECT_FALSE(port.Status());

  port.FailOpen(Error{16, "busy"});
  EXPECT_TRUE(port.Open("/dev/ttyS0"));
  port.FailOpen({});
  EXPECT_FALSE(port.Open("/dev/ttyS1"));
  port.SetLineTime(7us);
  port.SetLine(SerialLine::Dtr, true);
  port.SetLine(SerialLine::Dtr, true);
  port.SetLine(SerialLine::Break, true);
  EXPECT_EQ(listener.Heard, (History{"dtr+", "brk+"}));
  EXPECT_EQ(port.Levels(), (std::vector<SerialLevel>{{7, SerialLine::Dtr, true, true},
                                                     {14, SerialLine::Dtr, true, false},
                                                     {21, SerialLine::Break, true, true}}));

  port.OnStatusChange([this] { Note("status"); });
  port.SetStatus(ModemStatus::Cts);
  port.SetStatus(ModemStatus::Cts | ModemStatus::Ring);
  queue.Yield();
  EXPECT_EQ(history.size(), 1U);
  EXPECT_EQ(port.Status(), ModemStatus::Cts | ModemStatus::Ring);
  port.FailStatus(true);
  EXPECT_FALSE(port.Status());
}

TEST(VirtualPrinterPort, RecordsEveryWriteAndTellsChanges) {
  VirtualClock clock;
  VirtualPrinterPort port(clock);
  Listener listener;
  port.SetListener(&listener);
  port.Write(0x378, 5);
  port.Write(0x378, 5);
  EXPECT_EQ(listener.Heard, History{"5"});
  EXPECT_EQ(port.Levels(), (std::vector<PrinterLevel>{{0, 0x378, 5, true}, {0, 0x378, 5, false}}));
}

TEST(VirtualFiles, AFileNeedsItsDirectoryAndFailuresChangeNothing) {
  VirtualFiles files;
  EXPECT_TRUE(files.Replace("/home/me/a.txt", "x"));
  EXPECT_FALSE(files.MakeDirectory("/home/me/"));
  EXPECT_FALSE(files.Replace("/home/me/a.txt", "one"));
  EXPECT_FALSE(files.Append("/home/me/B.TXT", "two"));
  files.Fail(FileOperation::Replace, Error{28, "disk full"});
  EXPECT_EQ(files.Replace("/home/me/a.txt", "lost")->Code, 28);
  Failure failure;
  EXPECT_EQ(files.Read("/home/me/a.txt", failure), "one");
  EXPECT_FALSE(failure);
  EXPECT_FALSE(files.Read("/home/me/none", failure));
  EXPECT_TRUE(failure);
  EXPECT_TRUE(files.Exists("/home/me"));
  EXPECT_EQ(files.List("/home/me", ".txt"), (History{"B.TXT", "a.txt"}));
}

TEST(VirtualDialogs, AnswersByScriptAndThenDeclines) {
  VirtualDialogs dialogs;
  dialogs.MessageAnswers = {MessageAnswer::Yes};
  int opened = 0;
  dialogs.WhileOpen = [&] { ++opened; };
  const MessageRequest question{"Sure?", "", MessageIcon::Question, MessageButtons::YesNo};
  EXPECT_EQ(dialogs.ShowMessage(question), MessageAnswer::Yes);
  EXPECT_EQ(dialogs.ShowMessage(question), MessageAnswer::No);
  EXPECT_FALSE(dialogs.AskOpenFile({}));
  EXPECT_EQ(dialogs.Messages.size(), 2U);
  EXPECT_EQ(opened, 3);
}

TEST(VirtualProcesses, StartedProgramsRunUntilClosedAndStrangersAreLeftAlone) {
  VirtualProcesses processes;
  processes.Running[7] = "DREAM.exe";
  Failure failure;
  const int process = processes.Start({"/opt/dream/DREAM.exe", "-M 0", "/opt/dream"}, failure);
  EXPECT_EQ(processes.Find("dream.EXE", failure), (std::vector{7, process}));
  processes.Close(7);
  processes.Close(process);
  EXPECT_EQ(processes.Find("dream.exe", failure), std::vector{7});
  EXPECT_FALSE(processes.IsRunning(7) || processes.IsRunning(process));
  processes.StartFailure = Error{2, "not found"};
  EXPECT_EQ(processes.Start({"dream"}, failure), 0);
  EXPECT_TRUE(failure);
}

}  // namespace
}  // namespace quorl
