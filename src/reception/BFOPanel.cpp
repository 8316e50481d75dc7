#include "reception/BFOPanel.h"

#include "dsp/chain/VariableFilters.h"
#include "support/ScopedFlag.h"

namespace quorl {

BFOPanel::BFOPanel(const PanelContext& context) : lblBFO(context.Registry, "lblBFO"), context_(context) {
  context_.Scrollables.Bind(CtlIndex::BFO, lblBFO, [this] { lblBFO_Wheel(); });
}

void BFOPanel::lblBFO_Wheel() {
  if (inBFO_) return;
  ScopedFlag guard(inBFO_);
  SetBFO(context_.Vars, WholeValue(context_.Scrollables, CtlIndex::BFO));
}

}  // namespace quorl
