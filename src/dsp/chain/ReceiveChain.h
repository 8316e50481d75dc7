// The receive chain: one block of sound card samples becomes one block of audio.
//
// Order on the real IF: noise blanker, IF filter, IF notch, signal level, "Pre Demod" tap, mixer or splitter,
// "Post Demod" tap, demodulator with its filters, audio notch, dynamic filter, AGC, volume, limiter.
// Samples keep the range of their 16-bit values throughout. Nothing here allocates after construction.
#pragma once

#include <cstdint>

#include "dsp/chain/AGC.h"
#include "dsp/chain/AnalyserTap.h"
#include "dsp/chain/AudioNotch.h"
#include "dsp/chain/Demodulators.h"
#include "dsp/chain/NoiseBlanker.h"
#include "dsp/chain/TableOscillator.h"
#include "dsp/filters/FilterBank.h"
#include "state/PublicVars.h"

namespace quorl {

class ReceiveChain {
 public:
  // The bank is to be initialised before the first block.
  ReceiveChain(PublicVars& vars, FilterBank& filters, AGC& agc, const AnalyserTap& tap,
               const PlaybackState& playback);

  // One block of `n` (SamplesPerEvent) samples a channel. Takes the path of SDRModelNo; leaves audio in
  // `left`.
  void DoDSP(std::int16_t* left, const std::int16_t* right, std::int32_t n);

  // A recording holds audio: one block of SamplesPerEvent samples is filtered and levelled in place, not
  // demodulated again.
  void PlayRecording(std::int16_t* block);

  // The block before its conversion to 16 bits: SamplesPerEvent samples, for measurements.
  const float* AudioBlock() const { return lastAudio_; }

 private:
  void RealIF(std::int16_t* left);
  void Branch();
  void Demodulate();
  void DoDSPReal2IQ(float* i, float* q, float* out, std::int32_t n);
  void DoDSPIQ(float* i, float* q, float* out, std::int32_t n);
  void SumSidebands(float* i, float* q, float* out);
  void MeasureSignal(const float* block);
  void Finish(AudioNotch& notch, float* audio);

  PublicVars& vars_;
  FilterBank& filters_;
  AGC& agc_;
  const AnalyserTap& tap_;
  const PlaybackState& playback_;
  TableOscillator oscillator_;
  Demodulators demodulators_;
  NoiseBlanker noiseBlanker_;
  AudioNotch audioNotch_, iqAudioNotch_;

  // Real IF path. Blocks that a filter runs over hold SegmentSize elements.
  SampleBuffer ifBlock_, ifBlockRaw_, chanI_, chanQ_, audioBlock_;
  // I/Q path.
  SampleBuffer iqBlockI_, iqBlockQ_, iqAudio_;
  SampleBuffer oscSin_, oscCos_, squares_;
  const float* lastAudio_;
};

}  // namespace quorl
