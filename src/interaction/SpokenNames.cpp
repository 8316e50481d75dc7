#include "interaction/SpokenNames.h"

#include "controls/Control.h"

namespace quorl {

namespace {

struct SpokenName {
  const char* Control;
  const char* Name;
};

constexpr SpokenName kNames[] = {
    {"lblTuningRate", "Tuning step"},
    {"lblTuneDialRate", "Step of the dial"},
    {"imgTuneStepLock", "Unlock the tuning step"},
    {"cboTuningSteps", "Tuning steps"},
    {"lblClock", "Clock"},
    {"cmdCalibrateSMeter", "Calibrate the S-meter"},
    {"chkTuneLo", "Low side oscillator"},
    {"optDisplaySize(0)", "Extended size"},
    {"optDisplaySize(1)", "Standard size"},
    {"optDisplaySize(2)", "Compact size"},
    {"optDisplaySize(3)", "Full size"},
    {"sldBW(0)", "Filter low edge, hertz"},
    {"sldBW(1)", "Filter high edge, hertz"},
    {"chkMusic", "Filter for music"},
    {"chkDynFilter", "Dynamic filter"},
    {"chkIFFilter", "IF filter"},
    {"optIFFilter(0)", "IF filter off"},
    {"optIFFilter(1)", "IF filter by hand"},
    {"optIFFilter(2)", "IF filter follows the filter"},
    {"chkNotchOn", "Notch"},
    {"chkNotchAuto", "Automatic notch"},
    {"chkNotchType", "Notch on the IF"},
    {"chkNotchMirror", "Notch mirrored"},
    {"optNotch(0)", "Notch by hand"},
    {"optNotch(1)", "Notch follows the tone"},
    {"sldNotch", "Notch centre, hertz"},
    {"sldNotchWidth", "Notch width, hertz"},
    {"chkAGC", "AGC"},
    {"optAGC(0)", "AGC off"},
    {"optAGC(1)", "AGC fast"},
    {"optAGC(2)", "AGC normal"},
    {"optAGC(3)", "AGC slow"},
    {"optAGC(4)", "AGC by hand"},
    {"sldAGCAttack", "AGC decay, tenths of a second"},
    {"sldAGCDecay", "AGC attack, tenths of a millisecond"},
    {"chkNB", "Noise blanker"},
    {"dialNB", "Noise blanker threshold"},
    {"sldNB", "Noise blanker threshold"},
    {"chkScopeMode(0)", "Spectrum"},
    {"chkScopeMode(1)", "Oscilloscope"},
    {"chkScopeMode(2)", "XY display"},
    {"chkSpectrumAnalyser", "Scope"},
    {"chkScopeFreeze", "Hold the picture"},
    {"chkScopeShowFilters", "Curve of the filter"},
    {"chkSpectrumAutoGain", "Automatic gain of the scope"},
    {"chkSmoothSpectrum", "Smooth the spectrum"},
    {"chkLog", "Logarithmic scale"},
    {"chkChn1On", "Channel 1"},
    {"chkChn2On", "Channel 2"},
    {"chkTrigOn(1)", "Trigger on channel 1"},
    {"chkTrigOn(2)", "Trigger on channel 2"},
    {"sldXCentre", "Scope centre"},
    {"sldXWidth", "Scope width"},
    {"sldSpectrumGain", "Gain of the scope"},
    {"lblScopeCtl(6)", "Gain of the scope"},
    {"sldScopeSplit", "Height of the spectrum"},
    {"cmdScopeView", "What the scope shows"},
};

}  // namespace

void NameControls(const ControlRegistry& registry) {
  for (const SpokenName& spoken : kNames) {
    Control* control = registry.Find(spoken.Control);
    if (control != nullptr && control->AccessibleName().empty()) control->AccessibleName = spoken.Name;
  }
}

}  // namespace quorl
