#include "reception/DemodPanel.h"

#include "support/ScopedFlag.h"

namespace quorl {

DemodPanel::DemodPanel(const PanelContext& context)
    : frDemod(context.Registry, "frDemod"),
      optMode(context.Registry, "optMode", DemodMode::Count),
      context_(context) {
  frDemod.Caption = "Mode";
  context_.Colours.Add(frDemod);
  SetTexts(optMode, DemodModeTexts);
  optMode.Click = [this](int index) { optMode_Click(index); };
  Show();
  listening_ = context_.Rx.Changed.Listen([this](ReceiverPart part) {
    if (part == ReceiverPart::Mode && !inOptMode_) Show();
  });
}

void DemodPanel::optMode_Click(int index) {
  if (inOptMode_) return;
  {
    ScopedFlag guard(inOptMode_);
    PaintButtons(optMode, index);
    context_.Yield();
    context_.Rx.SetDemodMode(index);
  }
  Show();
}

// Takes back a click that came in at a yield, too.
void DemodPanel::Show() {
  ScopedFlag guard(inOptMode_);
  const std::int32_t mode = context_.Rx.Vars.CurrentDemodMode;
  optMode.Press(mode);
  PaintButtons(optMode, mode);
}

}  // namespace quorl
