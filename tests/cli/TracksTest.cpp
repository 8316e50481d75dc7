// `quorlsdr-cli tracks`: lists a recording's tracks and makes files of them.
#include <cstring>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/CliRunner.h"
#include "platform/CalendarDays.h"
#include "recorder/files/RecordingHeader.h"

namespace quorl::test {
namespace {

class TracksTest : public CliTest {
 protected:
  // Five seconds at 3 kHz; the last track reaches beyond them.
  void PutNight() const {
    const double evening = *ParseDate("2026-11-23 18:05:09");
    const RecordingFormat format{3000, 1, 16, {}};
    std::string samples;
    for (int i = 0; i < 30000; ++i) samples += static_cast<char>(i % 17);
    Put("night.wav", MakeWavHeader(format, 30044, 15000) + samples +
                         MakeTrailer({{evening, 72050000, 44, 12044},
                                      {evening + 1.0 / 24, 60704000, 12044, 13044},
                                      {evening + 1.0, 1980000, 13044, 21612044}}));
  }
};

TEST_F(TracksTest, ListsNumberKilohertzDateStartAndDuration) {
  PutNight();
  const CliResult list = Cli("tracks night.wav");
  EXPECT_EQ(list.ExitCode, 0) << list.Errors;
  EXPECT_EQ(list.Output,
            "    1    7205.0000 kHz  2026-11-23 18:05:09   0:00:00   0:00:02\n"
            "    2     198.0000 kHz  2026-11-24 18:05:09   0:00:02   1:00:00\n");
  const auto rows = nlohmann::json::parse(Cli("tracks night.wav --json").Output);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[1]["track"], 2);
  EXPECT_EQ(rows[1]["khz"], 198.0);
  EXPECT_EQ(rows[1]["date"], "2026-11-24 18:05:09");
  EXPECT_NEAR(rows[1]["start_seconds"].get<double>(), 13000.0 / 6000.0, 1e-9);
  EXPECT_NEAR(rows[1]["seconds"].get<double>(), 21599000.0 / 6000.0, 1e-9);
}

TEST_F(TracksTest, FilesWithoutALogSayTheyHaveNone) {
  PutWav("plain.wav", std::vector<std::int16_t>(5000, 7));
  Put("text.txt", "no sound");
  for (const char* name : {"plain.wav", "text.txt"}) {
    const CliResult list = Cli(std::string("tracks ") + name);
    EXPECT_EQ(list.ExitCode, 0) << list.Errors;
    EXPECT_EQ(list.Output, "No Track Information Found\n");
    EXPECT_EQ(Cli(std::string("tracks --json ") + name).Output, "[]\n");
    ExpectOneLine(Cli(std::string("tracks --export out ") + name), 2, "has no tuning log");
  }
  EXPECT_EQ(Files(), "plain.wav text.txt");
}

TEST_F(TracksTest, BadInputIsRefusedInOneLine) {
  PutNight();
  Put("cut.wav", Get("night.wav").substr(0, 20000));
  ExpectOneLine(Cli("tracks gone.wav"), 2, "gone.wav");
  ExpectOneLine(Cli("tracks ."), 2, "directory");
  ExpectOneLine(Cli("tracks cut.wav"), 2, "cut.wav");
  ExpectOneLine(Cli("tracks gone.wav --export out"), 2, "gone.wav");
  ExpectOneLine(Cli("tracks night.wav --flac"), 2, "--export");
  ExpectOneLine(Cli("tracks"), 2, "FILE");
  ExpectOneLine(Cli("tracks night.wav --export ''"), 2, "irectory");
  ExpectOneLine(Cli("tracks night.wav --export night.wav"), 2, "night.wav");
}

TEST_F(TracksTest, ExportsFilesThatOtherProgramsRead) {
  PutNight();
  const CliResult wav = Cli("tracks night.wav --export out/here");
  EXPECT_EQ(wav.ExitCode, 0) << wav.Errors;
  EXPECT_EQ(wav.Output, "out/here/2026-11-23 1805 7205 kHz.wav\nout/here/2026-11-24 1805 198 kHz.wav\n");
  const CliResult again = Cli("tracks night.wav --export out/here --json");
  EXPECT_EQ(nlohmann::json::parse(again.Output)[1], "out/here/2026-11-24 1805 198 kHz (2).wav");
  EXPECT_EQ(Cli("tracks night.wav --export out --flac").ExitCode, 0);
  if (std::system("command -v soxi >/dev/null") != 0) GTEST_SKIP() << "sox is not installed";
  for (const char* name : {"out/here/2026-11-23 1805 7205 kHz.wav", "out/2026-11-23 1805 7205 kHz.flac"}) {
    SCOPED_TRACE(name);
    const auto tell = [&](const std::string& option) {
      return Run("/usr/bin/env", "soxi " + option + " '" + name + "'", "").Output;
    };
    EXPECT_EQ(tell("-s"), "6000\n");
    EXPECT_EQ(tell("-r"), "3000\n");
    EXPECT_EQ(tell("-c"), "1\n");
    const std::string tags = tell("-a"), bytes = Get(name);
    for (const auto& [tag, text] :
         {std::pair("INAM", "7205 kHz"), std::pair("ICMT", "Frequency 7205.0000 kHz"),
          std::pair("ICRD", "2026-11-23 18:05:09")}) {
      const std::size_t at = bytes.find(tag);
      const bool inList = at != std::string::npos && bytes.compare(at + 8, std::strlen(text), text) == 0;
      EXPECT_TRUE(inList || tags.find(std::string("=") + text) != std::string::npos) << tag << "\n" << tags;
    }
    Run("/usr/bin/env", std::string("sox '") + name + "' -t raw -e signed -b 16 track.raw", "");
    EXPECT_EQ(Get("track.raw"), Get("night.wav").substr(44, 12000));
  }
}

// The signal has come before the program starts, and waits.
TEST_F(TracksTest, AnInterruptedExportLeavesNoHalfFile) {
  PutNight();
  const CliResult result =
      Run("/usr/bin/env",
          "python3 -c 'import os, signal, sys; signal.pthread_sigmask(signal.SIG_BLOCK, "
          "[signal.SIGTERM]); os.kill(os.getpid(), signal.SIGTERM); os.execv(sys.argv[1], "
          "sys.argv[1:])' '" QUORL_CLI "' tracks night.wav --export out",
          "");
  ExpectOneLine(result, 1, "out: interrupted");
  EXPECT_TRUE(std::filesystem::is_empty(Path("out")));
}

}  // namespace
}  // namespace quorl::test
