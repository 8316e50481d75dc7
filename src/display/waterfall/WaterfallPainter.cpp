#include "display/waterfall/WaterfallPainter.h"

#include <algorithm>
#include <cmath>

namespace quorl {

namespace {

constexpr int kHatchStep = 8;  // line heights between two strokes

// Bins as fixed-point numbers of 32 binary places: a step from column to column is an addition.
constexpr double kOne = 4294967296.0;
constexpr int kPlaces = 32;

std::size_t Size(std::int64_t count) {
  return static_cast<std::size_t>(count);
}

// The columns whose bin lies on the line.
struct Columns {
  std::int64_t Begin, End;
};

Columns ColumnsOf(std::int64_t first, std::int64_t step, std::int64_t bins, int width) {
  const auto reaching = [&](std::int64_t bin) {  // the first column at or beyond `bin`
    const std::int64_t distance = bin - first;
    return std::clamp<std::int64_t>(distance <= 0 ? 0 : (distance + step - 1) / step, 0, width);
  };
  return {reaching(0), reaching(bins << kPlaces)};
}

}  // namespace

int WaterfallPainter::Rows(const WaterfallView& view) {
  return view.Width > 0 && view.Height > 0 && view.LineHeight > 0
             ? (view.Height + view.LineHeight - 1) / view.LineHeight
             : 0;
}

void WaterfallPainter::TakeView(const WaterfallView& view) {
  const int rows = Rows(view);
  if (view.Width != view_.Width || rows != rows_ || view.LineHeight != view_.LineHeight) {
    pixels_.assign(Size(rows) * Size(view.LineHeight) * Size(view.Width), kGround);
  }
  view_ = view;
  rows_ = rows;
  head_ = 0;
  const double range = std::max(view.Top - view.Floor, 1.0);
  for (std::size_t level = 0; level < colours_.size(); ++level) {
    const double decibels = WaterfallHistory::Decibels(static_cast<std::uint8_t>(level));
    colours_[level] = PaletteColour(view.Colours, (decibels - view.Floor) / range);
  }
}

void WaterfallPainter::Prepare(const WaterfallHistory& history, const WaterfallView& view, std::int64_t top) {
  computed_ = 0;
  int begin = 0, end = Rows(view);  // rows to compute
  // How far the lines have moved down the picture since the last time.
  const std::int64_t moved = top - top_;
  if (!valid_ || view != view_ || std::abs(moved) >= rows_ || history.Cleared() != cleared_) {
    TakeView(view);
  } else if (moved >= 0) {
    end = static_cast<int>(moved);
  } else {
    begin = rows_ + static_cast<int>(moved);
  }
  if (rows_ > 0) head_ = static_cast<int>((head_ - moved % rows_ + rows_) % rows_);
  valid_ = true;
  top_ = top;
  cleared_ = history.Cleared();
  for (int row = begin; row < end; ++row) ComputeRow(history, row);
  computed_ = std::max(end - begin, 0);
}

std::uint32_t* WaterfallPainter::RowPixels(int row) {
  return pixels_.data() + Size((head_ + row) % rows_) * Size(view_.LineHeight) * Size(view_.Width);
}

void WaterfallPainter::ComputeRow(const WaterfallHistory& history, int row) {
  std::uint32_t* out = RowPixels(row);
  const std::int64_t number = top_ - row;
  if (number < history.Oldest() || number >= history.End()) {
    std::fill_n(out, Size(view_.LineHeight) * Size(view_.Width), kGround);
    return;
  }
  const WaterfallHistory::Line remembered = history.At(number);
  remembered.Levels.empty() ? ComputeGap(number, out) : ComputeLine(remembered, out);
  const std::uint32_t* line = out;
  for (int copy = 1; copy < view_.LineHeight; ++copy) std::copy_n(line, view_.Width, out += view_.Width);
}

void WaterfallPainter::ComputeGap(std::int64_t number, std::uint32_t* out) const {
  for (int x = 0; x < view_.Width; ++x) {
    out[x] = (x / view_.LineHeight + number) % kHatchStep == 0 ? kHatch : kGround;
  }
}

void WaterfallPainter::ComputeLine(const WaterfallHistory::Line& line, std::uint32_t* out) const {
  const FrequencyScale& scale = view_.Frequencies;
  const double perColumn = scale.Width() / view_.Width * scale.HertzPerBin / line.HertzPerBin;
  // A bin reaches half a bin to either side of its frequency.
  const double begin = (scale.FrequencyAt(0.0) - line.Lowest) / line.HertzPerBin + 0.5;
  constexpr double kFar = 1 << 30;
  if (!(perColumn > 0.0) || perColumn > kFar || !(std::abs(begin) < kFar)) {
    std::fill_n(out, view_.Width, kGround);
    return;
  }
  const bool several = perColumn > 1.0;  // bins in a column, of which the loudest counts
  const std::int64_t step = std::max<std::int64_t>(std::llround(perColumn * kOne), 1);
  const std::int64_t first = std::llround(begin * kOne) + (several ? 0 : step / 2);
  const auto bins = static_cast<std::int64_t>(line.Levels.size());
  const Columns columns = ColumnsOf(first, step, bins, view_.Width);
  std::fill_n(out, columns.Begin, kGround);
  std::fill_n(out + columns.End, view_.Width - columns.End, kGround);
  const std::uint8_t* levels = line.Levels.data();
  std::int64_t at = first + columns.Begin * step;
  if (!several) {
    for (std::int64_t x = columns.Begin; x < columns.End; ++x, at += step)
      out[x] = colours_[levels[at >> kPlaces]];
    return;
  }
  for (std::int64_t x = columns.Begin; x < columns.End; ++x, at += step) {
    const std::int64_t end = std::min((at + step) >> kPlaces, bins);
    std::uint8_t loudest = levels[at >> kPlaces];  // counted downwards from full scale
    for (std::int64_t bin = (at >> kPlaces) + 1; bin < end; ++bin) loudest = std::min(loudest, levels[bin]);
    out[x] = colours_[loudest];
  }
}

void WaterfallPainter::Paint(Canvas& canvas) const {
  if (rows_ == 0) return;
  // The ring in two pieces: from its head to its end, then what comes before.
  const int upper = (rows_ - head_) * view_.LineHeight, lower = head_ * view_.LineHeight;
  canvas.Image(0, 0, view_.Width, upper, pixels_.data() + Size(lower) * Size(view_.Width));
  if (lower > 0) canvas.Image(0, upper, view_.Width, lower, pixels_.data());
}

}  // namespace quorl
