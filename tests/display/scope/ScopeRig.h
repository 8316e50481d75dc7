// The scope's panel over a receiver, worked by the names of its controls; what it asks of tuning is noted.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "controls/Hand.h"
#include "display/scope/ScopePanel.h"
#include "display/scope/TraceCanvas.h"
#include "platform/virtual/VirtualClock.h"
#include "platform/virtual/VirtualEventQueue.h"

namespace quorl::test {

struct ScopeRig {
  static constexpr int kWidth = 1000, kHeight = 400;

  struct NoOutput final : SoundOutput {
    void SetOutputAttenuation(std::int32_t) override {}
    void Output(const std::int16_t*, const std::int16_t*) override {}
  };

  explicit ScopeRig(const std::string& stored = {}) {
    store.Parse(stored);
    radio.Initialise();
    scope.Create(store);
    scope.picScope.SetPlace({0, 0, kWidth, kHeight});
    scope.picScope.SetSurfaces(&front, &back);
    scope.Initialise();
    scope.ReadSettings(store);
    scope.SetRoom(true);
    scope.Apply();
    scope.TakeTunedFrequency();
    At("chkSpectrumAnalyser").UserSet("1");
    radio.Vars.FiltersDirty = false;
  }

  ScopePanelLinks Links() {
    ScopePanelLinks links;
    links.Wanted = [this] { return tuned; };
    links.TuneTo = [this](std::int32_t dHz) {
      tuned = dHz;
      ++tunings;
    };
    links.StepByRate = [this](int direction) { steps += direction; };
    links.TakeStep = [this](double dHz) { step = dHz; };
    links.TuneStep = [this] { return step; };
    links.IsPlaying = [this] { return playing; };
    return links;
  }

  Control& At(const std::string& name) {
    Control* control = registry.Find(name);
    if (control == nullptr) throw std::out_of_range(name);
    return *control;
  }
  std::string Text(const std::string& name) { return At(name).Text(); }
  void Set(const std::string& name, const std::string& value) {
    EXPECT_TRUE(At(name).UserSet(value)) << name;
  }
  void Click(const std::string& name) { At(name).UserClick(); }
  void Choose(const std::string& menu, const std::string& item) { Set(menu, item); }
  void Wheel(const std::string& name, int notches, Modifiers with = {}) {
    hand::Turn(At(name), notches, {.With = with});
  }
  bool Seen(const std::string& name) { return At(name).Visible(); }
  void Hover(double x, double y) { hand::Hover(scope.picScope, {.X = x, .Y = y}); }
  void Press(double x, double y, Modifiers with = {}, MouseButton button = MouseButton::Left) {
    hand::Click(scope.picScope, {.X = x, .Y = y, .Button = button, .With = with});
  }
  void Drag(double x1, double y1, double x2, double y2, MouseButton button = MouseButton::Left) {
    hand::Drag(scope.picScope, {.X = x1, .Y = y1, .Button = button}, {.X = x2, .Y = y2, .Button = button},
               [this] { scope.Periodic(); });
  }
  // A block with a tone of `level` (1 is full scale) on the IF, and its picture.
  void Play(double hertz, double level = 0.5) {
    std::vector<std::int16_t> block(SamplesPerEvent);
    for (std::size_t n = 0; n < block.size(); ++n) {
      const double phase = 2.0 * std::numbers::pi * hertz * double(n) / FSampling;
      block[n] = static_cast<std::int16_t>(std::lround(32767.0 * level * std::sin(phase)));
    }
    radio.Tap.Analyser = &analyser;
    radio.Tap.TunedFrequency = [this] { return tuned; };
    radio.Tap.Show_INT16(analyser.SpectrumSource, block.data(), block.data(), true);
    scope.SetPower(true);
    scope.BlockOut();
    queue.AdvanceBy(std::chrono::milliseconds(10));
  }
  TraceCanvas& Latest() { return front.Visible ? front : back; }

  std::int32_t tuned = 72050000;  // dHz
  int tunings = 0, steps = 0;
  double step = 1000.0;  // dHz
  bool playing = false;

  TraceCanvas front{kWidth, kHeight}, back{kWidth, kHeight};
  ControlRegistry registry;
  ColourSchemes scheme;
  ScrollableControls mouse{scheme};
  PanelColours colours{registry, scheme, mouse};
  VirtualClock clock;
  VirtualEventQueue queue{clock};
  NoOutput output;
  NoRecorder recorder;
  SettingsStore store;
  Receiver radio{clock, output, recorder, [] {}};
  PanelContext context{registry, mouse, colours, radio, [this] { queue.Yield(); }};
  ScopePanel scope{context, queue, clock, Links()};
  clsSpectrumAnalyser& analyser = scope.SpectrumAnalyser;
};

}  // namespace quorl::test
