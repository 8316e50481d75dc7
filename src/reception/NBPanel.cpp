#include "reception/NBPanel.h"

#include "dsp/chain/NoiseBlanker.h"
#include "support/Picture.h"
#include "support/ScopedFlag.h"

namespace quorl {

NBPanel::NBPanel(const PanelContext& context)
    : frNB(context.Registry, "frNB"),
      chkNB(context.Registry, "chkNB"),
      sldNB(context.Registry, "sldNB"),
      dialNB(context.Registry, "dialNB"),
      lblNB(context.Registry, "lblNB"),
      context_(context) {
  frNB.Caption = "Noise Blanker";
  context_.Colours.Add(frNB);
  chkNB.Caption = "NB";
  chkNB.ToolTip = "Noise Blanker On or Off";
  BindToggle(chkNB, [this] { chkNB_Click(); });
  context_.Scrollables.Bind(CtlIndex::NB, lblNB, [this] { lblNB_Wheel(); });
  const ScrollableControl& control = context_.Scrollables(CtlIndex::NB);
  sldNB.Min = dialNB.Min = static_cast<int>(control.MinValue);
  sldNB.Max = dialNB.Max = static_cast<int>(control.MaxValue);
  dialNB.Bounded = true;
  sldNB.ToolTip = dialNB.ToolTip = "Noise Blanker Threshold";
  sldNB.Change = [this] { sldNB_Scroll(); };
  dialNB.Change = [this] { dialNB_Change(); };
  chkNB_Click();
  ScopedFlag quiet(moving_);
  lblNB_Wheel();
}

void NBPanel::chkNB_Click() {
  const bool on = context_.Vars.NBOn = chkNB.Value();
  dialNB.Enabled = sldNB.Enabled = on;
  context_.Scrollables.SetEnabled(CtlIndex::NB, on);
}

void NBPanel::ApplyThreshold() {
  const ScrollableControl& control = context_.Scrollables(CtlIndex::NB);
  context_.Vars.NBThreshold = NoiseBlanker::ThresholdOf(control.Value);
  lblNB.Caption = FormatPicture(double{context_.Vars.NBThreshold} * 100.0, control.Format);
}

void NBPanel::lblNB_Wheel() {
  ApplyThreshold();
  if (moving_) return;
  ScopedFlag guard(moving_);
  // A hand may go on in a yield: all three end where it came to.
  sldNB.SetValue(WholeValue(context_.Scrollables, CtlIndex::NB));
  context_.Yield();
  dialNB.SetValue(WholeValue(context_.Scrollables, CtlIndex::NB));
  context_.Yield();
  sldNB.SetValue(WholeValue(context_.Scrollables, CtlIndex::NB));
  dialNB.SetValue(WholeValue(context_.Scrollables, CtlIndex::NB));
  ApplyThreshold();
}

void NBPanel::TakeThreshold(int value) {
  if (moving_) {
    context_.Scrollables(CtlIndex::NB).Value = static_cast<float>(value);
    return;
  }
  context_.Scrollables.SetValue(CtlIndex::NB, static_cast<float>(value));
}

void NBPanel::sldNB_Scroll() {
  TakeThreshold(sldNB.Value());
}

void NBPanel::dialNB_Change() {
  TakeThreshold(dialNB.Value());
}

}  // namespace quorl
