// A surface that keeps what is drawn on it, and draws nothing.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "display/canvas/Canvas.h"

namespace quorl::test {

class TraceCanvas : public Canvas {
 public:
  struct Written {
    double Left = 0, Top = 0, Width = 0, Height = 0;  // pixels
    std::string Text;
    bool Meets(const Written& other) const {
      constexpr double kTouch = 0.01;
      return Left < other.Left + other.Width - kTouch && other.Left < Left + Width - kTouch &&
             Top < other.Top + other.Height - kTouch && other.Top < Top + Height - kTouch;
    }
  };

  TraceCanvas(int width, int height) : width_(width), height_(height) {}

  int Width() const override { return width_; }
  int Height() const override { return height_; }
  void Clear(Colour) override {
    ++Frames;
    Forget();
  }
  void Line(CanvasPoint, CanvasPoint, Ink) override {}
  void Polyline(std::span<const CanvasPoint> points, Ink) override {
    OnTrace();
    if (points.size() > Trace.size()) Trace.assign(points.begin(), points.end());
  }
  void Rectangle(CanvasPoint, CanvasPoint, Ink) override { ++Rectangles; }
  void FillUnder(std::span<const CanvasPoint>, float, Ink) override {}
  void Text(CanvasPoint at, std::string_view text, Ink, TextSide, TextLevel) override {
    Texts.push_back({(at.X - Scale().Left) / UnitX(), (at.Y - Scale().Top) / UnitY(), double(TextWidth(text)),
                     double(TextHeight()), std::string(text)});
  }
  void Image(int, int, int, int, const std::uint32_t*) override { Forget(); }  // it covers everything
  int TextWidth(std::string_view text) const override { return 7 * static_cast<int>(text.size()); }
  int TextHeight() const override { return 12; }
  void SetVisible(bool visible) override { Visible = visible; }

  // Where the trace is highest between two shares of the width, as a share.
  double PeakShare(double from, double to) const {
    double share = -1.0, highest = 0.0;
    for (const CanvasPoint& point : Trace) {
      const double at = (point.X - Scale().Left) / Scale().Width;
      if (at < from || at > to || (share >= 0.0 && point.Y <= highest)) continue;
      share = at;
      highest = point.Y;
    }
    return share;
  }

  bool Visible = false;
  int Frames = 0, Rectangles = 0;
  std::vector<CanvasPoint> Trace;  // the longest one
  std::vector<Written> Texts;
  std::function<void()> OnTrace = [] {};

 private:
  void Forget() {
    Trace.clear();
    Texts.clear();
    Rectangles = 0;
  }

  int width_, height_;
};

}  // namespace quorl::test
