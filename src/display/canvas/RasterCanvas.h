// A canvas of plain pixels, for pictures without a toolkit: the command line, tests.
#pragma once

#include <vector>

#include "display/canvas/Canvas.h"

namespace quorl {

// Lines are antialiased. Texts are in a small bitmap font, upright at every ratio.
class RasterCanvas final : public Canvas {
 public:
  // Pixels, at least 1 each, and device pixels for each of them, 1 or more. All is black at first.
  RasterCanvas(int width, int height, int ratio = 1);

  int DeviceWidth() const { return deviceWidth_; }
  int DeviceHeight() const { return deviceHeight_; }
  // 0xFFRRGGBB row by row, DeviceWidth() x DeviceHeight().
  const std::uint32_t* Pixels() const { return pixels_.data(); }
  std::uint32_t At(int x, int y) const { return pixels_[Index(x, y)]; }
  bool IsVisible() const { return visible_; }

  int Width() const override { return width_; }
  int Height() const override { return height_; }
  double Ratio() const override { return ratio_; }
  void Clear(Colour colour) override;
  void Line(CanvasPoint from, CanvasPoint to, Ink ink) override;
  void Polyline(std::span<const CanvasPoint> points, Ink ink) override;
  void Rectangle(CanvasPoint corner, CanvasPoint opposite, Ink ink) override;
  void FillUnder(std::span<const CanvasPoint> points, float base, Ink ink) override;
  void Text(CanvasPoint at, std::string_view text, Ink ink, TextSide side = TextSide::Right,
            TextLevel level = TextLevel::Below) override;
  void Image(int left, int top, int width, int height, const std::uint32_t* pixels) override;
  int TextWidth(std::string_view text) const override;
  int TextHeight() const override;
  void SetVisible(bool visible) override { visible_ = visible; }

 private:
  // Device pixels; the middle of the first is at 0.5.
  struct Place {
    double X, Y;
  };

  std::size_t Index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(deviceWidth_) + static_cast<std::size_t>(x);
  }
  Place PlaceOf(CanvasPoint point) const;
  // Cuts the line to the surface, and a little more; false where nothing is left of it.
  bool Clip(Place& from, Place& to) const;
  void Stroke(Place from, Place to, Ink ink);
  void Blend(int x, int y, Ink ink, double share);
  void FillBox(int left, int top, int right, int bottom, Ink ink);
  void Glyph(char character, int left, int top, Ink ink);

  int width_, height_, ratio_, deviceWidth_, deviceHeight_;
  std::vector<std::uint32_t> pixels_;
  std::vector<float> crest_;  // of a fill, a column each
  bool visible_ = false;
};

}  // namespace quorl
