// The demodulation mode.
#pragma once

#include <functional>

#include "reception/FilterPanel.h"
#include "reception/IFFilterPanel.h"
#include "reception/PanelContext.h"

namespace quorl {

class DemodPanel {
 public:
  DemodPanel(const PanelContext& context, FilterPanel& filterPanel, IFFilterPanel& ifFilterPanel);

  Frame frDemod;
  OptionGroup optMode;  // DemodMode

  bool MuteAFOnDRM = false;  // silence while an external decoder listens
  // The mode has changed: the place where sound card and decoder are handed over on entering and leaving DRM.
  // Comes after the filters of the new mode are switched, before they are filled in. May be empty.
  std::function<void(int from, int to)> OnModeChange;

  // Takes the mode. A click that comes in while one is being worked on is undone.
  void optMode_Click(int index);

 private:
  PanelContext context_;
  FilterPanel& filterPanel_;
  IFFilterPanel& ifFilterPanel_;
  bool inOptMode_ = false;
};

}  // namespace quorl
