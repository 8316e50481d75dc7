#include "recorder/panel/TimerTargetFields.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "config/Inks.h"
#include "interaction/PanelColours.h"
#include "interaction/PanelTexts.h"
#include "support/NumberPicture.h"
#include "support/ScopedFlag.h"
#include "support/Text.h"
#include "tuning/FrequencyText.h"

namespace quorl {
namespace {

constexpr const char* kFrequencyHint = "In kHz; or 7.205M, 7205000Hz";
constexpr std::array<const char*, TimerTargetKind::Count> kKinds{"Preset", "Frequency"};

std::string Plain(std::string caption) {
  std::erase(caption, '&');
  return caption;
}

std::string KilohertzText(std::int32_t dhz) {
  return NumberText(dhz / 10000.0);
}

void SetPlainTexts(OptionGroup& group, std::span<const ButtonText> texts, const std::string& spoken) {
  SetTexts(group, texts);
  for (int i = 0; i < group.Count(); ++i) {
    group(i).Caption = Plain(group(i).Caption());
    group(i).AccessibleName = spoken + " " + group(i).Caption();
  }
}

std::string PresetText(const Preset& preset) {
  const std::string kilohertz = NumberText(preset.Settings.FreqCurrent / 1000.0);
  if (preset.Description.find(kilohertz) != std::string::npos) return preset.Description;
  return Trim(preset.Description).empty() ? kilohertz + " kHz" : kilohertz + " " + preset.Description;
}

// Selects the item that stands for `wanted`; nothing where there is none.
void Select(ComboBox& box, const std::vector<std::int32_t>& places, std::int32_t wanted) {
  const auto found = std::find(places.begin(), places.end(), wanted);
  box.SetListIndex(found == places.end() ? -1 : static_cast<int>(found - places.begin()));
}

std::int32_t Chosen(const ComboBox& box, const std::vector<std::int32_t>& places) {
  return box.ListIndex() < 0 ? -1 : places[static_cast<std::size_t>(box.ListIndex())];
}

}  // namespace

void TellFault(Control& field, const std::string& fault) {
  field.ForeColour = kWrongInk;
  field.ToolTip = fault;
}

void ClearFault(Control& field, const char* hint) {
  field.ForeColour = kNoColour;
  field.ToolTip = std::string(hint);
}

TimerTargetFields::TimerTargetFields(ControlRegistry& registry, const TimerPanelLinks& links)
    : optTimerTarget(registry, "optTimerTarget", TimerTargetKind::Count),
      cboTimerPlan(registry, "cboTimerPlan"),
      cboTimerSubBand(registry, "cboTimerSubBand"),
      cboTimerPreset(registry, "cboTimerPreset"),
      txtTimerFreq(registry, "txtTimerFreq"),
      optTimerMode(registry, "optTimerMode", DemodMode::Count),
      optTimerFilter(registry, "optTimerFilter", FilterModeCount),
      cmdTimerTuned(registry, "cmdTimerTuned"),
      links_(links) {
  for (int i = 0; i < TimerTargetKind::Count; ++i) {
    optTimerTarget(i).Caption = std::string(kKinds[static_cast<std::size_t>(i)]);
    optTimerTarget(i).AccessibleName = "Records a " + ToLower(optTimerTarget(i).Caption());
  }
  cboTimerPlan.AccessibleName = cboTimerPlan.ToolTip = std::string("Band plan");
  cboTimerSubBand.AccessibleName = cboTimerSubBand.ToolTip = std::string("Sub-band");
  cboTimerPreset.AccessibleName = cboTimerPreset.ToolTip = std::string("Preset");
  txtTimerFreq.AccessibleName = std::string("Frequency");
  ClearFault(txtTimerFreq, kFrequencyHint);
  SetPlainTexts(optTimerMode, DemodModeTexts, "Mode");
  SetPlainTexts(optTimerFilter, FilterModeTexts, "Filter");
  cmdTimerTuned.Caption = std::string("Take what is tuned");
  cmdTimerTuned.ToolTip = std::string("Frequency, mode and filter as they are now");
  ConnectFields();
}

void TimerTargetFields::ConnectFields() {
  const auto mean = [this](int kind) {
    if (!showing_) optTimerTarget.Press(kind);
  };
  optTimerTarget.Click = [this] { ShowKind(); };
  cboTimerPlan.Click = [this, mean] {
    mean(TimerTargetKind::Preset);
    ClearFault(cboTimerPlan, "Band plan");
    if (!showing_) ChoosePlan(-1, -1);
  };
  cboTimerSubBand.Click = [this, mean] {
    mean(TimerTargetKind::Preset);
    if (!showing_) ChooseSubBand(-1);
  };
  cboTimerPreset.Click = [this, mean] {
    mean(TimerTargetKind::Preset);
    ClearFault(cboTimerPreset, "Preset");
  };
  txtTimerFreq.Change = [this, mean] {
    mean(TimerTargetKind::Frequency);
    ClearFault(txtTimerFreq, kFrequencyHint);
  };
  for (OptionGroup* group : {&optTimerMode, &optTimerFilter})
    group->Click = [mean, group](int index) {
      PaintButtons(*group, index);
      mean(TimerTargetKind::Frequency);
    };
  cmdTimerTuned.Click = [this] {
    ShowFrequency(links_.Tuned());
    optTimerTarget.Press(TimerTargetKind::Frequency);
  };
}

void TimerTargetFields::ShowKind() {
  const int kind = optTimerTarget.Pressed();
  PaintButtons(optTimerTarget, kind);
  for (ComboBox* box : {&cboTimerPlan, &cboTimerSubBand, &cboTimerPreset})
    box->Faded = kind != TimerTargetKind::Preset;
  txtTimerFreq.Faded = kind != TimerTargetKind::Frequency;
  for (OptionGroup* group : {&optTimerMode, &optTimerFilter})
    Fade(*group, kind != TimerTargetKind::Frequency);
}

void TimerTargetFields::ShowFrequency(const TimerTarget& target) {
  txtTimerFreq.SetValue(target.Freq < 10 ? "" : KilohertzText(target.Freq));
  optTimerMode.Press(target.Mode);
  optTimerFilter.Press(target.FilterMode);
}

void TimerTargetFields::Show(const TimerTarget& target) {
  const ScopedFlag showing(showing_);
  ClearFault(txtTimerFreq, kFrequencyHint);
  ShowFrequency(target);
  const std::vector<std::string> plans = links_.Plans();
  cboTimerPlan.SetItems(plans);
  const auto named = std::find_if(plans.begin(), plans.end(), [&target](const std::string& name) {
    return EqualsNoCase(name, target.Plan);
  });
  if (named != plans.end()) cboTimerPlan.SetListIndex(static_cast<int>(named - plans.begin()));
  ChoosePlan(target.SubBand, target.Preset);
  optTimerTarget.Press(target.Plan.empty() ? TimerTargetKind::Frequency : TimerTargetKind::Preset);
  ShowKind();
}

void TimerTargetFields::ChoosePlan(std::int32_t subBand, std::int32_t preset) {
  const ScopedFlag showing(showing_);
  plan_ = cboTimerPlan.ListIndex() < 0 ? BandPlan() : links_.Plan(cboTimerPlan.Text());
  bands_.clear();
  std::vector<std::string> captions;
  for (std::int32_t n = 0; n < kSubBandButtons; ++n) {
    std::int32_t first = 0;
    while (first < kPresetButtons && FindPreset(plan_, n, first) == nullptr) ++first;
    if (first == kPresetButtons) continue;
    bands_.push_back(n);
    captions.push_back(plan_.SubBands[static_cast<std::size_t>(n)].Caption);
  }
  cboTimerSubBand.SetItems(std::move(captions));
  Select(cboTimerSubBand, bands_, subBand);
  ChooseSubBand(preset);
}

void TimerTargetFields::ChooseSubBand(std::int32_t preset) {
  const ScopedFlag showing(showing_);
  presets_.clear();
  std::vector<std::string> captions;
  const std::int32_t band = Chosen(cboTimerSubBand, bands_);
  for (std::int32_t p = 0; band >= 0 && p < kPresetButtons; ++p) {
    const Preset* found = FindPreset(plan_, band, p);
    if (found == nullptr) continue;
    presets_.push_back(p);
    captions.push_back(PresetText(*found));
  }
  cboTimerPreset.SetItems(std::move(captions));
  Select(cboTimerPreset, presets_, preset);
}

std::string TimerTargetFields::Take(TimerTarget& target) {
  target = {};
  return optTimerTarget.Pressed() == TimerTargetKind::Preset ? TakePreset(target) : TakeFrequency(target);
}

std::string TimerTargetFields::TakePreset(TimerTarget& target) {
  target.Plan = cboTimerPlan.Text();
  target.SubBand = Chosen(cboTimerSubBand, bands_);
  target.Preset = Chosen(cboTimerPreset, presets_);
  if (target.Preset >= 0 && target.SubBand >= 0) return {};
  std::string fault = cboTimerPlan.ListIndex() >= 0 && bands_.empty()
                          ? "This plan has no presets. Choose another one, or a frequency."
                          : "Choose plan, sub-band and preset.";
  TellFault(cboTimerPreset, fault);
  return fault;
}

std::string TimerTargetFields::TakeFrequency(TimerTarget& target) {
  const std::optional<double> hertz = ParseFrequency(txtTimerFreq.Value());
  const double most = links_.Highest();
  std::string fault;
  if (!hertz || *hertz < 1.0) fault = "Give a frequency in kHz, such as 7205.";
  if (hertz && *hertz * 10.0 > most) fault = TuningLimitText(links_.Highest()) + ".";
  if (!fault.empty()) {
    TellFault(txtTimerFreq, fault);
    return fault;
  }
  target.Freq = static_cast<std::int32_t>(std::lround(*hertz * 10.0));
  target.Mode = std::max(optTimerMode.Pressed(), 0);
  target.FilterMode = std::max(optTimerFilter.Pressed(), 0);
  return {};
}

std::string TimerTargetFields::Text(const TimerTarget& target) const {
  if (target.Plan.empty()) {
    return KilohertzText(target.Freq) + " kHz " +
           Plain(DemodModeTexts[static_cast<std::size_t>(target.Mode)].Caption);
  }
  const BandPlan plan = links_.Plan(target.Plan);
  const Preset* preset = FindPreset(plan, target.SubBand, target.Preset);
  if (preset == nullptr) return target.Plan + ": no such preset";
  return target.Plan + " " + plan.SubBands[static_cast<std::size_t>(target.SubBand)].Caption + " " +
         PresetText(*preset);
}

}  // namespace quorl
