// What `quorlsdr-cli listen` and `receive` record, and what they make of IF recordings.
#include <algorithm>

#include "cli/ListenRig.h"
#include "cli/Signals.h"
#include "platform/CalendarDays.h"
#include "recorder/files/RecordingHeader.h"

namespace quorl::test {
namespace {

class ListenRecordingTest : public ListenTest {
 protected:
  Recording Own(const std::string& name) const {
    Failure failure;
    const auto file = files_.Open(Path(name), OpenMode::Read, failure);
    RecordingRead read = file ? ReadRecording(*file) : RecordingRead();
    EXPECT_TRUE(read.Own) << name;
    return read.Own.value_or(Recording{});
  }
  void Record(const std::string& arguments) const {
    const CliResult result = Listen("--demo --folder band " + arguments);
    EXPECT_EQ(result.ExitCode, 0) << result.Errors;
    EXPECT_EQ(result.Errors, "");
  }
  std::vector<std::int16_t> Receive(const std::string& arguments, const std::string& input = "if.wav") const {
    const CliResult result = Cli("receive " + arguments + " " + input + " again.wav");
    EXPECT_EQ(result.ExitCode, 0) << result.Errors;
    return GetWav("again.wav");
  }
};

TEST_F(ListenRecordingTest, AnIFRecordingBringsBoardAndSideAndSoundsAsItWasHeard) {
  struct Case {
    const char* Options;
    IFOrigin Origin;
    const char* TurnedOver;  // hears the other sideband
  };
  const Case cases[] = {{"--model drt1", {0, false}, "--low-side"},
                        {"--model drt1 --low-side", {0, true}, "--high-side"},
                        {"--model elektor", {1, false}, "--low-side"},
                        {"--model iq --if-filter track", {2, false}, ""},
                        {"--model real2iq --low-side --if-filter track", {3, true}, ""}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.Options);
    const std::string options = c.Options;
    Record("--seconds 2.5 --frequency 7050 --mode usb --agc off --output heard.wav --record-if if.wav " +
           options);
    const Recording own = Own("if.wav");
    ASSERT_TRUE(own.Format.IF);
    EXPECT_EQ(*own.Format.IF, c.Origin);
    EXPECT_EQ(own.Format.Channels, c.Origin.Model == 2 ? 2 : 1);
    EXPECT_EQ(own.Frames(), 59 * 2048);
    ASSERT_EQ(own.Log.size(), 1U);
    EXPECT_EQ(own.Log[0].Freq, 70500000);
    EXPECT_EQ(own.Log[0].Start, 80);
    EXPECT_EQ(own.Log[0].End, own.LogStart);

    const std::string filter = options.find("track") == std::string::npos ? "" : " --if-filter track";
    const std::string usb = "--mode usb --agc off" + filter;
    EXPECT_EQ(Receive(usb), GetWav("heard.wav"));
    const auto settled = [](std::vector<std::int16_t> audio) {
      audio.erase(audio.begin(), audio.begin() + 48000);
      return audio;
    };
    const double heard = LineAt(settled(Receive(usb)), 1200.0);
    EXPECT_GT(heard, 300.0);
    EXPECT_GT(LineAt(Hear(usb, "--antenna if.wav"), 1200.0), 0.9 * heard);
    if (*c.TurnedOver == '\0') continue;
    EXPECT_LT(LineAt(settled(Receive(usb + " " + c.TurnedOver)), 1200.0), heard / 100.0);
  }
}

TEST_F(ListenRecordingTest, OtherProgramsReadTheSamplesAndLeaveTheLog) {
  if (std::system("command -v sox >/dev/null") != 0) GTEST_SKIP() << "sox is not installed";
  Record("--seconds 1 --output heard.wav --record-if iq.wav --log --model iq");
  EXPECT_EQ(
      std::system(
          ("cd '" + folder_.string() + "' && for f in heard iq; do sox -D $f.wav $f.raw; done").c_str()),
      0);
  // The raw samples are exactly the stretch between header and log.
  const std::string heard = Get("heard.wav"), iq = Get("iq.wav");
  const Recording audio = Own("heard.wav"), captured = Own("iq.wav");
  EXPECT_EQ(audio.Log.size(), 1U);
  EXPECT_EQ(Get("heard.raw"), heard.substr(44, static_cast<std::size_t>(audio.DataBytes)));
  EXPECT_EQ(Get("iq.raw"), iq.substr(80, static_cast<std::size_t>(captured.DataBytes)));
  EXPECT_EQ(heard.size(), 44U + Get("heard.raw").size() + 5U + static_cast<std::size_t>(kLogRecordBytes));
}

TEST_F(ListenRecordingTest, ReceiveCarriesTheLogOverToItsAudio) {
  const RecordingFormat format{48000, 2, 16, IFOrigin{2, false}};
  constexpr std::int64_t kFrames = 3 * 2048;
  const std::vector<std::int16_t> samples(2 * kFrames, 100);
  Failure failure;
  auto writer = WavWriter::Create(files_, Path("if.wav"), format, failure);
  ASSERT_TRUE(writer);
  const double when = *ParseDate("2026-11-23 20:15:00");
  writer->SetLog(
      {{when, 70500000, 80, 80 + 4 * 1000}, {when, 61000000, 80 + 4 * 1000, 80 + 4 * kFrames + 1}});
  EXPECT_FALSE(writer->Write(samples.data(), 2 * kFrames));
  EXPECT_FALSE(writer->Commit());
  EXPECT_EQ(Receive("--log").size(), static_cast<std::size_t>(kFrames));
  const std::vector<LogRecord> moved = {{when, 70500000, 44, 44 + 2 * 1000},
                                        {when, 61000000, 44 + 2 * 1000, 44 + 2 * kFrames + 1}};
  EXPECT_EQ(Own("again.wav").Log, moved);
  Receive("");
  EXPECT_EQ(Own("again.wav").LogStart, 0);

  PutWav("in.wav", Tone(1000.0, 4000.0, 3000));
  Receive("--log --frequency 7205.1234", "in.wav");
  const Recording told = Own("again.wav");
  ASSERT_EQ(told.Log.size(), 1U);
  EXPECT_EQ(told.Log[0].Freq, 72051234);
  EXPECT_EQ(told.Log[0].Start, 44);
  EXPECT_EQ(told.Log[0].End, 44 + 2 * 3000 + 1);
}

// The demo's clock begins on the first of January 2024 at noon.
TEST_F(ListenRecordingTest, AClockTellsWhenToBeginAndToEnd) {
  struct Case {
    const char* Times;
    const char* Begins;
    double Seconds;
  };
  const Case cases[] = {{"--start 12:01 --end 12:02", "2024-01-01 12:01:00", 60.0},
                        {"--start 12:00 --end '2024-01-01 12:01'", "2024-01-01 12:00:00", 60.0},
                        {"--start 11:59 --seconds 3", "2024-01-02 11:59:00", 3.0},
                        {"--start '2023-12-31 23:00' --end 12:01", "2024-01-01 12:00:00", 60.0},
                        {"--start 23:59 --end 00:00", "2024-01-01 23:59:00", 60.0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.Times);
    const CliResult result =
        Listen("--demo --folder band --quiet --output a.wav --log --record-if if.wav --mode drm " +
               std::string(c.Times));
    EXPECT_EQ(result.ExitCode, 0) << result.Errors;
    EXPECT_EQ(result.Errors, "");
    const Recording own = Own("a.wav");
    EXPECT_NEAR(static_cast<double>(own.Frames()) / 48000.0, c.Seconds, 0.1);
    EXPECT_EQ(Own("if.wav").Frames(), own.Frames());
    ASSERT_EQ(own.Log.size(), 1U);
    EXPECT_EQ(own.Log[0].Start, 44);
    EXPECT_NEAR(own.Log[0].When, *ParseDate(c.Begins), 1.1 / 86400.0) << DateText(own.Log[0].When);
  }
}

TEST_F(ListenRecordingTest, NonsenseIsNamedInOneLineAndTouchesNothing) {
  PutWav("in.wav", Tone(1000.0, 4000.0, 3000));
  PutWav("heard.wav", Tone(1000.0, 4000.0, 3000));
  Record("--seconds 0.2 --record-if if.wav --model real2iq");
  std::string strange = Get("if.wav");
  strange[56] = 9;  // the board's number
  Put("strange.wav", strange);
  struct Case {
    const char* Arguments;
    const char* Named;
  };
  const std::string listen = "listen --demo --folder band --output heard.wav ";
  const std::string before = Get("heard.wav");
  for (const Case& bad :
       {Case{"--start 25:00", "--start: '25:00' doesn't fit; HH:MM"}, Case{"--start 7:00", "--start"},
        Case{"--end '2024-02-30 10:00'", "--end"},
        Case{"--end '2024-01-01 11:00'", "--end: 2024-01-01 11:00 has passed"},
        Case{"--start '2024-01-03 10:00' --end '2024-01-02 10:00'", "doesn't lie behind --start"},
        Case{"--end 12:01 --seconds 3", "--seconds: --end tells how long"}}) {
    SCOPED_TRACE(bad.Arguments);
    ExpectOneLine(Cli(listen + bad.Arguments, kAlone), 2, bad.Named);
  }
  ExpectOneLine(Cli("listen --demo --start 12:01", kAlone), 2, "--start: nothing is recorded");
  ExpectOneLine(Cli("listen --demo --log", kAlone), 2, "--log: nothing is recorded");
  ExpectOneLine(Cli("listen --demo --seconds 1 --record-if no/if.wav", kAlone), 2, "no/if.wav: ");
  ExpectOneLine(Cli("receive --log in.wav heard.wav"), 2,
                "in.wav: has no tuning log; --log needs --frequency");
  ExpectOneLine(Cli("receive --frequency 7000 in.wav heard.wav"), 2, "--log is needed");
  ExpectOneLine(Cli("receive --log --frequency 0 in.wav heard.wav"), 2, "--frequency");
  ExpectOneLine(Cli("receive --log --frequency 7000 if.wav heard.wav"), 2,
                "if.wav brings its own tuning log");
  ExpectOneLine(Cli("receive --log --frequency 7000 in.wav -"), 2, "-: a pipe carries no tuning log");
  ExpectOneLine(Cli("receive strange.wav heard.wav"), 2,
                "strange.wav: recorded from a receiver board of number 9");
  EXPECT_EQ(Get("heard.wav"), before);
}

}  // namespace
}  // namespace quorl::test
