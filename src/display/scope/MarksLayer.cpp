#include "display/scope/MarksLayer.h"

#include <algorithm>
#include <cmath>

namespace quorl {

namespace {

constexpr Ink kName{0xFFFFC0, 1.0F}, kTick{0xFFFFC0, 0.5F}, kSpan{0xFF8040, 0.14F}, kSpanName{0xFFC080, 0.9F};
constexpr double kGap = 6.0;         // pixels between two texts
constexpr double kBesideTick = 2.0;  // pixels
constexpr double kFromTop = 2.0;
constexpr double kTickBelow = 6.0;  // pixels under the last row

}  // namespace

void MarksLayer::Refresh(bool anew) {
  const FrequencyScale scale = context_.Analyser.Frequencies();
  const bool wanted = Source && scale.OnAir && (options_.Names || options_.BandShading);
  const double low = wanted ? scale.FrequencyAt(0.0) : 0.0;
  const double high = wanted ? scale.FrequencyAt(scale.Width()) : 0.0;
  if (!anew && low == low_ && high == high_) return;
  low_ = low;
  high_ = high;
  marks_.Marks.clear();
  marks_.Spans.clear();
  if (!wanted) return;
  Source(low, high, marks_);
  std::stable_sort(marks_.Marks.begin(), marks_.Marks.end(),
                   [](const FrequencyMark& a, const FrequencyMark& b) { return a.Hertz < b.Hertz; });
  std::stable_sort(marks_.Spans.begin(), marks_.Spans.end(),
                   [](const FrequencySpan& a, const FrequencySpan& b) { return a.Low < b.Low; });
}

void MarksLayer::Draw(Canvas& canvas, const ScopeFrame& frame) {
  standings_ = 0;
  if (frame.Mode != ScopeMode::Frequency || !frame.Frequencies.OnAir) return;
  if (options_.BandShading) DrawSpans(canvas, frame);
  if (options_.Names) DrawTicks(canvas, frame);
  if (options_.BandShading) NameSpans(canvas, frame);
  if (options_.Names) NameMarks(canvas, frame);
}

// Pixels: the labels of the rows stand at the left edge.
double MarksLayer::LeftOfAll(const Canvas& canvas, const ScopeFrame& frame) const {
  return canvas.TextWidth(frame.LevelView ? "-000 dB" : "000000000") + kGap;
}

void MarksLayer::DrawSpans(Canvas& canvas, const ScopeFrame& frame) {
  const FrequencyScale& scale = frame.Frequencies;
  const auto top = static_cast<float>(frame.Scale.Top);
  const auto bottom = static_cast<float>(frame.Scale.Top + frame.Scale.Height);
  for (const FrequencySpan& span : marks_.Spans) {
    const double low = std::max(scale.XAt(span.Low), 0.0);
    const double high = std::min(scale.XAt(span.High), scale.Width());
    if (low < high) canvas.Rectangle({float(low), top}, {float(high), bottom}, kSpan);
  }
}

// In the row under those of the marks, each within its span.
void MarksLayer::NameSpans(Canvas& canvas, const ScopeFrame& frame) {
  const FrequencyScale& scale = frame.Frequencies;
  const double row = kFromTop + kRows * canvas.TextHeight();
  double free = LeftOfAll(canvas, frame);  // pixels: what is left of it is taken
  for (const FrequencySpan& span : marks_.Spans) {
    const double low = std::max(scale.XAt(span.Low), 0.0);
    const double high = std::min(scale.XAt(span.High), scale.Width());
    const double left = std::max(low / canvas.UnitX() + kBesideTick, free);
    const double right = left + canvas.TextWidth(span.Text);
    if (low >= high || right > high / canvas.UnitX()) continue;
    canvas.Text({float(left * canvas.UnitX()), float(frame.Scale.Top + row * canvas.UnitY())}, span.Text,
                kSpanName);
    free = right + kGap;
  }
}

// From left to right, each name in the first row that has room; where none has, its tick alone is drawn.
void MarksLayer::DrawTicks(Canvas& canvas, const ScopeFrame& frame) {
  const FrequencyScale& scale = frame.Frequencies;
  const double height = canvas.TextHeight();
  std::array<double, kRows> free;
  free.fill(LeftOfAll(canvas, frame));
  for (std::size_t i = 0; i < marks_.Marks.size(); ++i) {
    const FrequencyMark& mark = marks_.Marks[i];
    const double x = scale.XAt(mark.Hertz);
    if (x < 0.0 || x > scale.Width()) continue;
    const double at = x / canvas.UnitX(), length = canvas.TextWidth(mark.Text);
    // At the picture's right edge the name stands on the other side of its tick.
    const bool turned = at + kBesideTick + length > canvas.Width();
    const double left = turned ? at - kBesideTick - length : at + kBesideTick, right = left + length;
    const auto row = std::find_if(free.begin(), free.end(), [left](double taken) { return left >= taken; });
    const bool fits = row != free.end() && standings_ < kMostTexts;
    const double top = kFromTop + (fits ? static_cast<double>(row - free.begin()) : kRows) * height;
    const double bottom = kFromTop + (kRows + 1) * height + kTickBelow;
    canvas.Line({float(x), float(frame.Scale.Top + top * canvas.UnitY())},
                {float(x), float(frame.Scale.Top + bottom * canvas.UnitY())}, context_.Over(kTick));
    if (!fits) continue;
    *row = right + kGap;
    standing_[standings_++] = {left, top, right, top + height, mark.Hertz, i};
  }
}

// After all ticks, so that no name is struck through.
void MarksLayer::NameMarks(Canvas& canvas, const ScopeFrame& frame) {
  for (std::size_t i = 0; i < standings_; ++i) {
    const Standing& name = standing_[i];
    canvas.Text({float(name.Left * canvas.UnitX()), float(frame.Scale.Top + name.Top * canvas.UnitY())},
                marks_.Marks[name.Mark].Text, kName);
  }
}

bool MarksLayer::Press(const ScopePlace& place) {
  if (place.At.Button != MouseButton::Left || !options_.Names || !place.Scale.OnAir) return false;
  if (&place.Picture != context_.Scope) return false;
  for (std::size_t i = 0; i < standings_; ++i) {
    const Standing& name = standing_[i];
    const double x = place.PixelX(), y = place.PixelY();
    if (x < name.Left || x > name.Right || y < name.Top || y > name.Bottom) continue;
    context_.Links.TuneTo(static_cast<std::int32_t>(std::lround(name.Hertz * 10.0)));
    return true;
  }
  return false;
}

}  // namespace quorl
