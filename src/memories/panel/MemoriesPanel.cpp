// Selecting, recalling and following; the gestures are in MemoryGestures.cpp.
#include "memories/panel/MemoriesPanel.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "state/PublicConstants.h"
#include "support/NumberPicture.h"
#include "support/ScopedFlag.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr const char* kUnused = "Unused - Shift + Right Click to set";
constexpr Colour kPreset = 0xC0C000, kChosenPreset = 0xFFFF00;
constexpr Colour kSubBand = 192, kChosenSubBand = 255;
constexpr int kPatience = 300;        // ms before a load shows that it is under way
constexpr std::int32_t kDrift = 500;  // Hz that an active preset may be tuned away from
constexpr std::array<const char*, 2> kMenu{"Edit Preset", "Save to Preset"};

}  // namespace

void PutMemoryDefaults(SettingsStore& store) {
  if (store.HasSection("Memories")) return;
  store.SaveSetting("Memories", "SafeMemories", "True");
  const auto isMissing = [&store](const char* key) {
    return store.GetSetting(kMainSection, key, "").empty();
  };
  if (isMissing("CurrentMainBandName") && isMissing("CurrentMainBandIndex")) {
    store.SaveSetting(kMainSection, "CurrentMainBandName", "Broadcast");
  }
}

MemoriesPanel::MemoriesPanel(const PanelContext& context, const MemoryMachine& machine, MemoryLinks links)
    : frPresets(context.Registry, "frPresets"),
      cboBandSelect(context.Registry, "cboBandSelect"),
      imgBandSelect(context.Registry, "imgBandSelect"),
      picSubBands(context.Registry, "picSubBands"),
      optSubBand(context.Registry, "optSubBand", kSubBandButtons),
      optPreset(context.Registry, "optPreset", kPresetButtons),
      cboSubBandSelect(context.Registry, "cboSubBandSelect"),
      lstSubBandSelect(context.Registry, "lstSubBandSelect"),
      lblSubBand(context.Registry, "lblSubBand"),
      mnuUserPresets(context.Registry, "mnuUserPresets", kMenu),
      tmrSubBands(machine.Queue, [this] { tmrSubBands_Timer(); }),
      Hints(context.Registry),
      Dialog(context.Registry),
      Memory(context, links_),
      Plans(machine.Storage, machine.Worker, machine.Queue, machine.Boxes, machine.Time),
      Finder(context.Registry, machine.Storage, BandPlans,
             [this](const TuningSettings& block) {
               if (!held_) Memory.ApplySettings(block);
             }),
      context_(context),
      machine_(machine),
      links_(std::move(links)),
      tmrSplash_(machine.Queue, [this] { ShowSplash(); }) {
  context_.Colours.Add(frPresets);
  for (int i = 0; i < optSubBand.Count(); ++i) optSubBand(i).Visible = false;
  ConnectSelectors();
  ConnectButtons();
}

BandPlan* MemoriesPanel::Plan() {
  const auto index = static_cast<std::size_t>(context_.Rx.Vars.CurrentMainBandIndex);
  return index < BandPlans.size() && BandPlans[index].Loaded ? &BandPlans[index] : nullptr;
}

SubBand* MemoriesPanel::Band() {
  BandPlan* plan = Plan();
  return plan ? &plan->SubBands[static_cast<std::size_t>(plan->ActiveSubBand)] : nullptr;
}

Preset* MemoriesPanel::ActivePreset() {
  SubBand* band = Band();
  if (!band || band->ActivePreset < 0) return nullptr;
  return &band->Presets[static_cast<std::size_t>(band->ActivePreset)];
}

void MemoriesPanel::AddPlan(const std::string& path, const std::string& name) {
  BandPlan plan;
  plan.Name = plan.Caption = plan.Description = name;
  plan.FileName = path;
  plan.Index = static_cast<std::int32_t>(BandPlans.size());
  BandPlans.push_back(std::move(plan));
}

void MemoriesPanel::FillBandSelect() {
  std::vector<std::string> captions;
  for (const BandPlan& plan : BandPlans) captions.push_back(plan.Caption);
  cboBandSelect.SetItems(std::move(captions));
}

void MemoriesPanel::SelectLast() {
  std::int32_t index = context_.Rx.Vars.CurrentMainBandIndex;
  const auto named = std::find_if(BandPlans.begin(), BandPlans.end(), [this](const BandPlan& plan) {
    return EqualsNoCase(plan.Name, currentName_);
  });
  if (named != BandPlans.end()) index = named->Index;
  if (index < 0 || index >= static_cast<std::int32_t>(BandPlans.size())) index = 0;
  cboBandSelect.SetListIndex(index);
}

// A plan is there in an instant, unless the disk is slow.
void MemoriesPanel::ShowSplash() {
  tmrSplash_.SetEnabled(false);
  splash_ = true;
  links_.Splash(BandPlans[static_cast<std::size_t>(context_.Rx.Vars.CurrentMainBandIndex)].Caption, true);
}

void MemoriesPanel::LoadPlan(BandPlan& plan) {
  tmrSplash_.SetInterval(kPatience);
  tmrSplash_.SetEnabled(true);
  Plans.CreateBandPlanRecords(plan);
  // The list may be turned on while the file is being read: what was asked for last counts.
  std::int32_t current = context_.Rx.Vars.CurrentMainBandIndex;
  Plans.LoadBandPlan(plan, current);
  tmrSplash_.SetEnabled(false);
  if (std::exchange(splash_, false)) links_.Splash(plan.Caption, false);
}

void MemoriesPanel::SelectBandPlan(std::int32_t index) {
  if (inSelect_ || index < 0 || index >= static_cast<std::int32_t>(BandPlans.size())) return;
  const ScopedFlag selecting(inSelect_);
  context_.Rx.Vars.CurrentMainBandIndex = index;
  BandPlan& plan = BandPlans[static_cast<std::size_t>(index)];
  currentName_ = plan.Name;
  if (!plan.Loaded) LoadPlan(plan);
  if (!plan.Loaded) return;
  plan.Active = true;
  frPresets.Caption = plan.Caption;
  ShowSubBands(plan);
  SubBand& band = plan.SubBands[static_cast<std::size_t>(plan.ActiveSubBand)];
  ShowPresets();
  if (band.ActivePreset < 0) band.ActivePreset = 0;
  const Preset& preset = band.Presets[static_cast<std::size_t>(band.ActivePreset)];
  PaintPresets(preset.Active ? band.ActivePreset : -1);
  optPreset.Press(preset.Active ? band.ActivePreset : -1);
  preset.Active ? ApplyPresetSettings(preset) : Recalled(band);
  links_.Changed();
  if (saveWaits_) Save();
}

void MemoriesPanel::ShowSubBands(const BandPlan& plan) {
  std::vector<std::string> captions;
  for (std::int32_t n = 0; n < optSubBand.Count(); ++n) {
    const SubBand& band = plan.SubBands[static_cast<std::size_t>(n)];
    const bool listed = n <= plan.NumSubBands;
    optSubBand(n).Caption = band.Caption;
    optSubBand(n).ToolTip = band.Description;
    optSubBand(n).Visible = listed && band.Used;
    if (listed) captions.push_back(band.Caption);
  }
  const ScopedFlag quiet(inSubBand_);
  cboSubBandSelect.SetItems(captions);
  lstSubBandSelect.SetItems(captions);
  cboSubBandSelect.SetListIndex(plan.ActiveSubBand);
  lstSubBandSelect.SetListIndex(plan.ActiveSubBand);
  PaintSubBands(kSubBand, plan.ActiveSubBand, kChosenSubBand);
  optSubBand.Press(plan.ActiveSubBand);
}

void MemoriesPanel::PaintSubBands(Colour others, std::int32_t chosen, Colour colour) {
  for (int i = 0; i < optSubBand.Count(); ++i) optSubBand(i).ForeColour = i == chosen ? colour : others;
  PaintButtons(optSubBand, chosen);
}

void MemoriesPanel::PaintPresets(std::int32_t chosen) {
  for (int i = 0; i < optPreset.Count(); ++i) optPreset(i).ForeColour = i == chosen ? kChosenPreset : kPreset;
}

void MemoriesPanel::ShowPresets() {
  for (std::int32_t i = 0; i < optPreset.Count(); ++i) ShowPreset(i);
}

void MemoriesPanel::ShowPreset(std::int32_t index) {
  const Preset& preset = Band()->Presets[static_cast<std::size_t>(index)];
  const bool used = preset.Settings.FreqCurrent >= 1;
  optPreset(index).Caption =
      used ? NumberText(preset.Settings.FreqCurrent / 1000) : "P" + NumberText(index + 1);
  optPreset(index).ToolTip = used ? preset.Description : std::string(kUnused);
}

// A sub-band as it was left. One that was never visited begins at its lower edge, where that is wanted.
void MemoriesPanel::Recalled(SubBand& band) {
  if (Memory.SafeMemories && band.Settings.FreqCurrent < 1) {
    if (band.FreqMin > 0) links_.Tune(band.FreqMin * 10);
  } else {
    Memory.ApplySettings(band.Settings);
  }
}

void MemoriesPanel::ApplyPresetSettings(const Preset& preset) {
  if (inApplyPreset_) return;
  const ScopedFlag applying(inApplyPreset_);
  Memory.ApplySettings(preset.Settings);
}

void MemoriesPanel::optSubBand_Click(std::int32_t index) {
  BandPlan* plan = Plan();
  if (inSubBand_ || !plan || index < 0) return;
  const ScopedFlag choosing(inSubBand_);
  PaintSubBands(kSubBand, index, kChosenSubBand);
  optSubBand.Press(index);
  plan->ActiveSubBand = index;
  SubBand& band = plan->SubBands[static_cast<std::size_t>(index)];
  band.Visited = true;
  const auto step = std::find_if(TuneSteps.begin(), TuneSteps.end(),
                                 [&band](std::int32_t dHz) { return dHz <= band.Settings.TuneStep; });
  if (step != TuneSteps.end()) links_.SetTuningRate(static_cast<std::int32_t>(step - TuneSteps.begin()));
  for (Preset& preset : band.Presets) {
    if (preset.Settings.FreqCurrent < 1) preset.Active = false;
  }
  ShowPresets();
  const Preset* preset = ActivePreset();
  if (preset && preset->Active) {
    optPreset_MouseDown(band.ActivePreset, MouseButton::Left, {});
  } else {
    optPreset.Press(-1);
    PaintPresets(-1);
    Recalled(band);
  }
  lstSubBandSelect.SetListIndex(index);
  cboSubBandSelect.SetListIndex(index);
}

void MemoriesPanel::optPreset_MouseDown(std::int32_t index, MouseButton button, Modifiers with) {
  SubBand* band = Band();
  if (inPreset_ || !band) return;
  const ScopedFlag choosing(inPreset_);
  if (!lastGoodPresetValid_) lastGoodPreset_ = index;
  lastGoodPresetValid_ = true;
  PaintPresets(-1);
  band->ActivePreset = index;
  if (button == MouseButton::Left) {
    RecallPreset(*band);
  } else if (button == MouseButton::Right && with.Shift && !with.Ctrl && !with.Alt) {
    StampByHand(*band, index);
  } else if (button == MouseButton::Right) {
    OpenMenu(*band);
  }
}

// An unused one recalls the last good one.
void MemoriesPanel::RecallPreset(SubBand& band) {
  Preset& wanted = band.Presets[static_cast<std::size_t>(band.ActivePreset)];
  if (wanted.Settings.FreqCurrent >= 1) {
    lastGoodPreset_ = band.ActivePreset;
    for (Preset& preset : band.Presets) preset.Active = &preset == &wanted;
  } else if (Memory.SafeMemories) {
    Hints.Say(kUnused, optPreset(band.ActivePreset));
    band.ActivePreset = lastGoodPreset_;
  } else {
    band.ActivePreset = lastGoodPreset_;
  }
  optPreset.Press(band.ActivePreset);
  optPreset(band.ActivePreset).ForeColour = kChosenPreset;
  Memory.ApplySettings(band.Presets[static_cast<std::size_t>(band.ActivePreset)].Settings);
}

// Caption and description are made before the capture, of the frequency that the preset held.
void MemoriesPanel::StampPreset(Preset& preset) {
  preset.Caption = FormatPicture(preset.Settings.FreqCurrent / 1000.0, "#0");
  preset.When = StampText(machine_.Time.Now());
  preset.Description = FormatPicture(preset.Settings.FreqCurrent, "#,###0 Hz");
  Memory.CaptureSettings(preset.Settings);
}

void MemoriesPanel::StampByHand(SubBand& band, std::int32_t index) {
  Preset& preset = band.Presets[static_cast<std::size_t>(index)];
  StampPreset(preset);
  optPreset(index).Caption = preset.Caption;
  optPreset(index).ToolTip = preset.Description;
  ApplyPresetSettings(preset);
  links_.Changed();
}

void MemoriesPanel::tmrSubBands_Timer() {
  if (inTimer_) return;
  const ScopedFlag ticking(inTimer_);
  SubBand* band = Band();
  if (!band) return;
  links_.TellRecorder(links_.Tuned() / 10);
  MarkTuned();
  if (held_) return;
  if (band->ActivePreset < 0 && Memory.SafeMemories) band->ActivePreset = 0;
  if (band->ActivePreset < 0) return;
  if (Memory.ApplyingSettings || Plans.BandPlanLoading || links_.LauncherIsBusy()) return;
  Follow(*band);
}

// The sub-bands that hold the frequency, pressed or not. What spans half the short waves tells nothing.
void MemoriesPanel::MarkTuned() {
  const BandPlan& plan = *Plan();
  const std::int32_t hertz = links_.Tuned() / 10;
  for (std::int32_t n = 0; n < optSubBand.Count(); ++n) {
    const SubBand& band = plan.SubBands[static_cast<std::size_t>(n)];
    optSubBand(n).Marked = IsNarrow(band) && hertz >= band.FreqMin && hertz <= band.FreqMax;
  }
}

void MemoriesPanel::Follow(SubBand& band) {
  Preset& preset = band.Presets[static_cast<std::size_t>(band.ActivePreset)];
  const std::int64_t away = std::int64_t{links_.Tuned()} - std::int64_t{preset.Settings.FreqCurrent} * 10;
  if (preset.Active && std::abs(away) > std::int64_t{kDrift} * 10) {
    preset.Active = false;
    optPreset.Press(-1);
    PaintPresets(-1);
  }
  if (!preset.Active) {
    Memory.CaptureSettings(band.Settings);
  } else if (AutoTrackPresets) {
    const std::int32_t hertz = preset.Settings.FreqCurrent;
    Memory.CaptureSettings(preset.Settings);
    preset.Settings.FreqCurrent = hertz;
  }
}

BandPlan MemoriesPanel::PlanNamed(const std::string& name) const {
  for (const BandPlan& plan : BandPlans) {
    if (EqualsNoCase(plan.Name, name)) return PlanAsKept(machine_.Storage, plan);
  }
  return {};
}

bool MemoriesPanel::RecallByPlace(const std::string& plan, std::int32_t subBand, std::int32_t preset) {
  const BandPlan kept = PlanNamed(plan);
  if (FindPreset(kept, subBand, preset) == nullptr) return false;
  const BandPlan* current = Plan();
  if (current == nullptr || current->Index != kept.Index) cboBandSelect.SetListIndex(kept.Index);
  current = Plan();
  if (current == nullptr || current->Index != kept.Index) return false;
  if (current->ActiveSubBand != subBand) optSubBand_Click(subBand);
  optPreset_MouseDown(preset, MouseButton::Left, {});
  return true;
}

void MemoriesPanel::StoreTuneStep(std::int32_t dHz) {
  SubBand* band = Band();
  if (band && !held_) band->Settings.TuneStep = dHz;
}

void MemoriesPanel::SetHeld(bool held) {
  held_ = held;
  for (OptionGroup* group : {&optSubBand, &optPreset}) {
    for (int i = 0; i < group->Count(); ++i) (*group)(i).Enabled = !held;
  }
  for (Control* control : std::initializer_list<Control*>{&cboBandSelect, &cboSubBandSelect, &imgBandSelect,
                                                          &picSubBands, &lblSubBand}) {
    control->Enabled = !held;
  }
}

void MemoriesPanel::Save() {
  saveWaits_ = IsLoading();
  if (saveWaits_ || Plans.IsSaving()) return;
  tmrSubBands_Timer();  // what was changed since its last tick
  for (const BandPlan& plan : BandPlans) Plans.SaveBandPlan(plan);
}

void MemoriesPanel::Finish() {
  Plans.Finish();
  Save();
  Plans.Finish();
}

void MemoriesPanel::AddSettings(SettingsTable& table) {
  table.Add("AutoTrackPresets", AutoTrackPresets);
  table.Add("CurrentMainBandName", currentName_);
}

}  // namespace quorl
