#include "memories/panel/Recall.h"

#include <algorithm>
#include <cmath>

#include "support/Rounding.h"
#include "support/ScopedFlag.h"

namespace quorl {
namespace {

constexpr std::int32_t kLowest = 1;        // Hz
constexpr std::int32_t kNotchWidth = 100;  // Hz, of a block without edges
constexpr float kLongestTime = 100000.0F;  // of the AGC, in the units of its entries

const FilterSettingsRecord& Record(const PublicVars& vars) {
  return vars.FilterSettings.at(static_cast<std::size_t>(vars.CurrentFilterMode));
}

const FilterSettingsRecord& IFRecord(const PublicVars& vars) {
  return vars.IFFilterSettings.at(static_cast<std::size_t>(vars.CurrentIFFilterMode))
      .at(static_cast<std::size_t>(vars.CurrentDemodMode));
}

}  // namespace

void Recall::ApplySettings(const TuningSettings& block) {
  if (ApplyingSettings || (SafeMemories && block.FreqCurrent < 1)) return;
  const ScopedFlag applying(ApplyingSettings);
  Receiver& rx = context_.Rx;
  links_.Tune(std::max(block.FreqCurrent, kLowest) * 10);
  links_.ShowStepLock();
  if (!SafeMemories || block.HasLowSideLO) rx.SetLowSideLO(block.LowSideLO);
  rx.SetDemodMode(block.DemodMode);
  ApplyFilter(block);
  ApplyIFFilter(block);
  ApplyNotch(block);
  ApplyAGC(block);
  if (!SafeMemories || block.HasOutputAttenuation) Put(CtlIndex::OutVol, double{block.OutputAttenuation});
  links_.TellRecorder(block.FreqCurrent);
}

void Recall::PutEdges(Edge high, Edge low, const FilterSettingsRecord& table) {
  Put(high.Entry, high.Hertz < 0 ? table.DefaultHi : high.Hertz);
  Put(low.Entry, low.Hertz < 0 ? table.DefaultLo : low.Hertz);
}

void Recall::ApplyFilter(const TuningSettings& block) {
  Receiver& rx = context_.Rx;
  rx.SetFilterMode(block.FilterMode);
  rx.SetMusic(false);
  rx.SetMusic(block.MusicModeActive);
  rx.SetDynamicFilter(block.DynFilterActive);
  PutEdges({CtlIndex::FilterHi, block.FilterHi}, {CtlIndex::FilterLo, block.FilterLo}, Record(rx.Vars));
}

void Recall::ApplyIFFilter(const TuningSettings& block) {
  Receiver& rx = context_.Rx;
  rx.SwitchIFFilter(block.IFFilterActive);
  rx.SetIFFilterMode(block.IFFilterMode);
  PutEdges({CtlIndex::IFHi, block.IFFilterHi}, {CtlIndex::IFLo, block.IFFilterLo}, IFRecord(rx.Vars));
}

void Recall::ApplyNotch(const TuningSettings& block) {
  Receiver& rx = context_.Rx;
  rx.SwitchNotch(block.NotchActive);
  rx.SetNotchType(block.NotchType);
  rx.SetNotchMode(block.NotchMode);
  rx.SetNotchMirror(block.NotchMirror);
  Put(CtlIndex::NotchC, block.NotchFilterCenter);
  // A block that leaves the filter's edges to its table leaves this width to the receiver, too.
  Put(CtlIndex::NotchW, block.FilterLo < 0 ? kNotchWidth : block.NotchFilterWidth);
}

void Recall::ApplyAGC(const TuningSettings& block) {
  Receiver& rx = context_.Rx;
  if (block.AGCMode < 0) {
    if (SavedAGCMode == AGCPreset::Off) SavedAGCMode = AGCPreset::Fast;
    rx.SetAGCPreset(SavedAGCMode);
    return;
  }
  rx.SwitchAGC(block.AGCOn);
  if (rx.Vars.AGCMode < AGCPreset::User) SavedAGCMode = rx.Vars.AGCMode;
  const float attack = std::clamp(block.AGCAttack, 0.0F, kLongestTime);
  const float decay = std::clamp(block.AGCDecay, 0.0F, kLongestTime);
  rx.TakeUserAGC(attack, decay);
  Put(CtlIndex::AGCAttack, double{attack});
  Put(CtlIndex::AGCDecay, double{decay});
}

void Recall::CaptureSettings(TuningSettings& block) const {
  const PublicVars& vars = context_.Rx.Vars;
  const auto entry = [this](int index) { return context_.Scrollables(index).Value; };
  const AGCSettingsRecord& agc = vars.AGCSettings.at(static_cast<std::size_t>(vars.AGCMode));
  block.Changed = true;
  block.FreqCurrent = RoundHalfEven(links_.Tuned() / 10.0);
  block.HiSideLO = !vars.LowSideLO;
  block.LowSideLO = vars.LowSideLO;
  block.HasLowSideLO = block.HasOutputAttenuation = true;
  block.FilterMode = vars.CurrentFilterMode;
  block.FilterHi = vars.FilterHi;
  block.FilterLo = vars.FilterLo;
  block.MusicModeActive = vars.MusicMode;
  block.DynFilterActive = vars.DynFilterActive;
  block.IFFilterActive = context_.Rx.Filters.IFFilterI.Active;
  block.IFFilterMode = vars.CurrentIFFilterMode;
  block.IFFilterHi = vars.IFHi;
  block.IFFilterLo = vars.IFLo;
  block.AGCAttack = static_cast<float>(agc.CurrentDelay);
  block.AGCDecay = static_cast<float>(agc.CurrentRamp);
  block.AGCOn = vars.AGCON;
  block.AGCMode = vars.AGCMode;
  block.NotchActive = vars.NotchActive;
  block.NotchMode = vars.NotchMode;
  block.NotchType = vars.NotchType;
  block.NotchFilterCenter = RoundHalfEven(entry(CtlIndex::NotchC));
  block.NotchFilterWidth = RoundHalfEven(entry(CtlIndex::NotchW));
  block.NotchMirror = vars.NotchMirror;
  block.DemodMode = vars.CurrentDemodMode;
  block.OutputAttenuation = entry(CtlIndex::OutVol);
}

}  // namespace quorl
