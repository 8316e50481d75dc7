#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "platform/ScratchDirectory.h"
#include "platform/linux/lines/LinuxPrinterPort.h"
#include "platform/linux/system/LinuxClock.h"
#include "platform/linux/system/LinuxProcesses.h"
#include "platform/linux/system/TerminalDialogs.h"

namespace quorl {
namespace {

bool Eventually(const std::function<bool()>& true_) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!true_() && std::chrono::steady_clock::now() < end) std::this_thread::yield();
  return true_();
}

class MemoryPrinterPorts : public PrinterCalls {
 public:
  std::vector<PrinterPortNumber> List() override { return {{0, 0x378}, {3, 0x278}}; }
  int OpenPort(int number) override {
    told << "open" << number << " ";
    return driverOpens ? 40 + number : -1;
  }
  void ClosePort(int file) override { told << "close" << file << " "; }
  bool Claim(int) override { return driverClaims; }
  void Release(int file) override { told << "release" << file << " "; }
  bool WriteData(int file, std::uint8_t value) override {
    told << file << "=" << int{value} << " ";
    return true;
  }
  bool AllowRaw(std::uint16_t address, bool on) override {
    told << (on ? "allow" : "forbid") << std::hex << address << std::dec << " ";
    return rawAllowed;
  }
  void WriteRaw(std::uint16_t address, std::uint8_t value) override {
    told << std::hex << address << std::dec << "=" << int{value} << " ";
  }

  bool driverOpens = true, driverClaims = true, rawAllowed = true;
  std::ostringstream told;
};

TEST(LinuxPrinterPortTest, TheDriversPortOfTheAddressComesFirst) {
  MemoryPrinterPorts calls;
  {
    LinuxPrinterPort port(calls);
    port.Write(0x278, 4);
    port.Write(0x278, 7);
    port.Write(0x378, 0);
  }
  EXPECT_EQ(calls.told.str(), "open3 43=4 43=7 release43 close43 open0 40=0 release40 close40 ");
}

TEST(LinuxPrinterPortTest, RawAccessComesSecondAndAPortOutOfReachIsAskedForOnce) {
  MemoryPrinterPorts calls;
  calls.driverClaims = false;
  {
    LinuxPrinterPort port(calls);
    port.Write(0x378, 5);
    port.Write(0x378, 7);
    EXPECT_EQ(port.Prepare(0x378), LinuxPrinterPort::Access::Raw);
  }
  EXPECT_EQ(calls.told.str(), "open0 close40 allow378 378=5 378=7 forbid378 ");

  calls.told.str("");
  calls.rawAllowed = false;
  LinuxPrinterPort port(calls);
  port.Write(0x3bc, 5);
  port.Write(0x3bc, 7);
  EXPECT_EQ(calls.told.str(), "allow3bc ");
  const Failure failure = port.Check(0x3bc);
  ASSERT_TRUE(failure);
  EXPECT_NE(failure->Text.find("0x3BC"), std::string::npos);
  EXPECT_NE(failure->Text.find("group lp"), std::string::npos);
}

TEST(LinuxProcessesTest, CommandLinesSplitAtBlanksOutsideQuotes) {
  EXPECT_EQ(SplitCommandLine(" -M 0  -I \"my card\" '' -x\\\"y a\"b c\"d"),
            (std::vector<std::string>{"-M", "0", "-I", "my card", "", "-x\"y", "ab cd"}));
  EXPECT_TRUE(SplitCommandLine("  ").empty());
}

TEST(LinuxProcessesTest, AProgramIsStartedFoundByNameInAnyCaseAndClosed) {
  ScratchDirectory scratch;
  const std::string number = std::to_string(getpid());  // other runs of this test are none of its business
  const std::string program = scratch.Path("Decoder" + number);
  std::filesystem::copy_file("/bin/sleep", program);
  LinuxProcesses processes;
  ASSERT_TRUE(processes.Find("decoder" + number).empty());
  ASSERT_FALSE(processes.Start(program, "600", scratch.Path()));
  const auto find = [&] { return processes.Find("DECODER" + number); };
  ASSERT_TRUE(Eventually([&] { return find().size() == 1; }));
  const int process = find()[0];
  std::error_code error;
  EXPECT_EQ(std::filesystem::read_symlink("/proc/" + std::to_string(process) + "/cwd", error),
            scratch.Path());
  processes.Close(process);
  EXPECT_TRUE(Eventually([&] { return find().empty(); }));

  const pid_t child = fork();
  if (child == 0) execl(program.c_str(), program.c_str(), "0", nullptr);
  siginfo_t ended{};
  waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT);
  EXPECT_TRUE(find().empty()) << "a program that has ended counts as running until its parent looks";
  waitpid(child, nullptr, 0);
}

TEST(LinuxProcessesTest, AProgramThatCannotRunIsToldAtOnce) {
  LinuxProcesses processes;
  const Failure missing = processes.Start("/no/such/decoder", "-I 0", "");
  ASSERT_TRUE(missing);
  EXPECT_EQ(
      missing->Text,
      "Can't start /no/such/decoder: No such file or directory. Check its path and that it may be run.");
  EXPECT_TRUE(processes.Start("/bin/sleep", "0", "/no/such/directory"));
}

TEST(TerminalDialogsTest, MessagesAreWrittenAndQuestionsChangeNothing) {
  std::ostringstream output;
  TerminalDialogs dialogs(output);
  EXPECT_EQ(dialogs.ShowMessage({"No device", "Sound", MessageIcon::Warning, MessageButtons::Ok}),
            MessageAnswer::Ok);
  EXPECT_EQ(dialogs.ShowMessage({"Overwrite?", "", MessageIcon::Question, MessageButtons::YesNo}),
            MessageAnswer::No);
  EXPECT_EQ(dialogs.ShowMessage({"Save?", "", MessageIcon::Question, MessageButtons::YesNoCancel}),
            MessageAnswer::Cancel);
  EXPECT_EQ(output.str(), "Sound: No device\nOverwrite?\nSave?\n");
  EXPECT_FALSE(dialogs.AskOpenFile({}));
}

TEST(LinuxClockTest, TellsLocalTimeAndNeverStepsBack) {
  LinuxClock clock;
  const std::int64_t first = clock.Microseconds();
  const std::time_t before = std::time(nullptr);
  const LocalTime now = clock.Now();
  std::tm parts{};
  parts.tm_year = now.Year - 1900;
  parts.tm_mon = now.Month - 1;
  parts.tm_mday = now.Day;
  parts.tm_hour = now.Hour;
  parts.tm_min = now.Minute;
  parts.tm_sec = now.Second;
  parts.tm_isdst = -1;
  EXPECT_NEAR(std::difftime(std::mktime(&parts), before), 0.0, 1.5);
  EXPECT_LT(now.Millisecond, 1000);
  EXPECT_GE(clock.Microseconds(), first);
}

}  // namespace
}  // namespace quorl
