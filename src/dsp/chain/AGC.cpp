#include "dsp/chain/AGC.h"

#include <algorithm>
#include <cmath>

#include "dsp/kernel/VectorKernel.h"
#include "support/Rounding.h"

namespace quorl {

namespace {

constexpr float kSilence = 0.01F;  // a hundredth of a 16-bit step: no converter brings so little

}  // namespace

AGC::AGC(PublicVars& vars, OutputLevel& output)
    : vars_(vars),
      output_(output),
      delayLine_(kMaxDelayCallbacks + 1),
      window_(kMaxDelayCallbacks + 1),
      weighted_(kMaxDelayCallbacks + 1),
      gainRamp_(kMaxSmoothSamples) {}

void AGC::SetDelay(float tenthsOfSecond) {
  vars_.AGCDelayTime = tenthsOfSecond / 10.0F;
  vars_.AGCDelayCallbacks =
      std::clamp(RoundHalfEven(vars_.AGCDelayTime * BlocksPerSecond), 0, kMaxDelayCallbacks);
  VectorRamp_S_1(1.0F, 0.0F, window_.data(), vars_.AGCDelayCallbacks);
  auto& preset = vars_.AGCSettings[static_cast<std::size_t>(vars_.AGCMode)];
  preset.CurrentDelay = RoundHalfEven(tenthsOfSecond);
}

void AGC::SetRamp(float tenthsOfMillisecond) {
  vars_.AGCSmoothTime = RoundHalfEven(tenthsOfMillisecond / 10.0F);
  vars_.AGCSmoothSamples = std::clamp(vars_.AGCSmoothTime * (FSampling / 1000), 0, kMaxSmoothSamples);
  auto& preset = vars_.AGCSettings[static_cast<std::size_t>(vars_.AGCMode)];
  preset.CurrentRamp = RoundHalfEven(tenthsOfMillisecond);
}

void AGC::ApplyPreset(std::int32_t mode) {
  vars_.AGCMode = mode;
  const AGCSettingsRecord preset = vars_.AGCSettings[static_cast<std::size_t>(mode)];
  SetDelay(static_cast<float>(preset.CurrentDelay));
  SetRamp(static_cast<float>(preset.CurrentRamp));
}

void AGC::SetVolume(float value) {
  if (value < -50.0F) {
    vars_.OutputAttenuation = value;
  } else if (value > 1.0F) {
    vars_.OutputAttenuation = value / 1000.0F + 1.0F;
  } else if (value >= -1.0F) {
    vars_.OutputAttenuation = 0.0F;
  }
}

void AGC::FillDelayLine() {
  SetMemory_S(delayLine_.data(), vars_.AGCDelayCallbacks, AGCTarget);
}

bool AGC::UpdateGain(float peak) {
  const std::int32_t n = vars_.AGCDelayCallbacks;
  if (n == 0) return true;
  // Silence does not enter the line, so that it neither ages the peaks nor lowers them. What a filter makes
  // of a muted input's constant is silence, too: brought up to full level, it would roar.
  if (peak >= kSilence) {
    ShiftVectorRight_S_1(delayLine_.data(), n - 1);
    delayLine_[0] = peak;
  }
  Mpy_S_3(window_.data(), delayLine_.data(), weighted_.data(), n);
  const float gain = AGCTarget / MaxValueAbs_S(weighted_.data(), n);
  if (!std::isfinite(gain)) return false;
  gain_ = gain;
  return true;
}

void AGC::ApplyGain(float* block) {
  const bool applied = vars_.AGCON && vars_.AGCDelayCallbacks > 0;
  vars_.AGCMeterGain = applied ? gain_ : 1.0F;
  if (vars_.AGCDelayCallbacks == 0) return;
  if (applied) {
    const std::int32_t ramp = vars_.AGCSmoothSamples;
    VectorRamp_S_1(lastGain_, gain_, gainRamp_.data(), ramp);
    Mpy_S_2(gainRamp_.data(), block, ramp);
    Mpy_S_1(gain_, block + ramp, SamplesPerEvent - ramp);
  }
  // Also while switched off, so that switching on gives no jump.
  lastGain_ = gain_;
}

void AGC::ApplyAGC(float* block) {
  // Nothing heard yet: there is no peak to set a gain by, and the block goes on as it is.
  if (!UpdateGain(MaxValueAbs_S(block, SamplesPerEvent))) {
    vars_.AGCMeterGain = 1.0F;
    return;
  }
  ApplyGain(block);
  if (vars_.OutputAttenuation <= 0.0F) {
    output_.SetOutputAttenuation(RoundHalfEven(vars_.OutputAttenuation));
  } else {
    Mpy_S_1(vars_.OutputAttenuation, block, SamplesPerEvent);
    output_.SetOutputAttenuation(0);
  }
  const float peak = MaxValueAbs_S(block, SamplesPerEvent);
  if (peak > OutputLimit) Mpy_S_1(OutputLimit / peak, block, SamplesPerEvent);
}

}  // namespace quorl
