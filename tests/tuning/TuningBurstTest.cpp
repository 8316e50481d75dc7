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
constexpr std::int32_t kStart = 72050000;  // dHz
constexpr std::int32_t kNotch = 1000;      // dHz

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
    chain.VFO()->SetTunedFrequency(kStart);
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
  // One burst; the sum of its notches.
  int Burst(std::mt19937& random) {
    const auto any = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    int left = any(1, 10), sum = 0;
    std::int64_t last = 0;
    const int direction = any(0, 1) == 0 ? -1 : 1;
    const auto hand = Queue.CreateTimer([&] {
      if (left-- <= 0) return;
      sum += direction;
      last = Clock.Microseconds();
      next->Start(milliseconds(any(20, 300)));
      registry.Find("lbl7Seg(5)")->Wheel(direction, {});
    });
    next = hand.get();
    hand->Start(milliseconds(any(20, 300)));
    while (left > 0) Queue.Wait(milliseconds(1000));
    hand->Stop();
    // The last notch may stand inside a frame that had been begun before it.
    Queue.AdvanceTo(std::max(Clock.Microseconds(), last + (2 * Frame()).count() + 1000));
    return sum;
  }

  SimulatedReceiver board{GetParam().Model, nullptr, BoardOfModel(GetParam().Model)};
  TuningChain chain{TuningMachine{Serial, Printer, Queue, Dialogs, Settings}, {}};
  ControlRegistry registry;
  PublicVars vars;
  TuningPanel panel{registry, Queue, Clock, vars, {}};
  QueueTimer* next = nullptr;
};

TEST_P(TuningBurst, TheChipRestsWhereTheDisplaySaysAndNoNotchIsLost) {
  std::mt19937 random(9);
  int astray = 0, lost = 0, notches = 0;
  double worst = 0;
  for (int i = 0; i < 1000; ++i) {
    const std::int32_t before = chain.VFO()->TunedFrequency();
    const int sum = Burst(random);
    const double error = std::abs(ChipError());
    worst = std::max(worst, error);
    astray += error > 0.1 ? 1 : 0;
    notches += std::abs(sum);
    lost += std::abs(sum - (chain.VFO()->TunedFrequency() - before) / kNotch);
    Queue.AdvanceBy(milliseconds(4000));
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
