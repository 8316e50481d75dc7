// What the panels over the receiver share.
#pragma once

#include <functional>

#include "controls/ControlRegistry.h"
#include "controls/Controls.h"
#include "interaction/PanelColours.h"
#include "interaction/PanelTexts.h"
#include "interaction/ScrollableControls.h"
#include "receiver/Receiver.h"
#include "support/Rounding.h"

namespace quorl {

// All of it is used as long as the panels live.
struct PanelContext {
  ControlRegistry& Registry;
  ScrollableControls& Scrollables;
  PanelColours& Colours;
  Receiver& Rx;                 // shown by what its Vars hold, changed through its routines
  std::function<void()> Yield;  // delivers waiting events once
};

// The value of an edge, centre or width control in whole hertz.
inline std::int32_t WholeValue(ScrollableControls& scrollables, int index) {
  return RoundHalfEven(scrollables(index).Value);
}

}  // namespace quorl
