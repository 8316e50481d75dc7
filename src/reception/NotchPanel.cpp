#include "reception/NotchPanel.h"

#include <cmath>

#include "dsp/chain/VariableFilters.h"
#include "support/Picture.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr char kTipPicture[] = "#,###0 Hz";
constexpr char kPeakPicture[] = "###0";

}  // namespace

NotchPanel::NotchPanel(const PanelContext& context)
    : frNotch(context.Registry, "frNotch"),
      chkNotchOn(context.Registry, "chkNotchOn"),
      optNotch(context.Registry, "optNotch", static_cast<int>(NotchModeTexts.size())),
      chkNotchAuto(context.Registry, "chkNotchAuto"),
      chkNotchType(context.Registry, "chkNotchType"),
      chkNotchMirror(context.Registry, "chkNotchMirror"),
      sldNotch(context.Registry, "sldNotch"),
      sldNotchWidth(context.Registry, "sldNotchWidth"),
      lblNotch(context.Registry, "lblNotch"),
      lblNotchC(context.Registry, "lblNotchC"),
      lblNotchCDesc(context.Registry, "lblNotchCDesc"),
      lblNotchW(context.Registry, "lblNotchW"),
      lblNotchWDesc(context.Registry, "lblNotchWDesc"),
      context_(context),
      vars_(context.Vars) {
  frNotch.Caption = "Notch";
  context_.Colours.Add(frNotch);
  SetTexts(optNotch, NotchModeTexts);
  optNotch.Press(vars_.NotchMode);
  PaintButtons(optNotch, vars_.NotchMode);
  optNotch.Click = [this](int index) { optNotch_Click(index); };
  chkNotchOn.Caption = "On";
  chkNotchOn.ToolTip = "Notch On or Off";
  BindToggle(chkNotchOn, [this] { chkNotchOn_Click(); });
  chkNotchAuto.Caption = "Auto";
  chkNotchAuto.ToolTip = NotchModeTexts[NotchModes::Auto].ToolTip;
  BindToggle(chkNotchAuto, [this] { chkNotchAuto_Click(); });
  chkNotchType.Caption = "IF";
  chkNotchType.ToolTip = "Notch on the IF instead of the audio";
  BindToggle(chkNotchType, [this] { chkNotchType_Click(); });
  chkNotchMirror.Caption = "Mirror";
  chkNotchMirror.ToolTip = "Pass the band instead of rejecting it";
  BindToggle(chkNotchMirror, [this] { chkNotchMirror_Click(); });
  lblNotchCDesc.Caption = "Centre";
  lblNotchWDesc.Caption = "Width";
  lblNotch.ToolTip = "Frequency of the strongest tone";
  ScrollableControls& scrollables = context_.Scrollables;
  scrollables.Bind(CtlIndex::NotchC, lblNotchC, [this] { lblNotchC_Wheel(); });
  scrollables.Bind(CtlIndex::NotchW, lblNotchW, [this] { lblNotchW_Wheel(); });
  sldNotch.Change = [this] { sldNotch_Scroll(); };
  sldNotchWidth.Change = [this] { sldNotchWidth_Scroll(); };
}

void NotchPanel::InitialiseDefaults() {
  const ScrollableControl& width = context_.Scrollables(CtlIndex::NotchW);
  sldNotchWidth.Min = static_cast<int>(width.MinValue);
  sldNotchWidth.Max = static_cast<int>(width.MaxValue);
  TakeType(vars_.NotchType);
  lblNotchC_Wheel();
  lblNotchW_Wheel();
  EnableControls();
}

void NotchPanel::EnableControls() {
  const bool manual = vars_.NotchMode == NotchModes::Manual;
  const bool turns = manual && vars_.NotchActive;
  context_.Scrollables.SetEnabled(CtlIndex::NotchC, turns);
  context_.Scrollables.SetEnabled(CtlIndex::NotchW, turns);
  sldNotch.Enabled = sldNotchWidth.Enabled = turns;
  lblNotchCDesc.Enabled = lblNotchWDesc.Enabled = chkNotchType.Enabled = manual;
  Fade(optNotch, !vars_.NotchActive);
  chkNotchAuto.Faded = chkNotchType.Faded = chkNotchMirror.Faded = !vars_.NotchActive;
  lblNotch.Visible = vars_.NotchActive && !manual;
}

void NotchPanel::SwitchOn() {
  context_.Filters.NotchFilterI.Active = true;
  vars_.NotchDirty = true;
  if (ShowNotch) ShowNotch(true);
}

void NotchPanel::chkNotchOn_Click() {
  vars_.NotchActive = chkNotchOn.Value();
  if (vars_.NotchActive) {
    if (optNotch.Pressed() >= 0) vars_.NotchMode = optNotch.Pressed();
    SwitchOn();
  } else {
    context_.Filters.NotchFilterI.Active = false;
    if (ShowNotch) ShowNotch(false);
  }
  EnableControls();
}

void NotchPanel::optNotch_Click(int index) {
  if (inMode_) return;
  ScopedFlag guard(inMode_);
  if (vars_.NotchActive) TakeMode(index);
  optNotch.Press(vars_.NotchMode);
  PaintButtons(optNotch, vars_.NotchMode);
  chkNotchAuto.SetValue(vars_.NotchMode == NotchModes::Auto);
}

void NotchPanel::chkNotchAuto_Click() {
  optNotch_Click(chkNotchAuto.Value() ? NotchModes::Auto : NotchModes::Manual);
}

void NotchPanel::TakeMode(int mode) {
  vars_.NotchMode = mode;
  if (mode == NotchModes::Auto && vars_.NotchType == NotchTypes::IF) {
    // The tracker hears audio only.
    ScopedFlag quiet(inType_);
    chkNotchType.SetValue(false);
    TakeType(NotchTypes::Audio);
  }
  EnableControls();
  SwitchOn();
  lblNotchC_Wheel();
}

// Puts the range in force away and lays the other type's into the centre control.
void NotchPanel::TakeType(int type) {
  ScrollableControl& centre = context_.Scrollables(CtlIndex::NotchC);
  NotchRanges& ranges = vars_.NotchSettings;
  if (vars_.NotchType == NotchTypes::IF) {
    ranges.IFMax = centre.MaxValue;
    ranges.IFMin = centre.MinValue;
    ranges.IFCurrent = centre.Value;
  } else {
    ranges.AudioCurrent = centre.Value;
  }
  const bool onIF = type == NotchTypes::IF;
  centre.MaxValue = onIF ? ranges.IFMax : ranges.AudioMax;
  centre.MinValue = onIF ? ranges.IFMin : ranges.AudioMin;
  centre.Value = onIF ? ranges.IFCurrent : std::fabs(ranges.AudioCurrent);
  vars_.NotchType = type;
  context_.Scrollables.Show(CtlIndex::NotchC);
  ScopedFlag quiet(notchBusy_);
  sldNotch.Min = static_cast<int>(centre.MinValue);
  sldNotch.Max = static_cast<int>(centre.MaxValue);
  sldNotch.SetValue(WholeValue(context_.Scrollables, CtlIndex::NotchC));
}

void NotchPanel::chkNotchType_Click() {
  if (inType_) return;
  ScopedFlag guard(inType_);
  const int type = chkNotchType.Value() ? NotchTypes::IF : NotchTypes::Audio;
  if (vars_.NotchActive && type != vars_.NotchType) TakeType(type);
  chkNotchType.SetValue(vars_.NotchType == NotchTypes::IF);
  if (vars_.NotchActive) lblNotchC_Wheel();
}

void NotchPanel::chkNotchMirror_Click() {
  if (inMirror_) return;
  ScopedFlag guard(inMirror_);
  if (vars_.NotchActive) {
    vars_.NotchMirror = chkNotchMirror.Value();
    vars_.NotchDirty = true;
  }
  chkNotchMirror.SetValue(vars_.NotchMirror);
}

void NotchPanel::TakeCentre() {
  const std::int32_t value = WholeValue(context_.Scrollables, CtlIndex::NotchC);
  vars_.NotchCentre = value;
  // An offset counts downwards in frequency on the air: upwards on the IF of a high oscillator, which stands
  // upside down, and downwards on that of a low one.
  if (vars_.NotchType == NotchTypes::IF) {
    vars_.NotchCentre = vars_.LowSideLO ? IFCentre - value : IFCentre + value;
  }
  SetNotchEdges(vars_);
  if (context_.Filters.NotchFilterI.Active) vars_.NotchDirty = true;
  sldNotch.ToolTip = "Notch Centre : " + FormatPicture(value, kTipPicture);
  context_.Scrollables.Show(CtlIndex::NotchC);
}

void NotchPanel::TakeWidth() {
  const ScrollableControl& control = context_.Scrollables(CtlIndex::NotchW);
  vars_.NotchLastWidth = vars_.NotchWidth;
  vars_.NotchWidth = WholeValue(context_.Scrollables, CtlIndex::NotchW);
  SetNotchEdges(vars_);
  if (vars_.NotchLo < 1) vars_.NotchLo = RoundHalfEven(control.NormalStep);
  vars_.NotchDirty = true;
  sldNotchWidth.ToolTip = "Notch Width : " + FormatPicture(vars_.NotchWidth, kTipPicture);
  context_.Scrollables.Show(CtlIndex::NotchW);
}

void NotchPanel::lblNotchC_Wheel() {
  if (inCentre_ || notchBusy_) return;
  ScopedFlag guard(inCentre_);
  TakeCentre();
  ScopedFlag busy(notchBusy_);
  sldNotch.SetValue(WholeValue(context_.Scrollables, CtlIndex::NotchC));
}

void NotchPanel::lblNotchW_Wheel() {
  if (inWidth_ || notchBusy_) return;
  ScopedFlag guard(inWidth_);
  TakeWidth();
  ScopedFlag busy(notchBusy_);
  sldNotchWidth.SetValue(vars_.NotchWidth);
}

void NotchPanel::sldNotch_Scroll() {
  if (notchBusy_) return;
  ScopedFlag busy(notchBusy_);
  context_.Scrollables(CtlIndex::NotchC).Value = static_cast<float>(sldNotch.Value());
  TakeCentre();
}

void NotchPanel::sldNotchWidth_Scroll() {
  if (notchBusy_) return;
  ScopedFlag busy(notchBusy_);
  context_.Scrollables(CtlIndex::NotchW).Value = static_cast<float>(sldNotchWidth.Value());
  TakeWidth();
}

void NotchPanel::ShowPeak() {
  lblNotch.Caption = FormatPicture(vars_.PeakFrequency, kPeakPicture);
  sldNotch.ToolTip = "Fcentre : " + FormatPicture(vars_.PeakFrequency, kTipPicture);
}

}  // namespace quorl
