#include "reception/VolumePanel.h"

#include <algorithm>

#include <cmath>

#include "support/Decibels.h"
#include "support/NumberPicture.h"
#include "support/ScopedFlag.h"

namespace quorl {

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
  if (value < -50.0F) {
    const double decibels = std::fabs(Decibels(std::fabs(value) / 100.0));
    lblOutVol.Caption = "-" + FormatPicture(decibels, control.Format);
  } else if (value > 1.0F) {
    lblOutVol.Caption = "+" + FormatPicture(Decibels(context_.Rx.Vars.OutputAttenuation), control.Format);
  } else if (value >= -1.0F) {
    lblOutVol.Caption = FormatPicture(0.0, control.Format);
  }
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
