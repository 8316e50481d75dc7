#include "state/PublicVars.h"

namespace quorl {

namespace {

constexpr std::int32_t kManualIFHigh = 4500;
constexpr std::int32_t kManualIFLow = 50;

// Quarter, half and all of the control ranges: 0.5 to 10 s of delay, 1 to 20 ms of ramp.
constexpr std::array<std::array<std::int32_t, 2>, AGCPreset::Count> kAGCPresets{
    {{0, 0}, {25, 50}, {50, 100}, {100, 200}, {50, 100}}};

}  // namespace

PublicVars::PublicVars() {
  for (std::size_t mode = 0; mode < FilterSettings.size(); ++mode) {
    const FilterEdges edges = FilterDefaults[mode];
    FilterSettings[mode] = {edges.High, edges.Low, edges.High, edges.Low, 0, edges.Low, false};
  }
  for (auto& byDemodMode : IFFilterSettings) {
    for (std::int32_t mode = 0; mode < DemodMode::Count; ++mode) {
      // A double sideband filter reaches as far down as up.
      const bool doubleSideband = mode == DemodMode::AM || mode == DemodMode::BC;
      const std::int32_t low = doubleSideband ? kManualIFHigh : kManualIFLow;
      byDemodMode[static_cast<std::size_t>(mode)] = {kManualIFHigh, low, kManualIFHigh, low, 0, low, false};
    }
  }
  for (std::size_t mode = 0; mode < AGCSettings.size(); ++mode) {
    const auto [delay, ramp] = kAGCPresets[mode];
    AGCSettings[mode] = {delay, delay, delay, ramp, ramp, ramp};
  }
}

}  // namespace quorl
