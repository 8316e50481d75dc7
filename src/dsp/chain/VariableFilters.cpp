#include "dsp/chain/VariableFilters.h"

#include <algorithm>
#include <cstdlib>

#include "dsp/kernel/VectorKernel.h"
#include "support/Rounding.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr std::int32_t kWideReach = 10000;  // Hz around the IF centre: FM, and the I/Q splitter

// Where a band of audio from `low` to `high` stands on the IF: above the centre or, mirrored, below it.
FilterEdges AboveCentre(std::int32_t low, std::int32_t high) {
  return {IFCentre + low, IFCentre + high};
}
FilterEdges BelowCentre(std::int32_t low, std::int32_t high) {
  return {IFCentre - high, IFCentre - low};
}

}  // namespace

VariableFilters::VariableFilters(PublicVars& vars, FilterBank& filters, const AnalyserTap& tap,
                                 std::function<void()> yield)
    : vars_(vars), filters_(filters), tap_(tap), yield_(std::move(yield)), curveTaps_(BlockPoints) {}

FilterEdges VariableFilters::IFEdges(const PublicVars& vars) {
  const bool manual = vars.CurrentIFFilterMode == IFFilterMode::Manual && vars.IFFilterActive;
  const std::int32_t mode = std::clamp(vars.CurrentDemodMode, 0, DemodMode::Count - 1);
  const FilterSettingsRecord& record =
      vars.IFFilterSettings[IFFilterMode::Manual][static_cast<std::size_t>(mode)];
  const std::int32_t high = manual ? record.CurrentHi : vars.FilterHi;
  const std::int32_t low = manual ? record.CurrentLo : vars.FilterLo;
  switch (mode) {
    case DemodMode::AM:
    case DemodMode::BC:
      return {IFCentre - (manual ? low : high), IFCentre + high};
    case DemodMode::USB:
      // The manual extents of a sideband reach across the centre: `high` and `low` count to opposite sides.
      if (manual)
        return vars.LowSideLO ? FilterEdges{IFCentre - low, IFCentre + high}
                              : FilterEdges{IFCentre + low, IFCentre - high};
      return vars.LowSideLO ? AboveCentre(low, high) : BelowCentre(low, high);
    case DemodMode::LSB:
      if (manual) return {vars.LowSideLO ? IFCentre - high : IFCentre + high, IFCentre - low};
      return vars.LowSideLO ? BelowCentre(low, high) : AboveCentre(low, high);
    case DemodMode::FM:
      return {IFCentre - kWideReach, IFCentre + kWideReach};
    default:
      return {IFCentre - vars.FilterHi, IFCentre + vars.FilterHi};
  }
}

void VariableFilters::WaitForBlock() {
  do {
    yield_();
  } while (vars_.DSPRunning);
}

void VariableFilters::Rebuild(clsFFTFilter& filter, FilterEdges edges) {
  filter.FHigh = edges.High;
  filter.FLow = edges.Low;
  filter.MakeFilter();
  while (vars_.DSPRunning) yield_();
}

clsFFTFilter& VariableFilters::CurveFilter() const {
  if (!tap_.Analyser->IsPlainAudio()) return filters_.IFFilterI;
  const bool sideband = vars_.CurrentDemodMode == DemodMode::USB || vars_.CurrentDemodMode == DemodMode::LSB;
  return sideband ? filters_.SSBFilterI : filters_.AFFilter;
}

void VariableFilters::MakeFilters() {
  if (inMakeFilters_) return;
  const ScopedFlag inMakeFilters(inMakeFilters_);
  FilterBank& f = filters_;
  FilterEdges edges = IFEdges(vars_);
  edges.High += vars_.BFOOffset;
  edges.Low += vars_.BFOOffset;
  Rebuild(f.IFFilterI, edges);
  f.IFFilterQ.Active = vars_.SDRModelNo == SDRModel::IQXtalRX || vars_.SDRModelNo == SDRModel::RealToIQRX;
  if (f.IFFilterQ.Active) {
    f.IFFilterQ.QPhase = false;
    Rebuild(f.IFFilterQ, {f.IFFilterI.FLow, f.IFFilterI.FHigh});
  }
  if (f.IQFilterI.Active) {
    f.IQFilterI.QPhase = false;
    Rebuild(f.IQFilterI, {IFCentre - kWideReach, IFCentre + kWideReach});
  }
  if (f.IQFilterQ.Active) {
    f.IQFilterQ.QPhase = !f.IQFilterI.QPhase;
    Rebuild(f.IQFilterQ, {f.IQFilterI.FLow, f.IQFilterI.FHigh});
  }
  const FilterEdges audio{vars_.FilterLo, vars_.FilterHi};
  if (f.AFFilter.Active) Rebuild(f.AFFilter, audio);
  if (f.SSBFilterI.Active) {
    f.SSBFilterI.QPhase = false;
    Rebuild(f.SSBFilterI, audio);
  }
  if (f.SSBFilterQ.Active) {
    f.SSBFilterQ.QPhase = true;
    Rebuild(f.SSBFilterQ, {f.SSBFilterI.FLow, f.SSBFilterI.FHigh});
  }
  if (f.DynFilter.Active) Rebuild(f.DynFilter, {f.DynFilter.FLow, f.DynFilter.FHigh});
  if (tap_.Analyser != nullptr) {
    CurveFilter().GetFilterCoeffs_T_S(curveTaps_.data());
    tap_.Analyser->LoadFilterCoeffs_T_S(curveTaps_.data());
  }
}

void VariableFilters::CentreDynFilter() {
  const double width = vars_.FilterHi - vars_.FilterLo;
  filters_.DynFilter.FLow = RoundHalfEven(vars_.FilterLo + 0.1 * width);
  filters_.DynFilter.FHigh = RoundHalfEven(vars_.FilterHi - 0.1 * width);
}

void VariableFilters::TrackPeak() {
  const clsFFTFilter& notch = filters_.NotchFilterI;
  const std::int32_t hertzPerBin = std::max(RoundHalfEven(notch.HzPerBin), 1);
  const auto sum = static_cast<std::int32_t>(Sum_Int32_1(vars_.PeakBinRing.data(), PeakBinRingUpperBound));
  const std::int32_t mean = sum / PeakBinRingUpperBound + vars_.FilterLo / hertzPerBin;
  vars_.PeakFrequency = notch.FSampling / 2 * mean / notch.Points;
  // A notch set by hand stays where it was set.
  if (vars_.NotchMode == NotchModes::Auto) vars_.NotchCentre = vars_.PeakFrequency;
}

void VariableFilters::MoveDynFilter() {
  constexpr std::int32_t kMove = 100;  // Hz
  const std::int32_t distance = vars_.PeakFrequency - vars_.PeakLastFrequency;
  if (std::abs(distance) <= kMove) return;
  clsFFTFilter& dyn = filters_.DynFilter;
  dyn.FHigh += distance;
  dyn.FLow += distance;
  if (dyn.Active) {
    const double width = vars_.FilterHi - vars_.FilterLo;
    if (dyn.FHigh < vars_.FilterHi - 0.2 * width) dyn.FHigh = RoundHalfEven(vars_.FilterHi - 0.2 * width);
    if (dyn.FHigh > vars_.FilterHi) dyn.FHigh = vars_.FilterHi;
    if (dyn.FLow > vars_.FilterLo + 0.1 * width) dyn.FLow = RoundHalfEven(vars_.FilterLo + 0.1 * width);
    if (dyn.FLow < vars_.FilterLo) dyn.FLow = vars_.FilterLo;
    dyn.MakeFilter();
    WaitForBlock();
  }
  vars_.PeakLastFrequency = vars_.PeakFrequency;
}

void VariableFilters::RebuildNotch() {
  vars_.NotchDirty = false;
  clsFFTFilter& i = filters_.NotchFilterI;
  clsFFTFilter& q = filters_.NotchFilterQ;
  q.Active = i.Active;
  for (clsFFTFilter* notch : {&i, &q}) {
    notch->FLow = vars_.NotchLo;
    notch->FHigh = vars_.NotchHi;
    notch->BandReject = !vars_.NotchMirror;
    notch->MakeFilter();
  }
  vars_.NotchLastCentre = vars_.NotchCentre;
}

bool VariableFilters::NotchHousekeeping() {
  const bool automatic = vars_.NotchMode == NotchModes::Auto;
  const bool tracking = vars_.DynFilterActive || automatic;
  if (tracking) TrackPeak();
  if (vars_.DynFilterActive) MoveDynFilter();
  if (filters_.NotchFilterI.Active && automatic) {
    SetNotchEdges(vars_);
    if (std::abs(vars_.NotchCentre - vars_.NotchLastCentre) > vars_.NotchWidth / 8) vars_.NotchDirty = true;
  }
  if (vars_.NotchDirty) RebuildNotch();
  return tracking;
}

void SetNotchEdges(PublicVars& vars) {
  vars.NotchLo = vars.NotchCentre - vars.NotchWidth / 2;
  vars.NotchHi = vars.NotchCentre + vars.NotchWidth / 2;
}

}  // namespace quorl
