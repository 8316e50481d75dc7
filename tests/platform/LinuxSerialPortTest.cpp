#include "platform/linux/lines/LinuxSerialPort.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <thread>

#include "platform/ScratchDirectory.h"
#include "platform/linux/lines/SerialPortList.h"
#include "platform/linux/system/FileHandle.h"
#include "platform/linux/system/LinuxEventQueue.h"
#include "platform/virtual/VirtualClock.h"
#include "platform/virtual/VirtualEventQueue.h"

namespace quorl {
namespace {

constexpr std::chrono::milliseconds kPortPatience{5000};

// A driver made of memory. Its wait behaves as the real one: it sees only what changes after it began, and an
// interruption reaches it only while it waits.
class MemoryTty : public SerialCalls {
 public:
  int Open(const std::string& device) override {
    Note("open " + device);
    return openError != 0 ? openError : 7;
  }
  void Close(int) override { Note(waiting_ ? "close while waiting" : "close"); }
  int TakeExclusive(int) override {
    Note("exclusive");
    return exclusiveError;
  }
  int SetModemBits(int, int bits, bool on) override {
    for (const auto& [bit, name] : {std::pair{TIOCM_RTS, "RTS"}, std::pair{TIOCM_DTR, "DTR"}}) {
      if ((bits & bit) != 0) Note(name + std::string(on ? "+" : "-"));
    }
    return lineError;
  }
  int SetBreak(int, bool on) override {
    Note(on ? "BRK+" : "BRK-");
    return lineError;
  }
  int ModemBits(int, int& bits) override {
    const std::lock_guard lock(mutex_);
    bits = bits_;
    return modemError;
  }
  int WaitForChange(int, int) override {
    std::unique_lock lock(mutex_);
    if (waitError != 0) return waitError;
    const int from = changes_;
    waiting_ = true;
    interrupted_ = false;
    moved_.notify_all();
    if (std::exchange(losesFirstInterrupt, false)) {
      moved_.wait(lock, [&] { return std::exchange(interrupted_, false); });
    }
    moved_.wait(lock, [&] { return changes_ != from || interrupted_; });
    waiting_ = false;
    return interrupted_ ? -EINTR : 0;
  }
  void Interrupt(pthread_t) override {
    const std::lock_guard lock(mutex_);
    interrupted_ = true;
    moved_.notify_all();
  }

  void Put(int bits) {
    const std::lock_guard lock(mutex_);
    bits_ = bits;
    ++changes_;
    waiting_ = false;
    moved_.notify_all();
  }
  void AwaitWaiter() {
    std::unique_lock lock(mutex_);
    moved_.wait(lock, [&] { return waiting_; });
  }
  std::string TakeCalls() {
    const std::lock_guard lock(mutex_);
    return std::exchange(told_, "");
  }

  int openError = 0, exclusiveError = 0, waitError = 0;  // set before the port opens
  std::atomic<int> modemError = 0, lineError = 0;
  bool losesFirstInterrupt = false;  // it comes just before the wait begins

 private:
  void Note(const std::string& call) {
    const std::lock_guard lock(mutex_);
    told_ += (told_.empty() ? "" : ", ") + call;
  }

  std::mutex mutex_;
  std::condition_variable moved_;
  std::string told_;
  int bits_ = 0;
  int changes_ = 0;
  bool waiting_ = false;
  bool interrupted_ = false;
};

class LinuxSerialPortTest : public testing::Test {
 protected:
  void Open() {
    ASSERT_FALSE(port_.Open("/dev/ttyS0"));
    port_.OnStatusChange([this] { seen_.push_back(port_.Status().value_or(0)); });
  }
  void AwaitChange(std::size_t count) {
    const auto end = std::chrono::steady_clock::now() + kPortPatience;
    while (seen_.size() < count && std::chrono::steady_clock::now() < end) queue_.Wait(kPortPatience);
    ASSERT_EQ(seen_.size(), count);
  }

  LinuxEventQueue queue_;
  MemoryTty tty_;
  LinuxSerialPort port_{queue_, tty_};
  std::vector<std::uint32_t> seen_;
};

TEST_F(LinuxSerialPortTest, OpensExclusiveAtRestAndDrivesEachLine) {
  port_.SetLine(SerialLine::Rts, true);
  EXPECT_EQ(tty_.TakeCalls(), "");
  Open();
  EXPECT_EQ(tty_.TakeCalls(), "open /dev/ttyS0, exclusive, BRK-, RTS+, DTR+");
  for (const SerialLine line : {SerialLine::Rts, SerialLine::Dtr, SerialLine::Break}) {
    port_.SetLine(line, false);
    port_.SetLine(line, true);
  }
  EXPECT_EQ(tty_.TakeCalls(), "RTS-, RTS+, DTR-, DTR+, BRK-, BRK+");
  port_.Close();
  EXPECT_FALSE(port_.IsOpen());
  EXPECT_EQ(tty_.TakeCalls(), "close");
  port_.Close();
  EXPECT_EQ(tty_.TakeCalls(), "");
}

TEST_F(LinuxSerialPortTest, ARefusedPortStaysClosedAndSaysWhatToDo) {
  tty_.openError = -EACCES;
  Failure failure = port_.Open("/dev/ttyS0");
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->Text,
            "Can't open the serial port /dev/ttyS0: Permission denied. Add your user to the group dialout "
            "and log in "
            "again.");
  tty_.openError = 0;
  tty_.exclusiveError = -EBUSY;
  tty_.TakeCalls();
  failure = port_.Open("/dev/ttyS0");
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->Code, EBUSY);
  EXPECT_FALSE(port_.IsOpen());
  EXPECT_EQ(tty_.TakeCalls(), "open /dev/ttyS0, exclusive, close");
}

TEST_F(LinuxSerialPortTest, EachInputLineHasItsStatusBit) {
  EXPECT_FALSE(port_.Status());
  Open();
  const std::pair<int, std::uint32_t> lines[] = {
      {TIOCM_CTS, 0x10}, {TIOCM_DSR, 0x20}, {TIOCM_RI, 0x40}, {TIOCM_CD, 0x80}, {TIOCM_RTS | TIOCM_DTR, 0}};
  for (const auto& [bit, status] : lines) {
    tty_.Put(bit);
    EXPECT_EQ(port_.Status(), status);
  }
}

TEST_F(LinuxSerialPortTest, ChangesOfCtsAndDsrReachTheQueueAndOthersDoNot) {
  Open();
  tty_.AwaitWaiter();
  tty_.Put(TIOCM_CTS);
  AwaitChange(1);
  tty_.AwaitWaiter();
  tty_.Put(TIOCM_CTS | TIOCM_RI);
  tty_.AwaitWaiter();
  queue_.Yield();
  EXPECT_EQ(seen_.size(), 1u);
  tty_.Put(TIOCM_DSR);
  AwaitChange(2);
  EXPECT_EQ(seen_, (std::vector<std::uint32_t>{0x10, 0x20}));
}

TEST_F(LinuxSerialPortTest, AHandlerMayCloseThePortAndNoChangeComesAfter) {
  Open();
  port_.OnStatusChange([this] {
    seen_.push_back(1);
    port_.Close();
  });
  tty_.AwaitWaiter();
  tty_.Put(TIOCM_CTS);
  AwaitChange(1);
  tty_.Put(0);
  queue_.Yield();
  EXPECT_EQ(seen_.size(), 1u);

  Open();
  seen_.clear();
  tty_.AwaitWaiter();
  tty_.Put(TIOCM_DSR);
  tty_.AwaitWaiter();
  port_.Close();
  queue_.Yield();
  EXPECT_TRUE(seen_.empty());
}

TEST_F(LinuxSerialPortTest, CloseEndsTheWaitAtAnyMoment) {
  for (int i = 0; i < 200; ++i) {
    Open();
    if (i % 2 == 0) tty_.AwaitWaiter();
    tty_.TakeCalls();
    port_.Close();
    ASSERT_EQ(tty_.TakeCalls(), "close");
  }
  tty_.losesFirstInterrupt = true;
  Open();
  tty_.AwaitWaiter();
  port_.Close();
}

TEST_F(LinuxSerialPortTest, ADriverThatCannotWaitIsPolled) {
  tty_.waitError = -EINVAL;
  Open();
  tty_.Put(TIOCM_DSR);
  AwaitChange(1);
  tty_.Put(TIOCM_DSR | TIOCM_CTS);
  AwaitChange(2);
  EXPECT_EQ(seen_, (std::vector<std::uint32_t>{0x20, 0x30}));
  port_.Close();
}

TEST_F(LinuxSerialPortTest, ADriverWithoutModemLinesOpensWithoutStatus) {
  tty_.modemError = -ENOTTY;
  Open();
  EXPECT_TRUE(port_.IsOpen());
  EXPECT_FALSE(port_.Status());
}

// On the virtual clock: the port is looked for once a second.
TEST(LinuxSerialPortPresence, APortThatVanishesIsToldOnceAndTakenAtRestWhenItIsBack) {
  for (const bool waits : {false, true}) {
    SCOPED_TRACE(waits);
    VirtualClock clock;
    VirtualEventQueue queue(clock);
    MemoryTty tty;
    LinuxSerialPort port(queue, tty);
    std::vector<std::string> told;
    port.OnPresence([&](const Failure& vanished) { told.push_back(vanished ? vanished->Text : "back"); });
    ASSERT_FALSE(port.Open("/dev/ttyUSB0"));
    tty.AwaitWaiter();
    tty.openError = -ENOENT;
    tty.lineError = tty.modemError = -EIO;
    if (waits) {
      tty.Put(0);  // the driver ends the wait
      while (told.empty()) queue.Yield();
    } else {
      port.SetLine(SerialLine::Rts, false);
      port.SetLine(SerialLine::Rts, true);
      EXPECT_TRUE(told.empty());  // not from inside the line call
    }
    queue.AdvanceBy(std::chrono::seconds(10));
    EXPECT_EQ(told, (std::vector<std::string>{"The serial port /dev/ttyUSB0 has vanished"}));
    EXPECT_FALSE(port.IsOpen());

    tty.TakeCalls();
    tty.openError = tty.lineError = tty.modemError = 0;
    queue.AdvanceBy(std::chrono::seconds(10));
    EXPECT_EQ(tty.TakeCalls(), "open /dev/ttyUSB0, exclusive, BRK-, RTS+, DTR+");
    EXPECT_EQ(told.size(), 2U);
    EXPECT_TRUE(port.IsOpen());
    tty.AwaitWaiter();
    tty.lineError = -EIO;
    port.SetLine(SerialLine::Dtr, false);
    port.Close();  // nobody wants it any more
    queue.AdvanceBy(std::chrono::seconds(10));
    EXPECT_EQ(told.size(), 2U);
    EXPECT_FALSE(port.IsOpen());
  }
}

TEST(LinuxSerialPortPresence, TheLossIsToldBeforeTheReturnAlsoWhereTheProgramHasStoodStill) {
  VirtualClock clock;
  VirtualEventQueue queue(clock);
  MemoryTty tty;
  LinuxSerialPort port(queue, tty);
  std::string told;
  port.OnPresence([&](const Failure& vanished) { told += vanished ? "gone " : "back "; });
  ASSERT_FALSE(port.Open("/dev/ttyUSB0"));
  tty.AwaitWaiter();
  tty.lineError = -EIO;
  port.SetLine(SerialLine::Rts, false);
  tty.lineError = 0;
  clock.Advance(std::chrono::seconds(2));
  queue.AdvanceBy(std::chrono::seconds(2));
  EXPECT_EQ(told, "gone back ");
  EXPECT_TRUE(port.IsOpen());
}

// A pseudo terminal opens, locks and keeps its settings as every tty does, but has no lines to move.
class LinesOfItsOwn : public LinuxSerialCalls {
 public:
  int SetModemBits(int, int, bool) override { return 0; }
  int SetBreak(int, bool) override { return 0; }
};

TEST(LinuxSerialCallsTest, ARealTtyOpensOnceWithItsSettingsUntouched) {
  FileHandle master(posix_openpt(O_RDWR | O_NOCTTY));
  if (!master || grantpt(master.Get()) != 0 || unlockpt(master.Get()) != 0)
    GTEST_SKIP() << "no pseudo terminals";
  const std::string device = ptsname(master.Get());
  LinuxEventQueue queue;
  LinuxSerialCalls plain;
  LinuxSerialPort lineless(queue, plain);
  const Failure none = lineless.Open(device);
  ASSERT_TRUE(none);
  EXPECT_EQ(none->Text.rfind("Can't move the lines of " + device, 0), 0U) << none->Text;
  EXPECT_FALSE(lineless.IsOpen());
  LinesOfItsOwn calls;
  LinuxSerialPort first(queue, calls), second(queue, calls);
  termios before{}, after{};
  tcgetattr(master.Get(), &before);
  ASSERT_FALSE(first.Open(device));
  tcgetattr(master.Get(), &after);
  EXPECT_EQ(before.c_cflag, after.c_cflag);
  EXPECT_EQ(before.c_lflag, after.c_lflag);
  EXPECT_EQ(before.c_iflag, after.c_iflag);
  const Failure refused = second.Open(device);
  ASSERT_TRUE(refused);
  EXPECT_EQ(refused->Code, EBUSY);
  first.Close();
  EXPECT_FALSE(second.Open(device));
}

// The real interruption of a real blocking call, on lines that never change.
class BlockingWait : public LinesOfItsOwn {
 public:
  BlockingWait() { EXPECT_EQ(pipe(ends_), 0); }
  ~BlockingWait() override {
    close(ends_[0]);
    close(ends_[1]);
  }
  int Open(const std::string&) override { return ends_[0]; }
  void Close(int) override {}
  int TakeExclusive(int) override { return 0; }
  int ModemBits(int, int& bits) override {
    bits = 0;
    return 0;
  }
  int WaitForChange(int file, int) override {
    char never = 0;
    ++waits;
    return read(file, &never, 1) < 0 ? -errno : 0;
  }

  std::atomic<int> waits = 0;

 private:
  int ends_[2] = {-1, -1};
};

TEST(LinuxSerialCallsTest, ABlockedSystemCallIsInterruptedByClose) {
  LinuxEventQueue queue;
  BlockingWait calls;
  LinuxSerialPort port(queue, calls);
  for (int i = 0; i < 50; ++i) {
    ASSERT_FALSE(port.Open("a pipe"));
    while (calls.waits <= i) std::this_thread::yield();
    port.Close();
  }
}

TEST(SerialPortListTest, LastingNamesFirstAndEachDeviceOnce) {
  namespace fs = std::filesystem;
  ScratchDirectory root;
  const auto put = [&](const std::string& name, const std::string& content) {
    fs::create_directories(fs::path(root.Path(name)).parent_path());
    std::ofstream(root.Path(name)) << content;
  };
  for (const char* name : {"ttyUSB0", "ttyUSB1", "ttyACM0", "ttyS0", "ttyS1", "ttyS10", "ttyS2", "tty1"}) {
    put(std::string("dev/") + name, "");
  }
  for (const char* name : {"ttyS0", "ttyS2", "ttyS10"})
    put("sys/class/tty/" + std::string(name) + "/type", "4\n");
  put("sys/class/tty/ttyS1/type", "0\n");
  fs::create_directories(root.Path("dev/serial/by-id"));
  fs::create_symlink("../../ttyUSB1", root.Path("dev/serial/by-id/usb-Adapter_A1"));

  std::string list;
  for (const SerialPortInfo& port : ListSerialPorts(root.Path())) {
    list += port.Path.substr(root.Path().size()) + " " + fs::path(port.Device).filename().string() + "\n";
  }
  EXPECT_EQ(
      list,
      "/dev/serial/by-id/usb-Adapter_A1 ttyUSB1\n/dev/ttyS0 ttyS0\n/dev/ttyS2 ttyS2\n/dev/ttyS10 ttyS10\n"
      "/dev/ttyUSB0 ttyUSB0\n/dev/ttyACM0 ttyACM0\n");
  EXPECT_TRUE(ListSerialPorts(root.Path("empty")).empty());
}

}  // namespace
}  // namespace quorl
