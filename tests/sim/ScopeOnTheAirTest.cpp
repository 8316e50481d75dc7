// From a station on the simulated band to its place in the scope: every board, both sides of its oscillator.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "display/analyser/clsSpectrumAnalyser.h"
#include "receiver/Receiver.h"
#include "sim/Bench.h"
#include "sim/SimTestSupport.h"

namespace quorl {
namespace {

class NoSound final : public SoundOutput {
 public:
  void SetOutputAttenuation(std::int32_t) override {}
  void Output(const std::int16_t*, const std::int16_t*) override {}
};

TEST(ScopeOnTheAir, ACarrierStandsAtItsFrequencyOnEveryBoardAndSide) {
  constexpr double kCarrier = 7208000.0;  // Hz, 3 kHz above what is tuned
  for (const int model : {0, 1, 2, 3}) {
    for (const bool low : {false, true}) {
      Bench bench(model, InterfaceType::Serial, BandOf(StationText("7208", "carrier")), low);
      NoSound sound;
      NoRecorder recorder;
      Receiver receiver(bench.Clock, sound, recorder, [] {});
      receiver.Initialise();
      receiver.Vars.SDRModelNo = model;
      receiver.SetLowSideLO(low);
      clsSpectrumAnalyser scope(receiver.Settings, receiver.Vars, [] {});
      scope.init();
      scope.Active = true;
      scope.Freeze = false;
      scope.SetFastMode(true);
      scope.Window = SpectrumWindow::BlackmanHarris;
      receiver.Tap.Analyser = &scope;
      receiver.Tap.TunedFrequency = [] { return 72050000; };
      bench.Tune(72050000);
      receiver.Housekeeping();
      for (const bool twoSided : {false, true}) {
        scope.TwoSided = twoSided;
        std::array<std::int16_t, 2 * SamplesPerEvent> frames{};
        std::array<std::int16_t, SamplesPerEvent> left{}, right{};
        for (int block = 0; block < 12; ++block) {
          bench.Board.Board().Render(frames.data(), SamplesPerEvent);
          for (std::size_t n = 0; n < SamplesPerEvent; ++n) {
            left[n] = frames[2 * n];
            right[n] = frames[2 * n + 1];
          }
          receiver.Pump.SoundCard_DataReady(left.data(), right.data());
        }
        scope.StartX = 0;
        scope.StopX = scope.Bins();
        scope.ApplyWindow();
        scope.Display();
        EXPECT_EQ(scope.Bins(), twoSided && model == SDRModel::IQXtalRX ? 2048 : 1024);
        double best = -1.0;
        // Bins around 0 Hz hold the card's offset.
        for (double x = 8; x < scope.Bins() - 8; ++x)
          if (best < 0.0 || scope.LevelAt(x) > scope.LevelAt(best)) best = x;
        EXPECT_GT(scope.LevelAt(best), -90.0F);
        EXPECT_NEAR(scope.Frequencies().FrequencyAt(best), kCarrier, scope.HertzPerBin())
            << "model " << model << (low ? " low " : " high ") << twoSided;
      }
    }
  }
}

}  // namespace
}  // namespace quorl
