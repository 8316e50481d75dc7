#include "display/analyser/Graticule.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace quorl {

namespace {

constexpr int kColumns = 12, kRows = 10;
constexpr double kColumnShare = 12.01;  // the hundredth keeps the last line on the surface
constexpr int kGap = 6;                 // pixels between labels
constexpr float kLineOpacity = 0.5F;    // the traces stand out from them
constexpr double kSamplesPerMillisecond = FSampling / 1000.0;

// A number as text, without taking memory.
class NumberLabel {
 public:
  NumberLabel(double value, int decimals, std::string_view unit = {}) {
    const auto result =
        std::to_chars(text_, text_ + kNumber, value, std::chars_format::fixed, std::max(decimals, 0));
    char* end = result.ec == std::errc() ? result.ptr : text_;
    end = std::copy(unit.begin(), unit.end(), end);
    text = {text_, static_cast<std::size_t>(end - text_)};
    if (text.starts_with("-0") && text.find_first_of("123456789") == std::string_view::npos)
      text.remove_prefix(1);
  }
  NumberLabel(const NumberLabel&) = delete;
  NumberLabel& operator=(const NumberLabel&) = delete;

  std::string_view text;

 private:
  static constexpr std::size_t kNumber = 48;
  char text_[kNumber + 8];
};

// Decimals that tell steps of `step` apart.
int DecimalsFor(double step) {
  if (!(step > 0.0) || !std::isfinite(step)) return 0;
  return std::clamp(static_cast<int>(std::ceil(-std::log10(step) - 1e-9)), 0, 3);
}

// The smallest of 1, 2 and 5 times a power of ten that is at least `least`.
double RoundStep(double least) {
  const double power = std::pow(10.0, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= least * (1.0 - 1e-9)) return factor * power;
  }
  return 10.0 * power;
}

enum class GridPart { Lines, Labels };

// Draws one part of the grid and passes over the other.
class Pen {
 public:
  Pen(Canvas& canvas, const FramePlan& plan, GridPart part)
      : canvas_(canvas),
        colours_(plan.Colours),
        part_(part),
        left_(plan.Scale.Left),
        top_(plan.Scale.Top),
        right_(left_ + plan.Scale.Width),
        bottom_(top_ + plan.Scale.Height) {}

  void Column(double x) { Line(x, top_, x, bottom_); }
  void Row(double y) { Line(left_, y, right_, y); }
  // Beside or under its column, at the lower edge.
  void ColumnLabel(double x, std::string_view text, bool centred) {
    if (part_ != GridPart::Labels) return;
    const int width = canvas_.TextWidth(text);
    const double pixel = (x - left_) / canvas_.UnitX() + (centred ? -width / 2.0 : kGap / 2.0);
    if (pixel < columnsUsed_ || pixel + width > canvas_.Width()) return;
    columnsUsed_ = pixel + width + kGap;
    const CanvasPoint at{static_cast<float>(left_ + pixel * canvas_.UnitX()), static_cast<float>(bottom_)};
    canvas_.Text(at, text, {colours_.XText}, TextSide::Right, TextLevel::Above);
  }
  // Under its row, at the left edge.
  void RowLabel(double y, std::string_view text) {
    if (part_ != GridPart::Labels) return;
    const double pixel = (y - top_) / canvas_.UnitY();
    const int height = canvas_.TextHeight();
    if (pixel < rowsUsed_ || pixel + 2 * height > canvas_.Height()) return;
    rowsUsed_ = pixel + height;
    const CanvasPoint at{static_cast<float>(left_ + kGap / 2.0 * canvas_.UnitX()), static_cast<float>(y)};
    canvas_.Text(at, text, {colours_.YText}, TextSide::Right, TextLevel::Below);
  }

 private:
  void Line(double x1, double y1, double x2, double y2) {
    if (part_ != GridPart::Lines) return;
    canvas_.Line({static_cast<float>(x1), static_cast<float>(y1)},
                 {static_cast<float>(x2), static_cast<float>(y2)}, {colours_.Graticule, kLineOpacity});
  }

  Canvas& canvas_;
  const ScopeColours& colours_;
  GridPart part_;
  double left_, top_, right_, bottom_;
  double columnsUsed_ = 0, rowsUsed_ = 0;  // pixels that labels have taken so far
};

// What stands at a row of the frequency or time picture; empty where no label helps.
struct RowScale {
  double Factor = 0, Offset = 0;
};

RowScale RowScaleOf(const FramePlan& plan) {
  constexpr double kDecibels = 20.0;
  const ChannelSettings& channel = plan.Record.Chn1;
  if (plan.Mode == ScopeMode::XY || channel.Gain == 0.0F) return {};
  return {(plan.Mode == ScopeMode::Frequency ? kDecibels : 1.0) / static_cast<double>(channel.Gain),
          static_cast<double>(channel.Offset)};
}

void DrawFixedGrid(Pen& pen, const FramePlan& plan) {
  const double step = plan.Scale.Width / kColumnShare;
  const double hertzStep = plan.Frequencies.HertzPerBin * step;
  for (int k = 0; k <= kColumns; ++k) {
    const double x = plan.Scale.Left + k * step;
    pen.Column(x);
    if (plan.Mode == ScopeMode::Frequency) {
      const int decimals = DecimalsFor(hertzStep / 1000.0) + 1;
      pen.ColumnLabel(x, NumberLabel(plan.Frequencies.FrequencyAt(x) / 1000.0, decimals).text, false);
    } else if (plan.Mode == ScopeMode::Time) {
      const int decimals = DecimalsFor(step / kSamplesPerMillisecond) + 1;
      pen.ColumnLabel(x, NumberLabel(x / kSamplesPerMillisecond, decimals).text, false);
    }
  }
  const double range = static_cast<double>(plan.YScale.Range), rowStep = range / kRows;
  const RowScale labels = RowScaleOf(plan);
  for (int k = 0; k <= kRows; ++k) {
    const double y = static_cast<double>(plan.YScale.Max) - k * rowStep;
    pen.Row(y);
    const double value = labels.Factor * (y - labels.Offset);
    if (labels.Factor != 0.0)
      pen.RowLabel(y, NumberLabel(value, DecimalsFor(std::fabs(labels.Factor * rowStep))).text);
  }
}

// Frequencies and levels at round numbers, no closer than their labels stand.
void DrawRoundGrid(Canvas& canvas, Pen& pen, const FramePlan& plan) {
  constexpr double kLeastPixels = 64;
  const FrequencyScale& band = plan.Frequencies;
  const double hertzPerPixel = band.HertzPerBin * canvas.UnitX();
  const double right = plan.Scale.Width, last = band.FrequencyAt(right);
  double step = RoundStep(kLeastPixels * hertzPerPixel);
  const int label = canvas.TextWidth(NumberLabel(last / 1000.0, DecimalsFor(step / 1000.0)).text);
  step = std::max(step, RoundStep((label + 2 * kGap) * hertzPerPixel));
  const int decimals = DecimalsFor(step / 1000.0);
  const double first = std::ceil(band.FrequencyAt(0) / step);
  for (double k = first; k * step <= last; ++k) {
    const double x = band.XAt(k * step);
    pen.Column(x);
    pen.ColumnLabel(x, NumberLabel(k * step / 1000.0, decimals).text, true);
  }

  constexpr double kRowStep = 10.0;
  const double perPixel = std::fabs(canvas.UnitY());
  const double rowStep = std::max(kRowStep, RoundStep((canvas.TextHeight() + kGap) * perPixel));
  const double top = plan.Top - plan.LevelLift, floor = plan.Floor - plan.LevelLift;
  bool labelled = false;
  for (double k = std::floor(top / rowStep); k * rowStep >= floor; --k) {
    const double y = k * rowStep + plan.LevelLift;
    pen.Row(y);
    pen.RowLabel(y, NumberLabel(k * rowStep, 0, labelled ? "" : " dB").text);
    labelled = true;
  }
}

void DrawGrid(Canvas& canvas, const FramePlan& plan, GridPart part) {
  Pen pen(canvas, plan, part);
  plan.LevelView ? DrawRoundGrid(canvas, pen, plan) : DrawFixedGrid(pen, plan);
}

}  // namespace

void DrawGraticule(Canvas& canvas, const FramePlan& plan) {
  canvas.Clear(plan.Colours.Back);
  DrawGrid(canvas, plan, GridPart::Lines);
}

void DrawGraticuleLabels(Canvas& canvas, const FramePlan& plan) {
  DrawGrid(canvas, plan, GridPart::Labels);
}

}  // namespace quorl
