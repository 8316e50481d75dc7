#include "display/scope/ScopeWindow.h"

#include <algorithm>
#include <cmath>

#include "support/NumberPicture.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr int kLast = 1023;
constexpr int kNarrowest = 10;
constexpr int kWhole = 1023, kMiddle = 511;  // all of it
constexpr double kColumns = 12.0;
// A sample at 48000 Hz, over the columns.
constexpr double kMillisecondsPerColumn = 1000.0 / FSampling / kColumns;

}  // namespace

ScopeWindow::ScopeWindow(const ScopeContext& context)
    : sldXCentre(context.Panel.Registry, "sldXCentre"),
      sldXWidth(context.Panel.Registry, "sldXWidth"),
      lblScopeXCentre(context.Panel.Registry, "lblScopeXCentre"),
      lblScopeXWidth(context.Panel.Registry, "lblScopeXWidth"),
      context_(context) {
  for (Slider* slider : {&sldXCentre, &sldXWidth}) slider->Max = kLast;
  sldXCentre.SetValue(kMiddle);
  sldXWidth.SetValue(kWhole);
  sldXCentre.Change = [this] { sldXCentre_Change(); };
  sldXWidth.Change = [this] { sldXWidth_Change(); };
  sldXCentre.MouseDown = [this](const MouseEvent& at) {
    if (at.Button != MouseButton::Right) return;
    sldXCentre.SetValue(RoundHalfEven((sldXCentre.Max() - sldXCentre.Min()) / 2.0));
  };
  sldXWidth.MouseDown = [this](const MouseEvent& at) {
    if (at.Button == MouseButton::Right) sldXWidth.SetValue(Range());
  };
  ScrollableControls& scrollables = context_.Panel.Scrollables;
  scrollables.Bind(CtlIndex::ScopeXCentre, lblScopeXCentre, [this] { lblScopeXCentre_Wheel(); });
  scrollables.Bind(CtlIndex::ScopeXWidth, lblScopeXWidth, [this] { lblScopeXWidth_Wheel(); });
}

int ScopeWindow::Width() const {
  return std::min(std::max(sldXWidth.Value() - sldXWidth.Min(), kNarrowest), Range());
}

void ScopeWindow::ShowEntry(int index, int value) {
  context_.Panel.Scrollables(index).Value = static_cast<float>(value);
  context_.Panel.Scrollables.Show(index);
}

void ScopeWindow::lblScopeXCentre_Wheel() {
  sldXCentre.SetValue(WholeValue(context_.Panel.Scrollables, CtlIndex::ScopeXCentre));
}

void ScopeWindow::lblScopeXWidth_Wheel() {
  sldXWidth.SetValue(WholeValue(context_.Panel.Scrollables, CtlIndex::ScopeXWidth));
}

void ScopeWindow::sldXCentre_Change() {
  ShowEntry(CtlIndex::ScopeXCentre, sldXCentre.Value());
  ShowCentre();
  Take();
}

void ScopeWindow::sldXWidth_Change() {
  ShowEntry(CtlIndex::ScopeXWidth, Width());
  Take();
}

void ScopeWindow::ShowCentre() {
  const FrequencyScale scale = context_.Analyser.Frequencies();
  const double bins = sldXCentre.Value() * BinsPerStep() - scale.StartX;
  sldXCentre.ToolTip = "Center Frequency : " + FormatPicture(scale.FrequencyAt(bins), "#,0 Hz");
}

void ScopeWindow::Take() {
  if (moving_) return;
  clsSpectrumAnalyser& analyser = context_.Analyser;
  const int width = Width();
  if (analyser.Mode() == ScopeMode::Time) {
    analyser.DisplayWidth = width;
    analyser.StartX = 0;
    analyser.StopX = width - 1;
    const double perColumn = (analyser.StopX - analyser.StartX) * kMillisecondsPerColumn;
    sldXWidth.ToolTip = "Timebase : " + FormatPicture(perColumn, "00.00 mS/div");
  } else if (analyser.Mode() == ScopeMode::Frequency) {
    const int centre = sldXCentre.Value();
    analyser.StartX = BinsPerStep() * std::max(centre - width / 2, 0);
    analyser.StopX = BinsPerStep() * std::min(centre + (width + 1) / 2, Range());
    const double perColumn = analyser.HertzPerBin() / kColumns * (analyser.StopX - analyser.StartX);
    sldXWidth.ToolTip = "Spectrum Width : " + FormatPicture(perColumn, "#,##0 Hz/div");
  } else {
    return;
  }
  analyser.SpectrumWidth = width;
  analyser.ApplyWindow();
}

void ScopeWindow::ShowMode(std::int32_t mode) {
  const bool frequency = mode == ScopeMode::Frequency, turns = mode != ScopeMode::XY;
  sldXCentre.Visible = frequency;
  sldXWidth.Visible = turns;
  context_.Panel.Scrollables.SetVisible(CtlIndex::ScopeXCentre, frequency);
  context_.Panel.Scrollables.SetVisible(CtlIndex::ScopeXWidth, turns);
  sldXWidth_Change();
}

void ScopeWindow::Zoom(double factor, double share) {
  const double at = Start() + share * Width();
  int width = RoundHalfEven(Width() * factor);
  if (width == Width()) width += factor > 1.0 ? 1 : -1;
  width = std::clamp(width, kNarrowest, Range());
  Place(at - share * width, width);
}

// Whole within the band, whatever is asked for.
void ScopeWindow::Place(double start, int width) {
  const std::int32_t mode = context_.Analyser.Mode();
  if (mode != ScopeMode::Frequency) {
    // A block is shown from its trigger on: there is a width, but no place.
    if (mode == ScopeMode::Time) sldXWidth.SetValue(width);
    return;
  }
  const int left = RoundHalfEven(std::clamp(start, 0.0, static_cast<double>(Range() - width)));
  {
    ScopedFlag guard(moving_);
    sldXWidth.SetValue(width);
    sldXCentre.SetValue(left + width / 2);
  }
  sldXWidth_Change();
  ShowCentre();
}

void ScopeWindow::AddSettings(SettingsTable& table) {
  const auto add = [&table](const char* key, Slider& slider) {
    table.Add<std::int32_t>(
        key, [&slider] { return slider.Value(); }, [&slider](std::int32_t value) { slider.SetValue(value); });
  };
  add("XWidth", sldXWidth);
  add("XCentre", sldXCentre);
}

}  // namespace quorl
