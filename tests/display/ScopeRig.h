// An instrument on two recording canvases, and signals for it.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "display/RecordingCanvas.h"
#include "display/analyser/clsSpectrumAnalyser.h"
#include "signals/Measures.h"

namespace quorl::test {

inline constexpr double kBin = 48000.0 / 2048.0;  // Hz
using Wave = std::function<double(int n)>;

inline SampleBuffer BlockOf(const Wave& wave) {
  SampleBuffer samples(clsSpectrumAnalyser::kPoints + 1);
  for (int n = 0; n < clsSpectrumAnalyser::kPoints; ++n)
    samples[static_cast<std::size_t>(n)] = static_cast<float>(wave(n));
  return samples;
}
inline Wave ToneAt(double bin, double level = 32768.0, double phase = 0.3) {
  return [=](int n) { return level * std::cos(Radians(bin * kBin) * n + phase); };
}

struct ScopeRig : testing::Test {
  ScopeRig() {
    scope.init();
    scope.picDisplay0(&canvases[0]);
    scope.picDisplay1(&canvases[1]);
    scope.Active = true;
    scope.Freeze = false;
    scope.SetFastMode(true);
    scope.SetChn2Enabled(false);
  }

  // One block and its frame.
  void Show(
      const Wave& i, const Wave& q = [](int) { return 0.0; }) {
    const SampleBuffer left = BlockOf(i), right = BlockOf(q);
    scope.LoadSamples_S(left.data(), right.data());
    scope.SetFrequencyReference(tuned - 12000);
    scope.SetLowSideLO(low);
    scope.Display();
  }
  void Window(std::int32_t start, std::int32_t stop) {
    scope.StartX = start;
    scope.StopX = stop;
    scope.ApplyWindow();
  }
  const RecordingCanvas& Shown() const { return canvases[canvases[1].Visible ? 1 : 0]; }
  // Heights of a channel's trace from the left edge.
  std::vector<float> Heights(Colour colour) const {
    std::vector<float> heights;
    if (const RecordingCanvas::Trace* trace = Shown().TraceOf(colour)) {
      for (const CanvasPoint& point : trace->Points) heights.push_back(point.Y);
    }
    return heights;
  }
  std::vector<float> Heights1() const { return Heights(scope.Y1Colour); }
  std::vector<float> Heights2() const { return Heights(scope.Y2Colour); }
  // Place of the highest point.
  static int PeakOf(const std::vector<float>& heights) {
    return static_cast<int>(std::max_element(heights.begin(), heights.end()) - heights.begin());
  }

  KernelSettings settings;
  PublicVars vars;
  std::function<void()> onYield = [] {};
  std::int32_t tuned = 7205000;
  bool low = false;
  std::array<RecordingCanvas, 2> canvases;
  clsSpectrumAnalyser scope{settings, vars, [this] { onYield(); }};
};

}  // namespace quorl::test
