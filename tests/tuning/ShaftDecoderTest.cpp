#include "tuning/ShaftDecoder.h"

#include <gtest/gtest.h>

#include <set>

#include "platform/SerialPort.h"

namespace quorl {
namespace {

constexpr std::uint32_t kOff = 0, kBoth = ModemStatus::Cts | ModemStatus::Dsr;

// A decoder that has seen the line states of `code`, and what it said to the second.
int DirectionOf(int code) {
  constexpr std::uint32_t kStatusOfState[] = {kOff, kBoth, ModemStatus::Dsr, ModemStatus::Cts};
  ShaftDecoder decoder;
  decoder.Decode(kStatusOfState[code >> 2]);
  const int direction = decoder.Decode(kStatusOfState[code & 3]);
  if ((code >> 2) != (code & 3)) {
    EXPECT_EQ(decoder.Code(), code);
  }
  return direction;
}

TEST(ShaftDecoder, EachTransitionHasItsDirectionOrNone) {
  const std::set<int> down = {1, 7, 8, 14}, up = {2, 4, 11, 13};
  for (int code = 0; code < 16; ++code) {
    EXPECT_EQ(DirectionOf(code), down.contains(code) ? -1 : up.contains(code) ? 1 : 0) << code;
  }
}

TEST(ShaftDecoder, RepeatedStatesSayNothing) {
  ShaftDecoder decoder;
  EXPECT_EQ(decoder.Decode(kOff), 0);
  EXPECT_EQ(decoder.Decode(ModemStatus::Dsr), 1);
  EXPECT_EQ(decoder.Decode(ModemStatus::Dsr), 0);
  EXPECT_EQ(decoder.Decode(kOff), -1);
}

TEST(ShaftAutoRate, MeanOfFiveIntervalsPicksTheFirstFittingRow) {
  struct {
    double Interval, TuneStep, TuneStepLSD;
  } const cases[] = {
      {0, 0.001, 0.001},         {999.4, 0.001, 0.001},       {1000, 0.0005, 0.0001},
      {3500, 0.0005, 0.0001},    {4999, 0.0005, 0.0001},      {5000, 0.0001, 0.0001},
      {6000, 0.00005, 0.0001},   {7000, 0.000025, 0.0001},    {8000, 0.0000125, 0.00001},
      {12000, 0.00001, 0.00001}, {12001, 0.000001, 0.000001},
  };
  for (const auto& each : cases) {
    ShaftAutoRate rate;
    ShaftStep step;
    for (int i = 0; i < 5; ++i) step = rate.StepAfter(each.Interval);
    EXPECT_DOUBLE_EQ(step.TuneStep, each.TuneStep) << each.Interval;
    EXPECT_DOUBLE_EQ(step.TuneStepLSD, each.TuneStepLSD) << each.Interval;
  }
  ShaftAutoRate fresh;
  EXPECT_DOUBLE_EQ(fresh.StepAfter(0).TuneStep, 0.000001) << "the first four intervals count as 100 ms";
}

}  // namespace
}  // namespace quorl
