// The pixels of the waterfall: the newest line on top, each at its own frequency.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "display/analyser/FrequencyScale.h"
#include "display/canvas/Canvas.h"
#include "display/waterfall/Palette.h"
#include "display/waterfall/WaterfallHistory.h"

namespace quorl {

// What the picture shows; any change of it asks for all pixels anew.
struct WaterfallView {
  FrequencyScale Frequencies;
  double Top = 0, Floor = -120;  // dB of the loudest and the quietest colour
  Palette Colours = Palette::Viridis;
  int LineHeight = 1;         // device pixels
  int Width = 0, Height = 0;  // device pixels

  bool operator==(const WaterfallView&) const = default;
};

// Keeps its pixels from picture to picture: only lines that come into sight are computed.
class WaterfallPainter {
 public:
  static constexpr std::uint32_t kGround = 0xFF000000;  // where no line was, or its band ends
  static constexpr std::uint32_t kHatch = 0xFF404040;   // the strokes across a gap

  // Brings the pixels up to date, with line `top` (End() - 1 for the newest) in the first row. Takes memory
  // when the size changes.
  void Prepare(const WaterfallHistory& history, const WaterfallView& view, std::int64_t top);
  // The prepared pixels, over the whole canvas.
  void Paint(Canvas& canvas) const;
  // Lines that a picture of that view has room for.
  static int Rows(const WaterfallView& view);
  // Lines computed by the last Prepare.
  int Computed() const { return computed_; }

 private:
  void TakeView(const WaterfallView& view);
  void ComputeRow(const WaterfallHistory& history, int row);
  void ComputeGap(std::int64_t number, std::uint32_t* out) const;
  void ComputeLine(const WaterfallHistory::Line& line, std::uint32_t* out) const;
  // First pixel of a row of lines on the picture, 0 on top.
  std::uint32_t* RowPixels(int row);

  WaterfallView view_;
  std::array<std::uint32_t, 256> colours_{};  // of each level
  std::vector<std::uint32_t> pixels_;         // a ring of rows, whose first on the picture is head_
  int rows_ = 0, head_ = 0;
  std::int64_t top_ = 0, cleared_ = 0;
  bool valid_ = false;
  int computed_ = 0;
};

}  // namespace quorl
