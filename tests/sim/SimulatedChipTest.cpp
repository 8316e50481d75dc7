// The simulated chips alone on their pins, and at the end of the real drivers' wire.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "sim/Bench.h"
#include "sim/SimTestSupport.h"
#include "sim/SimulatedAD9835.h"
#include "sim/SimulatedAD9951.h"

namespace quorl {
namespace {

void ClockOut(SimulatedChip& chip, std::uint32_t value, int bits) {
  for (int bit = bits - 1; bit >= 0; --bit) {
    chip.SetPin(ChipPin::Data, ((value >> bit) & 1U) != 0);
    chip.SetPin(ChipPin::Clock, true);
    chip.SetPin(ChipPin::Clock, false);
  }
}

void Frame(SimulatedChip& chip, const std::vector<std::uint8_t>& bytes) {
  chip.SetPin(ChipPin::Select, false);
  for (const std::uint8_t byte : bytes) ClockOut(chip, byte, 8);
  chip.SetPin(ChipPin::Select, true);
}

SimulatedAD9951 RunningAD9951() {
  SimulatedAD9951 chip(45012000.0);
  Frame(chip, {0x00, 0x00, 0x00, 0x02, 0x02});
  Frame(chip, {0x01, 0x00, 0x00, 0x47});
  return chip;
}

TEST(SimulatedAD9951, RegistersWaitForTheUpdateEdge) {
  SimulatedAD9951 chip = RunningAD9951();
  EXPECT_EQ(chip.Active(SimulatedAD9951::Cfr1), 0x00000202U);
  EXPECT_EQ(chip.Active(SimulatedAD9951::Cfr2), 0x000047U);
  chip.SetPin(ChipPin::Select, false);
  ClockOut(chip, 0x04, 8);
  ClockOut(chip, 0x80000001U, 32);
  EXPECT_EQ(chip.Buffered(SimulatedAD9951::Ftw0), 0x80000001U);
  EXPECT_EQ(chip.TuningWord(), 0U);
  EXPECT_FALSE(chip.OutputHz());
  chip.SetPin(ChipPin::Select, true);
  EXPECT_EQ(chip.TuningWord(), 0x80000001U);
}

TEST(SimulatedAD9951, AFrameThatIsCutShortLeavesTheNextOneAlone) {
  SimulatedAD9951 chip = RunningAD9951();
  chip.SetPin(ChipPin::Select, false);
  ClockOut(chip, 0x04, 8);
  ClockOut(chip, 0x1234, 13);
  chip.SetPin(ChipPin::Select, true);
  EXPECT_EQ(chip.TuningWord(), 0U);
  Frame(chip, {0x04, 0x12, 0x34, 0x56, 0x78});
  EXPECT_EQ(chip.TuningWord(), 0x12345678U);
  Frame(chip, {0x84, 0xFF, 0xFF, 0xFF, 0xFF});  // a read
  EXPECT_EQ(chip.TuningWord(), 0x12345678U);
  // Least significant bit first, where control register 1 asks for it.
  Frame(chip, {0x00, 0x00, 0x00, 0x03, 0x02});
  Frame(chip, {0x20, 0x01, 0x00, 0x00, 0x80});
  EXPECT_EQ(chip.TuningWord(), 0x01000080U);
}

TEST(SimulatedAD9951, OutputFollowsClockMultiplierErrorAndPowerDown) {
  SimulatedAD9951 chip(45012000.0);
  Frame(chip, {0x04, 0x20, 0x00, 0x00, 0x00});
  EXPECT_DOUBLE_EQ(*chip.OutputHz(), 45012000.0 / 8.0);  // the multiplier is off after power-up
  Frame(chip, {0x01, 0x00, 0x00, 0x47});
  EXPECT_DOUBLE_EQ(*chip.OutputHz(), 45012000.0);
  chip.SetClockError(10.0);
  EXPECT_NEAR(*chip.OutputHz(), 45012450.12, 1e-6);
  Frame(chip, {0x01, 0x00, 0x00, 0x43});  // 360 MHz is out of the lower range's reach
  EXPECT_FALSE(chip.OutputHz());
  Frame(chip, {0x01, 0x00, 0x00, 0x47});
  Frame(chip, {0x00, 0x00, 0x00, 0x02, 0x82});
  EXPECT_FALSE(chip.OutputHz());
}

void Words(SimulatedAD9835& chip, const std::vector<std::uint16_t>& words) {
  for (const std::uint16_t word : words) {
    chip.SetPin(ChipPin::Select, false);
    ClockOut(chip, word, 16);
    chip.SetPin(ChipPin::Select, true);
  }
}

TEST(SimulatedAD9835, DeferRegisterFrequencyAndSleep) {
  SimulatedAD9835 chip(50e6);
  Words(chip, {0x3078, 0x2156, 0x3234, 0x2312});
  EXPECT_EQ(chip.FrequencyRegister(0), 0x12345678U);
  EXPECT_FALSE(chip.OutputHz()) << "silent until a word lets it run";
  Words(chip, {0x8000, 0xC000});
  EXPECT_NEAR(*chip.OutputHz(), 0x12345678 * 50e6 / 4294967296.0, 1e-6);
  constexpr std::uint16_t kSleep = 0xE000, kReset = 0xD000;
  for (const std::uint16_t silencing : {kSleep, kReset}) {
    Words(chip, {silencing});
    EXPECT_FALSE(chip.OutputHz());
    Words(chip, {0xC000});
    EXPECT_TRUE(chip.OutputHz());
  }
}

TEST(SimulatedAD9835, SecondFrequencyPhaseAndTheChoiceBetweenRegisters) {
  SimulatedAD9835 chip(50e6);
  Words(chip, {0x3011, 0x2122, 0x3233, 0x2344, 0x34AA, 0x25BB, 0x36CC, 0x27DD, 0x1E99, 0x0F07, 0xC000});
  EXPECT_EQ(chip.FrequencyRegister(0), 0x44332211U);
  EXPECT_EQ(chip.FrequencyRegister(1), 0xDDCCBBAAU);
  EXPECT_EQ(chip.PhaseRegister(3), 0x799);
  Words(chip, {0x5800});
  EXPECT_EQ(chip.TuningWord(), 0x44332211U) << "the pins choose until SELSRC is set";
  Words(chip, {0x9000});
  EXPECT_EQ(chip.TuningWord(), 0xDDCCBBAAU);
  Words(chip, {0xC800});  // CLR gives the choice back to the pins
  EXPECT_EQ(chip.TuningWord(), 0x44332211U);
}

TEST(SimulatedAD9835, AFrameHasSixteenBits) {
  SimulatedAD9835 chip(50e6);
  chip.SetPin(ChipPin::Select, false);
  ClockOut(chip, 0x3055, 15);
  chip.SetPin(ChipPin::Select, true);
  chip.SetPin(ChipPin::Select, false);
  ClockOut(chip, 0x3044, 16);
  ClockOut(chip, 0x2155, 16);  // beyond the sixteenth: nobody listens
  chip.SetPin(ChipPin::Select, true);
  EXPECT_EQ(chip.FrequencyRegister(0), 0U);
  Words(chip, {0x2155});
  EXPECT_EQ(chip.FrequencyRegister(0), 0x5544U);
}

// Puts `atRise` on the data pin for the clock's rising edge and `atFall` for the falling one.
void ClockEdges(SimulatedChip& chip, bool atRise, bool atFall) {
  chip.SetPin(ChipPin::Data, atRise);
  chip.SetPin(ChipPin::Clock, true);
  chip.SetPin(ChipPin::Data, atFall);
  chip.SetPin(ChipPin::Clock, false);
}

TEST(ChipPins, EachChipTakesDataOnItsOwnEdge) {
  SimulatedAD9951 rising = RunningAD9951();
  rising.SetPin(ChipPin::Select, false);
  ClockOut(rising, 0x04, 8);
  for (int bit = 31; bit >= 0; --bit) ClockEdges(rising, ((0x12345678U >> bit) & 1U) != 0, bit % 2 == 0);
  rising.SetPin(ChipPin::Select, true);
  EXPECT_EQ(rising.TuningWord(), 0x12345678U);

  SimulatedAD9835 falling(50e6);
  falling.SetPin(ChipPin::Select, false);
  for (int bit = 15; bit >= 0; --bit) ClockEdges(falling, bit % 2 == 0, ((0x2155U >> bit) & 1U) != 0);
  EXPECT_EQ(falling.FrequencyRegister(0), 0x5500U);
}

struct Wire {
  int Model;
  std::int32_t Interface;
  double ClockHz;
  std::int64_t IntermediateDhz;
  std::int32_t HighestDhz;
};

class TunedOverTheWire : public testing::TestWithParam<Wire> {};

TEST_P(TunedOverTheWire, TwoHundredFrequenciesArriveToTheLastBit) {
  const Wire wire = GetParam();
  std::mt19937 random(20260 + static_cast<unsigned>(wire.Model));
  for (const bool lowSide : {false, true}) {
    Bench bench(wire.Model, wire.Interface, BandOf(""), lowSide);
    for (int n = 0; n < 100; ++n) {
      const auto tuned = static_cast<std::int32_t>(random() % static_cast<unsigned>(wire.HighestDhz));
      bench.Tune(tuned);
      const std::int64_t oscillator =
          std::abs(lowSide ? tuned - wire.IntermediateDhz : tuned + wire.IntermediateDhz);
      // Half-even rounding is the nearest integer here: no product lies half-way.
      const long double word = static_cast<long double>(oscillator) * 4294967296.0L / (wire.ClockHz * 10.0L);
      ASSERT_EQ(bench.Board.Chip().TuningWord(), static_cast<std::uint32_t>(std::llroundl(word))) << tuned;
      ASSERT_NEAR(bench.Board.Chip().OutputHz().value_or(0.0), static_cast<double>(oscillator) / 10.0,
                  wire.ClockHz / 4294967296.0);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Boards, TunedOverTheWire,
                         testing::Values(Wire{0, InterfaceType::Serial, 360096000.0, 450000000, 300000000},
                                         Wire{1, InterfaceType::Serial, 50000000.0, 4550000, 240000000},
                                         Wire{1, InterfaceType::Parallel, 50000000.0, 4550000, 240000000},
                                         Wire{2, InterfaceType::Serial, 360096000.0, 450000000, 300000000},
                                         Wire{3, InterfaceType::Serial, 360096000.0, 450000000, 300000000}),
                         [](const auto& each) {
                           return "Model" + std::to_string(each.param.Model) +
                                  (each.param.Interface == InterfaceType::Parallel ? "Parallel" : "Serial");
                         });

TEST(ChipWiring, ANonInvertingPrinterPortTunesNothing) {
  Bench bench(1, InterfaceType::Parallel, BandOf(""), false);
  bench.Chain->ParallelIF().NonInverting = true;
  bench.Tune(70500000);
  EXPECT_FALSE(bench.Board.Chip().OutputHz());
}

}  // namespace
}  // namespace quorl
