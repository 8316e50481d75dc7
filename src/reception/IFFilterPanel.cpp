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
      vars_(context.Rx.Vars) {
  frIFFilter.Caption = "IF Filter";
  context_.Colours.Add(frIFFilter);
  SetTexts(optIFFilter, IFFilterModeTexts);
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
  Show();
  listening_ = context_.Rx.Changed.Listen([this](ReceiverPart part) {
    if (part == ReceiverPart::IFFilter) Show();
  });
}

const FilterSettingsRecord& IFFilterPanel::Record() const {
  return vars_.IFFilterSettings.at(static_cast<std::size_t>(vars_.CurrentIFFilterMode))
      .at(static_cast<std::size_t>(vars_.CurrentDemodMode));
}

void IFFilterPanel::chkIFFilter_Click() {
  if (!showing_) context_.Rx.SwitchIFFilter(chkIFFilter.Value());
}

void IFFilterPanel::optIFFilter_Click(int index) {
  if (showing_) return;
  context_.Rx.SetIFFilterMode(index);
  Show();
}

void IFFilterPanel::Show() {
  ScopedFlag guard(showing_);
  optIFFilter.Press(vars_.CurrentIFFilterMode);
  PaintButtons(optIFFilter, vars_.CurrentIFFilterMode);
  chkIFFilter.SetValue(context_.Rx.Filters.IFFilterI.Active);
  ShowEdges();
  ShowLabels();
}

void IFFilterPanel::ShowEdges() {
  ScrollableControl& high = context_.Scrollables(CtlIndex::IFHi);
  ScrollableControl& low = context_.Scrollables(CtlIndex::IFLo);
  high.Value = static_cast<float>(vars_.IFHi);
  low.Value = static_cast<float>(vars_.IFLo);
  if (vars_.CurrentIFFilterMode == IFFilterMode::Track) {
    const FilterSettingsRecord& audio =
        vars_.FilterSettings.at(static_cast<std::size_t>(vars_.CurrentFilterMode));
    high.DefaultValue = static_cast<float>(audio.DefaultHi);
    low.DefaultValue = static_cast<float>(-audio.DefaultLo);
  } else if (vars_.CurrentIFFilterMode == IFFilterMode::Manual) {
    high.DefaultValue = static_cast<float>(Record().DefaultHi);
    low.DefaultValue = static_cast<float>(Record().DefaultLo);
  }
  context_.Scrollables.Show(CtlIndex::IFHi);
  context_.Scrollables.Show(CtlIndex::IFLo);
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

void IFFilterPanel::lblIFHi_Wheel() {
  if (inIFHi_) return;
  ScopedFlag guard(inIFHi_);
  context_.Rx.SetIFHigh(WholeValue(context_.Scrollables, CtlIndex::IFHi));
}

void IFFilterPanel::lblIFLo_Wheel() {
  if (inIFLo_) return;
  ScopedFlag guard(inIFLo_);
  context_.Rx.SetIFLow(WholeValue(context_.Scrollables, CtlIndex::IFLo));
}

}  // namespace quorl
