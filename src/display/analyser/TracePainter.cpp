#include "display/analyser/TracePainter.h"

#include <algorithm>
#include <cmath>

namespace quorl {

namespace {

constexpr float kFillOpacity = 0.25F, kPeakOpacity = 0.5F;
constexpr double kCurveBelowTop = 0.05;  // share of the level range

// Heights within some pictures of the one that is seen: painters don't like infinite lines.
class HeightLimit {
 public:
  explicit HeightLimit(const CanvasScale& scale) {
    const double reach = 16.0 * std::fabs(scale.Height);
    low_ = static_cast<float>(std::min(scale.Top, scale.Top + scale.Height) - reach);
    high_ = static_cast<float>(std::max(scale.Top, scale.Top + scale.Height) + reach);
  }
  float operator()(float y) const { return y > low_ ? std::min(y, high_) : low_; }

 private:
  float low_, high_;
};

// Levels of the window, lifted; never far under the floor, where silence is.
class LevelHeight {
 public:
  LevelHeight(const FramePlan& plan, std::span<const float> levels, double lift)
      : levels_(levels),
        start_(static_cast<std::size_t>(plan.Frequencies.StartX)),
        lift_(static_cast<float>(lift)),
        lowest_(static_cast<float>(2.0 * plan.Floor - plan.Top)),
        highest_(static_cast<float>(2.0 * plan.Top - plan.Floor)) {}
  CanvasPoint operator()(int k) const {
    const float y = levels_[start_ + static_cast<std::size_t>(k)] + lift_;
    return {static_cast<float>(k), y > lowest_ ? std::min(y, highest_) : lowest_};
  }

 private:
  std::span<const float> levels_;
  std::size_t start_;
  float lift_, lowest_, highest_;
};

}  // namespace

TracePainter::TracePainter(std::function<bool()> goOn)
    : goOn_(std::move(goOn)), points1_(kScopePoints + 1), points2_(kScopePoints + 1) {}

template <typename PointAt>
bool TracePainter::Gather(Points& points, int count, PointAt pointAt) {
  count_ = static_cast<std::size_t>(count);
  for (int k = 0; k < count; ++k) {
    if (k % kYieldBins == kYieldBins - 1 && !goOn_()) return false;
    points[static_cast<std::size_t>(k)] = pointAt(k);
  }
  return true;
}

bool TracePainter::Draw(Canvas& canvas, const FramePlan& plan, const FrameTraces& traces,
                        const FilterCurve& curve) {
  if (plan.Mode == ScopeMode::XY) return DrawXY(canvas, plan, traces);
  const bool there = plan.LevelView ? DrawLevels(canvas, plan, traces) : DrawFrequency(canvas, plan, traces);
  if (!there) return false;
  if (plan.Mode == ScopeMode::Frequency) {
    if (plan.ShowFilter) DrawFilterCurve(canvas, plan, curve);
    DrawNotch(canvas, plan);
  }
  if (!plan.LevelView || traces.Levels1.empty()) return true;
  if (plan.Fill) {
    canvas.FillUnder(Gathered(points1_), static_cast<float>(plan.Floor), {plan.Colours.Y1, kFillOpacity});
  }
  if (plan.PeakHold) DrawPeaks(canvas, plan, traces.Peaks);
  return true;
}

// Also the time picture: the same sweep.
bool TracePainter::DrawFrequency(Canvas& canvas, const FramePlan& plan, const FrameTraces& traces) {
  const Sweep sweep = plan.SweepOf();
  const int steps = plan.StopBin - plan.StartBin;
  if (steps < 1) return true;
  const double xStep = plan.Scale.Width / steps;
  const HeightLimit limit(plan.Scale);
  const auto trace = [&](const float* y, Points& points, Colour colour) {
    if (y == nullptr) return true;
    const bool there = Gather(points, steps + 1, [&](int k) {
      return CanvasPoint{static_cast<float>(k * xStep), limit(y[sweep.First + k * sweep.Step])};
    });
    if (there) canvas.Polyline(Gathered(points), {colour});
    return there;
  };
  return trace(traces.Y1, points1_, plan.Colours.Y1) && trace(traces.Y2, points2_, plan.Colours.Y2);
}

bool TracePainter::DrawLevels(Canvas& canvas, const FramePlan& plan, const FrameTraces& traces) {
  const int count = plan.StopBin - plan.StartBin + 1;
  if (count < 2) return true;
  const auto trace = [&](std::span<const float> levels, double lift, Points& points, Colour colour) {
    if (levels.empty()) return true;
    const bool there = Gather(points, count, LevelHeight(plan, levels, lift));
    if (there) canvas.Polyline(Gathered(points), {colour});
    return there;
  };
  return trace(traces.Levels1, plan.Lift1, points1_, plan.Colours.Y1) &&
         trace(traces.Levels2, plan.Lift2, points2_, plan.Colours.Y2);
}

bool TracePainter::DrawXY(Canvas& canvas, const FramePlan& plan, const FrameTraces& traces) {
  if (traces.Y1 == nullptr || traces.Y2 == nullptr || plan.StopBin <= plan.StartBin) return true;
  const HeightLimit limit(plan.Scale);
  const bool there = Gather(points1_, plan.StopBin - plan.StartBin + 1, [&](int k) {
    const int i = plan.StartBin + k;
    return CanvasPoint{limit(traces.Y1[i]), limit(traces.Y2[i])};
  });
  if (there) canvas.Polyline(Gathered(points1_), {plan.Colours.Y1});
  return there;
}

void TracePainter::DrawFilterCurve(Canvas& canvas, const FramePlan& plan, const FilterCurve& curve) {
  const Sweep sweep = plan.SweepOf();
  const int steps = plan.StopBin - plan.StartBin;
  if (steps < 1) return;
  const HeightLimit limit(plan.Scale);
  const ChannelSettings& channel = plan.Record.Chn1;
  const float* heights = plan.Record.LogMode ? curve.Log() : curve.Lin();
  const double top = plan.Top - kCurveBelowTop * (plan.Top - plan.Floor);
  count_ = static_cast<std::size_t>(steps) + 1;
  for (int k = 0; k <= steps; ++k) {
    // A real filter treats a frequency and its mirror image alike.
    const int bin = sweep.First + k * sweep.Step;
    const int ofFilter = plan.Band.TwoSided ? std::abs(bin - kScopeBins) : bin;
    const float y = plan.LevelView ? static_cast<float>(top) + curve.Decibels()[ofFilter]
                                   : heights[ofFilter] * channel.Gain + channel.Offset;
    points2_[static_cast<std::size_t>(k)] = {static_cast<float>(k * plan.Scale.Width / steps), limit(y)};
  }
  canvas.Polyline(Gathered(points2_), {plan.Colours.FilterCurve});
}

void TracePainter::DrawNotch(Canvas& canvas, const FramePlan& plan) {
  const auto top = static_cast<float>(plan.Scale.Top);
  const auto bottom = static_cast<float>(plan.Scale.Top + plan.Scale.Height);
  for (int k = 0; k < plan.Notch.Count; ++k) {
    const NotchMarks::Edges& edges = plan.Notch.Bands[static_cast<std::size_t>(k)];
    for (const double edge : {edges.From, edges.To}) {
      const double x = edge - plan.Frequencies.StartX;
      if (!(x >= 0.0 && x <= plan.Scale.Width)) continue;
      const auto place = static_cast<float>(x);
      canvas.Line({place, top}, {place, bottom}, {plan.Colours.NotchFilter});
    }
  }
}

void TracePainter::DrawPeaks(Canvas& canvas, const FramePlan& plan, std::span<const float> peaks) {
  const int count = plan.StopBin - plan.StartBin + 1;
  if (peaks.empty() || count < 2) return;
  const LevelHeight height(plan, peaks, plan.Lift1);
  count_ = static_cast<std::size_t>(count);
  for (int k = 0; k < count; ++k) points2_[static_cast<std::size_t>(k)] = height(k);
  canvas.Polyline(Gathered(points2_), {plan.Colours.Y1, kPeakOpacity});
}

}  // namespace quorl
