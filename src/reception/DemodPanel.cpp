#include "reception/DemodPanel.h"

#include "support/ScopedFlag.h"

namespace quorl {

DemodPanel::DemodPanel(const PanelContext& context, FilterPanel& filterPanel, IFFilterPanel& ifFilterPanel)
    : frDemod(context.Registry, "frDemod"),
      optMode(context.Registry, "optMode", DemodMode::Count),
      context_(context),
      filterPanel_(filterPanel),
      ifFilterPanel_(ifFilterPanel) {
  frDemod.Caption = "Mode";
  context_.Colours.Add(frDemod);
  SetTexts(optMode, DemodModeTexts);
  PaintButtons(optMode, -1);
  optMode.Click = [this](int index) { optMode_Click(index); };
}

void DemodPanel::optMode_Click(int index) {
  if (inOptMode_) return;
  ScopedFlag guard(inOptMode_);
  PublicVars& vars = context_.Vars;
  const int from = vars.CurrentDemodMode;
  PaintButtons(optMode, index);
  context_.Yield();
  vars.CurrentDemodMode = index;
  context_.Filters.ActivateForMode(index);
  vars.FiltersDirty = true;
  vars.DRMAudioMuted = index == DemodMode::DRM && MuteAFOnDRM;
  if (OnModeChange) OnModeChange(from, index);
  if (from == DemodMode::DRM && index != DemodMode::DRM) {
    filterPanel_.optFilter_Click(vars.CurrentFilterMode);
  }
  ifFilterPanel_.FollowDemodMode();
  // Takes back a click that came in at the yield.
  optMode.Press(index);
  PaintButtons(optMode, index);
}

}  // namespace quorl
