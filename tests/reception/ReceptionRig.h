// All panels of the receive path over one receiver state, worked by the names of their controls.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "platform/virtual/VirtualClock.h"
#include "reception/AGCPanel.h"
#include "reception/BFOPanel.h"
#include "reception/DemodPanel.h"
#include "reception/FilterPanel.h"
#include "reception/IFFilterPanel.h"
#include "reception/NBPanel.h"
#include "reception/NotchPanel.h"
#include "reception/VolumePanel.h"
#include "rigs/Hands.h"

namespace quorl {

struct ReceptionRig : test::Hands {
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

  const ControlRegistry& Registry() override { return registry; }
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
  NoSoundOutput output;
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
