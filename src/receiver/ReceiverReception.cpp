// What the listener has set, as a whole.
#include "receiver/Receiver.h"

namespace quorl {

void Receiver::SetBoard(std::int32_t SDRModelNo, bool lowSideLO) {
  Vars.SDRModelNo = SDRModelNo;
  Vars.NotchDirty = true;  // what it is applied to is another stream
  SetLowSideLO(lowSideLO);
}

Receiver::Reception Receiver::Keep() const {
  return {Vars, Filters.IFFilterI.Active, Filters.NotchFilterI.Active};
}

void Receiver::Take(const Reception& reception) {
  const PublicVars now = Vars;
  Vars = reception.Vars;
  // What is measured goes on, and the volume is the listener's, whatever he hears.
  Vars.DSPRunning = now.DSPRunning;
  Vars.PerfStatsOn = now.PerfStatsOn;
  Vars.CurrentMainBandIndex = now.CurrentMainBandIndex;
  Vars.SignalLevelRing = now.SignalLevelRing;
  Vars.SignalLevelIndex = now.SignalLevelIndex;
  Vars.SignalPowerRing = now.SignalPowerRing;
  Vars.SignalPowerIndex = now.SignalPowerIndex;
  Vars.AGCMeterGain = now.AGCMeterGain;
  Vars.OutputAttenuation = now.OutputAttenuation;
  Vars.OutputVolume = now.OutputVolume;

  Filters.ActivateForMode(Vars.CurrentDemodMode);
  Filters.IFFilterI.Active = reception.IFFilter;
  Filters.NotchFilterI.Active = reception.Notch;
  Filters.DynFilter.Active = Vars.DynFilterActive;
  FilterMaker.CentreDynFilter();
  Vars.FiltersDirty = Vars.NotchDirty = true;
  Agc.SetDelay(reception.Vars.AGCDelayTime * 10.0F);  // its weights
  Vars.AGCDelayTime = reception.Vars.AGCDelayTime;
  MuteForDecoder();
  if (OnModeChange && now.CurrentDemodMode != Vars.CurrentDemodMode) OnModeChange();
  for (const ReceiverPart part :
       {ReceiverPart::Side, ReceiverPart::BFO, ReceiverPart::Mode, ReceiverPart::Filter,
        ReceiverPart::IFFilter, ReceiverPart::Notch, ReceiverPart::NoiseBlanker, ReceiverPart::AGC}) {
    Changed(part);
  }
}

}  // namespace quorl
