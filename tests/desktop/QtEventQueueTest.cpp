// Tasks, timers and signals on the event loop of Qt.
#include "desktop/qt/QtEventQueue.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <QTimer>
#include <string>
#include <thread>

#include "DesktopTest.h"

namespace quorl {
namespace {

using namespace std::chrono_literals;

class QtEventQueueTest : public DesktopTest {
 protected:
  // Waits until it is so, at most five seconds.
  template <class Condition>
  bool Until(Condition condition) {
    for (int i = 0; i < 500 && !condition(); ++i) queue.Wait(10ms);
    return condition();
  }
  QtEventQueue queue;
};

TEST_F(QtEventQueueTest, AWatchTellsOfWhatCanBeReadUntilItGoes) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  std::string got;
  std::unique_ptr<FileWatch> watch = queue.WatchFile(ends[0], [&] {
    char letter = 0;
    if (read(ends[0], &letter, 1) == 1) {
      got += letter;
    } else {
      got += ".";
      watch.reset();
    }
  });
  ASSERT_EQ(write(ends[1], "ab", 2), 2);
  EXPECT_TRUE(Until([&] { return got == "ab"; }));
  close(ends[1]);
  EXPECT_TRUE(Until([&] { return watch == nullptr; }));
  queue.Wait(20ms);
  EXPECT_EQ(got, "ab.");
  close(ends[0]);
}

TEST_F(QtEventQueueTest, TasksRunInOrderAlsoThroughAYieldInside) {
  std::string order;
  queue.Post([&] {
    order += "a";
    queue.Yield();
    order += "d";
  });
  queue.Post([&] { order += "b"; });
  queue.Post([&] { order += "c"; });
  queue.Yield();
  EXPECT_EQ(order, "abcd");
  // A task that posts itself starves nobody.
  int rounds = 0;
  std::function<void()> again = [&] {
    ++rounds;
    queue.Post(again);
  };
  queue.Post(again);
  queue.Yield();
  EXPECT_LE(rounds, 3);
}

TEST_F(QtEventQueueTest, TimersTickStopAndMayEndThemselves) {
  int ticks = 0;
  auto timer = queue.CreateTimer([&] { ++ticks; });
  timer->Start(5ms);
  EXPECT_TRUE(Until([&] { return ticks >= 3; }));
  timer->Stop();
  const int stopped = ticks;
  queue.Wait(20ms);
  EXPECT_EQ(ticks, stopped);

  std::unique_ptr<QueueTimer> mortal;
  bool ended = false;
  mortal = queue.CreateTimer([&] {
    mortal.reset();
    ended = true;
  });
  mortal->Start(1ms);
  EXPECT_TRUE(Until([&] { return ended; }));
}

TEST_F(QtEventQueueTest, SignalsFromAnotherThreadAreJoined) {
  int raised = 0;
  std::thread::id where;
  auto signal = queue.CreateSignal([&] {
    ++raised;
    where = std::this_thread::get_id();
  });
  std::thread audio([&] {
    for (int i = 0; i < 100; ++i) signal->Raise();
  });
  audio.join();
  EXPECT_TRUE(Until([&] { return raised > 0; }));
  EXPECT_EQ(raised, 1);
  EXPECT_EQ(where, std::this_thread::get_id());

  std::unique_ptr<QueueSignal> mortal;
  bool ended = false;
  mortal = queue.CreateSignal([&] {
    mortal.reset();
    ended = true;
  });
  mortal->Raise();
  EXPECT_TRUE(Until([&] { return ended; }));
}

}  // namespace
}  // namespace quorl
