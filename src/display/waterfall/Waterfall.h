// The waterfall below the spectrum: what was on the air, line by line, as far back as one scrolls.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "display/waterfall/WaterfallHistory.h"
#include "display/waterfall/WaterfallPainter.h"

namespace quorl {

struct WaterfallOptions {
  bool On = false;        // otherwise nothing is collected or painted
  int BlocksPerLine = 1;  // 1 or more
  Palette Colours = Palette::Viridis;
  double Top = 0, Floor = -120;  // dB of the loudest and the quietest colour
  int MarkSeconds = 0;           // between two time marks, aligned to the clock; 0 for none
  int LineHeight = 0;            // device pixels; 0 for about one pixel
};

class Waterfall {
 public:
  // The memory of the history is taken when it is switched on for the first time.
  void SetOptions(const WaterfallOptions& options);
  const WaterfallOptions& Options() const { return options_; }

  // A line at `time`, microseconds since 1970 UTC. After a pause of more than a second a gap is shown.
  void Add(const SpectrumLine& line, std::int64_t time);
  void Clear();
  const WaterfallHistory& History() const { return history_; }

  // The whole canvas: lines below each other, the newest on top, with their time marks. Leaves the scale of
  // the canvas as it is.
  void Draw(Canvas& canvas, const FrequencyScale& frequencies);

  // Moves the picture by so many lines towards the past, or towards the present where negative. Scrolled back
  // it stands still while new lines come, until it is moved to the newest one again.
  void ScrollBack(std::int64_t lines);
  void ScrollToPresent() { scrolledTo_.reset(); }
  std::int64_t LinesBack() const;  // from the newest line to the one in the first row

  // Lines of the picture that was drawn last.
  int Rows() const { return rows_; }
  // Of the line at `y`, 0 at the top to 1 at the bottom of the picture that was drawn last; empty where there
  // is none.
  std::optional<std::int64_t> TimeAt(double y) const;          // microseconds since 1970 UTC
  std::optional<float> LevelAt(double y, double hertz) const;  // dB below a full-scale sine

 private:
  std::int64_t Top() const;
  std::optional<std::int64_t> NumberAt(double y) const;
  void DrawMarks(Canvas& canvas) const;
  std::int64_t MarkInterval(const Canvas& canvas) const;
  void DrawMark(Canvas& canvas, float y, std::int64_t time) const;

  WaterfallOptions options_;
  WaterfallHistory history_;
  WaterfallPainter painter_;
  std::optional<std::int64_t> scrolledTo_;  // line in the first row; empty follows the newest
  int rows_ = 0, lineHeight_ = 1, deviceHeight_ = 1;
};

// "17:05:30", of microseconds since 1970 UTC.
std::string UtcText(std::int64_t time);

}  // namespace quorl
