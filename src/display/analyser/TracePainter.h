// The traces of a frame and what is drawn over them.
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "display/analyser/FilterCurve.h"
#include "display/analyser/FramePlan.h"
#include "display/canvas/Canvas.h"

namespace quorl {

// The two channels as they are drawn: kScopePoints + 1 scaled values each, and in the level view their
// levels. Null or empty where a channel is off.
struct FrameTraces {
  const float* Y1 = nullptr;
  const float* Y2 = nullptr;
  std::span<const float> Levels1, Levels2, Peaks;
};

class TracePainter {
 public:
  static constexpr int kYieldBins = 64;

  // `goOn` is asked every kYieldBins bins of a sweep: it lets others have their turn, and tells whether the
  // canvas is still there.
  explicit TracePainter(std::function<bool()> goOn);

  // Both channels, then the filter curve, the notch, and what the level view adds. The canvas has the plan's
  // scale. False where the canvas has gone.
  bool Draw(Canvas& canvas, const FramePlan& plan, const FrameTraces& traces, const FilterCurve& curve);

 private:
  using Points = std::vector<CanvasPoint>;

  bool DrawFrequency(Canvas& canvas, const FramePlan& plan, const FrameTraces& traces);
  bool DrawLevels(Canvas& canvas, const FramePlan& plan, const FrameTraces& traces);
  bool DrawXY(Canvas& canvas, const FramePlan& plan, const FrameTraces& traces);
  void DrawFilterCurve(Canvas& canvas, const FramePlan& plan, const FilterCurve& curve);
  static void DrawNotch(Canvas& canvas, const FramePlan& plan);
  void DrawPeaks(Canvas& canvas, const FramePlan& plan, std::span<const float> peaks);

  // `count` points, each made by `pointAt` of its number. False where the canvas has gone meanwhile.
  template <typename PointAt>
  bool Gather(Points& points, int count, PointAt pointAt);
  std::span<const CanvasPoint> Gathered(const Points& points) const { return {points.data(), count_}; }

  std::function<bool()> goOn_;
  Points points1_, points2_;
  std::size_t count_ = 0;
};

}  // namespace quorl
