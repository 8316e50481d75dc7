#include "receiver/BlockPump.h"

#include "dsp/kernel/VectorKernel.h"
#include "support/Rounding.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr float kBusy = 0.9F;            // load from which user events need the pump's help
constexpr std::int32_t kMuted = -40000;  // under every sound card's floor

}  // namespace

BlockPump::BlockPump(PublicVars& vars, FilterBank& filters, ReceiveChain& chain, AGC& agc,
                     const AnalyserTap& tap, BlockRecorder& recorder, SoundOutput& sound, Profiler& profiler,
                     std::function<void()> yield)
    : vars_(vars),
      filters_(filters),
      chain_(chain),
      agc_(agc),
      tap_(tap),
      recorder_(recorder),
      sound_(sound),
      profiler_(profiler),
      yield_(std::move(yield)),
      audioPower_(SamplesPerEvent) {}

template <typename T>
void BlockPump::Note(std::array<T, StatisticsRingSize>& ring, std::int32_t& index, T value) const {
  if (!vars_.PerfStatsOn) return;
  ring[static_cast<std::size_t>(index)] = value;
  index = (index + 1) % StatisticsRingSize;
}

void BlockPump::SoundCard_DataReady(std::int16_t* samplesI, const std::int16_t* samplesQ) {
  if (inDataReady_) return;
  const ScopedFlag inDataReady(inDataReady_);
  profiler_.StartTiming();
  const bool playing = recorder_.PlayerMode() == PlayerModes::Playing;
  if (playing) recorder_.GetNextSamples(samplesI, SamplesPerEvent);
  tap_.Show_INT16(SpectrumSource::IFIn, samplesI, samplesQ, true);

  Note(Statistics.PeakInRing, Statistics.PeakInIndex, MaxValue_16(samplesI, SamplesPerEvent));
  playing ? PlayRecording(samplesI) : chain_.DoDSP(samplesI, samplesQ, SamplesPerEvent);
  Note(Statistics.PeakOutRing, Statistics.PeakOutIndex, MaxValue_16(samplesI, SamplesPerEvent));

  // After the chain, whose AGC sets the attenuation on every block.
  if (vars_.DRMAudioMuted) sound_.SetOutputAttenuation(kMuted);
  if (recorder_.PlayerMode() == PlayerModes::Recording) {
    RecorderAddResult = recorder_.AddSamples(samplesI, SamplesPerEvent);
  }
  sound_.Output(samplesI, samplesI);
  tap_.Show_INT16(SpectrumSource::AFOut, samplesI, samplesQ, false);

  profiler_.StopTiming();
  PumpMicroseconds = profiler_.ElapsedTime();
  PumpLoad = static_cast<float>(PumpMicroseconds / 1000000.0 / BlockSeconds);
  if (PumpLoad > kBusy) yield_();
  Note(Statistics.PumpTimeRing, Statistics.PumpTimeIndex, RoundHalfEven(PumpMicroseconds));
}

// A recording holds audio: it is filtered and levelled, not demodulated again.
void BlockPump::PlayRecording(std::int16_t* block) {
  float* audio = chain_.PlaybackBlock();
  Int16ToFloat_S_2(block, audio, SamplesPerEvent);
  filters_.AFFilter.Filter_FFT_S_1(audio);
  if (filters_.NotchFilterI.Active && vars_.NotchType == NotchTypes::Audio) {
    filters_.NotchFilterI.Filter_FFT_S_1(audio);
  }
  PowerSpectrum_S_2(audio, audio, audioPower_.data(), SamplesPerEvent);
  ShiftVectorRight_S_1(vars_.SignalLevelRing.data(), SignalLevelRingSize);
  vars_.SignalLevelRing[0] =
      Sum_S_1(audioPower_.data(), SamplesPerEvent) / static_cast<float>(SamplesPerEvent);
  agc_.ApplyAGC(audio);
  FloatToInt16_S_2(audio, block, SamplesPerEvent);
}

}  // namespace quorl
