// What the panels of the receive path share.
#pragma once

#include <functional>

#include "controls/ControlRegistry.h"
#include "controls/Controls.h"
#include "dsp/filters/FilterBank.h"
#include "interaction/PanelColours.h"
#include "interaction/PanelTexts.h"
#include "interaction/ScrollableControls.h"
#include "state/PublicVars.h"
#include "support/Rounding.h"

namespace quorl {

// All of it is used as long as the panels live.
struct PanelContext {
  ControlRegistry& Registry;
  ScrollableControls& Scrollables;
  PanelColours& Colours;
  PublicVars& Vars;
  FilterBank& Filters;
  std::function<void()> Yield;  // delivers waiting events once
};

// The value of an edge, centre or width control in whole hertz.
inline std::int32_t WholeValue(ScrollableControls& scrollables, int index) {
  return RoundHalfEven(scrollables(index).Value);
}

}  // namespace quorl
