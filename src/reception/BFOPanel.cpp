#include "reception/BFOPanel.h"

#include "support/ScopedFlag.h"

namespace quorl {

BFOPanel::BFOPanel(const PanelContext& context) : lblBFO(context.Registry, "lblBFO"), context_(context) {
  context_.Scrollables.Bind(CtlIndex::BFO, lblBFO, [this] { lblBFO_Wheel(); });
  listening_ = context_.Rx.Changed.Listen([this](ReceiverPart part) {
    if (part != ReceiverPart::BFO) return;
    const std::int32_t hertz = context_.Rx.Vars.MixerFrequency - IFCentre;
    context_.Scrollables(CtlIndex::BFO).Value = static_cast<float>(hertz);
    context_.Scrollables.Show(CtlIndex::BFO);
  });
}

void BFOPanel::lblBFO_Wheel() {
  if (inBFO_) return;
  ScopedFlag guard(inBFO_);
  context_.Rx.SetBFO(WholeValue(context_.Scrollables, CtlIndex::BFO));
}

}  // namespace quorl
