// What `quorlsdr-cli receive` makes of good recordings.
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "cli/CliRunner.h"
#include "cli/Signals.h"

namespace quorl::test {
namespace {

constexpr std::size_t Length = 12 * 2048 + 777;  // ends within a block
constexpr std::size_t Settled = 4 * 2048;

std::span<const std::int16_t> AfterSettling(const std::vector<std::int16_t>& samples) {
  return std::span(samples).subspan(Settled);
}

std::string Bytes(const std::vector<std::int16_t>& samples) {
  return {reinterpret_cast<const char*>(samples.data()), samples.size() * 2};
}

using ReceiveTest = CliTest;

TEST_F(ReceiveTest, EveryModelAndModeGivesAsManySamplesAsItGot) {
  const std::vector<std::int16_t> signal = AMSignal(1000.0, 4000.0, Length);
  PutWav("in.wav", Interleave(signal, signal), 2);
  for (const std::string model : {"drt1", "elektor", "iq", "real2iq"}) {
    for (const std::string mode : {"am", "usb", "lsb", "drm", "fm", "bc"}) {
      SCOPED_TRACE(model + " " + mode);
      const CliResult result = Cli("receive --model " + model + " --mode " + mode + " in.wav out.wav");
      EXPECT_EQ(result.ExitCode, 0);
      EXPECT_EQ(result.Output + result.Errors, "");
      EXPECT_EQ(GetWav("out.wav").size(), Length);
      EXPECT_EQ(Files(), "in.wav out.wav");
    }
  }
  PutWav("empty.wav", {});
  EXPECT_EQ(Cli("receive empty.wav out.wav").ExitCode, 0);
  EXPECT_TRUE(GetWav("out.wav").empty());
}

TEST_F(ReceiveTest, AMBringsOutTheModulationAndNothingElse) {
  PutWav("am.wav", AMSignal(1000.0, 4000.0, Length));
  for (const std::string model : {"drt1", "elektor"}) {
    ASSERT_EQ(Cli("receive --model " + model + " am.wav out.wav").ExitCode, 0);
    const std::vector<std::int16_t> audio = GetWav("out.wav");
    const double tone = LineAt(AfterSettling(audio), 1000.0);
    EXPECT_GT(tone, 1000.0);
    for (const double harmonic : {2000.0, 3000.0})
      EXPECT_LT(LineAt(AfterSettling(audio), harmonic), tone / 1000.0);
  }
}

struct SidebandCase {
  const char* Options;
  double Passed;  // IF frequencies, Hz
  double Rejected;
};

TEST_F(ReceiveTest, OneSidebandPassesTheOtherIs75DecibelsDown) {
  const std::vector<SidebandCase> cases = {{"--mode usb --low-side", 13000.0, 11000.0},
                                           {"--mode lsb --low-side", 11000.0, 13000.0},
                                           {"--mode usb", 11000.0, 13000.0},
                                           {"--mode lsb", 13000.0, 11000.0}};
  for (const SidebandCase& sideband : cases) {
    SCOPED_TRACE(sideband.Options);
    double levels[2];
    for (const bool rejected : {false, true}) {
      PutWav("in.wav", Tone(rejected ? sideband.Rejected : sideband.Passed, 8000.0, 40 * 2048));
      ASSERT_EQ(
          Cli(std::string("receive --agc off --filter 300:2300 ") + sideband.Options + " in.wav out.wav")
              .ExitCode,
          0);
      levels[rejected] = LineAt(AfterSettling(GetWav("out.wav")), 1000.0);
    }
    EXPECT_GT(levels[0], 4000.0);
    EXPECT_GT(20.0 * std::log10(levels[0] / levels[1]), 75.0);
  }
}

TEST_F(ReceiveTest, BFOTunesWithinTheBand) {
  PutWav("in.wav", Tone(12000.0 + 6000.0, 4000.0, 20 * 2048));
  ASSERT_EQ(Cli("receive --mode usb --low-side --bfo 5600 --filter-mode 1 in.wav out.wav").ExitCode, 0);
  EXPECT_GT(LineAt(AfterSettling(GetWav("out.wav")), 400.0), 1000.0);
  ASSERT_EQ(Cli("receive --mode usb --low-side --bfo -5600 --agc off in.wav away.wav").ExitCode, 0);
  EXPECT_LT(LineAt(AfterSettling(GetWav("away.wav")), 400.0), 4.0);
}

TEST_F(ReceiveTest, FilesAndPipesGiveTheSameSamplesEveryTime) {
  const std::vector<std::int16_t> left = AMSignal(700.0, 5000.0, Length);
  PutWav("mono.wav", left);
  PutWav("stereo.wav", Interleave(left, Tone(3000.0, 900.0, Length)), 2);
  Put("mono.raw", Bytes(left));
  Put("stereo.raw", Bytes(Interleave(left, Tone(3000.0, 900.0, Length))));
  const std::string options = "receive --nb 4000 --dynamic-filter --notch auto:100 ";
  ASSERT_EQ(Cli(options + "mono.wav first.wav").ExitCode, 0);
  const std::string audio = Get("first.wav").substr(44);
  ASSERT_EQ(audio.size(), 2 * Length);
  ASSERT_NE(audio, std::string(audio.size(), '\0'));
  ASSERT_EQ(Cli(options + "stereo.wav again.wav").ExitCode, 0);
  EXPECT_EQ(Get("again.wav").substr(44), audio);
  EXPECT_EQ(Cli(options + "--channels 1 - - < mono.raw").Output, audio);
  EXPECT_EQ(Cli(options + "- - < stereo.raw").Output, audio);
  EXPECT_EQ(Cli(options + "mono.wav - | cat").Output, audio);
}

TEST_F(ReceiveTest, NotchTakesAToneOutOfTheAudio) {
  std::vector<std::int16_t> signal = AMSignal(600.0, 4000.0, 40 * 2048);
  const std::vector<std::int16_t> whistle = Tone(12000.0 + 1700.0, 800.0, signal.size());
  for (std::size_t n = 0; n < signal.size(); ++n)
    signal[n] = static_cast<std::int16_t>(signal[n] + whistle[n]);
  PutWav("in.wav", signal);
  ASSERT_EQ(Cli("receive in.wav plain.wav").ExitCode, 0);
  ASSERT_EQ(Cli("receive --notch audio:1700:200 in.wav notched.wav").ExitCode, 0);
  const auto plain = GetWav("plain.wav"), notched = GetWav("notched.wav");
  const auto ratio = [](const std::vector<std::int16_t>& audio) {
    return LineAt(AfterSettling(audio), 1700.0) / LineAt(AfterSettling(audio), 600.0);
  };
  EXPECT_GT(ratio(plain), 0.1);
  EXPECT_LT(ratio(notched), ratio(plain) / 100.0);
}

TEST_F(ReceiveTest, VolumeIsHardwareAttenuationBelowAndGainAbove) {
  PutWav("in.wav", Tone(13000.0, 2000.0, 20 * 2048));
  const auto levelAt = [this](const std::string& volume) {
    EXPECT_EQ(Cli("receive --mode usb --low-side --agc off --volume " + volume + " in.wav out.wav").ExitCode,
              0);
    return LineAt(AfterSettling(GetWav("out.wav")), 1000.0);
  };
  const double full = levelAt("0");
  EXPECT_NEAR(levelAt("-2000") / full, 0.1, 0.002);
  EXPECT_NEAR(levelAt("-40") / full, 1.0, 0.002);
  EXPECT_NEAR(levelAt("2000") / full, 3.0, 0.02);
}

TEST_F(ReceiveTest, ReportIsOneLineOfJson) {
  std::vector<std::int16_t> signal = AMSignal(1000.0, 4000.0, Length);
  signal[100] = -32768;  // the peaks are magnitudes
  PutWav("in.wav", signal);
  const CliResult result = Cli("receive --report in.wav out.wav");
  EXPECT_EQ(result.ExitCode, 0);
  EXPECT_EQ(result.Errors.find('\n'), result.Errors.size() - 1);
  const auto number = [&](const std::string& key) {
    return nlohmann::json::parse(result.Errors).at(key).get<double>();
  };
  EXPECT_EQ(number("blocks"), 13.0);
  EXPECT_NEAR(number("seconds"), static_cast<double>(Length) / 48000.0, 0.001);
  // A carrier of 4000 with 50 percent of modulation has an r.m.s. value of 4000 * sqrt((1 + 0.125) / 2); the
  // last of the four blocks is only partly filled.
  EXPECT_NEAR(number("signal_level"), 4000.0 * std::sqrt(0.5625) * (3.0 + std::sqrt(777.0 / 2048.0)) / 4.0,
              60.0);
  EXPECT_EQ(number("peak_in"), 32768.0);
  EXPECT_GT(number("peak_out"), 1000.0);
  EXPECT_LE(number("peak_out"), 16384.0);
  EXPECT_GT(number("agc_gain"), 0.0);
  EXPECT_GT(number("us_per_block_mean"), 0.0);
  EXPECT_GE(number("us_per_block_max"), number("us_per_block_mean"));
  EXPECT_GT(number("times_real_time"), 0.0);
}

}  // namespace
}  // namespace quorl::test
