// Bursts of notches over a slow wire: the chip comes to rest where the display says, and no notch is lost.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <string>

#include "TuningRig.h"
#include "controls/ControlRegistry.h"
#include "sim/SimulatedReceiver.h"
#include "tuning/TuningChain.h"
#include "tuning/TuningPanel.h"

namespace quorl {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr int kElektor = 1;
constexpr std::int32_t kBurstStart = 72050000;  // dHz
constexpr std::int32_t kNotch = 1000;           // dHz

struct Wire {
  int Model;
  microseconds LineCall;
};

class TuningBurst : public testing::TestWithParam<Wire>, protected TuningRig {
 protected:
  TuningBurst() {
    Serial.SetRecording(false);
    Serial.SetListener(&board.Cable());
    Settings.SaveSetting("DDSAD9951", "ClkIn", "360096000");
    chain.OpenInterface(InterfaceType::Serial, false);
    chain.CreateVFO(GetParam().Model, InterfaceType::Serial);
    panel.SetTuner(&chain.Tune());
    chain.VFO()->SetTunedFrequency(kBurstStart);
    for (Timer* timer : {&panel.tmrTune, &panel.tmrVFOUpdate}) {
      timer->SetInterval(timer == &panel.tmrTune ? 50 : 1000);
      timer->SetEnabled(true);
    }
    Serial.SetLineTime(GetParam().LineCall);
  }

  // What a frequency takes on the wire.
  microseconds Frame() const {
    return (GetParam().Model == kElektor ? 7 * (2 + 2 * 25) : 2 + 5 * 25) * GetParam().LineCall;
  }
  std::int32_t Displayed() const {
    std::string digits;
    for (int i = 0; i < TuningPanel::kDigits; ++i) digits += registry.Find(IndexedName("lbl7Seg", i))->Text();
    return std::stoi(digits);
  }
  // How far the chip's frequency lies from the one that the display asks for, Hz.
  double ChipError() {
    const double wanted = Displayed() / 10.0 + chain.VFO()->IFFrequency();
    return board.Chip().OutputHz().value_or(0.0) - wanted;
  }
  struct Outcome {
    int Sum = 0;  // of the notches
    // The chip's least error while two frames have the time to go out after the last one, Hz. A chip that is
    // sent its frequency once more is silent for a part of that.
    double Astray = 1e9;
  };
  Outcome Burst(std::mt19937& random) {
    const auto any = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    const int direction = any(0, 1) == 0 ? -1 : 1;
    int left = any(1, 10);
    std::int64_t end = 0;
    Outcome outcome;
    const auto check = Queue.CreateTimer([&] {
      if (Clock.Microseconds() <= end) outcome.Astray = std::min(outcome.Astray, std::abs(ChipError()));
    });
    std::unique_ptr<QueueTimer> hand = Queue.CreateTimer([&] {
      outcome.Sum += direction;
      hand->Start(milliseconds(any(20, 300)));
      if (--left == 0) {
        hand->Stop();
        check->Start(milliseconds(1));
        end = Clock.Microseconds() + (2 * Frame()).count() + 1000;
      }
      registry.Find("lbl7Seg(5)")->Wheel(direction, {});
    });
    hand->Start(milliseconds(any(20, 300)));
    while (end == 0 || Clock.Microseconds() <= end) Queue.Wait(milliseconds(10));
    return outcome;
  }

  SimulatedReceiver board{GetParam().Model, nullptr, BoardOfModel(GetParam().Model)};
  TuningChain chain{TuningMachine{Serial, Printer, Queue, Boxes, Settings}, {}};
  ControlRegistry registry;
  PublicVars vars;
  TuningPanel panel{registry, Queue, Clock, vars, {}};
};

TEST_P(TuningBurst, TheChipRestsWhereTheDisplaySaysAndNoNotchIsLost) {
  std::mt19937 random(9);
  int astray = 0, lost = 0, notches = 0;
  double worst = 0;
  for (int i = 0; i < 1000; ++i) {
    const std::int32_t before = chain.VFO()->TunedFrequency();
    const Outcome burst = Burst(random);
    Queue.AdvanceBy(milliseconds(4000));
    const double error = std::max(burst.Astray, std::abs(ChipError()));
    worst = std::max(worst, error);
    astray += error > 0.1 ? 1 : 0;
    notches += std::abs(burst.Sum);
    lost += std::abs(burst.Sum - (chain.VFO()->TunedFrequency() - before) / kNotch);
  }
  EXPECT_EQ(astray, 0) << "of 1000 bursts, by up to " << worst << " Hz";
  EXPECT_EQ(lost, 0) << "of " << notches << " notches";
}

INSTANTIATE_TEST_SUITE_P(BothChips, TuningBurst,
                         testing::Values(Wire{0, microseconds(100)}, Wire{0, microseconds(1000)},
                                         Wire{0, microseconds(3000)}, Wire{kElektor, microseconds(100)},
                                         Wire{kElektor, microseconds(1000)},
                                         Wire{kElektor, microseconds(3000)}));

}  // namespace
}  // namespace quorl
