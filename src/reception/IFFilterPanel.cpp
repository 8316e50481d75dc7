#include "reception/IFFilterPanel.h"

#include "support/ScopedFlag.h"

namespace quorl {

IFFilterPanel::IFFilterPanel(const PanelContext& context)
    : frIFFilter(context.Registry, "frIFFilter"),
      optIFFilter(context.Registry, "optIFFilter", IFFilterMode::Count),
      chkIFFilter(context.Registry, "chkIFFilter"),
      lblIFHi(context.Registry, "lblIFHi"),
      lblIFLo(context.Registry, "lblIFLo"),
      lblIFHiDesc(context.Registry, "lblIFHiDesc"),
      lblIFLoDesc(context.Registry, "lblIFLoDesc"),
      context_(context),
      vars_(context.Vars) {
  frIFFilter.Caption = "IF Filter";
  context_.Colours.Add(frIFFilter);
  SetTexts(optIFFilter, IFFilterModeTexts);
  optIFFilter.Press(vars_.CurrentIFFilterMode);
  PaintButtons(optIFFilter, vars_.CurrentIFFilterMode);
  optIFFilter.Click = [this](int index) { optIFFilter_Click(index); };
  chkIFFilter.Caption = "On";
  chkIFFilter.ToolTip = "IF Filter On or Off";
  BindToggle(chkIFFilter, [this] { chkIFFilter_Click(); });
  lblIFHiDesc.Caption = "IF hi";
  lblIFLoDesc.Caption = "IF lo";
  ScrollableControls& scrollables = context_.Scrollables;
  scrollables.Bind(CtlIndex::IFHi, lblIFHi, [this] { lblIFHi_Wheel(); });
  scrollables.Bind(CtlIndex::IFLo, lblIFLo, [this] { lblIFLo_Wheel(); });
  // A decoder's IF is nobody's filter record.
  scrollables(CtlIndex::IFHi).TableDefault = [this] {
    return vars_.CurrentDemodMode == DemodMode::DRM ? context_.Scrollables(CtlIndex::IFHi).DefaultValue
                                                    : static_cast<float>(Record().DefaultHi);
  };
  scrollables(CtlIndex::IFLo).TableDefault = [this] {
    return vars_.CurrentDemodMode == DemodMode::DRM ? context_.Scrollables(CtlIndex::IFLo).DefaultValue
                                                    : static_cast<float>(Record().DefaultLo);
  };
  TakeManualEdges();
  ShowLabels();
}

FilterSettingsRecord& IFFilterPanel::Record() {
  return vars_.IFFilterSettings.at(static_cast<std::size_t>(vars_.CurrentIFFilterMode))
      .at(static_cast<std::size_t>(vars_.CurrentDemodMode));
}

const FilterSettingsRecord& IFFilterPanel::AudioRecord() const {
  return vars_.FilterSettings.at(static_cast<std::size_t>(vars_.CurrentFilterMode));
}

void IFFilterPanel::chkIFFilter_Click() {
  if (inChkIFFilter_) return;
  ScopedFlag guard(inChkIFFilter_);
  if (chkIFFilter.Value()) {
    context_.Filters.IFFilterI.Active = vars_.IFFilterActive = true;
    optIFFilter_Click(vars_.CurrentIFFilterMode);
  } else {
    context_.Filters.IFFilterI.Active = false;
  }
  ShowLabels();
  vars_.FiltersDirty = true;
}

void IFFilterPanel::optIFFilter_Click(int index) {
  if (inOptIFFilter_) return;
  ScopedFlag guard(inOptIFFilter_);
  if (vars_.IFFilterActive) {
    vars_.CurrentIFFilterMode = index;
    chkIFFilter.SetValue(index != IFFilterMode::Off);
    context_.Filters.IFFilterI.Active = index != IFFilterMode::Off;
    if (index == IFFilterMode::Manual) TakeManualEdges();
    if (index == IFFilterMode::Track) TakeTrackedEdges();
    ShowLabels();
    lblIFHi_Wheel();
    lblIFLo_Wheel();
  }
  optIFFilter.Press(vars_.CurrentIFFilterMode);
  PaintButtons(optIFFilter, vars_.CurrentIFFilterMode);
}

void IFFilterPanel::ShowLabels() {
  const bool tracks = vars_.CurrentIFFilterMode == IFFilterMode::Track;
  const bool turns = chkIFFilter.Value() && vars_.CurrentIFFilterMode == IFFilterMode::Manual;
  for (const int index : {CtlIndex::IFHi, CtlIndex::IFLo}) {
    context_.Scrollables.SetVisible(index, !tracks);
    context_.Scrollables.SetEnabled(index, turns);
  }
  lblIFHiDesc.Visible = lblIFLoDesc.Visible = !tracks;
  Fade(optIFFilter, !chkIFFilter.Value());
}

void IFFilterPanel::TakeEdges(Edge high, Edge low) {
  const auto take = [this](int index, Edge edge) {
    ScrollableControl& control = context_.Scrollables(index);
    control.Value = static_cast<float>(edge.Value);
    control.DefaultValue = static_cast<float>(edge.Default);
    context_.Scrollables.Show(index);
  };
  take(CtlIndex::IFHi, high);
  take(CtlIndex::IFLo, low);
}

void IFFilterPanel::TakeManualEdges() {
  const FilterSettingsRecord& record = Record();
  TakeEdges({record.CurrentHi, record.DefaultHi}, {record.CurrentLo, record.DefaultLo});
}

// A lower sideband stands upside down on the IF.
IFFilterPanel::Edge IFFilterPanel::TrackedHigh() const {
  const FilterSettingsRecord& record = AudioRecord();
  switch (vars_.CurrentDemodMode) {
    case DemodMode::USB:
      return {vars_.FilterHi, record.DefaultHi};
    case DemodMode::LSB:
      return {-record.CurrentHi, record.DefaultHi};
    default:
      return {record.CurrentHi, record.DefaultHi};
  }
}

IFFilterPanel::Edge IFFilterPanel::TrackedLow() const {
  const FilterSettingsRecord& record = AudioRecord();
  switch (vars_.CurrentDemodMode) {
    case DemodMode::USB:
      return {vars_.FilterLo, record.DefaultLo};
    case DemodMode::LSB:
      return {-record.CurrentLo, -record.DefaultHi};
    default:
      return {-record.CurrentHi, -record.DefaultLo};
  }
}

void IFFilterPanel::TakeTrackedEdges() {
  const FilterSettingsRecord& record = AudioRecord();
  const Edge high = vars_.CurrentDemodMode == DemodMode::LSB ? Edge{record.CurrentLo, -record.DefaultLo}
                                                             : Edge{record.CurrentHi, record.DefaultHi};
  TakeEdges(high, TrackedLow());
}

void IFFilterPanel::FollowFilter() {
  if (vars_.CurrentIFFilterMode != IFFilterMode::Track) return;
  TakeEdges(TrackedHigh(), TrackedLow());
  lblIFHi_Wheel();
  lblIFLo_Wheel();
}

void IFFilterPanel::FollowDemodMode() {
  if (vars_.CurrentIFFilterMode == IFFilterMode::Manual) {
    TakeManualEdges();
    lblIFHi_Wheel();
    lblIFLo_Wheel();
  }
  FollowFilter();
}

void IFFilterPanel::lblIFHi_Wheel() {
  if (inIFHi_) return;
  ScopedFlag guard(inIFHi_);
  IFHi = Record().CurrentHi = WholeValue(context_.Scrollables, CtlIndex::IFHi);
  vars_.FiltersDirty = true;
}

void IFFilterPanel::lblIFLo_Wheel() {
  if (inIFLo_) return;
  ScopedFlag guard(inIFLo_);
  IFLo = Record().CurrentLo = WholeValue(context_.Scrollables, CtlIndex::IFLo);
  vars_.FiltersDirty = true;
}

}  // namespace quorl
