#include "display/scope/ScopePassband.h"

#include <algorithm>

namespace quorl {

namespace {

bool HasManualIF(const PublicVars& vars) {
  const std::int32_t mode = vars.CurrentDemodMode;
  return vars.IFFilterActive && vars.CurrentIFFilterMode == IFFilterMode::Manual && mode != DemodMode::DRM &&
         mode != DemodMode::FM;
}

bool IsSideband(const PublicVars& vars) {
  return vars.CurrentDemodMode == DemodMode::USB || vars.CurrentDemodMode == DemodMode::LSB;
}

// Which way pitch grows on the air.
double SidebandSlope(const PublicVars& vars) {
  return vars.CurrentDemodMode == DemodMode::LSB ? -1.0 : 1.0;
}

// The IF lies upside down with the oscillator above the signal.
double IFSlope(const PublicVars& vars) {
  return vars.LowSideLO ? 1.0 : -1.0;
}

const FilterSettingsRecord& IFRecord(const PublicVars& vars) {
  return vars.IFFilterSettings[IFFilterMode::Manual][static_cast<std::size_t>(vars.CurrentDemodMode)];
}

// Both edges of the IF filter by hand, from the tuned frequency `tuned`.
std::array<BandEdge, 2> IFEdges(const PublicVars& vars, double tuned) {
  double high = 1.0, low = -1.0;  // which way they grow on the IF
  if (vars.CurrentDemodMode == DemodMode::USB && !vars.LowSideLO) std::swap(high, low);
  if (vars.CurrentDemodMode == DemodMode::LSB) high = vars.LowSideLO ? -1.0 : 1.0;
  const double slope = IFSlope(vars), origin = tuned + slope * vars.BFOOffset;
  const FilterSettingsRecord& record = IFRecord(vars);
  return {BandEdge{CtlIndex::IFHi, origin, slope * high, double(record.CurrentHi)},
          BandEdge{CtlIndex::IFLo, origin, slope * low, double(record.CurrentLo)}};
}

void AddAudioFilter(std::vector<BandEdge>& edges, const PublicVars& vars, bool onAir, double zeroBeat) {
  const double slope = onAir ? SidebandSlope(vars) : 1.0;
  edges.push_back({CtlIndex::FilterHi, zeroBeat, slope, double(vars.FilterHi)});
  if (!onAir || IsSideband(vars)) {
    edges.push_back({CtlIndex::FilterLo, zeroBeat, slope, double(vars.FilterLo)});
  } else {
    edges.push_back({CtlIndex::FilterHi, zeroBeat, -slope, double(vars.FilterHi)});
  }
}

void AddNotch(std::vector<BandEdge>& edges, double origin, double slope, double centre, double width) {
  for (const double side : {-0.5, 0.5}) {
    edges.push_back({CtlIndex::NotchC, origin + side * width, slope, centre});
  }
}

void AddNotches(std::vector<BandEdge>& edges, const PublicVars& vars, bool onAir, double tuned,
                double zeroBeat) {
  const double width = vars.NotchWidth;
  if (vars.NotchType == NotchTypes::IF) {
    if (onAir) AddNotch(edges, tuned, -1.0, vars.NotchSettings.IFCurrent, width);
    return;
  }
  const double pitch = vars.NotchSettings.AudioCurrent;
  const bool bothSides = vars.CurrentDemodMode == DemodMode::AM || vars.CurrentDemodMode == DemodMode::BC;
  if (!onAir) {
    AddNotch(edges, 0.0, 1.0, pitch, width);
  } else if (IsSideband(vars) || bothSides) {
    AddNotch(edges, zeroBeat, SidebandSlope(vars), pitch, width);
    if (bothSides) AddNotch(edges, zeroBeat, -1.0, pitch, width);
  }
}

}  // namespace

HeardBand HeardAudio(const PublicVars& vars) {
  return {static_cast<double>(vars.FilterLo), static_cast<double>(vars.FilterHi)};
}

HeardBand HeardOnAir(const PublicVars& vars) {
  const double low = vars.FilterLo, high = vars.FilterHi, zeroBeat = vars.BFOOffset;
  HeardBand band{zeroBeat - high, zeroBeat + high};
  if (vars.CurrentDemodMode == DemodMode::USB) band.Low = zeroBeat + low;
  if (vars.CurrentDemodMode == DemodMode::LSB) band.High = zeroBeat - low;
  if (!HasManualIF(vars)) return band;
  const auto edges = IFEdges(vars, 0.0);
  const auto [least, most] = std::minmax({edges[0].Hertz(), edges[1].Hertz()});
  band.Low = std::max(band.Low, least);
  band.High = std::max(std::min(band.High, most), band.Low);
  return band;
}

double MiddleOfPassband(const PublicVars& vars) {
  const HeardBand band = HeardOnAir(vars);
  return (band.Low + band.High) / 2.0;
}

std::vector<BandEdge> EdgesOf(const PublicVars& vars, bool onAir, double tuned) {
  std::vector<BandEdge> edges;
  const double zeroBeat = onAir ? tuned + vars.BFOOffset : 0.0;
  if (vars.NotchActive && vars.NotchMode == NotchModes::Manual) {
    AddNotches(edges, vars, onAir, tuned, zeroBeat);
  }
  if (onAir && HasManualIF(vars)) {
    for (const BandEdge& edge : IFEdges(vars, tuned)) edges.push_back(edge);
  }
  AddAudioFilter(edges, vars, onAir, zeroBeat);
  return edges;
}

}  // namespace quorl
