#include "reception/AGCPanel.h"

#include "support/NumberPicture.h"
#include "support/ScopedFlag.h"
#include "support/Text.h"

namespace quorl {

AGCPanel::AGCPanel(const PanelContext& context)
    : frAGC(context.Registry, "frAGC"),
      chkAGC(context.Registry, "chkAGC"),
      optAGC(context.Registry, "optAGC", AGCPreset::Count),
      sldAGCAttack(context.Registry, "sldAGCAttack"),
      sldAGCDecay(context.Registry, "sldAGCDecay"),
      lblAGCAttack(context.Registry, "lblAGCAttack"),
      lblAGCDecay(context.Registry, "lblAGCDecay"),
      context_(context),
      vars_(context.Rx.Vars) {
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
  Show();
  listening_ = context_.Rx.Changed.Listen([this](ReceiverPart part) {
    if (part == ReceiverPart::AGC) Show();
  });
}

void AGCPanel::InitialiseSlider(Slider& slider, int index) {
  {
    ScopedFlag guard(showing_);
    slider.Min = static_cast<int>(context_.Scrollables(index).MinValue);
    slider.Max = static_cast<int>(context_.Scrollables(index).MaxValue);
  }
  Show();
}

const AGCSettingsRecord& AGCPanel::Preset() const {
  return vars_.AGCSettings.at(static_cast<std::size_t>(vars_.AGCMode));
}

void AGCPanel::chkAGC_Click() {
  if (!showing_) context_.Rx.SwitchAGC(chkAGC.Value());
}

void AGCPanel::optAGC_Click(int index) {
  if (showing_) return;
  context_.Rx.SetAGCPreset(index);
  Show();
}

void AGCPanel::Show() {
  ScopedFlag guard(showing_);
  chkAGC.SetValue(vars_.AGCON);
  context_.Scrollables.SetEnabled(CtlIndex::AGCAttack, vars_.AGCON);
  context_.Scrollables.SetEnabled(CtlIndex::AGCDecay, vars_.AGCON);
  sldAGCAttack.Enabled = sldAGCDecay.Enabled = vars_.AGCON;
  Fade(optAGC, !vars_.AGCON);
  optAGC.Press(vars_.AGCMode);
  PaintButtons(optAGC, vars_.AGCMode);
  ShowTimes();
}

void AGCPanel::ShowTimes() {
  const AGCSettingsRecord& preset = Preset();
  ShowTime(CtlIndex::AGCAttack, preset.CurrentDelay, preset.DefaultDelay, sldAGCAttack, lblAGCAttack);
  ShowTime(CtlIndex::AGCDecay, preset.CurrentRamp, preset.DefaultRamp, sldAGCDecay, lblAGCDecay);
  sldAGCAttack.ToolTip =
      "AGC Decay=" + NumberText(context_.Scrollables(CtlIndex::AGCAttack).Value / 10.0) + " S";
  sldAGCDecay.ToolTip = "AGC Attack=" + NumberText(vars_.AGCSmoothTime) + " mS";
}

// The preset "Off" lies under the slider's end.
void AGCPanel::ShowTime(int index, std::int32_t value, std::int32_t byDefault, Slider& slider, Label& label) {
  ScrollableControl& control = context_.Scrollables(index);
  control.DefaultValue = static_cast<float>(byDefault);
  // A preset holds whole numbers; a value between them stays what it is.
  if (RoundHalfEven(control.Value) != value) control.Value = static_cast<float>(value);
  label.Caption = FormatPicture(double{control.Value} / 10.0, control.Format);
  slider.SetValue(value);
}

void AGCPanel::lblAGCAttack_Wheel() {
  if (inAttack_) return;
  ScopedFlag guard(inAttack_);
  context_.Rx.SetAGCDelay(context_.Scrollables(CtlIndex::AGCAttack).Value);
}

void AGCPanel::lblAGCDecay_Wheel() {
  if (inDecay_) return;
  ScopedFlag guard(inDecay_);
  context_.Rx.SetAGCRamp(context_.Scrollables(CtlIndex::AGCDecay).Value);
}

void AGCPanel::sldAGCAttack_Scroll() {
  if (showing_) return;
  context_.Scrollables.SetValue(CtlIndex::AGCAttack, static_cast<float>(sldAGCAttack.Value()));
}

void AGCPanel::sldAGCDecay_Scroll() {
  if (showing_) return;
  context_.Scrollables.SetValue(CtlIndex::AGCDecay, static_cast<float>(sldAGCDecay.Value()));
}

void AGCPanel::AddSettings(SettingsTable& table) {
  table.AddWritten("AGCAttack", context_.Scrollables(CtlIndex::AGCAttack).Value);
  table.AddWritten("AGCDecay", context_.Scrollables(CtlIndex::AGCDecay).Value);
}

}  // namespace quorl
