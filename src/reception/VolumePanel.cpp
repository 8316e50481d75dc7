#include "reception/VolumePanel.h"

#include <algorithm>

#include <cmath>

#include "support/Decibels.h"
#include "support/NumberPicture.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr float kLeastCut = -50.0F, kLeastBoost = 1.0F;  // of the control's value; between them stands 0

// The decibels that the label shows for a value of the control: cuts by the value as a ratio to -100, boosts
// by the gain that is applied.
double ShownDecibels(float value) {
  if (value < kLeastCut) return -std::fabs(Decibels(std::fabs(value) / 100.0));
  return value > kLeastBoost ? Decibels(value / 1000.0 + 1.0) : 0.0;
}

// The other way round.
double ValueShowing(double decibels) {
  if (decibels < 0.0) return -100.0 * Ratio(-decibels);
  return 1000.0 * (Ratio(decibels) - 1.0);
}

}  // namespace

VolumePanel::VolumePanel(const PanelContext& context)
    : frAFOut(context.Registry, "frAFOut"),
      dialOutVol(context.Registry, "dialOutVol"),
      sldOutVolume(context.Registry, "sldOutVolume"),
      lblOutVol(context.Registry, "lblOutVol"),
      chkMute(context.Registry, "chkMute"),
      context_(context) {
  frAFOut.Caption = "Volume";
  context_.Colours.Add(frAFOut);
  context_.Scrollables.Bind(CtlIndex::OutVol, lblOutVol, [this] { lblOutVol_Wheel(); });
  gestures_ = lblOutVol.ToolTip;
  lblOutVol.Number = [this] {
    const ScrollableControl& entry = context_.Scrollables(CtlIndex::OutVol);
    return Label::TurnedNumber{ShownDecibels(entry.Value), ShownDecibels(entry.MinValue),
                               ShownDecibels(entry.MaxValue)};
  };
  lblOutVol.SetNumber = [this](double decibels) {
    const ScrollableControl& entry = context_.Scrollables(CtlIndex::OutVol);
    const double value = std::clamp(ValueShowing(decibels), double{entry.MinValue}, double{entry.MaxValue});
    context_.Scrollables.SetValue(CtlIndex::OutVol, static_cast<float>(value));
  };
  const ScrollableControl& control = context_.Scrollables(CtlIndex::OutVol);
  dialOutVol.Min = sldOutVolume.Min = static_cast<int>(control.MinValue);
  dialOutVol.Max = sldOutVolume.Max = static_cast<int>(control.MaxValue);
  dialOutVol.Bounded = true;
  dialOutVol.AccessibleName = sldOutVolume.AccessibleName = "Volume";
  chkMute.AccessibleName = "Mute";
  BindToggle(chkMute, [this] { chkMute_Click(); });
  chkMute_Click();
  dialOutVol.Change = [this] { dialOutVol_Change(); };
  sldOutVolume.Change = [this] { sldOutVolume_Scroll(); };
  Show();
  listening_ = context_.Rx.Changed.Listen([this](ReceiverPart part) {
    if (part == ReceiverPart::Volume) Show();
  });
}

void VolumePanel::chkMute_Click() {
  const bool muted = chkMute.Value();
  chkMute.ToolTip = muted ? "Muted: click or M to hear again" : "Mute: click or M";
  lblOutVol.Faded = dialOutVol.Faded = sldOutVolume.Faded = muted;
  if (OnMute) OnMute(muted);
}

std::string VolumePanel::Effect() const {
  const float applied = context_.Rx.Vars.OutputAttenuation;
  if (applied < 0.0F) return "Audio turned down by " + FormatPicture(-applied / 100.0, "0.0") + " dB";
  if (applied == 0.0F) return "Audio as it comes";
  return "Audio turned up by " + FormatPicture(Decibels(applied), "0.0") +
         " dB, as far as the limiter lets it";
}

void VolumePanel::lblOutVol_Wheel() {
  if (!moving_) context_.Rx.SetVolume(context_.Scrollables(CtlIndex::OutVol).Value);
}

void VolumePanel::Show() {
  ScopedFlag guard(moving_);
  chkMute.SetValue(false);
  ScrollableControl& control = context_.Scrollables(CtlIndex::OutVol);
  const float value = control.Value = context_.Rx.Vars.OutputVolume;
  const double decibels = std::fabs(ShownDecibels(value));
  if (value < kLeastCut) {
    lblOutVol.Caption = "-" + FormatPicture(decibels, control.Format);
  } else if (value > kLeastBoost) {
    lblOutVol.Caption = "+" + FormatPicture(decibels, control.Format);
  } else if (value >= -1.0F) {
    lblOutVol.Caption = FormatPicture(0.0, control.Format);
  }
  dialOutVol.AccessibleText = sldOutVolume.AccessibleText = lblOutVol.Caption() + " dB";
  dialOutVol.ToolTip = sldOutVolume.ToolTip = Effect();
  lblOutVol.ToolTip = Effect() + "\n" + gestures_;
  const int whole = WholeValue(context_.Scrollables, CtlIndex::OutVol);
  dialOutVol.SetValue(whole);
  sldOutVolume.SetValue(whole);
}

void VolumePanel::TakeVolume(int value) {
  if (moving_) return;
  context_.Scrollables.SetValue(CtlIndex::OutVol, static_cast<float>(value));
}

void VolumePanel::dialOutVol_Change() {
  TakeVolume(dialOutVol.Value());
}

void VolumePanel::sldOutVolume_Scroll() {
  TakeVolume(sldOutVolume.Value());
}

void VolumePanel::AddSettings(SettingsTable& table) {
  const auto volume = [this] { return WholeValue(context_.Scrollables, CtlIndex::OutVol); };
  table.AddWritten<std::int32_t>("OutputVolume", volume);
  table.Add<std::int32_t>("LastOutputVolume", volume, [this](std::int32_t value) { lastVolume_ = value; });
}

void VolumePanel::Restore() {
  const ScrollableControl& control = context_.Scrollables(CtlIndex::OutVol);
  context_.Scrollables.SetValue(
      CtlIndex::OutVol, std::clamp(static_cast<float>(lastVolume_), control.MinValue, control.MaxValue));
}

}  // namespace quorl
