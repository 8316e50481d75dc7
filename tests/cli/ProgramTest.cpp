// The desktop program as its surroundings treat it: signals, a home that can't be written, a script's end.
#ifdef QUORL_PROGRAM
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <nlohmann/json.hpp>
#include <thread>

#include "cli/CliRunner.h"

namespace quorl::test {
namespace {

class ProgramTest : public CliTest {
 protected:
  // Off screen, with the test's own directories and without a sound server.
  static constexpr const char* kAlone =
      "chmod 700 .; export QT_QPA_PLATFORM=offscreen PULSE_SERVER=unix:/nowhere HOME=\"$PWD\" "
      "XDG_RUNTIME_DIR=\"$PWD\"; "
      "unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_STATE_HOME;";

  CliResult Program(const std::string& arguments, const std::string& before = "") const {
    return Run(QUORL_PROGRAM, arguments, kAlone + before);
  }
  pid_t Start(const std::vector<std::string>& words) const {
    const pid_t child = fork();
    if (child != 0) return child;
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("PULSE_SERVER", "unix:/nowhere", 1);
    setenv("HOME", folder_.c_str(), 1);
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) unsetenv(name);
    const int nothing = ::open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nothing, stream);
    std::vector<char*> arguments{const_cast<char*>(QUORL_PROGRAM)};
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    execv(QUORL_PROGRAM, arguments.data());
    _exit(127);
  }
};

TEST_F(ProgramTest, ASignalEndsItAsCloseDoesWithTheSettingsStored) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    SCOPED_TRACE(signal);
    std::filesystem::remove_all(Path(".config"));
    std::filesystem::remove_all(Path(".local/state"));
    const pid_t child = Start({"trace", "--demo"});
    int status = 0;
    const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < patience &&
           Get(".local/state/quorlsdr/QUORLSDR-demo.log").find("optPwr_click : End") == std::string::npos &&
           waitpid(child, &status, WNOHANG) == 0) {
      std::this_thread::yield();
    }
    kill(child, signal);
    while (std::chrono::steady_clock::now() < patience && waitpid(child, &status, WNOHANG) == 0) {
      std::this_thread::yield();
    }
    ASSERT_NE(kill(child, SIGKILL), 0) << "still runs";
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_NE(Get(".config/quorlsdr/demo.ini").find("LastTunedFrequency=72050000"), std::string::npos);
  }
}

TEST_F(ProgramTest, CloseEndsAScript) {
  Put("script", "click optPwr(1)\nprint optPwr(2)\nclick optPwr(2)\nprint lblClock\nexpect lblClock never\n");
  const CliResult result = Program("--demo --virtual-time --script script");
  EXPECT_EQ(result.ExitCode, 0) << result.Output;
  EXPECT_EQ(result.Output, "optPwr(2) = 0\n");
}

TEST_F(ProgramTest, WhatItCannotDoIsToldInOneLine) {
  const std::string nowhere = "unset QT_QPA_PLATFORM DISPLAY WAYLAND_DISPLAY;";
  Put("script", "quit\n");
  ExpectOneLine(Program("--demo", nowhere), 2, "no display");
  EXPECT_EQ(Program("--demo --script script", nowhere).ExitCode, 0) << "a script needs none";
  ExpectOneLine(Program("--virtual-time --demo"), 2, "--virtual-time needs --demo and --script");
  ExpectOneLine(Program("--board-error 5 --script script"), 2, "--board-error");
  ExpectOneLine(Program("--antenna a.wav --script script"), 2, "--antenna");
  ExpectOneLine(Program("--demo --script missing"), 2, "missing");
}

TEST_F(ProgramTest, AReportTellsWhatTheRunHasCost) {
  const CliResult result = Program("--demo --seconds 0.5 --report");
  EXPECT_EQ(result.ExitCode, 0) << result.Errors;
  const auto report = nlohmann::json::parse(result.Errors.substr(result.Errors.rfind("{\"seconds\"")));
  EXPECT_GE(report["seconds"], 0.5);
  EXPECT_LT(report["first_audio_s"], report["seconds"]);
  EXPECT_GT(report["blocks"], 5);
  EXPECT_GT(report["repaints"], 0);
  EXPECT_GE(report["us_per_block_max"], report["us_per_block_mean"]);
  EXPECT_GT(report["cpu_percent"], 0.0);
  EXPECT_GT(report["resident_mb"], 10.0);
  EXPECT_GT(report["signal_level"], 0.0);
}

TEST_F(ProgramTest, TheDemoPlaysWhereItsLoudspeakerOfYesterdayIsGone) {
  Put("script", "wait 500\nprint optPwr(0)\nquit\n");
  Put("demo.ini", "[frmMain]\nCurrentPlaybackDevice=3\nCurrentPlaybackDeviceName=Headset\n");
  const CliResult result = Program("--demo --virtual-time --settings demo.ini --script script");
  EXPECT_EQ(result.ExitCode, 0) << result.Errors;
  EXPECT_EQ(result.Output, "optPwr(0) = 1\n");
  EXPECT_NE(Get("demo.ini").find("CurrentPlaybackDeviceName=No loudspeaker"), std::string::npos);
}

TEST_F(ProgramTest, TheDemoRunsWithAHomeThatCannotBeWritten) {
  Put("script", "wait 500\nprint optPwr(0)\n");
  std::filesystem::create_directory(Path("tmp"));
  const std::string homeless = "export HOME=\"$PWD/script\" TMPDIR=\"$PWD/tmp\";";
  const std::string notice = Path("script") + "/.config/quorlsdr or a folder beside it can't be written";
  const CliResult panel = Program("--demo --virtual-time --script script", homeless);
  EXPECT_EQ(panel.ExitCode, 0);
  EXPECT_EQ(panel.Output, "optPwr(0) = 1\n");
  EXPECT_EQ(panel.Errors.find("quorlsdr: " + notice), 0U) << panel.Errors;
  ExpectOneLine(Cli("listen --demo --output a.wav --seconds 0.2", kAlone + homeless), 0, notice);
  EXPECT_TRUE(std::filesystem::is_empty(Path("tmp")));
}

}  // namespace
}  // namespace quorl::test
#endif
