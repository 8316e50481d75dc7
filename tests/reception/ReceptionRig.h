// All panels of the receive path over one receiver state, worked by the names of their controls.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "controls/Hand.h"
#include "platform/virtual/VirtualClock.h"
#include "reception/AGCPanel.h"
#include "reception/BFOPanel.h"
#include "reception/DemodPanel.h"
#include "reception/FilterPanel.h"
#include "reception/IFFilterPanel.h"
#include "reception/NBPanel.h"
#include "reception/NotchPanel.h"
#include "reception/VolumePanel.h"

namespace quorl {

struct ReceptionRig {
  struct NoOutput final : SoundOutput {
    void SetOutputAttenuation(std::int32_t) override {}
    void Output(const std::int16_t*, const std::int16_t*) override {}
  };

  ReceptionRig() {
    radio.Initialise();
    notch.InitialiseDefaults();
    agcPanel.InitialiseSlider(agcPanel.sldAGCAttack, CtlIndex::AGCAttack);
    agcPanel.InitialiseSlider(agcPanel.sldAGCDecay, CtlIndex::AGCDecay);
    agcPanel.optAGC.Press(vars.AGCMode);
    demod.optMode.Press(vars.CurrentDemodMode);
    filter.optFilter.Press(vars.CurrentFilterMode);
    vars.FiltersDirty = vars.NotchDirty = false;
  }

  Control& At(const std::string& name) {
    Control* control = registry.Find(name);
    if (control == nullptr) throw std::out_of_range(name);
    return *control;
  }
  void Click(const std::string& name) { At(name).UserClick(); }
  void Set(const std::string& name, const std::string& value) { ASSERT_TRUE(At(name).UserSet(value)); }
  void RightClick(const std::string& name) { hand::Click(At(name), {.Button = MouseButton::Right}); }
  void Wheel(const std::string& name, int times, Modifiers with = {}) {
    hand::Turn(At(name), times, {.With = with});
  }
  std::string Text(const std::string& name) { return At(name).Text(); }
  // Runs once at the next yield.
  void AtNextYield(std::function<void()> what) { atYield = std::move(what); }
  void Yield() {
    auto what = std::move(atYield);
    atYield = nullptr;
    if (what) what();
  }

  std::function<void()> atYield;
  ControlRegistry registry;
  ColourSchemes scheme;
  ScrollableControls mouse{scheme};
  PanelColours colours{registry, scheme, mouse};
  VirtualClock clock;
  NoOutput output;
  NoRecorder recorder;
  Receiver radio{clock, output, recorder, [] {}};
  PublicVars& vars = radio.Vars;
  FilterBank& filters = radio.Filters;
  PanelContext context{registry, mouse, colours, radio, [this] { Yield(); }};
  IFFilterPanel ifFilter{context};
  FilterPanel filter{context};
  DemodPanel demod{context};
  NotchPanel notch{context};
  NBPanel nb{context};
  AGCPanel agcPanel{context};
  VolumePanel volume{context};
  BFOPanel bfo{context};
};

}  // namespace quorl
