#include "reception/AGCPanel.h"

#include "support/Picture.h"
#include "support/ScopedFlag.h"
#include "support/Text.h"

namespace quorl {

AGCPanel::AGCPanel(const PanelContext& context, AGC& agc)
    : frAGC(context.Registry, "frAGC"),
      chkAGC(context.Registry, "chkAGC"),
      optAGC(context.Registry, "optAGC", AGCPreset::Count),
      sldAGCAttack(context.Registry, "sldAGCAttack"),
      sldAGCDecay(context.Registry, "sldAGCDecay"),
      lblAGCAttack(context.Registry, "lblAGCAttack"),
      lblAGCDecay(context.Registry, "lblAGCDecay"),
      context_(context),
      vars_(context.Vars),
      agc_(agc) {
  frAGC.Caption = "AGC";
  context_.Colours.Add(frAGC);
  SetTexts(optAGC, AGCModeTexts);
  optAGC(AGCPreset::User).Visible = false;
  optAGC.Click = [this](int index) { optAGC_Click(index); };
  chkAGC.Caption = "AGC";
  chkAGC.ToolTip = "AGC On or Off";
  BindToggle(chkAGC, [this] { chkAGC_Click(); });
  ScrollableControls& scrollables = context_.Scrollables;
  scrollables.Bind(CtlIndex::AGCAttack, lblAGCAttack, [this] { lblAGCAttack_Wheel(); });
  scrollables.Bind(CtlIndex::AGCDecay, lblAGCDecay, [this] { lblAGCDecay_Wheel(); });
  scrollables(CtlIndex::AGCAttack).TableDefault = [this] {
    return static_cast<float>(Preset().DefaultDelay);
  };
  scrollables(CtlIndex::AGCDecay).TableDefault = [this] { return static_cast<float>(Preset().DefaultRamp); };
  sldAGCAttack.Change = [this] { sldAGCAttack_Scroll(); };
  sldAGCDecay.Change = [this] { sldAGCDecay_Scroll(); };
  chkAGC.SetValue(vars_.AGCON);
  chkAGC_Click();
  PaintButtons(optAGC, -1);
}

void AGCPanel::InitialiseSlider(Slider& slider, int index) {
  ScopedFlag guard(moving_);
  slider.Min = static_cast<int>(context_.Scrollables(index).MinValue);
  slider.Max = static_cast<int>(context_.Scrollables(index).MaxValue);
  slider.SetValue(slider.Min());
}

AGCSettingsRecord& AGCPanel::Preset() {
  return vars_.AGCSettings.at(static_cast<std::size_t>(vars_.AGCMode));
}

void AGCPanel::chkAGC_Click() {
  const bool on = vars_.AGCON = chkAGC.Value();
  context_.Scrollables.SetEnabled(CtlIndex::AGCAttack, on);
  context_.Scrollables.SetEnabled(CtlIndex::AGCDecay, on);
  sldAGCAttack.Enabled = sldAGCDecay.Enabled = on;
  Fade(optAGC, !on);
}

void AGCPanel::optAGC_Click(int index) {
  if (inOptAGC_) return;
  ScopedFlag guard(inOptAGC_);
  if (!vars_.AGCON) {
    optAGC.Press(vars_.AGCMode);
    return;
  }
  vars_.AGCMode = index;
  optAGC.Press(index);
  PaintButtons(optAGC, index);
  const AGCSettingsRecord preset = Preset();
  ScrollableControl& attack = context_.Scrollables(CtlIndex::AGCAttack);
  ScrollableControl& decay = context_.Scrollables(CtlIndex::AGCDecay);
  attack.DefaultValue = static_cast<float>(preset.DefaultDelay);
  attack.Value = static_cast<float>(preset.CurrentDelay);
  decay.DefaultValue = static_cast<float>(preset.DefaultRamp);
  decay.Value = static_cast<float>(preset.CurrentRamp);
  lblAGCAttack_Wheel();
  lblAGCDecay_Wheel();
}

void AGCPanel::MoveSlider(Slider& slider, int index) {
  // The preset "Off" lies under the slider's end, and must not come back from it.
  ScopedFlag guard(moving_);
  slider.SetValue(WholeValue(context_.Scrollables, index));
}

void AGCPanel::lblAGCAttack_Wheel() {
  if (inAttack_) return;
  ScopedFlag guard(inAttack_);
  const ScrollableControl& control = context_.Scrollables(CtlIndex::AGCAttack);
  agc_.SetDelay(control.Value);
  const double seconds = double{control.Value} / 10.0;
  lblAGCAttack.Caption = FormatPicture(seconds, control.Format);
  sldAGCAttack.ToolTip = "AGC Decay=" + NumberText(seconds) + " S";
  MoveSlider(sldAGCAttack, CtlIndex::AGCAttack);
}

void AGCPanel::lblAGCDecay_Wheel() {
  if (inDecay_) return;
  ScopedFlag guard(inDecay_);
  const ScrollableControl& control = context_.Scrollables(CtlIndex::AGCDecay);
  agc_.SetRamp(control.Value);
  lblAGCDecay.Caption = FormatPicture(double{control.Value} / 10.0, control.Format);
  sldAGCDecay.ToolTip = "AGC Attack=" + NumberText(vars_.AGCSmoothTime) + " mS";
  MoveSlider(sldAGCDecay, CtlIndex::AGCDecay);
}

void AGCPanel::sldAGCAttack_Scroll() {
  if (moving_) return;
  context_.Scrollables.SetValue(CtlIndex::AGCAttack, static_cast<float>(sldAGCAttack.Value()));
}

void AGCPanel::sldAGCDecay_Scroll() {
  if (moving_) return;
  context_.Scrollables.SetValue(CtlIndex::AGCDecay, static_cast<float>(sldAGCDecay.Value()));
}

}  // namespace quorl
