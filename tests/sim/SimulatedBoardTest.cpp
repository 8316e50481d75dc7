// What the sound card hears: where a station lands in the IF, which way round, how pure; time and its seams.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <string>
#include <vector>

#include "sim/RecordingSource.h"
#include "sim/SimTestSupport.h"
#include "sim/Wideband.h"

namespace quorl {
namespace {

constexpr double kLevel = 3276.7;  // of a station at -60 dBm, full scale being -40 dBm

struct Injection {
  std::string Name;
  int Model;
  double OscillatorHz;
  bool LowSide;
  double ExpectedIfHz;  // of a carrier 1500 Hz above 7050 kHz
};

class BoardMixing : public testing::TestWithParam<Injection> {};

TEST_P(BoardMixing, ACarrierLandsInTheIfOnItsSideAtItsLevel) {
  HandTunedChip chip;
  chip.Hz = GetParam().OscillatorHz;
  BoardSettings settings = BoardOfModel(GetParam().Model);
  settings.LowSideInjection = GetParam().LowSide;
  SimulatedBoard board(chip, BandOf(StationText("7051.5", "carrier")), settings);
  const StereoSamples heard = RenderFrames(board, 48000);
  const double hz = GetParam().ExpectedIfHz;
  EXPECT_NEAR(LineAt(heard.Left, {}, hz), kLevel, 0.03 * kLevel);
  EXPECT_LT(Decibels(LineAt(heard.Left, {}, 24000.0 - hz) / kLevel), -75.0);
  if (settings.Output == BoardOutput::RealIf) {
    EXPECT_EQ(RootMeanSquare(heard.Right), 0.0);
    return;
  }
  EXPECT_NEAR(LineAt(heard.Left, heard.Right, -hz), kLevel, 0.03 * kLevel);
  EXPECT_LT(Decibels(LineAt(heard.Left, heard.Right, hz) / kLevel), -75.0);
}

INSTANTIATE_TEST_SUITE_P(Boards, BoardMixing,
                         testing::Values(Injection{"Drt1HighSide", 0, 52.05e6, false, 10500.0},
                                         Injection{"Drt1LowSide", 0, 37.95e6, true, 13500.0},
                                         Injection{"ElektorHighSide", 1, 7.505e6, false, 10500.0},
                                         Injection{"ElektorLowSide", 1, 6.595e6, true, 13500.0},
                                         Injection{"QuadratureHighSide", 2, 52.05e6, false, 10500.0},
                                         Injection{"QuadratureLowSide", 2, 37.95e6, true, 13500.0},
                                         Injection{"RealToIqHighSide", 3, 52.05e6, false, 10500.0}),
                         [](const auto& each) { return each.param.Name; });

// The carrier above at 7051.5 kHz, and time goes on as if one board had been there all along.
TEST(SimulatedBoard, AnotherBoardTakesItsPlaceAtTheAntenna) {
  HandTunedChip first, second;
  first.Hz = 7.505e6;
  second.Hz = 52.05e6;
  SimulatedBoard board(first, BandOf(StationText("7051.5", "carrier")), BoardOfModel(1));
  RenderFrames(board, 4800);
  board.Become(second, BoardOfModel(2));
  EXPECT_NEAR(board.PositionSeconds(), 0.1, 1e-9);
  const StereoSamples heard = RenderFrames(board, 48000);
  EXPECT_NEAR(LineAt(heard.Left, heard.Right, -10500.0), kLevel, 0.03 * kLevel);

  SimulatedBoard fresh(second, BandOf(StationText("7051.5", "carrier")), BoardOfModel(2));
  RenderFrames(fresh, 4800);
  EXPECT_EQ(RenderFrames(fresh, 48000).Left, heard.Left);
}

TEST(SimulatedBoard, ImageAndNeighboursAreHeldOff) {
  HandTunedChip chip;
  chip.Hz = 7.505e6;
  const std::string stations =
      StationText("7054", "carrier") + StationText("7066", "carrier") + StationText("7961", "carrier");
  SimulatedBoard board(chip, BandOf(stations), BoardOfModel(1));
  const StereoSamples heard = RenderFrames(board, 96000);
  EXPECT_NEAR(Decibels(LineAt(heard.Left, {}, 8000.0) / kLevel), 0.0, 0.2);
  // 7961 lies 1 kHz above the image frequency, whose side comes out upright.
  EXPECT_NEAR(Decibels(LineAt(heard.Left, {}, 13000.0) / kLevel), -50.0, 0.5);
  // 16 kHz off the tuned frequency: an IF of -4 kHz, which a real output folds to 4 kHz.
  EXPECT_LT(Decibels(LineAt(heard.Left, {}, 4000.0) / kLevel), -65.0);
}

TEST(SimulatedBoard, QuadratureFaultsMakeTheImageThatTheyPromise) {
  struct Fault {
    double AmplitudeDb, PhaseDegrees;
  };
  for (const Fault& fault : {Fault{0.5, 0.0}, Fault{0.0, 3.0}, Fault{-1.0, -5.0}}) {
    HandTunedChip chip;
    chip.Hz = 52.05e6;
    SimulatedBoard board(chip, BandOf(StationText("7051.5", "carrier")), BoardOfModel(2));
    board.SetQuadratureError(fault.AmplitudeDb, fault.PhaseDegrees);
    const StereoSamples heard = RenderFrames(board, 48000);
    const double gain = std::pow(10.0, fault.AmplitudeDb / 20.0);
    const double angle = fault.PhaseDegrees * std::numbers::pi / 180.0;
    const double expected = std::abs(1.0 - std::polar(gain, angle)) / std::abs(1.0 + std::polar(gain, angle));
    const double image = LineAt(heard.Left, heard.Right, 10500.0) / LineAt(heard.Left, heard.Right, -10500.0);
    EXPECT_NEAR(Decibels(image), Decibels(expected), 0.2);
  }
}

TEST(SimulatedBoard, ASilentOscillatorLeavesNoiseOnly) {
  HandTunedChip chip;
  SimulatedBoard board(chip, BandOf(StationText("7050", "carrier"), "noise_dbm_hz = -140\n"),
                       BoardOfModel(0));
  const StereoSamples silent = RenderFrames(board, 48000);
  EXPECT_LT(LineAt(silent.Left, {}, 12000.0), 5.0);
  // -140 dBm/Hz in 22 kHz against a full-scale carrier of -40 dBm; a real carrier has half its peak's power.
  const double expected = 32767.0 / std::sqrt(2.0) * std::pow(10.0, (-140.0 + 43.4 + 40.0) / 20.0);
  EXPECT_NEAR(RootMeanSquare(silent.Left), expected, 0.1 * expected);
  chip.Hz = 52.05e6;
  EXPECT_GT(LineAt(RenderFrames(board, 48000).Left, {}, 12000.0), 0.9 * kLevel);
}

TEST(SimulatedBoard, TuningGoesOnWithoutAPhaseJump) {
  HandTunedChip chip;
  chip.Hz = 52.05e6;
  SimulatedBoard board(chip, BandOf(StationText("7050", "carrier")), BoardOfModel(0));
  // Odd counts, so that the change falls within a chunk.
  RenderFrames(board, 5001);
  const std::vector<double> before = RenderFrames(board, 2000).Left;
  chip.Hz = 52.05e6 + 20.0;
  std::vector<double> seam = RenderFrames(board, 2000).Left;
  seam.insert(seam.begin(), before.begin(), before.end());
  // A sine of 12 kHz repeats itself negated two samples on; 20 Hz more bend that a little, a jump would break
  // it by its whole size. Rounding to 16 bits adds one.
  double worst = 0.0;
  for (std::size_t n = 2; n < seam.size(); ++n) worst = std::max(worst, std::abs(seam[n] + seam[n - 2]));
  EXPECT_LT(worst, kLevel * 2.0 * std::numbers::pi * 20.0 * 2.0 / 48000.0 + 2.0);
  EXPECT_NEAR(LineAt(RenderFrames(board, 48000).Left, {}, 12020.0), kLevel, 0.02 * kLevel);
}

TEST(SimulatedBoard, AnyMomentIsTheSameHoweverItIsReached) {
  HandTunedChip chip;
  SimulatedBoard board(chip, DemoBand(), BoardOfModel(0));
  // Every mode of the demo, with fading, clicks and noise, at frequencies that hold them.
  for (const double khz : {7050.0, 7074.0, 7260.0, 7108.0, 7360.0, 10000.0, 29600.0, 60.0}) {
    chip.Hz = 45e6 + khz * 1000.0;
    board.Seek(7.0);
    const std::vector<double> all = RenderFrames(board, 2 * 48000).Left;
    ASSERT_GT(RootMeanSquare(all), 4.0) << khz;
    board.Seek(100.0);
    RenderFrames(board, 1000);
    board.Seek(8.5);
    EXPECT_DOUBLE_EQ(board.PositionSeconds(), 8.5);
    const std::vector<double> tail = RenderFrames(board, 24000, 777).Left;
    ASSERT_TRUE(std::equal(tail.begin(), tail.end(), all.begin() + 72000)) << khz;
  }
}

TEST(Station, ComingInColdIsAsHavingBeenThere) {
  const auto make = [] {
    return Station({.FrequencyHz = 7e6, .LevelDbm = -60.0}, std::make_unique<MulticarrierProgramme>(3));
  };
  Station cold = make(), warm = make();
  for (std::int64_t chunk = kFirstChunk; chunk < kFirstChunk + 4; ++chunk) warm.Prepare(chunk);
  cold.Prepare(kFirstChunk + 3);
  EXPECT_TRUE(std::equal(cold.I(), cold.I() + kChunkFrames, warm.I()));
  EXPECT_TRUE(std::equal(cold.Q(), cold.Q() + kChunkFrames, warm.Q()));
}

TEST(SimulatedBoard, AnotherSeedIsAnotherEvening) {
  const auto evening = [](const std::string& seed) {
    HandTunedChip chip;
    chip.Hz = 52.05e6;
    const std::string head = "seed = " + seed + "\nnoise_dbm_hz = -140\n";
    SimulatedBoard board(chip, BandOf(StationText("7050", "am", "programme = melody 5"), head),
                         BoardOfModel(0));
    return RenderFrames(board, 9600).Left;
  };
  EXPECT_EQ(evening("1"), evening("1"));
  EXPECT_NE(evening("1"), evening("2"));
}

TEST(SimulatedBoard, TooStrongSignalsAreClippedNotWrapped) {
  HandTunedChip chip;
  chip.Hz = 52.05e6;
  BoardSettings settings = BoardOfModel(0);
  settings.FullScaleDbm = -80.0;
  SimulatedBoard board(chip, BandOf(StationText("7050", "carrier")), settings);
  const std::vector<double> heard = RenderFrames(board, 48000).Left;
  EXPECT_EQ(*std::max_element(heard.begin(), heard.end()), 32767.0);
  EXPECT_GT(LineAt(heard, {}, 12000.0), 32767.0);  // a square wave's fundamental
}

// A recording in memory.
class MemoryReader final : public SampleReader {
 public:
  MemoryReader(std::vector<std::int16_t> samples, int channels)
      : samples_(std::move(samples)), channels_(channels) {}
  int Channels() const override { return channels_; }
  std::optional<std::int64_t> Frames() const override {
    return static_cast<std::int64_t>(samples_.size()) / channels_;
  }
  int Read(std::int16_t* interleaved, int frames, Failure& /*failure*/) override {
    const auto left = static_cast<int>(samples_.size() - at_) / channels_;
    const int count = std::min(frames, left);
    std::copy_n(samples_.begin() + static_cast<std::ptrdiff_t>(at_), count * channels_, interleaved);
    at_ += static_cast<std::size_t>(count * channels_);
    return count;
  }

 private:
  std::vector<std::int16_t> samples_;
  int channels_;
  std::size_t at_ = 0;
};

TEST(RecordingSource, PlaysOverAndOver) {
  Failure failure;
  auto mono = RecordingSource::Open(
      [](Failure&) {
        return std::make_unique<MemoryReader>(std::vector<std::int16_t>{1, 2, 3, 4, 5}, 1);
      },
      failure);
  ASSERT_TRUE(mono);
  EXPECT_EQ(RenderFrames(*mono, 12, 7).Left, (std::vector<double>{1, 2, 3, 4, 5, 1, 2, 3, 4, 5, 1, 2}));
  EXPECT_EQ(RootMeanSquare(RenderFrames(*mono, 12, 7).Right), 0.0);

  auto pair = RecordingSource::Open(
      [](Failure&) {
        return std::make_unique<MemoryReader>(std::vector<std::int16_t>{1, -1, 2, -2}, 2);
      },
      failure);
  ASSERT_TRUE(pair);
  const StereoSamples heard = RenderFrames(*pair, 3);
  EXPECT_EQ(heard.Left, (std::vector<double>{1, 2, 1}));
  EXPECT_EQ(heard.Right, (std::vector<double>{-1, -2, -1}));
}

TEST(RecordingSource, EndsInSilenceWhereItCannotGoOn) {
  Failure failure;
  int openings = 0;
  auto source = RecordingSource::Open(
      [&openings](Failure& fault) -> std::unique_ptr<SampleReader> {
        if (openings++ == 0) return std::make_unique<MemoryReader>(std::vector<std::int16_t>{7, 8}, 1);
        fault = Error{5, "gone"};
        return nullptr;
      },
      failure);
  ASSERT_TRUE(source);
  EXPECT_EQ(RenderFrames(*source, 5).Left, (std::vector<double>{7, 8, 0, 0, 0}));
  EXPECT_EQ(RenderFrames(*source, 2).Left, (std::vector<double>{0, 0}));
  ASSERT_TRUE(source->Fault());
  EXPECT_EQ(source->Fault()->Text, "gone");
  EXPECT_FALSE(RecordingSource::Open(
      [](Failure&) { return std::make_unique<MemoryReader>(std::vector<std::int16_t>{}, 1); }, failure));
  EXPECT_TRUE(failure);
}

}  // namespace
}  // namespace quorl
