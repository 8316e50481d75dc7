// What the panels of the receive path share.
#pragma once

#include <functional>
#include <span>

#include "controls/ControlRegistry.h"
#include "controls/Controls.h"
#include "dsp/filters/FilterBank.h"
#include "interaction/PanelColours.h"
#include "interaction/ScrollableControls.h"
#include "state/PublicConstants.h"
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

// Captions and tool tips of a group's first buttons.
inline void SetTexts(OptionGroup& group, std::span<const ButtonText> texts) {
  int index = 0;
  for (const ButtonText& text : texts) {
    OptionButton& button = group(index++);
    button.Caption = text.Caption;
    button.ToolTip = text.ToolTip;
  }
}

// The value of an edge, centre or width control in whole hertz.
inline std::int32_t WholeValue(ScrollableControls& scrollables, int index) {
  return RoundHalfEven(scrollables(index).Value);
}

}  // namespace quorl
