#include "platform/linux/system/LinuxEventQueue.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <thread>
#include <vector>

namespace quorl {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kPatience{5000};  // never waited out by a queue that works

class LinuxEventQueueTest : public testing::Test {
 protected:
  EventQueue::Task Note(const std::string& word) {
    return [this, word] { told_ += word + " "; };
  }
  // Keeps the thread busy until that much time has passed on the machine's clock.
  static void Busy(milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) continue;
  }
  void WaitUntil(const std::function<bool()>& ready) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!ready() && std::chrono::steady_clock::now() < end) queue_.Wait(milliseconds(50));
    EXPECT_TRUE(ready());
  }

  LinuxEventQueue queue_;
  std::string told_;
};

TEST_F(LinuxEventQueueTest, TasksRunInOrderAndAYieldInsideATaskGoesOnWithTheRest) {
  queue_.Post(Note("a"));
  queue_.Post([this] {
    told_ += "b( ";
    queue_.Post(Note("d"));
    queue_.Yield();
    told_ += ") ";
  });
  queue_.Post(Note("c"));
  queue_.Yield();
  EXPECT_EQ(told_, "a b( c d ) ");
}

TEST_F(LinuxEventQueueTest, ATaskThatPostsItselfDoesNotHoldTheYield) {
  std::function<void()> again = [&] {
    told_ += "x";
    queue_.Post(again);
  };
  queue_.Post(again);
  queue_.Yield();
  queue_.Yield();
  EXPECT_EQ(told_, "xx");
}

TEST_F(LinuxEventQueueTest, LateTicksComeOnceInTheOrderOfTheirTimes) {
  auto slow = queue_.CreateTimer(Note("slow"));
  auto fast = queue_.CreateTimer(Note("fast"));
  auto stopped = queue_.CreateTimer(Note("stopped"));
  auto restarted = queue_.CreateTimer(Note("restarted"));
  slow->Start(milliseconds(20));
  fast->Start(milliseconds(2));
  stopped->Start(milliseconds(1));
  restarted->Start(milliseconds(1));
  Busy(milliseconds(25));
  stopped->Stop();
  restarted->Start(std::chrono::hours(1));
  queue_.Yield();
  EXPECT_EQ(told_, "fast slow ");
  slow->Stop();
  queue_.Wait(kPatience);
  EXPECT_EQ(told_, "fast slow fast ");
}

TEST_F(LinuxEventQueueTest, TicksMissedByABusyThreadDoNotPileUp) {
  int ticks = 0;
  constexpr int kPeriod = 5, kYields = 10;
  auto timer = queue_.CreateTimer([&] { ++ticks; });
  timer->Start(milliseconds(kPeriod));
  Busy(milliseconds(kPeriod * (kYields + 2)));
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < kYields; ++i) queue_.Yield();
  const auto taken = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(ticks, 1);
  EXPECT_LE(ticks, 2 + taken / milliseconds(kPeriod));
}

TEST_F(LinuxEventQueueTest, WhatIsQueuedDiesWithAStopBeforeItsTurn) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  ASSERT_EQ(write(ends[1], "x", 1), 1);
  auto watch = queue_.WatchFile(ends[0], Note("readable"));
  auto timer = queue_.CreateTimer(Note("tick"));
  auto killer = queue_.CreateTimer([&] {
    timer->Stop();
    watch.reset();
  });
  killer->Start(milliseconds(1));
  timer->Start(milliseconds(2));
  Busy(milliseconds(5));
  queue_.Yield();
  EXPECT_EQ(told_, "");
  close(ends[0]);
  close(ends[1]);
}

TEST_F(LinuxEventQueueTest, ATickMayDestroyItsTimerAndAHandlerItsSignalAndWatch) {
  std::unique_ptr<QueueTimer> timer = queue_.CreateTimer([this, &timer, word = std::string("tick")] {
    timer.reset();
    told_ += word + " ";
  });
  std::unique_ptr<QueueSignal> signal = queue_.CreateSignal([this, &signal, word = std::string("signal")] {
    signal.reset();
    told_ += word + " ";
  });
  timer->Start(milliseconds(1));
  signal->Raise();
  Busy(milliseconds(2));
  queue_.Yield();
  queue_.Wait(milliseconds(3));
  EXPECT_EQ(told_, "tick signal ");
}

TEST_F(LinuxEventQueueTest, RaisesAreOneCallUntilTheQueueLooksAndWakeItFromAnyThread) {
  int calls = 0;
  auto signal = queue_.CreateSignal([&] { ++calls; });
  for (int i = 0; i < 1000; ++i) signal->Raise();
  queue_.Yield();
  queue_.Yield();
  EXPECT_EQ(calls, 1);

  std::thread other([&] { signal->Raise(); });
  WaitUntil([&] { return calls == 2; });
  other.join();
}

TEST_F(LinuxEventQueueTest, ARaiseInsideTheHandlerIsACallOfItsOwn) {
  int calls = 0;
  std::unique_ptr<QueueSignal> signal = queue_.CreateSignal([&] {
    if (++calls < 3) signal->Raise();
  });
  signal->Raise();
  WaitUntil([&] { return calls == 3; });
}

QueueSignal* g_interrupt = nullptr;  // a Unix signal handler has no other way to it

TEST_F(LinuxEventQueueTest, AUnixSignalHandlerMayRaise) {
  int calls = 0;
  auto signal = queue_.CreateSignal([&] { ++calls; });
  g_interrupt = signal.get();
  struct sigaction action {};
  struct sigaction before {};
  action.sa_handler = [](int) { g_interrupt->Raise(); };
  sigaction(SIGUSR1, &action, &before);
  queue_.Post([] { raise(SIGUSR1); });
  WaitUntil([&] { return calls == 1; });
  sigaction(SIGUSR1, &before, nullptr);
  g_interrupt = nullptr;
}

TEST_F(LinuxEventQueueTest, AWatchedFileIsReadUntilItIsDropped) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  std::unique_ptr<FileWatch> watch = queue_.WatchFile(ends[0], [&] {
    char key = 0;
    if (read(ends[0], &key, 1) == 1) {
      told_ += key;
    } else {
      told_ += ".";
      watch.reset();
    }
  });
  queue_.Yield();
  EXPECT_EQ(told_, "");
  ASSERT_EQ(write(ends[1], "up", 2), 2);
  WaitUntil([&] { return told_ == "up"; });
  close(ends[1]);
  WaitUntil([&] { return told_ == "up."; });
  queue_.Yield();
  EXPECT_EQ(told_, "up.");
  close(ends[0]);
}

TEST_F(LinuxEventQueueTest, RunEndsWithQuitAndCanRunAgain) {
  auto timer = queue_.CreateTimer([this] { queue_.Quit(); });
  timer->Start(milliseconds(1));
  queue_.Run();
  queue_.Run();
  queue_.Post(Note("still there"));
  queue_.Yield();
  EXPECT_EQ(told_, "still there ");
}

}  // namespace
}  // namespace quorl
