#include "display/canvas/RasterCanvas.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "display/canvas/BitmapFont.h"

namespace quorl {

namespace {

constexpr int kLeading = 1;  // free rows above and below a line of text
constexpr std::uint32_t kOpaque = 0xFF000000;

// 0xFFRRGGBB of a colour that has blue in its high byte.
std::uint32_t Pixel(Colour colour) {
  return kOpaque | (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF);
}

std::uint32_t Mix(std::uint32_t ground, std::uint32_t over, double share) {
  const auto weight = static_cast<std::uint32_t>(std::lround(std::clamp(share, 0.0, 1.0) * 256.0));
  const auto channel = [&](int shift) {
    const std::uint32_t a = ground >> shift & 0xFF, b = over >> shift & 0xFF;
    return ((a * (256 - weight) + b * weight) >> 8) << shift;
  };
  return kOpaque | channel(16) | channel(8) | channel(0);
}

// The nearest whole device pixel, also where the number is none or far outside.
int Whole(double value, int most) {
  if (std::isnan(value)) return 0;
  return static_cast<int>(std::lround(std::clamp(value, -1.0, most + 1.0)));
}

}  // namespace

RasterCanvas::RasterCanvas(int width, int height, int ratio)
    : width_(std::max(width, 1)),
      height_(std::max(height, 1)),
      ratio_(std::max(ratio, 1)),
      deviceWidth_(width_ * ratio_),
      deviceHeight_(height_ * ratio_),
      pixels_(static_cast<std::size_t>(deviceWidth_) * static_cast<std::size_t>(deviceHeight_), kOpaque),
      crest_(static_cast<std::size_t>(deviceWidth_)) {}

void RasterCanvas::Clear(Colour colour) {
  std::fill(pixels_.begin(), pixels_.end(), Pixel(colour));
}

RasterCanvas::Place RasterCanvas::PlaceOf(CanvasPoint point) const {
  return {(point.X - Scale().Left) / Scale().Width * deviceWidth_,
          (point.Y - Scale().Top) / Scale().Height * deviceHeight_};
}

void RasterCanvas::Blend(int x, int y, Ink ink, double share) {
  if (x < 0 || x >= deviceWidth_ || y < 0 || y >= deviceHeight_) return;
  std::uint32_t& pixel = pixels_[Index(x, y)];
  pixel = Mix(pixel, Pixel(ink.Value), share * ink.Opacity);
}

bool RasterCanvas::Clip(Place& from, Place& to) const {
  double begin = 0.0, end = 1.0;
  const double dx = to.X - from.X, dy = to.Y - from.Y;
  const auto cut = [&](double along, double room) {  // keeps what has along * t <= room
    if (along == 0.0) return room >= 0.0;
    const double t = room / along;
    along < 0.0 ? begin = std::max(begin, t) : end = std::min(end, t);
    return begin <= end;
  };
  constexpr double kMargin = 1.0;
  const bool seen = std::isfinite(dx) && std::isfinite(dy) && cut(-dx, from.X + kMargin) &&
                    cut(dx, deviceWidth_ + kMargin - from.X) && cut(-dy, from.Y + kMargin) &&
                    cut(dy, deviceHeight_ + kMargin - from.Y);
  if (!seen) return false;
  const Place whole = from;
  from = {whole.X + begin * dx, whole.Y + begin * dy};
  to = {whole.X + end * dx, whole.Y + end * dy};
  return true;
}

// One pixel for each step along the longer side, shared by the two that the line passes between. A pixel is
// drawn where its middle lies in [from, to), so that the next segment goes on without drawing it again.
void RasterCanvas::Stroke(Place from, Place to, Ink ink) {
  if (!Clip(from, to)) return;
  const bool flat = std::abs(to.X - from.X) >= std::abs(to.Y - from.Y);
  if (!flat) {
    std::swap(from.X, from.Y);
    std::swap(to.X, to.Y);
  }
  if (from.X > to.X) std::swap(from, to);
  const double slope = to.X > from.X ? (to.Y - from.Y) / (to.X - from.X) : 0.0;
  const int first = static_cast<int>(std::ceil(from.X - 0.5)), last = static_cast<int>(std::ceil(to.X - 0.5));
  for (int step = first; step < last; ++step) {
    const double across = from.Y + (step + 0.5 - from.X) * slope - 0.5;
    const int lower = static_cast<int>(std::floor(across));
    const double share = across - lower;
    flat ? Blend(step, lower, ink, 1.0 - share) : Blend(lower, step, ink, 1.0 - share);
    flat ? Blend(step, lower + 1, ink, share) : Blend(lower + 1, step, ink, share);
  }
}

void RasterCanvas::Line(CanvasPoint from, CanvasPoint to, Ink ink) {
  // Upright and level lines are sharp: they fill the pixels that they lie in.
  const Place a = PlaceOf(from), b = PlaceOf(to);
  if (a.X != b.X && a.Y != b.Y) return Stroke(a, b, ink);
  if (!std::isfinite(a.X + a.Y + b.X + b.Y)) return;
  const auto pixel = [](double at, int count) {
    return static_cast<int>(std::floor(std::clamp(at, -1.0, static_cast<double>(count))));
  };
  const int left = pixel(std::min(a.X, b.X), deviceWidth_), top = pixel(std::min(a.Y, b.Y), deviceHeight_);
  // A line along the right or lower edge is still on the surface.
  const int column = a.X == b.X && a.X == deviceWidth_ ? deviceWidth_ - 1 : left;
  const int row = a.Y == b.Y && a.Y == deviceHeight_ ? deviceHeight_ - 1 : top;
  FillBox(column, row, a.X == b.X ? column + 1 : pixel(std::max(a.X, b.X), deviceWidth_) + 1,
          a.Y == b.Y ? row + 1 : pixel(std::max(a.Y, b.Y), deviceHeight_) + 1, ink);
}

void RasterCanvas::Polyline(std::span<const CanvasPoint> points, Ink ink) {
  for (std::size_t i = 1; i < points.size(); ++i) Stroke(PlaceOf(points[i - 1]), PlaceOf(points[i]), ink);
}

void RasterCanvas::FillBox(int left, int top, int right, int bottom, Ink ink) {
  left = std::max(left, 0);
  top = std::max(top, 0);
  right = std::min(right, deviceWidth_);
  bottom = std::min(bottom, deviceHeight_);
  for (int y = top; y < bottom; ++y) {
    for (int x = left; x < right; ++x) Blend(x, y, ink, 1.0);
  }
}

void RasterCanvas::Rectangle(CanvasPoint corner, CanvasPoint opposite, Ink ink) {
  const Place a = PlaceOf(corner), b = PlaceOf(opposite);
  const int left = Whole(std::min(a.X, b.X), deviceWidth_), top = Whole(std::min(a.Y, b.Y), deviceHeight_);
  // However narrow, it is seen.
  FillBox(left, top, std::max(left + 1, Whole(std::max(a.X, b.X), deviceWidth_)),
          std::max(top + 1, Whole(std::max(a.Y, b.Y), deviceHeight_)), ink);
}

void RasterCanvas::FillUnder(std::span<const CanvasPoint> points, float base, Ink ink) {
  constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
  std::fill(crest_.begin(), crest_.end(), kNone);
  const double ground = PlaceOf({0.0F, base}).Y;
  for (std::size_t i = 1; i < points.size(); ++i) {
    Place from = PlaceOf(points[i - 1]), to = PlaceOf(points[i]);
    if (!std::isfinite(from.X + from.Y + to.X + to.Y) || to.X < 0.0 || from.X >= deviceWidth_) continue;
    const double slope = to.X > from.X ? (to.Y - from.Y) / (to.X - from.X) : 0.0;
    const int first = static_cast<int>(std::floor(std::max(from.X, 0.0)));
    const int last = static_cast<int>(std::ceil(std::min<double>(to.X, deviceWidth_))) - 1;
    for (int x = first; x <= last; ++x) {
      // A column is as high as the line gets within it.
      const auto at = [&](double edge) { return from.Y + (std::clamp(edge, from.X, to.X) - from.X) * slope; };
      const double highest = std::min(at(x), at(x + 1.0));
      float& crest = crest_[static_cast<std::size_t>(x)];
      if (!(crest <= highest)) crest = static_cast<float>(highest);
    }
  }
  for (int x = 0; x < deviceWidth_; ++x) {
    const float crest = crest_[static_cast<std::size_t>(x)];
    if (!std::isnan(crest)) {
      FillBox(x, Whole(std::min<double>(crest, ground), deviceHeight_), x + 1, Whole(ground, deviceHeight_),
              ink);
    }
  }
}

void RasterCanvas::Glyph(char character, int left, int top, Ink ink) {
  for (int y = 0; y < BitmapFont::kGlyphHeight; ++y) {
    for (int x = 0; x < BitmapFont::kGlyphWidth; ++x) {
      if (!BitmapFont::IsInk(character, x, y)) continue;
      FillBox(left + x * ratio_, top + y * ratio_, left + (x + 1) * ratio_, top + (y + 1) * ratio_, ink);
    }
  }
}

void RasterCanvas::Text(CanvasPoint at, std::string_view text, Ink ink, TextSide side, TextLevel level) {
  const Place place = PlaceOf(at);
  const int width = TextWidth(text) * ratio_, height = TextHeight() * ratio_;
  // May begin or end outside, in part.
  if (!std::isfinite(place.X + place.Y)) return;
  const auto whole = [](double value) { return static_cast<int>(std::lround(std::clamp(value, -1e6, 1e6))); };
  int left = whole(place.X), top = whole(place.Y);
  if (side != TextSide::Right) left -= side == TextSide::Left ? width : width / 2;
  if (level != TextLevel::Below) top -= level == TextLevel::Above ? height : height / 2;
  for (const char character : text) {
    Glyph(character, left, top + kLeading * ratio_, ink);
    left += BitmapFont::kAdvance * ratio_;
  }
}

int RasterCanvas::TextWidth(std::string_view text) const {
  return BitmapFont::Width(text);
}

int RasterCanvas::TextHeight() const {
  return BitmapFont::kGlyphHeight + 2 * kLeading;
}

void RasterCanvas::Image(int left, int top, int width, int height, const std::uint32_t* pixels) {
  const int firstX = std::max(left, 0), lastX = std::min(left + width, deviceWidth_);
  if (firstX >= lastX) return;
  for (int y = std::max(top, 0); y < std::min(top + height, deviceHeight_); ++y) {
    const std::uint32_t* row = pixels + static_cast<std::ptrdiff_t>(y - top) * width;
    std::copy(row + (firstX - left), row + (lastX - left),
              pixels_.begin() + static_cast<std::ptrdiff_t>(Index(firstX, y)));
  }
}

}  // namespace quorl
