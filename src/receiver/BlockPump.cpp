#include "receiver/BlockPump.h"

#include "dsp/kernel/VectorKernel.h"
#include "support/Rounding.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr float kBusy = 0.9F;            // load from which user events need the pump's help
constexpr std::int32_t kMuted = -40000;  // under every sound card's floor

}  // namespace

BlockPump::BlockPump(const PublicVars& vars, ReceiveChain& chain, const AnalyserTap& tap, BeatMeter& beat,
                     BlockRecorder& recorder, SoundOutput& sound, Profiler& profiler,
                     std::function<void()> yield)
    : vars_(vars),
      chain_(chain),
      tap_(tap),
      beat_(beat),
      recorder_(recorder),
      sound_(sound),
      profiler_(profiler),
      yield_(std::move(yield)) {}

template <typename T>
void BlockPump::Note(std::array<T, StatisticsRingSize>& ring, std::int32_t& index, T value) const {
  if (!vars_.PerfStatsOn) return;
  ring[static_cast<std::size_t>(index)] = value;
  index = (index + 1) % StatisticsRingSize;
}

// A recorded IF takes the antenna's place; one that is being recorded is taken as it came. Returns the right
// channel of the block.
const std::int16_t* BlockPump::ExchangeIF(std::int16_t* samplesI, const std::int16_t* samplesQ) {
  if (!recorder_.IsIF()) return samplesQ;
  if (recorder_.PlayerMode() == PlayerModes::Playing) return recorder_.GetNextIF(samplesI, SamplesPerEvent);
  if (recorder_.PlayerMode() == PlayerModes::Recording) {
    RecorderAddResult = recorder_.AddIF(samplesI, samplesQ, SamplesPerEvent);
  }
  return samplesQ;
}

void BlockPump::SoundCard_DataReady(std::int16_t* samplesI, const std::int16_t* samplesQ) {
  if (inDataReady_) return;
  const ScopedFlag inDataReady(inDataReady_);
  profiler_.StartTiming();
  const bool playsAudio = recorder_.PlayerMode() == PlayerModes::Playing && !recorder_.IsIF();
  if (playsAudio) {
    recorder_.GetNextSamples(samplesI, SamplesPerEvent);
    beat_.Restart();
  } else {
    samplesQ = ExchangeIF(samplesI, samplesQ);
    beat_.Take(samplesI, vars_.SDRModelNo == SDRModel::IQXtalRX ? samplesQ : nullptr);
  }
  tap_.Show_INT16(SpectrumSource::IFIn, samplesI, samplesQ, true);

  Note(Statistics.PeakInRing, Statistics.PeakInIndex, MaxValue_16(samplesI, SamplesPerEvent));
  playsAudio ? chain_.PlayRecording(samplesI) : chain_.DoDSP(samplesI, samplesQ, SamplesPerEvent);
  Note(Statistics.PeakOutRing, Statistics.PeakOutIndex, MaxValue_16(samplesI, SamplesPerEvent));

  // After the chain, whose AGC sets the attenuation on every block.
  if (vars_.DRMAudioMuted) sound_.SetOutputAttenuation(kMuted);
  if (recorder_.PlayerMode() == PlayerModes::Recording && !recorder_.IsIF()) {
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

}  // namespace quorl
