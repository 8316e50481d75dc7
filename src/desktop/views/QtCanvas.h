// A surface of the scope in memory, painted by Qt in device pixels.
#pragma once

#include <QImage>
#include <QPainter>
#include <functional>
#include <vector>

#include "desktop/views/TextStamps.h"
#include "display/canvas/Canvas.h"

namespace quorl {

// Colours are shown as the skin shows those of controls. Nothing but texts that weren't there before makes it
// allocate.
class QtCanvas : public Canvas {
 public:
  // `shown` is called when the surface has become visible.
  explicit QtCanvas(std::function<void()> shown = {});

  // Pixels, at least one, and device pixels for each of them. What was there stays, stretched.
  void Resize(const QSize& size, double ratio);
  bool IsVisible() const { return visible_; }
  // Copies it to the origin of `painter`, as far as that is clipped to: pixel by pixel at any ratio.
  void CopyTo(QPainter& painter);
  // What has been drawn, in device pixels; valid until the next Resize.
  QImage Pixels();

  int Width() const override { return size_.width(); }
  int Height() const override { return size_.height(); }
  double Ratio() const override { return ratio_; }
  void Clear(Colour colour) override;
  void Line(CanvasPoint from, CanvasPoint to, Ink ink) override;
  void Polyline(std::span<const CanvasPoint> points, Ink ink) override;
  void Rectangle(CanvasPoint corner, CanvasPoint opposite, Ink ink) override;
  void FillUnder(std::span<const CanvasPoint> points, float base, Ink ink) override;
  void Text(CanvasPoint at, std::string_view text, Ink ink, TextSide side, TextLevel level) override;
  void Image(int left, int top, int width, int height, const std::uint32_t* pixels) override;
  int TextWidth(std::string_view text) const override { return texts_.Width(text); }
  int TextHeight() const override { return texts_.Height(); }
  void SetVisible(bool visible) override;

 private:
  QPointF Device(CanvasPoint point) const;
  QPainter& Painter();
  void EndPainting();
  void Fill(const QRect& area, Ink ink);  // device pixels

  std::function<void()> shown_;
  QSize size_{1, 1};
  double ratio_ = 1;
  bool visible_ = false;
  std::vector<QRgb> pixels_;
  QImage image_;  // over the pixels
  QPainter painter_;
  std::vector<QPointF> points_;
  std::vector<int> tops_;    // of a fill, a column
  std::vector<QRgb> mixed_;  // a row
  mutable TextStamps texts_;
};

}  // namespace quorl
