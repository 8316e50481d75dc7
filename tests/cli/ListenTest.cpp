// `quorlsdr-cli listen` over the simulated board and band, from the wire to the audio file.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "cli/ListenRig.h"
#include "cli/Signals.h"

namespace quorl::test {
namespace {

double ReportValue(const CliResult& result, const std::string& key) {
  return nlohmann::json::parse(result.Errors).at(key).get<double>();
}

TEST_F(ListenTest, TheBroadcastersProgrammeComesOutAndIsGoneThreeKilohertzAway) {
  const double tuned = LineAt(Hear("--frequency 7205 --agc off"), 700.0);
  EXPECT_GT(tuned, 300.0);
  EXPECT_LT(LineAt(Hear("--frequency 7208 --mode usb --filter-mode 2 --agc off"), 700.0), tuned / 100.0);
  EXPECT_LT(LineAt(Hear("--frequency 7225 --agc off"), 700.0), tuned / 100.0);
}

TEST_F(ListenTest, EachBoardHearsAVoiceInItsOwnSidebandOnly) {
  for (const char* board : {"drt1", "drt1 --low-side", "elektor", "elektor --low-side"}) {
    SCOPED_TRACE(board);
    const std::string model = std::string(" --agc off --model ") + board;
    const double upper = LineAt(Hear("--frequency 7050 --mode usb" + model), 1200.0);
    const double lower = LineAt(Hear("--frequency 7090 --mode lsb" + model), 900.0);
    EXPECT_GT(upper, 300.0);
    EXPECT_GT(lower, 300.0);
    EXPECT_LT(LineAt(Hear("--frequency 7050 --mode lsb" + model), 1200.0), upper / 100.0);
    EXPECT_LT(LineAt(Hear("--frequency 7090 --mode usb" + model), 900.0), lower / 100.0);
    EXPECT_LT(LineAt(Hear("--frequency 7053 --mode usb" + model), 1200.0), upper / 100.0);
  }
}

TEST_F(ListenTest, TheQuadratureBoardsHearTheUpperVoiceThroughTheIfFilter) {
  for (const char* board : {"iq", "real2iq", "real2iq --low-side"}) {
    SCOPED_TRACE(board);
    const std::string way = std::string(" --mode usb --if-filter track --agc off --model ") + board;
    const double upper = LineAt(Hear("--frequency 7050" + way), 1200.0);
    EXPECT_GT(upper, 300.0);
    EXPECT_LT(LineAt(Hear("--frequency 7090" + way), 900.0), upper / 100.0);
  }
}

TEST_F(ListenTest, TheDemosOwnBandWhistlesUntilTheNotchTakesItOut) {
  const double whistle = LineAt(Hear("--frequency 7260 --agc off", ""), 1150.0);
  EXPECT_GT(whistle, 300.0);
  EXPECT_LT(LineAt(Hear("--frequency 7260 --agc off --notch audio:1150:200", ""), 1150.0), whistle / 30.0);
}

TEST_F(ListenTest, AClockErrorMovesTheDial) {
  // Ten millionths of 52.05 MHz.
  const auto audio = Hear("--frequency 7050 --mode usb --agc off --board-error 10");
  EXPECT_GT(LineAt(audio, 1200.0 - 520.5), 30.0 * LineAt(audio, 1200.0));
}

TEST_F(ListenTest, ARecordingTakesTheAntennasPlace) {
  PutWav("if.wav", AMSignal(1000.0, 4000.0, 48000));
  // Eight samples are a quarter turn of 13500 Hz, and some whole ones.
  const auto tone = Tone(13500.0, 4000.0, 48008);
  const std::vector<std::int16_t> late(tone.begin(), tone.end() - 8), early(tone.begin() + 8, tone.end());
  PutWav("iq.wav", Interleave(late, early), 2);
  PutWav("qi.wav", Interleave(early, late), 2);
  EXPECT_GT(LineAt(Hear("--antenna if.wav"), 1000.0), 300.0);
  const std::string quadrature = " --model iq --mode usb --agc off";
  EXPECT_GT(LineAt(Hear("--antenna iq.wav" + quadrature), 1500.0), 300.0);
  EXPECT_LT(LineAt(Hear("--antenna qi.wav" + quadrature), 1500.0), 3.0);
  ExpectOneLine(Listen("--demo --antenna if.wav --model iq --output b.wav --seconds 1"), 2,
                "if.wav: has 1 channel");
}

TEST_F(ListenTest, TheFrequencyIsKeptInTheDemosOwnSettingsAndOptionsAreNot) {
  std::filesystem::create_directories(Path("config/quorlsdr"));
  Put("config/quorlsdr/settings.ini", "[VFO1.DRT1]\nTunedFrequency=61000000\n");
  const std::string end = " --folder band --output a.wav --seconds 0.2 --report";
  EXPECT_EQ(ReportValue(Listen("--demo" + end), "frequency_hz"), 7205000.0);
  EXPECT_EQ(ReportValue(Listen("--demo --low-side --frequency 7090.1234" + end), "oscillator_hz"),
            45000000.0 - 7090123.4);
  EXPECT_NE(Get("config/quorlsdr/demo.ini").find("HiSideLo=True"), std::string::npos);
  const CliResult again = Listen("--demo" + end);
  EXPECT_EQ(ReportValue(again, "frequency_hz"), 7090123.4);
  EXPECT_EQ(ReportValue(again, "oscillator_hz"), 45000000.0 + 7090123.4);
  EXPECT_EQ(Get("config/quorlsdr/settings.ini"), "[VFO1.DRT1]\nTunedFrequency=61000000\n");
  EXPECT_FALSE(std::filesystem::exists(Path("config/quorlsdr/settings.ini.lock")));
  // Another file is another radio.
  EXPECT_EQ(ReportValue(Listen("--demo --settings mine.ini" + end), "frequency_hz"), 7205000.0);
}

TEST_F(ListenTest, TheReportTellsTheTimesOfTheMachineInVirtualTimeToo) {
  const CliResult result = Listen("--demo --folder band --output a.wav --seconds 2 --report");
  EXPECT_EQ(ReportValue(result, "blocks"), 47.0);
  EXPECT_GT(ReportValue(result, "us_per_block_mean"), 1.0);
  EXPECT_GE(ReportValue(result, "us_per_block_max"), ReportValue(result, "us_per_block_mean"));
  EXPECT_GT(ReportValue(result, "times_real_time"), 1.0);
  EXPECT_GT(ReportValue(result, "cpu_percent"), 0.0);
}

TEST_F(ListenTest, AnInterruptionKeepsWhatWasReceived) {
  const pid_t child = fork();
  if (child == 0) {
    setenv("XDG_CONFIG_HOME", Path("config").c_str(), 1);
    const int nothing = ::open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDERR_FILENO}) dup2(nothing, stream);
    if (chdir(folder_.c_str()) == 0) {
      execl(QUORL_CLI, QUORL_CLI, "listen", "--demo", "--folder", "band", "--output", "a.wav", nullptr);
    }
    _exit(127);
  }
  // The demo plays silently in real time; wait for the first blocks in the growing file beside the target.
  const auto grown = [this] {
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      std::error_code gone;
      const bool growing = entry.path().filename() == "a.wav.1.new";
      if (growing && std::filesystem::file_size(entry.path(), gone) > 4096 && !gone) return true;
    }
    return false;
  };
  while (!grown() && waitpid(child, nullptr, WNOHANG) == 0) std::this_thread::yield();
  kill(child, SIGINT);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_GE(GetWav("a.wav").size(), 2048U);  // the block that was seen to arrive
  EXPECT_EQ(Files(), "a.wav band config");
}

TEST_F(ListenTest, WhatCannotBeIsNamedInOneLine) {
  Put("a.wav", "old content");
  struct Case {
    const char* Arguments;
    const char* Named;
  };
  const std::string toFile = " --output a.wav --seconds 1";
  const std::vector<Case> cases = {
      {"", "--demo or --capture NAME is needed"},
      {"--demo --capture 1", "--capture: the demo brings its own antenna"},
      {"--capture 1 --antenna if.wav", "--demo is needed"},
      {"--capture 1 --board-error 5", "--demo is needed"},
      {"--capture 1 --folder band", "--demo is needed"},
      {"--capture nobody", "no capture device is called 'nobody'"},
      {"--demo --playback nobody", "no playback device is called 'nobody'"},
      {"--demo --frequency x", "--frequency: 'x' doesn't fit; a number from 0 to 214748.3647 is needed"},
      {"--demo --frequency nan", "--frequency"},
      {"--demo --frequency 200000", "reaches no further than 135048 kHz"},
      {"--demo --seconds -1", "--seconds"},
      {"--demo --board-error 1001", "--board-error"},
      {"--demo --model drt2", "--model"},
      {"--demo --folder nowhere", "nowhere/stations.ini"},
      {"--demo --antenna nothing.wav", "nothing.wav: "},
      {"--demo --antenna a.wav", "a.wav: not a RIFF/WAVE file"},
      {"--demo --settings in-use.ini", "in-use.ini is in use by another running program"},
  };
  const int lock = ::open(Path("in-use.ini.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_EQ(flock(lock, LOCK_EX | LOCK_NB), 0);
  for (const Case& bad : cases) {
    SCOPED_TRACE(bad.Arguments);
    ExpectOneLine(Listen(bad.Arguments + toFile), 2, bad.Named);
    EXPECT_EQ(Get("a.wav"), "old content");
  }
  ::close(lock);
  ExpectOneLine(Listen("--demo --output no/folder/a.wav --seconds 1"), 2, "no/folder/a.wav: ");
  ExpectOneLine(Cli("listen --demo --output b.wav --seconds 100", kAlone + SmallFiles(100)), 1, "b.wav: ");
  EXPECT_EQ(Files(), "a.wav band config in-use.ini.lock");
}

TEST_F(ListenTest, DevicesAreListedWithoutAnythingElse) {
  const CliResult result = Cli("devices", kAlone);
  EXPECT_EQ(result.ExitCode, 0);
  EXPECT_EQ(result.Errors, "");
  EXPECT_EQ(result.Output.find("Capture devices\n"), 0U) << result.Output;
  EXPECT_NE(result.Output.find("\nPlayback devices\n"), std::string::npos) << result.Output;
  EXPECT_NE(result.Output.find("\nSerial ports\n"), std::string::npos) << result.Output;
}

}  // namespace
}  // namespace quorl::test
