// Real signals off the air come out right in the mode that belongs to them. The recordings are no part of the
// project: QUORL_RECORDINGS names their folder, else it is looked for beside the checkout.
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string_view>

#include "cli/CliRunner.h"
#include "cli/Signals.h"

namespace quorl::test {
namespace {

constexpr std::size_t Rate = 48000;

class RecordingsTest : public CliTest {
 protected:
  RecordingsTest() {
    const char* named = std::getenv("QUORL_RECORDINGS");
    recordings_ = named != nullptr ? std::filesystem::path(named)
                                   : std::filesystem::path(QUORL_SOURCE_DIR) / ".." / "shared" / "recordings";
  }

  void SetUp() override {
    if (!std::filesystem::is_directory(recordings_)) {
      GTEST_SKIP() << "no recordings in " << recordings_ << "; QUORL_RECORDINGS may name their folder";
    }
  }

  std::vector<std::int16_t> Receive(const std::string& name, const std::string& options) const {
    const CliResult result = Cli("receive " + options + " '" + (recordings_ / name).string() + "' out.wav");
    EXPECT_EQ(result.ExitCode, 0) << result.Errors;
    return GetWav("out.wav");
  }

  std::filesystem::path recordings_;
};

// Amplitude of the line at `hertz` in stretches of `step` samples.
std::vector<double> Envelope(const std::vector<std::int16_t>& samples, double hertz, std::size_t step,
                             std::size_t window) {
  std::vector<double> envelope;
  for (std::size_t n = 0; n + window <= samples.size(); n += step) {
    envelope.push_back(LineAt(std::span(samples).subspan(n, window), hertz));
  }
  return envelope;
}

// Morse out of an envelope in steps of an eighth of a dot: letters as "-.-. " and words apart by "/ ".
std::string ReadSigns(const std::vector<double>& envelope) {
  std::vector<double> sorted = envelope;
  std::sort(sorted.begin(), sorted.end());
  const double threshold = sorted[sorted.size() * 9 / 10] / 2.0;
  std::string signs;
  int run = 0;
  bool down = false;
  for (const double level : envelope) {
    if ((level > threshold) == down) {
      ++run;
      continue;
    }
    if (down) {
      signs += run > 16 ? '-' : '.';
    } else if (run > 16) {
      signs += run > 40 ? " / " : " ";
    }
    down = !down;
    run = 1;
  }
  return signs;
}

TEST_F(RecordingsTest, MorseIsReadInUpperSideband) {
  constexpr std::size_t EighthOfDot = Rate * 40 / 1000 / 8;  // 30 words a minute
  const auto audio = Receive("cw-usb-high.wav", "--mode usb --filter 200:800");
  const std::string signs = ReadSigns(Envelope(audio, 501.0, EighthOfDot, 4 * EighthOfDot));
  const std::string call = "-.-. --.- / -.. -..- / -.. . / ...-- -.-- ----- .--- / -..-";  // CQ DX DE 3Y0J X
  int calls = 0;
  for (std::size_t at = signs.find(call); at != std::string::npos; at = signs.find(call, at + 1)) ++calls;
  EXPECT_GE(calls, 2) << signs;  // the third may lack its end, which the filters hold back
}

// Five-bit teletype letters and figures, in the order of their codes; '\0' shifts or prints nothing.
constexpr std::string_view Letters("\0E\nA SIU\rDRJNFCKTZLWHYPQOBG\0MXV\0", 32);
constexpr std::string_view Figures(
    "\0003\n- '87\r\0"
    "4\a,!:(5\")2#6019?&\0./;\0",
    32);

std::string ReadTeletype(const std::vector<double>& mark, const std::vector<double>& space,
                         double stepsPerBit) {
  std::string text;
  std::string_view table = Letters;
  const auto markAt = [&](double step) {
    const auto i = static_cast<std::size_t>(step);
    return mark[i] > space[i];
  };
  for (double at = 1; at + 8 * stepsPerBit < static_cast<double>(mark.size());) {
    if (!markAt(at - 1) || markAt(at) || markAt(at + stepsPerBit / 2)) {  // no start bit
      at += 1;
      continue;
    }
    std::size_t code = 0;
    for (std::size_t bit = 0; bit < 5; ++bit) {
      if (markAt(at + (1.5 + static_cast<double>(bit)) * stepsPerBit)) code |= 1U << bit;
    }
    if (code == 27) table = Figures;
    if (code == 31) table = Letters;
    if (table[code] != '\0') text += table[code];
    at += 6.5 * stepsPerBit;
  }
  return text;
}

TEST_F(RecordingsTest, TeletypeIsReadInUpperSideband) {
  constexpr std::size_t Bit = Rate / 50, Step = Bit / 16;
  const auto audio = Receive("rtty-usb-low.wav", "--mode usb --low-side --filter 1400:2600");
  const std::string text =
      ReadTeletype(Envelope(audio, 1775.0, Step, Bit), Envelope(audio, 2225.0, Step, Bit), 16.0);
  EXPECT_NE(text.find("CQ CQ CQ DE DDK2 DDH7 DDK9"), std::string::npos) << text;
}

TEST_F(RecordingsTest, SecondsOfTheTimeSignalAreSeenInAM) {
  const auto audio = Receive("dcf77-am.wav", "--mode am --agc slow --if-filter track --filter 5:500");
  // A filter that reaches down to the carrier itself shows its falls, one each second.
  constexpr std::size_t Step = Rate / 100;
  std::vector<double> loudness;
  for (std::size_t n = 2 * Rate; n + Step <= audio.size(); n += Step) {
    double sum = 0.0;
    for (std::size_t i = n; i < n + Step; ++i) sum += std::abs(static_cast<double>(audio[i]));
    loudness.push_back(sum);
  }
  std::vector<std::size_t> falls;
  for (std::size_t n = 2; n + 1 < loudness.size(); ++n) {
    const bool fell = loudness[n + 1] < 0.3 * loudness[n - 2];
    if (fell && (falls.empty() || n > falls.back() + 20)) falls.push_back(n);
  }
  ASSERT_GE(falls.size(), 15U);
  for (std::size_t i = 1; i < falls.size(); ++i) {
    const std::size_t late = (falls[i] - falls[i - 1]) % 100;  // the last second of a minute has no mark
    EXPECT_TRUE(late <= 2 || late >= 98) << "fall " << i << " comes " << falls[i] - falls[i - 1];
  }
}

TEST_F(RecordingsTest, DigitalBroadcastPassesUnchangedWithoutAGC) {
  const auto audio = Receive("drm-if.wav", "--mode drm --agc off");
  Failure failure;
  auto reader = WavReader::Open(files_, (recordings_ / "drm-if.wav").string(), {}, failure);
  ASSERT_TRUE(reader);
  std::vector<std::int16_t> source(audio.size());
  reader->Read(source.data(), static_cast<int>(source.size()), failure);
  EXPECT_EQ(audio, source);
}

TEST_F(RecordingsTest, FT8MessagesAreDecoded) {
  if (std::system("command -v jt9 >/dev/null && command -v sox >/dev/null") != 0) {
    GTEST_SKIP() << "the decoder jt9 (package wsjtx) or sox is not installed";
  }
  struct Case {
    const char* Name;
    const char* Options;
    int Messages;
  };
  for (const Case& c : {Case{"ft8-busy-usb-low", "--low-side", 17}, Case{"ft8-quiet-usb-high", "", 5}}) {
    Receive(std::string(c.Name) + ".wav", std::string("--mode usb --agc off --filter 200:3000 ") + c.Options);
    const std::string command =
        "cd '" + folder_.string() + "' && sox -D out.wav -r 12000 slow.wav && jt9 -8 -d 3 slow.wav >jt9.out";
    ASSERT_EQ(std::system(command.c_str()), 0);
    std::istringstream lines(Get("jt9.out"));
    int messages = 0;
    for (std::string line; std::getline(lines, line);) messages += line.find('~') != std::string::npos;
    EXPECT_GE(messages, c.Messages) << c.Name << "\n" << Get("jt9.out");
  }
}

}  // namespace
}  // namespace quorl::test
