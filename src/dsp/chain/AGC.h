// Automatic gain control over a delay line of block peaks, volume and limiter: the chain's last stage.
#pragma once

#include <cstdint>

#include "dsp/chain/ChainPorts.h"
#include "dsp/kernel/SampleBuffer.h"
#include "state/PublicVars.h"

namespace quorl {

// Once per block the gain follows from the block peaks of the last seconds, each weighted by its age: it
// falls at once for a loud block and recovers as that peak ages. The change is ramped over the start of the
// block.
class AGC {
 public:
  static constexpr std::int32_t kMaxDelayCallbacks = 235;  // 10 s of blocks
  static constexpr std::int32_t kMaxSmoothSamples = 960;   // 20 ms

  AGC(PublicVars& vars, OutputLevel& output);

  // One block of SamplesPerEvent samples in place: gain (where AGCON), volume, limiter at OutputLimit.
  void ApplyAGC(float* block);

  // Delay control, 0 to 100 tenths of a second: how long a peak counts.
  void SetDelay(float tenthsOfSecond);
  // Ramp control, 0 to 200 tenths of a millisecond.
  void SetRamp(float tenthsOfMillisecond);
  // Takes delay and ramp from AGCSettings(AGCMode).
  void ApplyPreset(std::int32_t mode);
  // Volume control, -10000 to 8000: below -50 hundredths of a decibel in the sound card, above 1 a gain of
  // value / 1000 + 1; around 0 neither. Between -50 and -1 the volume stays as it was.
  void SetVolume(float value);
  // Fills the delay line with peaks of full audio level: the first gain is then 1.
  void FillDelayLine();

  float Gain() const { return gain_; }

 private:
  bool UpdateGain(float peak);
  void ApplyGain(float* block);

  PublicVars& vars_;
  OutputLevel& output_;
  SampleBuffer delayLine_;  // block peaks, newest first
  SampleBuffer window_;     // age weights, from 1 down to 0
  SampleBuffer weighted_;
  SampleBuffer gainRamp_;
  float gain_ = 1.0F;
  float lastGain_ = 1.0F;
};

}  // namespace quorl
