// A canvas that keeps nothing, so that memory which is counted is the painter's own.
#pragma once

#include "display/canvas/Canvas.h"

namespace quorl::test {

struct BlankCanvas : Canvas {
  int Width() const override { return 1200; }
  int Height() const override { return 400; }
  void Clear(Colour) override {}
  void Line(CanvasPoint, CanvasPoint, Ink) override {}
  void Polyline(std::span<const CanvasPoint> points, Ink) override { Points += points.size(); }
  void Rectangle(CanvasPoint, CanvasPoint, Ink) override { ++Rectangles; }
  void FillUnder(std::span<const CanvasPoint>, float, Ink) override {}
  void Text(CanvasPoint, std::string_view, Ink, TextSide, TextLevel) override {}
  void Image(int, int, int, int, const std::uint32_t*) override {}
  int TextWidth(std::string_view text) const override { return 7 * static_cast<int>(text.size()); }
  int TextHeight() const override { return 12; }
  void SetVisible(bool) override {}
  std::size_t Points = 0;
  int Rectangles = 0;
};

}  // namespace quorl::test
