#include "display/scope/PassbandLayer.h"

#include <algorithm>

#include "display/scope/ScopePassband.h"

namespace quorl {

namespace {

constexpr Ink kShade{0xC0C000, 0.16F}, kZeroBeat{0x4040FF, 0.9F};

}  // namespace

void PassbandLayer::Draw(Canvas& canvas, const ScopeFrame& frame) {
  if (!options_.Passband || frame.Mode != ScopeMode::Frequency) return;
  const FrequencyScale& scale = frame.Frequencies;
  const PublicVars& vars = context_.Vars();
  const double tuned = scale.OnAir ? context_.Links.Wanted() / 10.0 : 0.0;
  const HeardBand band = scale.OnAir ? HeardOnAir(vars) : HeardAudio(vars);
  const auto top = static_cast<float>(frame.Scale.Top);
  const auto bottom = static_cast<float>(frame.Scale.Top + frame.Scale.Height);
  const double low = std::max(scale.XAt(tuned + band.Low), 0.0);
  const double high = std::min(scale.XAt(tuned + band.High), scale.Width());
  if (low < high) canvas.Rectangle({float(low), top}, {float(high), bottom}, kShade);
  const double zeroBeat = scale.XAt(tuned + vars.BFOOffset);
  if (!scale.OnAir || zeroBeat < 0.0 || zeroBeat > scale.Width()) return;
  canvas.Line({float(zeroBeat), top}, {float(zeroBeat), bottom}, kZeroBeat);
}

}  // namespace quorl
