#include "display/scope/ScopeGrips.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "support/Rounding.h"

namespace quorl {

namespace {

constexpr double kLabelStrip = 16.0;  // pixels, at the foot of the spectrum
constexpr double kReach = 4.0;        // pixels around an edge

}  // namespace

bool WindowGrip::Press(const ScopePlace& place) {
  if (!options_.Gestures || place.At.Button != MouseButton::Middle) return false;
  start_ = window_.Start();
  from_ = place.At.X;
  return true;
}

void WindowGrip::Drag(const ScopePlace& place) {
  window_.MoveTo(start_ - (place.At.X - from_) * window_.Width());
}

bool BandGrip::Press(const ScopePlace& place) {
  const bool onLabels =
      &place.Picture == context_.Scope && place.PixelY() > place.Picture.Place().Height - kLabelStrip;
  if (!options_.Gestures || place.At.Button != MouseButton::Left || !onLabels) return false;
  if (context_.Analyser.Mode() != ScopeMode::Frequency || !place.Scale.OnAir) return false;
  from_ = place.At.X;
  tuned_ = context_.Links.Wanted();
  moved_ = false;
  return true;
}

void BandGrip::Drag(const ScopePlace& place) {
  moved_ = moved_ || place.At.X != from_;
  if (!moved_) return;
  const double bins = (place.At.X - from_) * place.Scale.Width();
  wanted_ = RoundHalfEven(std::max(tuned_ - 10.0 * bins * place.Scale.HertzPerBin, 0.0));
}

void BandGrip::Periodic() {
  if (wanted_) context_.Links.TuneTo(*std::exchange(wanted_, std::nullopt));
}

bool EdgeGrip::Press(const ScopePlace& place) {
  if (!options_.EdgeDrag || place.At.Button != MouseButton::Left) return false;
  if (context_.Analyser.Mode() != ScopeMode::Frequency) return false;
  const double reach = kReach * place.HertzPerPixel();
  const auto edges = EdgesOf(context_.Vars(), place.Scale.OnAir, context_.Links.Wanted() / 10.0);
  double nearest = reach;
  bool found = false;
  for (const BandEdge& edge : edges) {
    const double distance = std::fabs(edge.Hertz() - place.Hertz);
    if (distance > nearest || context_.Panel.Scrollables(edge.Entry).NoFocus) continue;
    if (found && distance == nearest) continue;
    nearest = distance;
    edge_ = edge;
    found = true;
  }
  // It stays where it was taken hold of.
  if (found) edge_.Origin += place.Hertz - edge_.Hertz();
  return found;
}

void EdgeGrip::Drag(const ScopePlace& place) {
  ScrollableControls& scrollables = context_.Panel.Scrollables;
  const ScrollableControl& entry = scrollables(edge_.Entry);
  const auto value = static_cast<float>(std::round((place.Hertz - edge_.Origin) * edge_.Slope));
  const float within = std::clamp(value, entry.MinValue, entry.MaxValue);
  if (within != entry.Value) scrollables.SetValue(edge_.Entry, within);
}

}  // namespace quorl
