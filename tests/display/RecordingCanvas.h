// A canvas that keeps what is drawn on it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "display/canvas/Canvas.h"

namespace quorl::test {

class RecordingCanvas : public Canvas {
 public:
  struct Trace {
    std::vector<CanvasPoint> Points;
    Ink With;
  };
  struct Segment {
    CanvasPoint From, To;
    Ink With;
  };
  struct Label {
    CanvasPoint At;
    std::string Words;
    Colour Value = 0;
    TextSide Side = TextSide::Right;
    TextLevel Level = TextLevel::Below;
  };

  explicit RecordingCanvas(int width = 1200, int height = 400) : width_(width), height_(height) {
    Traces.reserve(64);
  }

  int Width() const override { return width_; }
  int Height() const override { return height_; }
  void Clear(Colour colour) override {
    Back = colour;
    Traces.clear();
    Fills.clear();
    Lines.clear();
    Labels.clear();
    ++Frames;
  }
  void Line(CanvasPoint from, CanvasPoint to, Ink ink) override { Lines.push_back({from, to, ink}); }
  void Polyline(std::span<const CanvasPoint> points, Ink ink) override {
    Traces.push_back({{points.begin(), points.end()}, ink});
  }
  void Rectangle(CanvasPoint, CanvasPoint, Ink) override {}
  void FillUnder(std::span<const CanvasPoint> points, float, Ink ink) override {
    Fills.push_back({{points.begin(), points.end()}, ink});
  }
  void Text(CanvasPoint at, std::string_view text, Ink ink, TextSide side, TextLevel level) override {
    Labels.push_back({at, std::string(text), ink.Value, side, level});
  }
  void Image(int, int, int, int, const std::uint32_t*) override {}
  int TextWidth(std::string_view text) const override { return 7 * static_cast<int>(text.size()); }
  int TextHeight() const override { return 12; }
  void SetVisible(bool visible) override { Visible = visible; }

  const Trace* TraceOf(Colour colour) const {
    for (const Trace& trace : Traces) {
      if (trace.With.Value == colour) return &trace;
    }
    return nullptr;
  }
  std::vector<Label> LabelsOf(Colour colour) const {
    std::vector<Label> labels;
    for (const Label& label : Labels) {
      if (label.Value == colour) labels.push_back(label);
    }
    return labels;
  }
  std::vector<double> LinesOf(Colour colour) const {
    std::vector<double> places;
    for (const Segment& line : Lines) {
      if (line.With.Value == colour && line.From.X == line.To.X) places.push_back(line.From.X);
    }
    return places;
  }

  bool Visible = false;
  Colour Back = 0;
  int Frames = 0;
  std::vector<Trace> Traces, Fills;
  std::vector<Segment> Lines;
  std::vector<Label> Labels;

 private:
  int width_, height_;
};

}  // namespace quorl::test
