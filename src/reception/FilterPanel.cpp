#include "reception/FilterPanel.h"

#include "support/NumberPicture.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr char kEdgePicture[] = "#,##0 Hz";
constexpr std::array<int, 2> kEdgeEntry{CtlIndex::FilterLo, CtlIndex::FilterHi};

}  // namespace

FilterPanel::FilterPanel(const PanelContext& context)
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
      vars_(context.Rx.Vars) {
  frFilters.Caption = "Filter";
  context_.Colours.Add(frFilters);
  SetTexts(optFilter, FilterModeTexts);
  optFilter.Click = [this](int index) { optFilter_Click(index); };
  ConnectSliders();
  const auto rest = [this] { lblFLo.ForeColour = lblFHi.ForeColour = kUnselectedColour; };
  rest();
  ScrollableControls& scrollables = context_.Scrollables;
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
  Show();
  listening_ = context_.Rx.Changed.Listen([this](ReceiverPart part) {
    if (part == ReceiverPart::Filter) Show();
  });
}

void FilterPanel::ConnectSliders() {
  ScrollableControls& scrollables = context_.Scrollables;
  for (const int i : {kLow, kHigh}) {
    Slider& slider = sldBW(i);
    slider.Min = static_cast<int>(scrollables(kEdgeEntry[static_cast<std::size_t>(i)]).MinValue);
    slider.Max = static_cast<int>(scrollables(kEdgeEntry[static_cast<std::size_t>(i)]).MaxValue);
    slider.Reversed = true;
    slider.ToolTip = i == kLow ? "Low edge of the filter; right click to go back"
                               : "High edge of the filter; right click to go back";
    slider.Change = [this, i] { sldBW_Change(i); };
    slider.MouseDown = [this, i](const MouseEvent& at) { sldBW_MouseDown(i, at.Button); };
    slider.MouseMove = [this, i] {
      lblFLo.ForeColour = i == kLow ? kSelectedColour : kUnselectedColour;
      lblFHi.ForeColour = i == kHigh ? kSelectedColour : kUnselectedColour;
    };
  }
}

const FilterSettingsRecord& FilterPanel::Record() const {
  return vars_.FilterSettings.at(static_cast<std::size_t>(vars_.CurrentFilterMode));
}

void FilterPanel::optFilter_Click(int index) {
  if (!showing_) context_.Rx.SetFilterMode(index);
}

void FilterPanel::chkMusic_Click() {
  if (!showing_) context_.Rx.SetMusic(chkMusic.Value());
}

void FilterPanel::chkDynFilter_Click() {
  if (!showing_) context_.Rx.SetDynamicFilter(chkDynFilter.Value());
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
  if (showing_) return;
  index == kLow ? context_.Rx.SetFilterLow(SliderEdge(index)) : context_.Rx.SetFilterHigh(SliderEdge(index));
}

void FilterPanel::sldBW_MouseDown(int index, MouseButton button) {
  if (button != MouseButton::Right) return;
  if (index == kLow) {
    MoveSlider(index, vars_.MusicMode ? Receiver::kMusicLow : vars_.FilterHomeLo);
  } else {
    MoveSlider(index, vars_.FilterHomeHi);
  }
}

void FilterPanel::Show() {
  ScopedFlag guard(showing_);
  optFilter.Press(vars_.CurrentFilterMode);
  PaintButtons(optFilter, vars_.CurrentFilterMode);
  chkMusic.SetValue(vars_.MusicMode);
  chkDynFilter.SetValue(vars_.DynFilterActive);
  context_.Scrollables(CtlIndex::FilterHi).DefaultValue = static_cast<float>(Record().DefaultHi);
  context_.Scrollables(CtlIndex::FilterLo).DefaultValue = static_cast<float>(Record().DefaultLo);
  ShowEdges();
}

void FilterPanel::ShowEdges() {
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
  context_.Rx.SetFilterHigh(WholeValue(context_.Scrollables, CtlIndex::FilterHi));
}

void FilterPanel::lblFilterLo_Wheel() {
  if (inFilterLo_) return;
  ScopedFlag guard(inFilterLo_);
  context_.Rx.SetFilterLow(WholeValue(context_.Scrollables, CtlIndex::FilterLo));
}

}  // namespace quorl
