// `quorlsdr-cli tune`: the numbers, and the wire as the board reads it.
#include <cmath>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "cli/CliRunner.h"

namespace quorl::test {
namespace {

class TuneTest : public CliTest {};

struct Wire {
  const char* Data;
  const char* Clock;
  const char* Select;
};
constexpr Wire kSerial = {"RTS", "BREAK", "DTR"}, kParallel = {"D0", "D1", "D2"};

struct BoardCase {
  const char* Arguments;
  std::int64_t FrequencyHz, OscillatorHz;
  double ClockHz;
  bool IsAd9835;
  Wire Lines;
};

// What follows `name` up to the end of its line.
std::string After(const std::string& text, const std::string& name) {
  const std::size_t at = text.find(name);
  if (at == std::string::npos) return "";
  const std::size_t begin = at + name.size();
  return text.substr(begin, text.find('\n', begin) - begin);
}

// Bits as the chip takes them, the AD9951 at the clock's rise and the AD9835 at its fall; the board's level
// shifters turn the data over. A frame ends where the select line changes.
std::vector<std::vector<int>> ReadWire(const std::string& listing, const Wire& lines, bool atFall) {
  std::vector<std::vector<int>> frames(1);
  std::istringstream in(listing.substr(listing.find("microsecond line level\n") + 23));
  std::string line;
  std::int64_t before = -1, microsecond = 0;
  int level = 0, data = 0;
  while (in >> microsecond >> line >> level) {
    EXPECT_GE(microsecond, before);
    before = microsecond;
    if (line == lines.Data) data = level;
    if (line == lines.Select && !frames.back().empty()) frames.emplace_back();
    if (line == lines.Clock && (level == 0) == atFall) frames.back().push_back(1 - data);
  }
  EXPECT_TRUE(in.eof());
  if (frames.back().empty()) frames.pop_back();
  return frames;
}

std::string Bytes(const std::vector<int>& bits) {
  std::string text;
  for (std::size_t i = 0; i + 8 <= bits.size(); i += 8) {
    int byte = 0;
    for (std::size_t b = 0; b < 8; ++b) byte = 2 * byte + bits[i + b];
    char digits[8];
    std::snprintf(digits, sizeof digits, " %02X", static_cast<unsigned>(byte));
    text += digits;
  }
  EXPECT_EQ(bits.size() % 8, 0U);
  return text;
}

// The chip's frequency register after these frames.
std::uint32_t FrequencyRegister(const std::vector<std::string>& frames, bool isAd9835) {
  std::uint32_t word = 0;
  for (const std::string& frame : frames) {
    std::istringstream in(frame);
    unsigned address = 0, byte = 0;
    in >> std::hex >> address;
    if (!isAd9835 && address == 4) {
      while (in >> byte) word = word << 8 | byte;
    }
    // Data words of 16 bits: command 2 or 3, then the byte's place in the register.
    if (isAd9835 && (address >> 4 == 2 || address >> 4 == 3) && in >> byte) {
      const unsigned place = 8 * (address & 3);
      word = (word & ~(0xFFU << place)) | byte << place;
    }
  }
  return word;
}

TEST_F(TuneTest, TheBoardReadsTheWordThatTheArithmeticGives) {
  const double drt1 = 360096000.0, elektor = 50000000.0;
  const std::vector<BoardCase> cases = {
      {"--model drt1", 7050000, 52050000, drt1, false, kSerial},
      {"--model drt1 --low-side", 7050000, 37950000, drt1, false, kSerial},
      {"--model drt1 --if 10700000 --clock 400000000", 14074000, 24774000, 400e6, false, kSerial},
      {"--model iq", 153000, 45153000, drt1, false, kSerial},
      {"--model real2iq", 29600000, 74600000, drt1, false, kSerial},
      {"--model elektor", 6070000, 6525000, elektor, true, kSerial},
      {"--model elektor --low-side --interface parallel", 6070000, 5615000, elektor, true, kParallel},
  };
  for (const BoardCase& board : cases) {
    SCOPED_TRACE(board.Arguments);
    const CliResult result = Cli(std::string("tune --dry-run ") + board.Arguments + " --frequency " +
                                 std::to_string(board.FrequencyHz));
    ASSERT_EQ(result.ExitCode, 0) << result.Errors;
    EXPECT_EQ(result.Errors, "");
    const auto word = static_cast<std::uint32_t>(
        std::llrint(static_cast<double>(board.OscillatorHz) * 4294967296.0 / board.ClockHz));
    EXPECT_EQ(After(result.Output, "tuning word: ").substr(0, std::to_string(word).size() + 1),
              std::to_string(word) + " ");
    std::vector<std::string> frames;
    std::string sent;
    for (const auto& bits : ReadWire(result.Output, board.Lines, board.IsAd9835)) {
      frames.push_back(Bytes(bits));
      sent += "sent:" + frames.back() + "\n";
    }
    EXPECT_EQ(FrequencyRegister(frames, board.IsAd9835), word);
    EXPECT_NE(result.Output.find(sent + "microsecond"), std::string::npos) << sent << result.Output;
  }
}

TEST_F(TuneTest, WhatCannotBeIsNamedInOneLine) {
  struct Case {
    const char* Arguments;
    const char* Named;
  };
  const std::vector<Case> cases = {
      {"", "--model"},
      {"--model drt1", "--frequency"},
      {"--model drt2 --frequency 1", "--model: 'drt2' is unknown"},
      {"--model drt1 --frequency 7.05 --dry-run", "--frequency"},
      {"--model drt1 --frequency 7050000", "--port PATH is needed"},
      {"--model drt1 --frequency 7050000 --port nothing",
       "--port: Can't open the serial port nothing: No such file"},
      {"--model drt1 --frequency 7050000 --port /dev/null",
       "--port: Can't open the serial port /dev/null: Inappropriate"},
      {"--model drt1 --frequency 7050000 --interface parallel --dry-run", "--interface parallel"},
      {"--model elektor --frequency 7050000 --interface parallel --port x", "--port: names a serial port"},
      {"--model drt1 --frequency 7050000 --interface usb", "--interface: 'usb' is unknown"},
      {"--model drt1 --frequency 7050000 --clock 50000000 --dry-run", "clock of 50000000 Hz is too low"},
      {"--model drt1 --frequency 7050000 --clock 0 --dry-run", "--clock"},
      {"--model drt1 --frequency 200000000 --dry-run", "reaches no further than 135048000 Hz"},
  };
  for (const Case& bad : cases) {
    SCOPED_TRACE(bad.Arguments);
    ExpectOneLine(Cli(std::string("tune ") + bad.Arguments), 2, bad.Named);
  }
}

}  // namespace
}  // namespace quorl::test
