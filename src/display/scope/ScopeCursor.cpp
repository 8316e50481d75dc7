#include "display/scope/ScopeCursor.h"

#include <algorithm>
#include <cmath>

#include "support/NumberPicture.h"

namespace quorl {

namespace {

constexpr Ink kLine{0xFFFFFF, 0.55F};
constexpr int kTicksToTell = 3;  // six times a second and a little more
constexpr double kMillisecondsPerSample = 1000.0 / FSampling;

}  // namespace

ScopeCursor::ScopeCursor(const ScopeContext& context, const ScopeOptions& options)
    : lblScopeCursor(context.Panel.Registry, "lblScopeCursor"), context_(context), options_(options) {
  ScrollableControls& scrollables = context_.Panel.Scrollables;
  scrollables.Bind(CtlIndex::ScopeCursor, lblScopeCursor, [this] { lblScopeCursor_Wheel(); });
  scrollables(CtlIndex::ScopeCursor).OnEnter = [this] { Tune(); };
  lblScopeCursor.ToolTip = "Wheel, A, Z and the arrow keys move the cursor; Enter tunes there";
  bin_ = scrollables(CtlIndex::ScopeCursor).Value;
}

void ScopeCursor::Place(double bin) {
  ScrollableControl& entry = context_.Panel.Scrollables(CtlIndex::ScopeCursor);
  entry.Value = std::clamp(static_cast<float>(std::round(bin)), entry.MinValue, entry.MaxValue);
  bin_ = entry.Value;
}

void ScopeCursor::Follow(const ScopePlace& place) {
  if (!options_.Cursor) return;
  place_.emplace(place);
  const clsSpectrumAnalyser& analyser = context_.Analyser;
  const bool time = analyser.Mode() == ScopeMode::Time;
  const double width = time ? analyser.StopBin() - analyser.StartBin() : place.Scale.Width();
  Place(place.Scale.StartX * (time ? 0.0 : 1.0) + place.At.X * width);
  Tell();
}

void ScopeCursor::lblScopeCursor_Wheel() {
  bin_ = context_.Panel.Scrollables(CtlIndex::ScopeCursor).Value;
  place_.reset();
  Tell();
}

void ScopeCursor::Tune() {
  const FrequencyScale scale = context_.Analyser.Frequencies();
  if (context_.Analyser.Mode() != ScopeMode::Frequency || !scale.OnAir) return;
  const double hertz = scale.FrequencyAt(bin_ - scale.StartX), before = context_.Links.Wanted() / 10.0;
  context_.Links.TuneTo(RoundHalfEven(hertz * 10.0));
  Place(bin_ + (before - hertz) / scale.HertzPerBin);
  Tell();
}

void ScopeCursor::ShowMode() {
  const bool shown = options_.Cursor && context_.Analyser.Mode() != ScopeMode::XY;
  ScrollableControls& scrollables = context_.Panel.Scrollables;
  scrollables(CtlIndex::ScopeCursor).MaxValue = context_.Analyser.TwoSidedInForce() ? 2047.0F : 1023.0F;
  Place(bin_);
  scrollables.SetVisible(CtlIndex::ScopeCursor, shown);
  if (shown) Tell();
}

// Where the keys move it, only a move is told: a level that runs on would never let a screen reader finish.
void ScopeCursor::Periodic() {
  if (!lblScopeCursor.Visible() || ++ticks_ < kTicksToTell) return;
  ticks_ = 0;
  if (context_.Panel.Scrollables.ActiveCtl() != CtlIndex::ScopeCursor) Tell();
}

void ScopeCursor::Tell() {
  past_ = place_ && PastAt ? PastAt(*place_) : std::nullopt;
  const bool time = context_.Analyser.Mode() == ScopeMode::Time;
  lblScopeCursor.Caption = (time ? SampleText() : FrequencyText()) + (past_ ? "  " + past_->Time : "");
}

std::string ScopeCursor::FrequencyText() const {
  const clsSpectrumAnalyser& analyser = context_.Analyser;
  const FrequencyScale scale = analyser.Frequencies();
  const std::string hertz =
      FormatPicture(scale.FrequencyAt(bin_ - scale.StartX), scale.OnAir ? "#0 000 000 Hz" : "#0 Hz");
  const float now = analyser.LevelAt(bin_ - scale.StartX);
  const float level = past_ ? past_->Level.value_or(clsSpectrumAnalyser::kNoLevel) : now;
  return level <= clsSpectrumAnalyser::kNoLevel ? hertz : hertz + "  " + FormatPicture(level, "#0.0 dB");
}

std::string ScopeCursor::SampleText() const {
  const clsSpectrumAnalyser& analyser = context_.Analyser;
  const float value = analyser.SampleAt(analyser.StartBin() + RoundHalfEven(bin_));
  return FormatPicture(bin_ * kMillisecondsPerSample, "#0.00 ms") + "  " + FormatPicture(value, "#0");
}

void ScopeCursor::Draw(Canvas& canvas, const ScopeFrame& frame) {
  if (!options_.Cursor || frame.Mode == ScopeMode::XY) return;
  const bool time = frame.Mode == ScopeMode::Time;
  const double x = time ? bin_ : bin_ - frame.Frequencies.StartX;
  if (x < 0.0 || x > frame.Scale.Width) return;
  canvas.Line({float(x), float(frame.Scale.Top)}, {float(x), float(frame.Scale.Top + frame.Scale.Height)},
              context_.Over(kLine));
}

}  // namespace quorl
