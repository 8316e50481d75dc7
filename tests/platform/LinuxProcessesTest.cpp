// Real processes of this machine.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>

#include "platform/ScratchDirectory.h"
#include "platform/linux/system/LinuxEventQueue.h"
#include "platform/linux/system/LinuxProcesses.h"
#include "platform/linux/system/ProcessTable.h"

namespace quorl {
namespace {

namespace fs = std::filesystem;

TEST(LinuxProcessesTest, CommandLinesSplitAtBlanksOutsideQuotes) {
  EXPECT_EQ(SplitCommandLine(" -M 0  -I \"my card\" '' -x\\\"y a\"b c\"d"),
            (std::vector<std::string>{"-M", "0", "-I", "my card", "", "-x\"y", "ab cd"}));
  EXPECT_TRUE(SplitCommandLine("  ").empty());
}

struct LinuxPrograms : testing::Test {
  LinuxPrograms() { fs::copy_file("/bin/sleep", Program); }
  int Start(const std::string& arguments) {
    Failure failure;
    const int process = Programs.Start({Program, arguments, Scratch.Path()}, failure);
    EXPECT_FALSE(failure);
    return process;
  }
  bool Eventually(const std::function<bool()>& holds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!holds() && std::chrono::steady_clock::now() < end) Queue.Wait(std::chrono::milliseconds(1));
    return holds();
  }
  static fs::path Entry(int process) { return "/proc/" + std::to_string(process); }

  ScratchDirectory Scratch;
  // Other runs of this test are none of its business.
  const std::string Name = "Decoder" + std::to_string(getpid());
  const std::string Program = Scratch.Path(Name);
  LinuxEventQueue Queue;
  LinuxProcesses Programs{&Queue};
};

TEST_F(LinuxPrograms, AProgramIsStartedFoundInAnyCaseAndLeavesNothingBehind) {
  Failure failure;
  const int process = Start("600");
  EXPECT_EQ(Programs.Find("DECODER" + Name.substr(7), failure), std::vector{process});
  EXPECT_TRUE(Programs.IsRunning(process));
  EXPECT_EQ(fs::read_symlink(Entry(process) / "cwd"), Scratch.Path());
  Programs.Close(process);
  EXPECT_TRUE(Eventually([&] { return !fs::exists(Entry(process)); }))
      << "nobody has asked, and it is reaped";
  EXPECT_FALSE(Programs.IsRunning(process));
  EXPECT_TRUE(Programs.Find(Name, failure).empty());
  EXPECT_FALSE(failure);

  // Where nobody watches, the next start sees to it.
  LinuxProcesses unwatched;
  const int first = unwatched.Start({Program, "0"}, failure);
  siginfo_t ended{};
  waitid(P_PID, static_cast<id_t>(first), &ended, WEXITED | WNOWAIT);
  EXPECT_TRUE(fs::exists(Entry(first)));
  EXPECT_TRUE(Programs.Find(Name, failure).empty()) << "what has ended doesn't run";
  const int second = unwatched.Start({Program, "600"}, failure);
  EXPECT_FALSE(fs::exists(Entry(first)));
  unwatched.Close(second);
  waitid(P_PID, static_cast<id_t>(second), &ended, WEXITED | WNOWAIT);
  EXPECT_FALSE(unwatched.IsRunning(second));
}

TEST_F(LinuxPrograms, NobodyElseIsAskedToClose) {
  const pid_t stranger = fork();
  if (stranger == 0) execl(Program.c_str(), Program.c_str(), "600", nullptr);
  const int ended = Start("0");
  EXPECT_TRUE(Eventually([&] { return !fs::exists(Entry(ended)); }));
  EXPECT_FALSE(Programs.IsRunning(stranger));
  for (const int process : {int{stranger}, ended, 0, -1, int{-stranger}}) Programs.Close(process);
  siginfo_t end{};
  const auto wait = std::chrono::steady_clock::now() + std::chrono::milliseconds(100);
  while (std::chrono::steady_clock::now() < wait) Queue.Wait(std::chrono::milliseconds(10));
  EXPECT_EQ(waitid(P_PID, static_cast<id_t>(stranger), &end, WEXITED | WNOHANG | WNOWAIT), 0);
  EXPECT_EQ(end.si_pid, 0) << "still running";
  kill(stranger, SIGKILL);
  waitpid(stranger, nullptr, 0);
}

TEST_F(LinuxPrograms, AProgramInheritsNeitherFilesNorDeafness) {
  const int file = open("/dev/zero", O_RDONLY);
  signal(SIGTERM, SIG_IGN);
  const int process = Start("600");
  signal(SIGTERM, SIG_DFL);
  EXPECT_FALSE(fs::exists(Entry(process) / "fd" / std::to_string(file)));
  EXPECT_TRUE(fs::exists(Entry(process) / "fd" / "2"));
  Programs.Close(process);
  EXPECT_TRUE(Eventually([&] { return !Programs.IsRunning(process); }));
  close(file);
}

TEST_F(LinuxPrograms, AProgramThatCannotRunIsToldAtOnce) {
  Failure failure;
  EXPECT_EQ(Programs.Start({"/no/such/decoder", "-I 0"}, failure), 0);
  ASSERT_TRUE(failure);
  EXPECT_EQ(
      failure->Text,
      "Can't start /no/such/decoder: No such file or directory. Check its path and that it may be run.");
  EXPECT_EQ(Programs.Start({"/bin/sleep", "0", "/no/such/directory"}, failure), 0);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "no child is left";
}

// A table of this test's own making.
TEST(ProcessTable, ProgramsAreKnownByFileFirstWordOrOwnName) {
  ScratchDirectory table;
  const auto put = [&](const std::string& process, const std::string& exe, const std::string& words,
                       const std::string& comm, char state) {
    const fs::path entry = table.Path(process);
    fs::create_directory(entry);
    if (!exe.empty()) fs::create_symlink(exe, entry / "exe");
    std::ofstream(entry / "cmdline") << words;
    std::ofstream(entry / "comm") << comm << "\n";
    std::ofstream(entry / "stat") << process << " (" << comm << ") " << state << " 1 1";
  };
  using namespace std::string_literals;
  put("11", "/opt/Dream.exe", "x\0"s, "x", 'S');
  put("12", "/usr/bin/loader", "C:\\drm\\DREAM.EXE\0"s, "loader", 'R');
  put("13", "/bin/dash", "/bin/sh\0/home/a/dream.exe\0"s, "dream.exe", 'S');
  put("14", "/bin/less", "less\0/opt/dream.exe\0"s, "less", 'S');  // only reads it
  put("15", "/opt/dream.exe", "dream.exe\0"s, ") Z dream.exe", 'Z');
  put("16", "/bin/dash", "/bin/sh\0./start-my-decoder.sh\0"s, "start-my-decode", 'S');
  put("self", "/opt/dream.exe", ""s, "dream.exe", 'S');
  Failure failure;
  const auto find = [&](const std::string& name) {
    return FindPrograms(table.Path(), geteuid(), name, failure);
  };
  EXPECT_EQ(find("dream.EXE"), (std::vector{11, 12, 13}));
  EXPECT_EQ(find("start-my-decoder.sh"), std::vector{16});
  EXPECT_TRUE(find("start-my-decoding.sh").empty());
  EXPECT_TRUE(FindPrograms(table.Path(), geteuid() + 1, "dream.exe", failure).empty()) << "another user's";
  EXPECT_FALSE(failure);
  EXPECT_TRUE(FindPrograms(table.Path("none"), geteuid(), "dream.exe", failure).empty());
  EXPECT_TRUE(failure);
}

}  // namespace
}  // namespace quorl
