// A receiver fed with signals on its IF, and the audio before its conversion to 16 bits.
#pragma once

#include <array>
#include <functional>
#include <memory>

#include "dsp/Signals.h"
#include "platform/virtual/VirtualClock.h"
#include "receiver/Receiver.h"

namespace quorl::test {

// Value at sample n; a pair for boards with I and Q.
using Signal = std::function<double(std::int64_t n)>;

inline Signal ToneOf(double hertz, double level, double phase = 0.0) {
  return [=](std::int64_t n) { return level * std::cos(Radians(hertz) * double(n) + phase); };
}
inline Signal AMOf(double carrier, double hertz, double depth, double level) {
  return [=](std::int64_t n) {
    return level * (1.0 + depth * std::cos(Radians(hertz) * double(n))) *
           std::cos(Radians(carrier) * double(n));
  };
}
inline Signal FMOf(double carrier, double hertz, double deviation, double level) {
  return [=](std::int64_t n) {
    return level *
           std::cos(Radians(carrier) * double(n) + deviation / hertz * std::sin(Radians(hertz) * double(n)));
  };
}
inline Signal SumOf(Signal a, Signal b) {
  return [=](std::int64_t n) { return a(n) + b(n); };
}

class SilentSound : public SoundOutput {
 public:
  void SetOutputAttenuation(std::int32_t value) override { Attenuation = value; }
  void Output(const std::int16_t*, const std::int16_t*) override { ++Blocks; }
  std::int32_t Attenuation = 12345;
  int Blocks = 0;
};

// A notch as a listener sets it: switched on, then placed.
inline void TurnNotchOn(Receiver& radio, std::int32_t mode, std::int32_t type, std::int32_t centre,
                        std::int32_t width) {
  radio.SwitchNotch(true);
  radio.SetNotchType(type);
  radio.SetNotchMode(mode);
  radio.SetNotchCentre(centre);
  radio.SetNotchWidth(width);
}
inline void TurnIFFilterOn(Receiver& radio, std::int32_t mode) {
  radio.SwitchIFFilter(true);
  radio.SetIFFilterMode(mode);
}

class ChainRig {
 public:
  // AGC off, so that levels are the chain's own.
  explicit ChainRig(std::int32_t model = SDRModel::DRT1, std::int32_t mode = DemodMode::AM,
                    bool lowSideLO = false) {
    Radio.Initialise();
    Radio.Vars.SDRModelNo = model;
    Radio.Vars.AGCON = false;
    Radio.SetLowSideLO(lowSideLO);
    Radio.SetDemodMode(mode);
    Radio.Housekeeping();
  }

  void SetFilter(std::int32_t low, std::int32_t high) {
    Radio.SetFilterEdges(low, high);
    Radio.Housekeeping();
  }

  // Feeds `skip + count` blocks of the signal and returns the audio of the last `count`. The 16-bit samples
  // carry dither of one step: it turns the quantisation's lines into noise, which a long span averages away,
  // so that what a line shows is the chain's own.
  SampleBuffer Receive(const Signal& left, int count, int skip = 6, const Signal& right = {}) {
    SampleBuffer audio;
    for (int block = 0; block < skip + count; ++block) {
      FillBlock(left, I);
      if (right) FillBlock(right, Q);
      Sample += SamplesPerEvent;
      Step();
      const float* from = Radio.Chain.AudioBlock();
      if (block >= skip) audio.insert(audio.end(), from, from + SamplesPerEvent);
    }
    return audio;
  }

  // One block as it stands in I and Q, and its housekeeping.
  void Step() {
    Radio.Pump.SoundCard_DataReady(I.data(), Q.data());
    Radio.Housekeeping();
  }

  VirtualClock Clock;
  SilentSound Sound;
  NoRecorder Recorder;
  Receiver Radio{Clock, Sound, Recorder, [] {}};
  std::array<std::int16_t, SamplesPerEvent> I{}, Q{};
  std::int64_t Sample = 0;

 private:
  void FillBlock(const Signal& signal, std::array<std::int16_t, SamplesPerEvent>& block) {
    for (std::size_t k = 0; k < block.size(); ++k) {
      const double value = signal(Sample + std::int64_t(k)) + dither_(generator_);
      block[k] = static_cast<std::int16_t>(std::clamp(std::nearbyint(value), -32768.0, 32767.0));
    }
  }

  std::mt19937 generator_{1};
  std::uniform_real_distribution<double> dither_{-0.5, 0.5};
};

// A span of `blocks` blocks has its bins at these frequencies.
inline double OnBin(double hertz, int blocks) {
  const double bin = 48000.0 / (SamplesPerEvent * blocks);
  return std::nearbyint(hertz / bin) * bin;
}

}  // namespace quorl::test
