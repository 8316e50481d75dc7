// Someone who works every control at random, and what must hold whatever he does.
#pragma once

#include <array>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "core/FrameRig.h"
#include "display/scope/TraceCanvas.h"

namespace quorl::test {

class Monkey {
 public:
  explicit Monkey(FrameRig& rig, unsigned seed)
      : rig_(rig), random_(seed), controls_(rig.Frame().Controls().All()) {}

  void Gesture() {
    Control& control = *controls_[Below(controls_.size())];
    last = control.Name();
    const bool usable = control.Enabled() && control.Visible();
    hand::Hover(control, Place());
    switch (Below(9)) {
      case 0:
      case 1:
        control.UserClick();
        break;
      case 2:
        hand::DoubleClick(control, Place());
        break;
      case 3:
        hand::Click(control, Place(MouseButton::Right));
        break;
      case 4:
        for (std::size_t i = Below(30); usable && i > 0; --i) control.Wheel(Below(2) == 0 ? 1 : -1, Place());
        break;
      case 5:
        control.UserSet(std::to_string(static_cast<int>(Below(24001)) - 12000));
        break;
      case 6:
        control.UserSet(std::to_string(Below(18)));
        break;
      case 7: {
        const MouseButton button = Below(3) == 0 ? MouseButton::Middle : MouseButton::Left;
        hand::Drag(control, Place(button), Place(button), [this] { rig_.Run(0.01); });
        break;
      }
      default:
        Press();
    }
  }
  double Pause() { return 0.001 * static_cast<double>(Below(150)); }
  // One in `n`.
  bool Chance(std::size_t n) { return Below(n) == 0; }

  std::string last;

 private:
  std::size_t Below(std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(random_); }
  Modifiers Keys() { return {Below(4) == 0, Below(4) == 0, Below(16) == 0}; }
  MouseEvent Place(MouseButton button = MouseButton::None) {
    return {0.01 * static_cast<double>(Below(101)), 0.01 * static_cast<double>(Below(101)), button, Keys()};
  }
  void Press() {
    constexpr std::array<int, 11> codes{Key::Up, Key::Down,  Key::Left,   Key::Right, Key::Space, Key::A,
                                        Key::Z,  Key::Enter, Key::Escape, '7',        '0'};
    Control& form = rig_.At("frmMain");
    const Key key{codes[Below(codes.size())], Keys()};
    for (std::size_t i = Below(10); i > 0; --i) {
      Raise(form.KeyDown, key);
      rig_.Run(0.03);
    }
    Raise(form.KeyUp, key);
  }

  FrameRig& rig_;
  std::mt19937 random_;
  std::vector<Control*> controls_;
};

template <typename T>
bool Within(T value, T low, T high) {
  return value >= low && value <= high;  // false for what is no number
}

// Empty where all is well.
inline std::string Fault(FrameRig& rig) {
  const PublicVars& vars = rig.Vars();
  if (rig.VFO().TunedFrequency() < 0) return "frequency below 0";
  if (!Within(vars.CurrentDemodMode, 0, DemodMode::Count - 1)) return "mode";
  if (!Within(vars.CurrentFilterMode, 0, FilterModeCount - 1)) return "filter mode";
  if (!Within(vars.CurrentIFFilterMode, 0, IFFilterMode::Count - 1)) return "IF filter mode";
  if (!Within(vars.AGCMode, 0, AGCPreset::Count - 1)) return "AGC mode";
  if (!Within(vars.NotchMode, 0, 1) || !Within(vars.NotchType, 0, 1)) return "notch";
  if (!Within(vars.FilterHi, 0, 12000) || !Within(vars.FilterLo, 0, 1999)) return "filter edges";
  if (!Within(vars.NotchWidth, 0, 5000)) return "notch width";
  if (!Within(vars.NBThreshold, 0.0F, 0.2F)) return "blanker";
  if (!Within(vars.AGCDelayCallbacks, 0, 10000) || !Within(vars.AGCSmoothSamples, 0, 100000))
    return "AGC times";
  // Without limit, as nearly nothing may be heard, but a number.
  if (!Within(vars.AGCMeterGain, 0.0F, std::numeric_limits<float>::max())) return "AGC gain";
  if (!Within(rig.Frame().Tuning().TuneDigit, 0, 8)) return "tuning digit";
  if (!Within(rig.Frame().Tuning().TuneRate, 0.0F, 1e8F)) return "tuning rate";
  if (!Within(vars.BFOOffset, -12000, 12000)) return "BFO";
  const clsSpectrumAnalyser& scope = rig.Frame().Scope().SpectrumAnalyser;
  if (!Within(scope.StartBin(), 0, scope.StopBin()) || scope.StopBin() > 2048) return "scope's window";
  if (!Within(scope.SpectrumSmooth(), 1, 24)) return "scope's smoothing";
  if (!Within(scope.LevelTop - scope.LevelFloor, 10.0, 180.0)) return "scope's levels";
  for (const float level : vars.SignalLevelRing) {
    if (!Within(level, 0.0F, 1e6F)) return "signal level";
  }
  const auto agrees = [&](const std::string& name, bool on) { return (rig.Text(name) == "1") == on; };
  if (!agrees("chkNotchOn", vars.NotchActive)) return "chkNotchOn";
  if (!agrees("chkNB", vars.NBOn)) return "chkNB";
  if (!agrees("chkTuneLo", vars.LowSideLO)) return "chkTuneLo";
  if (!agrees(IndexedName("optMode", vars.CurrentDemodMode), true)) return "optMode";
  if (!agrees(IndexedName("optFilter", vars.CurrentFilterMode), true)) return "optFilter";
  if (!agrees(IndexedName("optNotch", vars.NotchMode), true)) return "optNotch";
  if (!agrees(IndexedName("optAGC", vars.AGCMode), true)) return "optAGC";
  if (!agrees("optPwr(0)", rig.Frame().IsOn())) return "optPwr";
  if (!agrees(IndexedName("chkScopeMode", scope.Mode()), true)) return "chkScopeMode";
  if (!agrees(IndexedName("optSpectrumSource", scope.SpectrumSource), true)) return "optSpectrumSource";
  if (!agrees("chkChn1On", scope.Chn1Enabled()) || !agrees("chkChn2On", scope.Chn2Enabled()))
    return "channels";
  if (rig.At("imgTuneStepLock").Visible() != rig.VFO().TuneStepLock) return "imgTuneStepLock";
  for (const Control* control : rig.Frame().Controls().All()) {
    const std::string text = control->Text();
    if (text.find("nan") != std::string::npos || text.find("inf") != std::string::npos)
      return control->Name();
  }
  return {};
}

// The surfaces that a window would lend.
struct Surfaces {
  void LendTo(FrameRig& rig) {
    rig.Frame().Scope().picScope.SetSurfaces(&scope[0], &scope[1]);
    rig.Frame().Scope().picWaterfall.SetSurfaces(&waterfall[0], &waterfall[1]);
  }
  TraceCanvas scope[2]{{640, 400}, {640, 400}}, waterfall[2]{{640, 400}, {640, 400}};
};

}  // namespace quorl::test
