// Any input, any setting, any length: no memory is taken, and what comes out are numbers.
#include <gtest/gtest.h>

#include <cstdint>

#include "receiver/ChainRig.h"
#include "sound/AllocationCounter.h"

namespace quorl::test {
namespace {

void SwitchEverythingOn(Receiver& radio, std::int32_t notchType) {
  radio.SwitchNoiseBlanker(true);
  radio.SetNoiseBlankerLevel(5000.0F);
  TurnIFFilterOn(radio, IFFilterMode::Track);
  TurnNotchOn(radio, NotchModes::Auto, notchType, 1000, 200);
  radio.SetDynamicFilter(true);
  radio.SetBFO(150);
  radio.Vars.AGCON = true;
  radio.Vars.PerfStatsOn = true;
  radio.Housekeeping();
}

void ForEachModelAndMode(const std::function<void(std::int32_t model, std::int32_t mode)>& test) {
  for (std::int32_t model = 0; model < 4; ++model) {
    for (std::int32_t mode = 0; mode < DemodMode::Count; ++mode) test(model, mode);
  }
}

bool AllFinite(const float* v, std::size_t n) {
  return std::all_of(v, v + n, [](float x) { return std::isfinite(x); });
}

TEST(Endurance, BlockPathTakesNoMemory) {
  ForEachModelAndMode([](std::int32_t model, std::int32_t mode) {
    ChainRig rig(model, mode);
    SwitchEverythingOn(rig.Radio, mode % 2);
    rig.Receive(ToneOf(11000.0, 8000.0), 1, 0);
    const std::int64_t before = AllocationsOfThisThread();
    for (int block = 0; block < 20; ++block) rig.Step();
    EXPECT_EQ(AllocationsOfThisThread() - before, 0) << model << " " << mode;
  });
  const std::int64_t before = AllocationsOfThisThread();
  int* volatile one = new int;
  delete one;
  EXPECT_EQ(AllocationsOfThisThread() - before, 1);  // the count counts
}

TEST(Endurance, NoInputMakesAnythingButNumbers) {
  std::mt19937 random(1);
  const std::function<std::int16_t(int)> inputs[] = {
      [](int) { return std::int16_t{0}; },
      [](int n) { return static_cast<std::int16_t>(n / 24 % 2 == 0 ? 32767 : -32768); },
      [](int n) { return static_cast<std::int16_t>(n == 100 ? 32767 : 0); },
      [&](int) { return static_cast<std::int16_t>(random()); },
      [](int) { return std::int16_t{-32768}; },
  };
  ForEachModelAndMode([&](std::int32_t model, std::int32_t mode) {
    for (const bool everything : {false, true}) {
      ChainRig rig(model, mode);
      if (everything) SwitchEverythingOn(rig.Radio, 0);
      int which = 0;
      for (const auto& input : inputs) {
        for (int block = 0; block < 4; ++block) {
          for (int n = 0; n < SamplesPerEvent; ++n) {
            rig.I[std::size_t(n)] = input(n + block * SamplesPerEvent);
            rig.Q[std::size_t(n)] = input(n + block * SamplesPerEvent + 7);
          }
          rig.Step();
          const PublicVars& vars = rig.Radio.Vars;
          ASSERT_TRUE(AllFinite(rig.Radio.Chain.AudioBlock(), SamplesPerEvent)) << model << mode << which;
          ASSERT_TRUE(AllFinite(vars.SignalLevelRing.data(), vars.SignalLevelRing.size()));
          ASSERT_TRUE(std::isfinite(vars.AGCMeterGain)) << model << mode << which;
        }
        ++which;
      }
    }
  });
}

TEST(Endurance, TwoHoursEndAsTheyBegan) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(NDEBUG)
  constexpr int kMinutes = 5;
#else
  constexpr int kMinutes = 120;
#endif
  ChainRig rig(SDRModel::DRT1, DemodMode::AM);
  rig.Radio.Vars.AGCON = true;
  rig.Radio.Agc.FillDelayLine();
  // 16 blocks of programme, over and over, with the mode changed once a minute.
  std::array<std::array<std::int16_t, SamplesPerEvent>, 16> programme;
  const Signal am = AMOf(12000.0, OnBin(400.0, 16), 0.5, 9000.0);
  for (std::size_t k = 0; k < programme.size() * SamplesPerEvent; ++k) {
    programme[k / SamplesPerEvent][k % SamplesPerEvent] = static_cast<std::int16_t>(am(std::int64_t(k)));
  }
  const auto minute = [&](std::int32_t mode) {
    rig.Radio.SetDemodMode(mode);
    for (int block = 0; block < 1406; ++block) {
      rig.I = programme[std::size_t(block) % programme.size()];
      rig.Clock.Advance(std::chrono::microseconds(42667));
      rig.Step();
    }
    return rig.Radio.Vars.AGCMeterGain;
  };
  minute(DemodMode::AM);
  const float gain = minute(DemodMode::AM);
  const std::int64_t before = AllocationsOfThisThread();
  for (int m = 0; m < kMinutes; ++m) minute(m % DemodMode::Count);
  EXPECT_EQ(AllocationsOfThisThread() - before, 0);
  minute(DemodMode::AM);
  EXPECT_NEAR(minute(DemodMode::AM), gain, 1e-3F * gain);
  EXPECT_TRUE(AllFinite(rig.Radio.Chain.AudioBlock(), SamplesPerEvent));
}

}  // namespace
}  // namespace quorl::test
