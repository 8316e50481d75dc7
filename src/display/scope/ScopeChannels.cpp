#include "display/scope/ScopeChannels.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "support/Decibels.h"
#include "support/NumberPicture.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr int kGainSteps = 20;
// Places in lblScopeCtl.
constexpr int kSweep = 2, kUnit = 3, kGain = 6, kCentre = 7, kCaptions = 8;
constexpr std::array<const char*, kCaptions> kWords{"Gain",   "Shift",  "Sweep", "Hz/Div",
                                                    "Bright", "Smooth", "",      "Centre"};

}  // namespace

ScopeChannels::ScopeChannels(const ScopeContext& context)
    : frScopeYMode(context.Panel.Registry, "frScopeYMode"),
      chkTrigOn1(context.Panel.Registry, "chkTrigOn(1)"),
      chkTrigOn2(context.Panel.Registry, "chkTrigOn(2)"),
      chkChn1On(context.Panel.Registry, "chkChn1On"),
      chkChn2On(context.Panel.Registry, "chkChn2On"),
      chkLog(context.Panel.Registry, "chkLog"),
      chkSmoothSpectrum(context.Panel.Registry, "chkSmoothSpectrum"),
      chkSpectrumAutoGain(context.Panel.Registry, "chkSpectrumAutoGain"),
      chkScopeShowFilters(context.Panel.Registry, "chkScopeShowFilters"),
      sldSpectrumGain(context.Panel.Registry, "sldSpectrumGain"),
      lblScopeChn1Gain(context.Panel.Registry, "lblScopeChn1Gain"),
      lblScopeChn1Shift(context.Panel.Registry, "lblScopeChn1Shift"),
      lblScopeChn2Gain(context.Panel.Registry, "lblScopeChn2Gain"),
      lblScopeChn2Shift(context.Panel.Registry, "lblScopeChn2Shift"),
      lblSpectrumSmooth(context.Panel.Registry, "lblSpectrumSmooth"),
      lblY1Bright(context.Panel.Registry, "lblY1Bright"),
      lblY2Bright(context.Panel.Registry, "lblY2Bright"),
      lblScopeCtl(context.Panel.Registry, "lblScopeCtl", kCaptions),
      context_(context) {
  frScopeYMode.Caption = "Channels";
  context_.Panel.Colours.Add(frScopeYMode);
  for (int i = 0; i < kCaptions; ++i) lblScopeCtl(i).Caption = kWords[static_cast<std::size_t>(i)];
  sldSpectrumGain.Max = kGainSteps;
  sldSpectrumGain.SetValue(kGainSteps / 2);
  sldSpectrumGain.Reversed = true;
  sldSpectrumGain.ToolTip = "Gain of the display; right click for 0 dB";
  sldSpectrumGain.Change = [this] { sldSpectrumGain_Change(); };
  sldSpectrumGain.MouseDown = [this](const MouseEvent& at) {
    if (at.Button == MouseButton::Right) sldSpectrumGain.SetValue(kGainSteps / 2);
  };
  sldSpectrumGain_Change();
  BindEntries();
  BindBoxes();
}

void ScopeChannels::BindBoxes() {
  struct Box {
    CheckBox& Which;
    const char* Caption;
    const char* ToolTip;
    std::function<void()> Handler;
  };
  const Box boxes[]{
      {chkTrigOn1, "Trig 1", "The trace begins at the highest sample of channel 1",
       [this] { chkTrigOn_Click(1); }},
      {chkTrigOn2, "Trig 2", "The trace begins at the highest sample of channel 2",
       [this] { chkTrigOn_Click(2); }},
      {chkChn1On, "Ch 1", "Shows channel 1", [this] { chkChn1On_Click(); }},
      {chkChn2On, "Ch 2", "Shows channel 2", [this] { chkChn2On_Click(); }},
      {chkLog, "Log", "Logarithmic scale", [this] { chkLog_Click(); }},
      {chkSmoothSpectrum, "Smooth", "Mean of the last pictures", [this] { chkSmoothSpectrum_Click(); }},
      {chkSpectrumAutoGain, "Auto", "Leaves gain and shift to the scope",
       [this] { chkSpectrumAutoGain_Click(); }},
      {chkScopeShowFilters, "Filter", "Shows the filter's curve", [this] { chkScopeShowFilters_Click(); }},
  };
  for (const Box& box : boxes) {
    box.Which.Caption = std::string(box.Caption);
    box.Which.ToolTip = std::string(box.ToolTip);
    BindToggle(box.Which, [this, handler = box.Handler] {
      if (!showing_) handler();
    });
  }
}

void ScopeChannels::BindEntries() {
  ScrollableControls& scrollables = context_.Panel.Scrollables;
  clsSpectrumAnalyser& analyser = context_.Analyser;
  const auto bind = [&](int index, Label& label, auto take) {
    scrollables.Bind(index, label, [this, index, take] {
      if (!showing_) take(context_.Panel.Scrollables(index).Value);
    });
  };
  bind(CtlIndex::ScopeChn1Gain, lblScopeChn1Gain, [&analyser](float gain) { analyser.SetChn1Gain(gain); });
  bind(CtlIndex::ScopeChn1Shift, lblScopeChn1Shift,
       [&analyser](float shift) { analyser.SetChn1Shift(shift); });
  bind(CtlIndex::ScopeChn2Gain, lblScopeChn2Gain, [&analyser](float gain) { analyser.SetChn2Gain(gain); });
  bind(CtlIndex::ScopeChn2Shift, lblScopeChn2Shift,
       [&analyser](float shift) { analyser.SetChn2Shift(shift); });
  bind(CtlIndex::SpectrumSmooth, lblSpectrumSmooth,
       [&analyser](float count) { analyser.SetSpectrumSmooth(RoundHalfEven(count)); });
  scrollables(CtlIndex::SpectrumSmooth).TableDefault = [&analyser] {
    return static_cast<float>(analyser.DefaultSmoothCount);
  };
  bind(CtlIndex::Y1Bright, lblY1Bright, [this](float) { TakeBrightness(CtlIndex::Y1Bright, 0); });
  bind(CtlIndex::Y2Bright, lblY2Bright, [this](float) { TakeBrightness(CtlIndex::Y2Bright, 1); });
}

void ScopeChannels::TakeBrightness(int index, int channel) {
  context_.Analyser.SetChannelBrightness(channel, context_.Panel.Scrollables(index).Value);
}

// One trigger at a time.
void ScopeChannels::chkTrigOn_Click(int channel) {
  const bool on = (channel == 1 ? chkTrigOn1 : chkTrigOn2).Value();
  context_.Analyser.SetTriggerChn(on ? channel : 0);
  Show();
}

void ScopeChannels::chkChn1On_Click() {
  context_.Analyser.SetChn1Enabled(chkChn1On.Value());
}

void ScopeChannels::chkChn2On_Click() {
  context_.Analyser.SetChn2Enabled(chkChn2On.Value());
}

// The curve and the shifts are laid out for the scale.
void ScopeChannels::chkLog_Click() {
  clsSpectrumAnalyser& analyser = context_.Analyser;
  analyser.SetLogMode(chkLog.Value());
  analyser.SetChn1Shift(analyser.Chn1Shift());
  analyser.SetChn2Shift(analyser.Chn2Shift());
  context_.Panel.Rx.Vars.FiltersDirty = true;
}

void ScopeChannels::chkSmoothSpectrum_Click() {
  const bool smooth = chkSmoothSpectrum.Value();
  context_.Analyser.SmoothSpectrum = smooth;
  context_.Analyser.SetFastMode(!smooth);
  Show();
}

void ScopeChannels::chkSpectrumAutoGain_Click() {
  context_.Analyser.AutoGain = chkSpectrumAutoGain.Value();
}

void ScopeChannels::chkScopeShowFilters_Click() {
  context_.Analyser.ShowFilter = chkScopeShowFilters.Value();
}

void ScopeChannels::sldSpectrumGain_Change() {
  if (chkSpectrumAutoGain.Value()) return;
  const double gain = std::exp2(sldSpectrumGain.Max() / 2.0 - sldSpectrumGain.Value());
  lblScopeCtl(kGain).Caption = "YGain : " + FormatPicture(Decibels(gain), "#0 dB");
  context_.Analyser.MasterGain = gain;
}

void ScopeChannels::Put(int index, float value) {
  context_.Panel.Scrollables(index).Value = value;
  context_.Panel.Scrollables.Show(index);
}

void ScopeChannels::Show() {
  ScopedFlag guard(showing_);
  const clsSpectrumAnalyser& analyser = context_.Analyser;
  chkChn1On.SetValue(analyser.Chn1Enabled());
  chkChn2On.SetValue(analyser.Chn2Enabled());
  chkTrigOn1.SetValue(analyser.TriggerChn() == 1);
  chkTrigOn2.SetValue(analyser.TriggerChn() == 2);
  chkLog.SetValue(analyser.LogMode());
  chkSmoothSpectrum.SetValue(!analyser.FastMode());
  chkSpectrumAutoGain.SetValue(analyser.AutoGain);
  chkScopeShowFilters.SetValue(analyser.ShowFilter);
  Put(CtlIndex::ScopeChn1Gain, analyser.Chn1Gain());
  Put(CtlIndex::ScopeChn1Shift, analyser.Chn1Shift());
  Put(CtlIndex::ScopeChn2Gain, analyser.Chn2Gain());
  Put(CtlIndex::ScopeChn2Shift, analyser.Chn2Shift());
  Put(CtlIndex::SpectrumSmooth, static_cast<float>(analyser.SpectrumSmooth()));
  const bool smooths = chkSmoothSpectrum.Visible() && chkSmoothSpectrum.Value();
  context_.Panel.Scrollables.SetVisible(CtlIndex::SpectrumSmooth, smooths);
}

void ScopeChannels::ShowMode(std::int32_t mode) {
  const bool frequency = mode == ScopeMode::Frequency, time = mode == ScopeMode::Time;
  frScopeYMode.Visible = chkChn1On.Visible = chkChn2On.Visible = true;
  chkTrigOn1.Visible = chkTrigOn2.Visible = time;
  chkLog.Visible = chkScopeShowFilters.Visible = frequency;
  chkSmoothSpectrum.Visible = frequency || time;
  lblScopeCtl(kSweep).Visible = lblScopeCtl(kUnit).Visible = frequency || time;
  lblScopeCtl(kSweep).Caption = std::string(frequency ? "Sweep" : "Timebase");
  lblScopeCtl(kUnit).Caption = std::string(frequency ? "Hz/Div" : "ms/Div");
  lblScopeCtl(kCentre).Visible = frequency;
  Show();
}

void ScopeChannels::AddSettings(SettingsTable& table) {
  const auto bright = [&](const char* key, int index) {
    table.Add<float>(
        key, [this, index] { return context_.Panel.Scrollables(index).Value; },
        [this, index](float percent) {
          const ScrollableControl& entry = context_.Panel.Scrollables(index);
          const float value = std::isfinite(percent) ? percent : entry.DefaultValue;
          context_.Panel.Scrollables.SetValue(index, std::clamp(value, entry.MinValue, entry.MaxValue));
        });
  };
  bright("Y1Bright", CtlIndex::Y1Bright);
  bright("Y2Bright", CtlIndex::Y2Bright);
}

}  // namespace quorl
