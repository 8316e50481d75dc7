// What `quorlsdr-cli spectrum` measures, draws and refuses.
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "cli/CliRunner.h"
#include "cli/Signals.h"

namespace quorl::test {
namespace {

constexpr double kBin = 23.4375;
constexpr double kFull = 32767.0;
constexpr std::size_t kBlock = 2048, kSecond = 48000;

struct SpectrumRow {
  double Hz, Db;
};

class SpectrumTest : public CliTest {
 protected:
  static std::vector<SpectrumRow> Rows(const std::string& table) {
    std::istringstream lines(table);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "hz,db");
    std::vector<SpectrumRow> rows;
    while (std::getline(lines, line)) {
      SpectrumRow row{};
      EXPECT_EQ(std::sscanf(line.c_str(), "%lf,%lf", &row.Hz, &row.Db), 2) << line;
      EXPECT_TRUE(rows.empty() || row.Hz == rows.back().Hz + kBin) << line;
      rows.push_back(row);
    }
    return rows;
  }
  std::vector<SpectrumRow> Measure(const std::string& arguments) const {
    const CliResult result = Cli("spectrum " + arguments);
    EXPECT_EQ(result.ExitCode, 0);
    EXPECT_EQ(result.Errors, "");
    return Rows(result.Output);
  }
  static SpectrumRow Peak(const std::vector<SpectrumRow>& rows) {
    SpectrumRow peak{0.0, -999.0};
    for (const SpectrumRow& row : rows) peak = row.Db > peak.Db ? row : peak;
    return peak;
  }
  static void ExpectPeak(const std::vector<SpectrumRow>& rows, double hz, double db) {
    EXPECT_EQ(Peak(rows).Hz, hz);
    EXPECT_NEAR(Peak(rows).Db, db, 0.05);
  }
  static std::vector<std::int16_t> Join(std::vector<std::int16_t> first,
                                        const std::vector<std::int16_t>& then) {
    first.insert(first.end(), then.begin(), then.end());
    return first;
  }
};

TEST_F(SpectrumTest, FullScaleToneOnABinIsZeroDecibelsAtItsHz) {
  PutWav("tone.wav", Tone(600 * kBin, kFull, 20 * kBlock));
  for (const std::string window : {"none", "hann", "blackman-harris"}) {
    const std::vector<SpectrumRow> rows = Measure("--window " + window + " tone.wav");
    ASSERT_EQ(rows.size(), 1024U);
    EXPECT_EQ(rows.front().Hz, 0.0);
    ExpectPeak(rows, 600 * kBin, 0.0);
    EXPECT_LT(rows[650].Db, -90.0);
  }
  // Half-way between two bins each window loses what it is known for.
  PutWav("between.wav", Tone(600.5 * kBin, kFull, 20 * kBlock));
  EXPECT_NEAR(Peak(Measure("--window none between.wav")).Db, -3.9, 0.1);
  EXPECT_NEAR(Peak(Measure("--window hann between.wav")).Db, -1.4, 0.1);
  EXPECT_NEAR(Peak(Measure("between.wav")).Db, -0.8, 0.1);
}

TEST_F(SpectrumTest, LevelIsTheMeanOfThePowers) {
  // Half of the time full scale, half of the time silence: 3 dB less.
  PutWav("half.wav", Join(Tone(600 * kBin, kFull, 10 * kBlock), std::vector<std::int16_t>(10 * kBlock)));
  ExpectPeak(Measure("--window none half.wav"), 600 * kBin, -3.01);
  PutWav("silence.wav", std::vector<std::int16_t>(kBlock));
  EXPECT_EQ(Peak(Measure("silence.wav")).Db, -200.0);
}

TEST_F(SpectrumTest, CentreIsTheMiddleOfTheBandOnEitherSideOfTheOscillator) {
  PutWav("tone.wav", Tone(600 * kBin, kFull / 10.0, 4 * kBlock));
  const double above = 600 * kBin - 12000.0;
  std::vector<SpectrumRow> rows = Measure("--centre 7050000 --low-side tone.wav");
  ExpectPeak(rows, 7050000.0 + above, -20.0);
  EXPECT_EQ(rows.front().Hz, 7038000.0);
  rows = Measure("--centre 7050000 tone.wav");
  ExpectPeak(rows, 7050000.0 - above, -20.0);
  EXPECT_EQ(rows.back().Hz, 7062000.0);
}

TEST_F(SpectrumTest, IAndQTellBothSidesOfTheirCentre) {
  // I + jQ turns with 200 bins: the station is above the centre.
  std::vector<std::int16_t> i = Tone(200 * kBin, kFull, 4 * kBlock), q(i.size());
  for (std::size_t n = 0; n < q.size(); ++n)
    q[n] = Quantise(kFull * std::sin(Radians(200 * kBin) * static_cast<double>(n)));
  PutWav("iq.wav", Interleave(i, q), 2);
  const std::vector<SpectrumRow> rows = Measure("--model iq iq.wav");
  ASSERT_EQ(rows.size(), 2048U);
  ExpectPeak(rows, 200 * kBin, 0.0);
  EXPECT_LT(rows[1024 - 200 - 1].Db, -70.0);
  ExpectPeak(Measure("--model iq --centre 14053000 iq.wav"), 14053000.0 + 200 * kBin, 0.0);
  ExpectPeak(Measure("--model iq --centre 14053000 --low-side iq.wav"), 14053000.0 - 200 * kBin, 0.0);
}

TEST_F(SpectrumTest, FromAndSecondsCutOutAStretch) {
  // A second of silence, one of a tone, one of another.
  PutWav("in.wav", Join(Join(std::vector<std::int16_t>(kSecond), Tone(600 * kBin, kFull, kSecond)),
                        Tone(700 * kBin, kFull, kSecond)));
  ExpectPeak(Measure("--from 1 --seconds 1 in.wav"), 600 * kBin, 0.0);
  ExpectPeak(Measure("--from 2 in.wav"), 700 * kBin, 0.0);
  EXPECT_LT(Measure("--from 2 in.wav")[600].Db, -80.0);
  EXPECT_EQ(Peak(Measure("--seconds 0.99 in.wav")).Db, -200.0);
  // From a pipe it is the same.
  ExpectPeak(Rows(Cli("spectrum --channels 1 --from 1.5 --seconds 0.3 - < in.wav").Output), 600 * kBin, 0.0);
}

TEST_F(SpectrumTest, SourcesAreThePointsOfTheChain) {
  PutWav("am.wav", Join(AMSignal(40 * kBin, 8000.0, 3 * kSecond), std::vector<std::int16_t>(kSecond)));
  const std::string options = "--from 1 --seconds 1.5 am.wav";
  ExpectPeak(Measure("--source if " + options), 12000.0, 20.0 * std::log10(8000.0 / 32768.0));
  const std::vector<SpectrumRow> filtered = Measure("--source pre --if-filter man:300:300 " + options);
  EXPECT_EQ(Peak(filtered).Hz, 12000.0);
  EXPECT_GT(Measure("--source if " + options)[512 - 40].Db, -40.0);
  EXPECT_LT(filtered[512 - 40].Db, -60.0);
  EXPECT_EQ(Peak(Measure("--source af " + options)).Hz, 40 * kBin);
}

TEST_F(SpectrumTest, PictureIsAPngAndTheTableGoesWhereItIsTold) {
  PutWav("tone.wav", Tone(600 * kBin, kFull, 20 * kBlock));
  CliResult result = Cli("spectrum tone.wav --png tone.png");
  EXPECT_EQ(result.ExitCode, 0);
  EXPECT_EQ(result.Output + result.Errors, "");
  const std::string png = Get("tone.png");
  EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1A\n");
  EXPECT_EQ(png.substr(png.size() - 8, 4), "IEND");
  result = Cli("spectrum tone.wav --csv table.csv --png - > other.png");
  EXPECT_EQ(result.ExitCode, 0);
  EXPECT_EQ(Get("other.png"), png);
  ExpectPeak(Rows(Get("table.csv")), 600 * kBin, 0.0);
  EXPECT_EQ(Files(), "other.png table.csv tone.png tone.wav");
}

// Big-endian, in the header of a PNG file.
int PngHeight(const std::string& png) {
  int height = 0;
  for (std::size_t at = 20; at < 24; ++at) height = height << 8 | static_cast<unsigned char>(png.at(at));
  return height;
}

TEST_F(SpectrumTest, PictureOfALongRecordingIsNoHigherThanThatOfAShortOne) {
  const auto height = [this](std::size_t blocks) {
    PutWav("in.wav", Tone(600 * kBin, kFull, blocks * kBlock));
    EXPECT_EQ(Cli("spectrum in.wav --png out.png").ExitCode, 0);
    return PngHeight(Get("out.png"));
  };
  // 20 lines of 20 pixels are as high as 400 of one; from 800 lines on two blocks share one.
  const int rest = height(20) - 400;
  EXPECT_GT(rest, 320);
  EXPECT_EQ(height(800), rest + 800);
  EXPECT_EQ(height(801), rest + 401);
  EXPECT_EQ(height(900), rest + 450);
}

TEST_F(SpectrumTest, WhatCannotBeIsRefusedInOneLineAndLeavesTheTargetAlone) {
  PutWav("in.wav", std::vector<std::int16_t>(3 * kBlock));
  Put("out.png", "old content");
  const std::vector<std::pair<std::string, std::string>> cases{
      {"--source rf in.wav", "--source"},
      {"--window kaiser in.wav", "--window"},
      {"--from -1 in.wav", "--from"},
      {"--seconds 0.01 in.wav", "--seconds"},
      {"--centre 7.05M in.wav", "--centre"},
      {"--source af --centre 7050000 in.wav", "--centre"},
      {"--mode usb --source post --centre 1 in.wav", "--centre"},
      {"--channels 1 in.wav", "--channels"},
      {"--csv - --png - in.wav", "--png"},
      {"--model iq in.wav", "in.wav: has 1 channel"},
      {"--from 0.1 in.wav", "in.wav: holds no whole block"},
      {"--from 10 in.wav", "in.wav: holds no whole block"},
      {"missing.wav", "missing.wav: "},
      {"--csv no/folder/out.csv in.wav", "no/folder/out.csv: "},
      {"", "INPUT"}};
  for (const auto& [arguments, named] : cases) {
    SCOPED_TRACE(arguments);
    ExpectOneLine(Cli("spectrum --png out.png " + arguments), 2, named);
    EXPECT_EQ(Get("out.png"), "old content");
    EXPECT_EQ(Files(), "in.wav out.png");
  }
  ExpectOneLine(Cli("spectrum in.wav --csv out.csv --png out.png", SmallFiles(1)), 1, "out.png: ");
  EXPECT_EQ(Get("out.png"), "old content");
  EXPECT_EQ(Files(), "in.wav out.png");
}

}  // namespace
}  // namespace quorl::test
