#include "reception/NBPanel.h"

#include "support/NumberPicture.h"
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
  Show();
  listening_ = context_.Rx.Changed.Listen([this](ReceiverPart part) {
    if (part == ReceiverPart::NoiseBlanker) Show();
  });
}

void NBPanel::chkNB_Click() {
  context_.Rx.SwitchNoiseBlanker(chkNB.Value());
}

void NBPanel::Show() {
  const PublicVars& vars = context_.Rx.Vars;
  ScrollableControl& control = context_.Scrollables(CtlIndex::NB);
  chkNB.SetValue(vars.NBOn);
  dialNB.Enabled = sldNB.Enabled = vars.NBOn;
  context_.Scrollables.SetEnabled(CtlIndex::NB, vars.NBOn);
  lblNB.Caption = FormatPicture(double{vars.NBThreshold} * 100.0, control.Format);
  dialNB.AccessibleText = sldNB.AccessibleText = lblNB.Caption() + " %";
  if (moving_) return;
  ScopedFlag guard(moving_);
  control.Value = vars.NBLevel;
  MoveTo(WholeValue(context_.Scrollables, CtlIndex::NB));
}

void NBPanel::MoveTo(int value) {
  sldNB.SetValue(value);
  dialNB.SetValue(value);
}

void NBPanel::lblNB_Wheel() {
  const auto value = [this] { return WholeValue(context_.Scrollables, CtlIndex::NB); };
  const auto apply = [this] { context_.Rx.SetNoiseBlankerLevel(context_.Scrollables(CtlIndex::NB).Value); };
  if (moving_) return apply();
  ScopedFlag guard(moving_);
  apply();
  // A hand may go on in a yield: all three end where it came to.
  sldNB.SetValue(value());
  context_.Yield();
  dialNB.SetValue(value());
  context_.Yield();
  MoveTo(value());
  apply();
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

void NBPanel::AddSettings(SettingsTable& table) {
  table.AddWritten("NB", context_.Scrollables(CtlIndex::NB).Value);
}

}  // namespace quorl
