// Putting together, mode, oscillators, levels, housekeeping. The filters' routines are in
// ReceiverFilters.cpp, those of the notch in ReceiverNotch.cpp.
#include "receiver/Receiver.h"

#include <utility>

#include "dsp/chain/NoiseBlanker.h"
#include "dsp/kernel/VectorKernel.h"
#include "support/Rounding.h"

namespace quorl {

namespace {

constexpr std::int32_t kFirstNotchWidth = 100;  // Hz

}  // namespace

Receiver::Receiver(const Clock& clock, SoundOutput& sound, BlockRecorder& recorder,
                   std::function<void()> yield)
    : Tap(Vars),
      Filters(Settings),
      Agc(Vars, sound),
      Chain(Vars, Filters, Agc, Tap, recorder),
      FilterMaker(Vars, Filters, Tap, yield),
      Beat(Settings),
      Profiler1(clock),
      Pump(Vars, Chain, Tap, Beat, recorder, sound, Profiler1, std::move(yield)) {}

void Receiver::Initialise() {
  InitialiseFFTReal();
  InitialiseFilters();
}

void Receiver::InitialiseFFTReal() {
  Filters.FFTReal.FFTInit(SegmentSize);
}

void Receiver::InitialiseFilters() {
  Filters.Initialise();
  Agc.ApplyPreset(Vars.AGCMode);
  Agc.FillDelayLine();
  SetDemodMode(Vars.CurrentDemodMode);
  SetFilterMode(Vars.CurrentFilterMode);
  SetNotchWidth(kFirstNotchWidth);
}

void Receiver::PlaceBFO(std::int32_t hertz) {
  Vars.MixerFrequency = IFCentre + hertz;
  Vars.MixerPhaseStep = RoundDown(1073741824.0 / FSampling * Vars.MixerFrequency + 0.5);
  Vars.BFOOffset = Vars.LowSideLO ? hertz : -hertz;
  Vars.FiltersDirty = true;
}

void Receiver::SetBFO(std::int32_t hertz) {
  PlaceBFO(hertz);
  Changed(ReceiverPart::BFO);
}

// What stood above the IF's centre stands below it on the other side.
void Receiver::SetLowSideLO(bool low) {
  const bool moves = low != Vars.LowSideLO;
  Vars.LowSideLO = low;
  PlaceBFO(Vars.MixerFrequency - IFCentre);
  if (moves && Vars.NotchType == NotchTypes::IF) {
    PlaceNotch();
    Vars.NotchDirty = true;
  }
  Changed(ReceiverPart::Side);
}

void Receiver::SetDemodMode(std::int32_t mode) {
  if (mode < 0 || mode >= DemodMode::Count) return;
  const std::int32_t from = Vars.CurrentDemodMode;
  Vars.CurrentDemodMode = mode;
  Filters.ActivateForMode(mode);
  Vars.FiltersDirty = true;
  MuteForDecoder();
  if (OnModeChange && mode != from) OnModeChange();
  const bool leavesDRM = from == DemodMode::DRM && mode != DemodMode::DRM;
  if (leavesDRM) TakeFilter();
  FollowDemodMode();
  Changed(ReceiverPart::Mode);
  if (leavesDRM) Changed(ReceiverPart::Filter);
  Changed(ReceiverPart::IFFilter);
}

void Receiver::MuteForDecoder() {
  Vars.DRMAudioMuted = Vars.CurrentDemodMode == DemodMode::DRM && MuteAFOnDRM && !outputForDecoder_;
}

void Receiver::SetMuteAFOnDRM(bool mute) {
  MuteAFOnDRM = mute;
  MuteForDecoder();
}

void Receiver::SetOutputForDecoder(bool forDecoder) {
  outputForDecoder_ = forDecoder;
  MuteForDecoder();
}

void Receiver::SwitchNoiseBlanker(bool on) {
  Vars.NBOn = on;
  Changed(ReceiverPart::NoiseBlanker);
}

void Receiver::SetNoiseBlankerLevel(float level) {
  Vars.NBLevel = level;
  Vars.NBThreshold = NoiseBlanker::ThresholdOf(level);
  Changed(ReceiverPart::NoiseBlanker);
}

void Receiver::SwitchAGC(bool on) {
  Vars.AGCON = on;
  Changed(ReceiverPart::AGC);
}

void Receiver::SetAGCPreset(std::int32_t mode) {
  if (!Vars.AGCON || mode < 0 || mode >= static_cast<std::int32_t>(Vars.AGCSettings.size())) return;
  Agc.ApplyPreset(mode);
  Changed(ReceiverPart::AGC);
}

void Receiver::SetAGCDelay(float tenthsOfSecond) {
  Agc.SetDelay(tenthsOfSecond);
  Changed(ReceiverPart::AGC);
}

void Receiver::SetAGCRamp(float tenthsOfMillisecond) {
  Agc.SetRamp(tenthsOfMillisecond);
  Changed(ReceiverPart::AGC);
}

void Receiver::TakeUserAGC(float tenthsOfSecond, float tenthsOfMillisecond) {
  Vars.AGCMode = AGCPreset::User;
  Agc.SetDelay(tenthsOfSecond);
  Agc.SetRamp(tenthsOfMillisecond);
  Changed(ReceiverPart::AGC);
}

void Receiver::SetVolume(float value) {
  Vars.OutputVolume = value;
  Agc.SetVolume(value);
  Changed(ReceiverPart::Volume);
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
