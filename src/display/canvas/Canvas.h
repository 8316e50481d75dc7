// What the scope draws on: a surface with a scale of its own, whoever keeps its pixels.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "controls/Control.h"

namespace quorl {

struct CanvasPoint {
  float X = 0, Y = 0;
};

// Coordinates of a surface: its left and top edge, and how far it is to the right and bottom edge. A negative
// height lets Y grow upwards.
struct CanvasScale {
  double Left = 0, Top = 0, Width = 1, Height = 1;
};

struct Ink {
  Colour Value = 0;
  float Opacity = 1.0F;  // 0 to 1
};

// Where a text stands to the point that it is drawn at.
enum class TextSide { Right, Left, Centre };  // begins there, ends there, has it in the middle
enum class TextLevel { Below, Above, Middle };

// An ink that is made for a dark ground, as it is seen on `ground`: a quarter as bright where that is light.
constexpr Ink OnGround(Ink ink, Colour ground) {
  const Colour light = 2 * (ground & 0xFF) + 5 * (ground >> 8 & 0xFF) + (ground >> 16 & 0xFF);
  return light < 8 * 128 ? ink : Ink{ink.Value >> 2 & 0x3F3F3F, ink.Opacity};
}

// Everything is drawn in the scale in force; lines are one device pixel wide.
class Canvas {
 public:
  virtual ~Canvas() = default;

  // Pixels, and device pixels for each of them.
  virtual int Width() const = 0;
  virtual int Height() const = 0;
  virtual double Ratio() const { return 1.0; }

  void SetScale(const CanvasScale& scale) { scale_ = scale; }
  const CanvasScale& Scale() const { return scale_; }
  // Scale units for each pixel; the vertical one is negative where Y grows upwards.
  double UnitX() const { return scale_.Width / Width(); }
  double UnitY() const { return scale_.Height / Height(); }

  virtual void Clear(Colour colour) = 0;
  virtual void Line(CanvasPoint from, CanvasPoint to, Ink ink) = 0;
  virtual void Polyline(std::span<const CanvasPoint> points, Ink ink) = 0;
  virtual void Rectangle(CanvasPoint corner, CanvasPoint opposite, Ink ink) = 0;  // filled
  // Fills from the polyline, whose X never falls, down to `base`.
  virtual void FillUnder(std::span<const CanvasPoint> points, float base, Ink ink) = 0;
  virtual void Text(CanvasPoint at, std::string_view text, Ink ink, TextSide side = TextSide::Right,
                    TextLevel level = TextLevel::Below) = 0;
  // A picture of `width` x `height` device pixels, 0xFFRRGGBB row by row, with its corner `left`, `top`
  // device pixels from that of the surface; what lies outside is left away.
  virtual void Image(int left, int top, int width, int height, const std::uint32_t* pixels) = 0;
  // Pixels.
  virtual int TextWidth(std::string_view text) const = 0;
  virtual int TextHeight() const = 0;

  // A surface is drawn while it is hidden, then shown whole.
  virtual void SetVisible(bool visible) = 0;

 private:
  CanvasScale scale_;
};

}  // namespace quorl
