#include "display/waterfall/Waterfall.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace quorl {

namespace {

constexpr std::int64_t kSecond = 1000000;
constexpr Colour kMarkColour = 0xFFFFFF, kPlateColour = 0;
constexpr float kTick = 6.0F, kTextLeft = 9.0F, kPlateMargin = 2.0F;  // pixels
constexpr float kPlateOpacity = 0.65F;                                // white stays readable over any colour
constexpr double kSpacing = 1.5;  // of marks at least, in heights of their text

// What is marked where the chosen marks would stand too close.
constexpr std::array<std::int64_t, 8> kIntervals{15, 60, 300, 900, 3600, 10800, 21600, 86400};

std::int64_t FloorOf(std::int64_t value, std::int64_t step) {
  const std::int64_t rest = value % step;
  return value - (rest < 0 ? rest + step : rest);
}

// For as long as it lives the canvas is measured in pixels.
class PixelScale {
 public:
  explicit PixelScale(Canvas& canvas) : canvas_(canvas), before_(canvas.Scale()) {
    canvas.SetScale({0.0, 0.0, static_cast<double>(canvas.Width()), static_cast<double>(canvas.Height())});
  }
  ~PixelScale() { canvas_.SetScale(before_); }
  PixelScale(const PixelScale&) = delete;
  PixelScale& operator=(const PixelScale&) = delete;

 private:
  Canvas& canvas_;
  CanvasScale before_;
};

}  // namespace

void Waterfall::SetOptions(const WaterfallOptions& options) {
  options_ = options;
  if (options_.On) history_.Start();
  history_.SetBlocksPerLine(options_.BlocksPerLine);
}

void Waterfall::Add(const SpectrumLine& line, std::int64_t time) {
  if (options_.On) history_.Add(line, time);
}

void Waterfall::Clear() {
  history_.Clear();
  scrolledTo_.reset();
}

// Scrolled back as far as it goes, the oldest line stands in the last row, and moves the picture on when it
// makes room.
std::int64_t Waterfall::Top() const {
  const std::int64_t newest = history_.End() - 1;
  if (!scrolledTo_) return newest;
  return std::clamp(*scrolledTo_, std::min(history_.Oldest() + rows_ - 1, newest), newest);
}

std::int64_t Waterfall::LinesBack() const {
  return history_.End() - 1 - Top();
}

void Waterfall::ScrollBack(std::int64_t lines) {
  scrolledTo_ = Top() - lines;
  scrolledTo_ = Top();
  if (LinesBack() == 0) ScrollToPresent();
}

void Waterfall::Draw(Canvas& canvas, const FrequencyScale& frequencies) {
  if (!options_.On) return;
  const double ratio = canvas.Ratio();
  WaterfallView view;
  view.Frequencies = frequencies;
  view.Top = options_.Top;
  view.Floor = options_.Floor;
  view.Colours = options_.Colours;
  view.LineHeight =
      std::max(options_.LineHeight > 0 ? options_.LineHeight : static_cast<int>(std::lround(ratio)), 1);
  view.Width = static_cast<int>(std::lround(canvas.Width() * ratio));
  view.Height = static_cast<int>(std::lround(canvas.Height() * ratio));
  rows_ = WaterfallPainter::Rows(view);
  lineHeight_ = view.LineHeight;
  deviceHeight_ = std::max(view.Height, 1);
  painter_.Prepare(history_, view, Top());
  painter_.Paint(canvas);
  DrawMarks(canvas);
}

std::int64_t Waterfall::MarkInterval(const Canvas& canvas) const {
  const double seconds = static_cast<double>(history_.LineMicroseconds()) / kSecond;
  const double pixelsPerSecond = lineHeight_ / canvas.Ratio() / seconds;
  for (const std::int64_t interval : kIntervals) {
    if (interval < options_.MarkSeconds) continue;
    if (static_cast<double>(interval) * pixelsPerSecond >= kSpacing * canvas.TextHeight())
      return interval * kSecond;
  }
  return kIntervals.back() * kSecond;
}

// A mark stands at the first line at or after its time, and travels with it.
void Waterfall::DrawMarks(Canvas& canvas) const {
  if (options_.MarkSeconds <= 0) return;
  const PixelScale pixels(canvas);
  const std::int64_t interval = MarkInterval(canvas);
  const std::int64_t top = Top(), last = std::max(top - rows_ + 1, history_.Oldest() + 1);
  const float spacing = static_cast<float>(canvas.TextHeight());
  float free = -spacing;
  for (std::int64_t number = top; number >= last; --number) {
    const std::int64_t mark = FloorOf(history_.At(number).Time, interval);
    if (mark == FloorOf(history_.At(number - 1).Time, interval)) continue;
    const float y =
        static_cast<float>((static_cast<double>(top - number) + 0.5) * lineHeight_ / canvas.Ratio());
    // Lines gathered at another pace may bring marks closer than texts are high.
    if (y < free) continue;
    DrawMark(canvas, y, mark);
    free = y + spacing;
  }
}

void Waterfall::DrawMark(Canvas& canvas, float y, std::int64_t time) const {
  const std::string text = UtcText(time);
  const float width = static_cast<float>(canvas.TextWidth(text)),
              height = static_cast<float>(canvas.TextHeight());
  canvas.Rectangle({0.0F, y - height / 2.0F}, {kTextLeft + width + kPlateMargin, y + height / 2.0F},
                   {kPlateColour, kPlateOpacity});
  canvas.Line({0.0F, y}, {kTick, y}, {kMarkColour});
  canvas.Text({kTextLeft, y}, text, {kMarkColour}, TextSide::Right, TextLevel::Middle);
}

std::optional<std::int64_t> Waterfall::NumberAt(double y) const {
  if (!(y >= 0.0 && y <= 1.0)) return {};
  const auto row = static_cast<std::int64_t>(std::min(y * deviceHeight_, deviceHeight_ - 1.0) / lineHeight_);
  const std::int64_t number = Top() - row;
  if (number < history_.Oldest() || number >= history_.End()) return {};
  return number;
}

std::optional<std::int64_t> Waterfall::TimeAt(double y) const {
  const std::optional<std::int64_t> number = NumberAt(y);
  if (!number) return {};
  return history_.At(*number).Time;
}

std::optional<float> Waterfall::LevelAt(double y, double hertz) const {
  const std::optional<std::int64_t> number = NumberAt(y);
  if (!number) return {};
  const WaterfallHistory::Line line = history_.At(*number);
  const double bin = std::floor((hertz - line.Lowest) / line.HertzPerBin + 0.5);
  if (!(bin >= 0.0 && bin < static_cast<double>(line.Levels.size()))) return {};
  return WaterfallHistory::Decibels(line.Levels[static_cast<std::size_t>(bin)]);
}

std::string UtcText(std::int64_t time) {
  const auto second =
      static_cast<int>(FloorOf(time, kSecond) / kSecond - FloorOf(time, 86400 * kSecond) / kSecond);
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%02d:%02d:%02d", second / 3600 % 24, second / 60 % 60,
                second % 60);
  return text.data();
}

}  // namespace quorl
