#include "reception/NotchPanel.h"

#include <cmath>

#include "support/NumberPicture.h"
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
      vars_(context.Rx.Vars) {
  frNotch.Caption = "Notch";
  context_.Colours.Add(frNotch);
  ConnectButtons();
  lblNotchCDesc.Caption = "Centre";
  lblNotchWDesc.Caption = "Width";
  lblNotch.ToolTip = "Frequency of the strongest tone";
  ScrollableControls& scrollables = context_.Scrollables;
  scrollables.Bind(CtlIndex::NotchC, lblNotchC, [this] { lblNotchC_Wheel(); });
  scrollables.Bind(CtlIndex::NotchW, lblNotchW, [this] { lblNotchW_Wheel(); });
  sldNotch.Change = [this] { sldNotch_Scroll(); };
  sldNotchWidth.Change = [this] { sldNotchWidth_Scroll(); };
  Show();
  listening_ = context_.Rx.Changed.Listen([this](ReceiverPart part) {
    if (part == ReceiverPart::Notch || part == ReceiverPart::Side) Show();
  });
}

void NotchPanel::ConnectButtons() {
  SetTexts(optNotch, NotchModeTexts);
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
}

void NotchPanel::InitialiseDefaults() {
  {
    ScopedFlag guard(showing_);
    const ScrollableControl& width = context_.Scrollables(CtlIndex::NotchW);
    sldNotchWidth.Min = static_cast<int>(width.MinValue);
    sldNotchWidth.Max = static_cast<int>(width.MaxValue);
  }
  Show();
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

void NotchPanel::Show() {
  ScopedFlag guard(showing_);
  ShowButtons();
  ShowCentre();
  ShowWidth();
  EnableControls();
  const bool active = context_.Rx.Filters.NotchFilterI.Active;
  if (active == shown_) return;
  shown_ = active;
  if (ShowNotch) ShowNotch(active);
}

void NotchPanel::ShowButtons() {
  chkNotchOn.SetValue(vars_.NotchActive);
  optNotch.Press(vars_.NotchMode);
  PaintButtons(optNotch, vars_.NotchMode);
  chkNotchAuto.SetValue(vars_.NotchMode == NotchModes::Auto);
  chkNotchType.SetValue(vars_.NotchType == NotchTypes::IF);
  chkNotchMirror.SetValue(vars_.NotchMirror);
}

// Audio and IF have a range each.
void NotchPanel::ShowCentre() {
  ScrollableControl& centre = context_.Scrollables(CtlIndex::NotchC);
  const NotchRanges& ranges = vars_.NotchSettings;
  const bool onIF = vars_.NotchType == NotchTypes::IF;
  centre.MaxValue = onIF ? ranges.IFMax : ranges.AudioMax;
  centre.MinValue = onIF ? ranges.IFMin : ranges.AudioMin;
  centre.Value = onIF ? ranges.IFCurrent : std::fabs(ranges.AudioCurrent);
  context_.Scrollables.Show(CtlIndex::NotchC);
  const std::int32_t value = WholeValue(context_.Scrollables, CtlIndex::NotchC);
  sldNotch.Min = static_cast<int>(centre.MinValue);
  sldNotch.Max = static_cast<int>(centre.MaxValue);
  sldNotch.SetValue(value);
  sldNotch.ToolTip = "Notch Centre : " + FormatPicture(value, kTipPicture);
}

void NotchPanel::ShowWidth() {
  context_.Scrollables(CtlIndex::NotchW).Value = static_cast<float>(vars_.NotchWidth);
  context_.Scrollables.Show(CtlIndex::NotchW);
  sldNotchWidth.SetValue(vars_.NotchWidth);
  sldNotchWidth.ToolTip = "Notch Width : " + FormatPicture(vars_.NotchWidth, kTipPicture);
}

void NotchPanel::chkNotchOn_Click() {
  if (!showing_) context_.Rx.SwitchNotch(chkNotchOn.Value());
}

// While the notch is off the receiver stays as it is, and the click is taken back.
void NotchPanel::optNotch_Click(int index) {
  if (showing_) return;
  context_.Rx.SetNotchMode(index);
  Show();
}

void NotchPanel::chkNotchAuto_Click() {
  optNotch_Click(chkNotchAuto.Value() ? NotchModes::Auto : NotchModes::Manual);
}

void NotchPanel::chkNotchType_Click() {
  if (showing_) return;
  context_.Rx.SetNotchType(chkNotchType.Value() ? NotchTypes::IF : NotchTypes::Audio);
  Show();
}

void NotchPanel::chkNotchMirror_Click() {
  if (showing_) return;
  context_.Rx.SetNotchMirror(chkNotchMirror.Value());
  Show();
}

void NotchPanel::lblNotchC_Wheel() {
  if (inCentre_) return;
  ScopedFlag guard(inCentre_);
  context_.Rx.SetNotchCentre(WholeValue(context_.Scrollables, CtlIndex::NotchC));
}

void NotchPanel::lblNotchW_Wheel() {
  if (inWidth_) return;
  ScopedFlag guard(inWidth_);
  context_.Rx.SetNotchWidth(WholeValue(context_.Scrollables, CtlIndex::NotchW));
}

void NotchPanel::sldNotch_Scroll() {
  if (!showing_) context_.Rx.SetNotchCentre(sldNotch.Value());
}

void NotchPanel::sldNotchWidth_Scroll() {
  if (!showing_) context_.Rx.SetNotchWidth(sldNotchWidth.Value());
}

void NotchPanel::ShowPeak() {
  lblNotch.Caption = FormatPicture(vars_.PeakFrequency, kPeakPicture);
  sldNotch.ToolTip = "Fcentre : " + FormatPicture(vars_.PeakFrequency, kTipPicture);
}

void NotchPanel::AddSettings(SettingsTable& table) {
  const auto whole = [this](int index) {
    return [this, index] { return WholeValue(context_.Scrollables, index); };
  };
  table.AddWritten<std::int32_t>("NotchCentre", whole(CtlIndex::NotchC));
  table.AddWritten<std::int32_t>("NotchWidth", whole(CtlIndex::NotchW));
}

}  // namespace quorl
