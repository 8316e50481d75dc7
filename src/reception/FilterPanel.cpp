#include "reception/FilterPanel.h"

#include "support/Picture.h"
#include "support/ScopedFlag.h"
#include "support/Text.h"

namespace quorl {

namespace {

constexpr char kEdgePicture[] = "#,##0 Hz";
constexpr std::array<int, 2> kEdgeEntry{CtlIndex::FilterLo, CtlIndex::FilterHi};

}  // namespace

FilterPanel::FilterPanel(const PanelContext& context, VariableFilters& filterMaker,
                         IFFilterPanel& ifFilterPanel)
    : frFilters(context.Registry, "frFilters"),
      optFilter(context.Registry, "optFilter", FilterModeCount),
      sldBW(context.Registry, "sldBW", 2),
      lblFilterHi(context.Registry, "lblFilterHi"),
      lblFilterLo(context.Registry, "lblFilterLo"),
      lblFHi(context.Registry, "lblFHi"),
      lblFLo(context.Registry, "lblFLo"),
      chkMusic(context.Registry, "chkMusic"),
      chkDynFilter(context.Registry, "chkDynFilter"),
      context_(context),
      vars_(context.Vars),
      filterMaker_(filterMaker),
      ifFilterPanel_(ifFilterPanel) {
  ScrollableControls& scrollables = context_.Scrollables;
  frFilters.Caption = "Filter";
  context_.Colours.Add(frFilters);
  SetTexts(optFilter, FilterModeTexts);
  PaintButtons(optFilter, -1);
  optFilter.Click = [this](int index) { optFilter_Click(index); };
  for (const int i : {kLow, kHigh}) {
    Slider& slider = sldBW(i);
    slider.Min = static_cast<int>(scrollables(kEdgeEntry[static_cast<std::size_t>(i)]).MinValue);
    slider.Max = static_cast<int>(scrollables(kEdgeEntry[static_cast<std::size_t>(i)]).MaxValue);
    slider.ToolTip = i == kLow ? "Low edge of the filter; right click to go back"
                               : "High edge of the filter; right click to go back";
    slider.Change = [this, i] { sldBW_Change(i); };
    slider.MouseDown = [this, i](const MouseEvent& at) { sldBW_MouseDown(i, at.Button); };
    slider.MouseMove = [this, i] {
      lblFLo.ForeColour = i == kLow ? kSelectedColour : kUnselectedColour;
      lblFHi.ForeColour = i == kHigh ? kSelectedColour : kUnselectedColour;
    };
  }
  const auto rest = [this] { lblFLo.ForeColour = lblFHi.ForeColour = kUnselectedColour; };
  rest();
  scrollables.AddDarkened(rest);
  context_.Colours.AddRepaint(rest);
  chkMusic.Caption = "Music";
  chkMusic.ToolTip = "Reach down to 50 Hz";
  BindToggle(chkMusic, [this] { chkMusic_Click(); });
  chkDynFilter.Caption = "Dynamic";
  chkDynFilter.ToolTip = "Second filter that follows the signal";
  BindToggle(chkDynFilter, [this] { chkDynFilter_Click(); });
  scrollables.Bind(CtlIndex::FilterHi, lblFilterHi, [this] { lblFilterHi_Wheel(); });
  scrollables.Bind(CtlIndex::FilterLo, lblFilterLo, [this] { lblFilterLo_Wheel(); });
  scrollables(CtlIndex::FilterHi).TableDefault = [this] { return static_cast<float>(Record().DefaultHi); };
  scrollables(CtlIndex::FilterLo).TableDefault = [this] { return static_cast<float>(Record().DefaultLo); };
  ShowEdges();
}

FilterSettingsRecord& FilterPanel::Record() {
  return vars_.FilterSettings.at(static_cast<std::size_t>(vars_.CurrentFilterMode));
}

void FilterPanel::optFilter_Click(int index) {
  if (inOptFilter_) return;
  ScopedFlag guard(inOptFilter_);
  if (index >= 0 && index < optFilter.Count()) {
    vars_.CurrentFilterMode = index;
    optFilter.Press(index);
    PaintButtons(optFilter, index);
    TakeRecord();
  } else if (index == kTaggedEdges) {
    vars_.FilterLo = ParseInt32(sldBW(kLow).Tag()).value_or(vars_.FilterLo);
    vars_.FilterHi = ParseInt32(sldBW(kHigh).Tag()).value_or(vars_.FilterHi);
  }
  sldBW(kLow).Tag = NumberText(vars_.FilterLo);
  sldBW(kHigh).Tag = NumberText(vars_.FilterHi);
  filterMaker_.CentreDynFilter();
  ShowEdges();
  vars_.FiltersDirty = true;
}

void FilterPanel::TakeRecord() {
  FilterSettingsRecord& record = Record();
  vars_.FilterLo = record.CurrentLo;
  vars_.FilterHi = record.CurrentHi;
  context_.Scrollables(CtlIndex::FilterHi).DefaultValue = static_cast<float>(record.DefaultHi);
  context_.Scrollables(CtlIndex::FilterLo).DefaultValue = static_cast<float>(record.DefaultLo);
  ifFilterPanel_.FollowFilter();
  {
    // Another filter's music is no change of this one's.
    ScopedFlag quiet(inMusic_);
    chkMusic.SetValue(record.MusicMode);
  }
  vars_.MusicMode = record.MusicMode;
  if (record.MusicMode) chkMusic_Click();
}

void FilterPanel::chkMusic_Click() {
  if (inMusic_) return;
  ScopedFlag guard(inMusic_);
  FilterSettingsRecord& record = Record();
  if (chkMusic.Value()) {
    record.MusicLoSave = vars_.FilterLo;
    vars_.FilterLo = kMusicLow;
  } else {
    vars_.FilterLo = record.MusicLoSave;
    sldBW(kLow).Tag = NumberText(vars_.FilterLo);
  }
  vars_.MusicMode = record.MusicMode = chkMusic.Value();
  ShowEdges();
  vars_.FiltersDirty = true;
}

void FilterPanel::chkDynFilter_Click() {
  vars_.DynFilterActive = context_.Filters.DynFilter.Active = chkDynFilter.Value();
  vars_.FiltersDirty = true;
  if (!chkDynFilter.Value()) optFilter_Click(kTaggedEdges);
}

std::int32_t FilterPanel::SliderEdge(int index) {
  Slider& slider = sldBW(index);
  return slider.Max() + slider.Min() - slider.Value();
}

void FilterPanel::MoveSlider(int index, std::int32_t edge) {
  Slider& slider = sldBW(index);
  slider.SetValue(slider.Max() + slider.Min() - edge);
}

void FilterPanel::sldBW_Change(int index) {
  if (inSlider_) return;
  (index == kLow ? vars_.FilterLo : vars_.FilterHi) = SliderEdge(index);
  vars_.FiltersDirty = true;
  ShowEdges();
}

void FilterPanel::sldBW_MouseDown(int index, MouseButton button) {
  if (button != MouseButton::Right) return;
  if (index == kLow && vars_.MusicMode) {
    MoveSlider(index, kMusicLow);
  } else if (const auto edge = ParseInt32(sldBW(index).Tag())) {
    MoveSlider(index, *edge);
  }
}

void FilterPanel::ShowEdges() {
  ScopedFlag guard(inSlider_);
  const std::array<std::int32_t, 2> edges{vars_.FilterLo, vars_.FilterHi};
  for (const int i : {kLow, kHigh}) {
    const std::int32_t edge = edges[static_cast<std::size_t>(i)];
    const int entry = kEdgeEntry[static_cast<std::size_t>(i)];
    context_.Scrollables(entry).Value = static_cast<float>(edge);
    context_.Scrollables.Show(entry);
    MoveSlider(i, edge);
  }
  lblFLo.Caption = "Flo : " + FormatPicture(vars_.FilterLo, kEdgePicture);
  lblFHi.Caption = "Fhi : " + FormatPicture(vars_.FilterHi, kEdgePicture);
}

void FilterPanel::ShowDefaults() {
  constexpr char kPicture[] = "0.0 kHz";
  lblFLo.Caption = FormatPicture(2.0, kPicture);
  lblFHi.Caption = FormatPicture(3.0, kPicture);
}

void FilterPanel::lblFilterHi_Wheel() {
  if (inFilterHi_) return;
  ScopedFlag guard(inFilterHi_);
  vars_.FilterHi = WholeValue(context_.Scrollables, CtlIndex::FilterHi);
  vars_.FiltersDirty = true;
  ShowEdges();
}

void FilterPanel::lblFilterLo_Wheel() {
  if (inFilterLo_) return;
  ScopedFlag guard(inFilterLo_);
  vars_.FilterLo = WholeValue(context_.Scrollables, CtlIndex::FilterLo);
  vars_.FiltersDirty = true;
  ShowEdges();
}

}  // namespace quorl
