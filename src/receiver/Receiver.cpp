#include "receiver/Receiver.h"

#include "dsp/kernel/VectorKernel.h"

namespace quorl {

Receiver::Receiver(const Clock& clock, SoundOutput& sound, BlockRecorder& recorder,
                   std::function<void()> yield, KernelSettings settings)
    : Settings(std::move(settings)),
      Tap(Vars),
      Filters(Settings),
      Agc(Vars, sound),
      Chain(Vars, Filters, Agc, Tap, recorder),
      FilterMaker(Vars, Filters, Tap, yield),
      Profiler1(clock),
      Pump(Vars, Filters, Chain, Agc, Tap, recorder, sound, Profiler1, yield) {
  Filters.Initialise();
  Agc.ApplyPreset(Vars.AGCMode);
  Agc.FillDelayLine();
  SetDemodMode(Vars.CurrentDemodMode);
  SetFilterMode(Vars.CurrentFilterMode);
}

void Receiver::SetDemodMode(std::int32_t mode) {
  Vars.CurrentDemodMode = mode;
  Filters.ActivateForMode(mode);
  Vars.FiltersDirty = true;
}

void Receiver::SetFilterMode(std::int32_t mode) {
  Vars.CurrentFilterMode = mode;
  const FilterSettingsRecord& record = Vars.FilterSettings[static_cast<std::size_t>(mode)];
  Vars.MusicMode = record.MusicMode;
  SetFilterEdges(record.CurrentLo, record.CurrentHi);
}

void Receiver::SetFilterEdges(std::int32_t low, std::int32_t high) {
  Vars.FilterLo = low;
  Vars.FilterHi = high;
  FilterMaker.CentreDynFilter();
  Vars.FiltersDirty = true;
}

void Receiver::SetIFFilter(std::int32_t mode) {
  Vars.CurrentIFFilterMode = mode;
  Vars.IFFilterActive = Filters.IFFilterI.Active = mode != IFFilterMode::Off;
  Vars.FiltersDirty = true;
}

void Receiver::SetManualIFFilter(std::int32_t low, std::int32_t high) {
  FilterSettingsRecord& record =
      Vars.IFFilterSettings[IFFilterMode::Manual][static_cast<std::size_t>(Vars.CurrentDemodMode)];
  record.CurrentLo = low;
  record.CurrentHi = high;
  Vars.FiltersDirty = true;
}

void Receiver::SetNotch(bool active, std::int32_t mode, std::int32_t type, std::int32_t centre,
                        std::int32_t width) {
  Vars.NotchActive = Filters.NotchFilterI.Active = active;
  Vars.NotchMode = mode;
  Vars.NotchType = type;
  Vars.NotchCentre = centre;
  if (type == NotchTypes::IF) Vars.NotchCentre = Vars.LowSideLO ? IFCentre - centre : IFCentre + centre;
  Vars.NotchLastWidth = Vars.NotchWidth;
  Vars.NotchWidth = width;
  SetNotchEdges(Vars);
  Vars.NotchDirty = true;
}

void Receiver::SetNotchMirror(bool mirror) {
  Vars.NotchMirror = mirror;
  Vars.NotchDirty = true;
}

void Receiver::SetNoiseBlanker(bool on, float controlValue) {
  Vars.NBOn = on;
  Vars.NBThreshold = NoiseBlanker::ThresholdOf(controlValue);
}

void Receiver::SetDynamicFilter(bool on) {
  Vars.DynFilterActive = Filters.DynFilter.Active = on;
  Vars.FiltersDirty = true;
}

bool Receiver::Housekeeping() {
  FilterMaker.WaitForBlock();
  if (Vars.FiltersDirty) {
    Vars.FiltersDirty = false;
    FilterMaker.MakeFilters();
    FilterMaker.WaitForBlock();
  }
  return FilterMaker.NotchHousekeeping();
}

float Receiver::MeanSignalLevel() const {
  return Sum_S_1(Vars.SignalLevelRing.data(), SignalLevelRingSize) / static_cast<float>(SignalLevelRingSize);
}

}  // namespace quorl
