// The block pump: carries each block of samples from its arrival to the playback ring.
//
// The sound card's DataReady event is the one clock of the signal path, 42.67 ms a block. The pump feeds
// recorder, analyser and statistics on the way. It owns no sample memory.
#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include "diagnostics/Profiler.h"
#include "dsp/chain/AnalyserTap.h"
#include "dsp/chain/BeatMeter.h"
#include "dsp/chain/ReceiveChain.h"
#include "receiver/BlockRecorder.h"
#include "receiver/SoundOutput.h"
#include "state/PublicVars.h"
#include "state/PumpStatistics.h"

namespace quorl {

class BlockPump {
 public:
  BlockPump(const PublicVars& vars, ReceiveChain& chain, const AnalyserTap& tap, BeatMeter& beat,
            BlockRecorder& recorder, SoundOutput& sound, Profiler& profiler, std::function<void()> yield);

  // One block of SamplesPerEvent samples a channel. `samplesI` (left) leaves as the audio that went to
  // playback. A block that arrives while another one is in work is dropped.
  void SoundCard_DataReady(std::int16_t* samplesI, const std::int16_t* samplesQ);

  PumpStatistics Statistics;
  float PumpLoad = 0.0F;               // share of the block period that the last block took
  double PumpMicroseconds = 0.0;       // the same in microseconds
  std::int16_t RecorderAddResult = 0;  // what the last AddSamples or AddIF returned

 private:
  template <typename T>
  void Note(std::array<T, StatisticsRingSize>& ring, std::int32_t& index, T value) const;
  const std::int16_t* ExchangeIF(std::int16_t* samplesI, const std::int16_t* samplesQ);

  const PublicVars& vars_;
  ReceiveChain& chain_;
  const AnalyserTap& tap_;
  BeatMeter& beat_;
  BlockRecorder& recorder_;
  SoundOutput& sound_;
  Profiler& profiler_;
  std::function<void()> yield_;
  bool inDataReady_ = false;
};

}  // namespace quorl
