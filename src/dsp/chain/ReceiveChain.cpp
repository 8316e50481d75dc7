#include "dsp/chain/ReceiveChain.h"

#include <cmath>

#include "dsp/kernel/VectorKernel.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr float kFMLimit = 16384.0F;  // hard limit ahead of the FM demodulator

bool IsSideband(std::int32_t mode) {
  return mode == DemodMode::USB || mode == DemodMode::LSB;
}

}  // namespace

ReceiveChain::ReceiveChain(PublicVars& vars, FilterBank& filters, AGC& agc, const AnalyserTap& tap,
                           const PlaybackState& playback)
    : vars_(vars),
      filters_(filters),
      agc_(agc),
      tap_(tap),
      playback_(playback),
      demodulators_(filters),
      noiseBlanker_(vars, filters),
      audioNotch_(vars, filters),
      iqAudioNotch_(vars, filters),
      oscSin_(SamplesPerEvent),
      oscCos_(SamplesPerEvent),
      squares_(SamplesPerEvent) {
  for (SampleBuffer* block :
       {&ifBlock_, &ifBlockRaw_, &chanI_, &chanQ_, &audioBlock_, &iqBlockI_, &iqBlockQ_, &iqAudio_}) {
    block->assign(SegmentSize, 0.0F);
  }
  lastAudio_ = audioBlock_.data();
  oscillator_.InitDDS();
}

void ReceiveChain::DoDSP(std::int16_t* left, const std::int16_t* right, std::int32_t n) {
  const ScopedFlag inWork(vars_.DSPRunning);
  if (vars_.SDRModelNo == SDRModel::IQXtalRX) {
    Int16ToFloat_S_2(left, iqBlockI_.data(), n);
    Int16ToFloat_S_2(right, iqBlockQ_.data(), n);
    DoDSPIQ(iqBlockI_.data(), iqBlockQ_.data(), iqAudio_.data(), n);
    FloatToInt16_S_2(iqAudio_.data(), left, n);
    lastAudio_ = iqAudio_.data();
  } else if (vars_.SDRModelNo == SDRModel::RealToIQRX) {
    Int16ToFloat_S_2(left, iqBlockI_.data(), n);
    Int16ToFloat_S_2(left, iqBlockQ_.data(), n);
    DoDSPReal2IQ(iqBlockI_.data(), iqBlockQ_.data(), iqAudio_.data(), n);
    FloatToInt16_S_2(iqAudio_.data(), left, n);
    lastAudio_ = iqAudio_.data();
  } else {
    RealIF(left);
    lastAudio_ = audioBlock_.data();
  }
}

void ReceiveChain::PlayRecording(std::int16_t* block) {
  float* audio = audioBlock_.data();
  Int16ToFloat_S_2(block, audio, SamplesPerEvent);
  filters_.AFFilter.Filter_FFT_S_1(audio);
  if (filters_.NotchFilterI.Active && vars_.NotchType == NotchTypes::Audio) {
    filters_.NotchFilterI.Filter_FFT_S_1(audio);
  }
  PowerSpectrum_S_2(audio, audio, squares_.data(), SamplesPerEvent);
  ShiftVectorRight_S_1(vars_.SignalLevelRing.data(), SignalLevelRingSize);
  vars_.SignalLevelRing[0] = Sum_S_1(squares_.data(), SamplesPerEvent) / static_cast<float>(SamplesPerEvent);
  agc_.ApplyAGC(audio);
  FloatToInt16_S_2(audio, block, SamplesPerEvent);
  lastAudio_ = audio;
}

void ReceiveChain::RealIF(std::int16_t* left) {
  Int16ToFloat_S_2(left, ifBlock_.data(), SamplesPerEvent);
  if (tap_.Chn2Enabled()) CopyVector_S(ifBlock_.data(), ifBlockRaw_.data(), SamplesPerEvent);
  if (vars_.NBOn) noiseBlanker_.NoiseBlank(ifBlock_.data());
  if (filters_.IFFilterI.Active) filters_.IFFilterI.Filter_FFT_S_1(ifBlock_.data());
  if (filters_.NotchFilterI.Active && vars_.NotchType == NotchTypes::IF) {
    filters_.NotchFilterI.Filter_FFT_S_1(ifBlock_.data());
  }
  MeasureSignal(ifBlock_.data());
  tap_.Show_S(SpectrumSource::PreDemod, ifBlock_.data(), ifBlockRaw_.data());
  Branch();
  tap_.Show_S(SpectrumSource::PostDemod, chanI_.data(), chanQ_.data());
  Demodulate();
  Finish(audioNotch_, audioBlock_.data());
  FloatToInt16_S_2(audioBlock_.data(), left, SamplesPerEvent);
}

void ReceiveChain::MeasureSignal(const float* block) {
  Sqr_S_2(block, squares_.data(), SamplesPerEvent);
  const float power = Sum_S_1(squares_.data(), SamplesPerEvent);
  vars_.SignalPowerRing[static_cast<std::size_t>(vars_.SignalPowerIndex)] = power;
  vars_.SignalLevelRing[static_cast<std::size_t>(vars_.SignalLevelIndex)] =
      std::sqrt(power / static_cast<float>(SamplesPerEvent));
  vars_.SignalLevelIndex = (vars_.SignalLevelIndex + 1) % SignalLevelRingSize;
  vars_.SignalPowerIndex = (vars_.SignalPowerIndex + 1) % SignalPowerRingUpperBound;
}

// The two branches that the demodulator needs: split or mixed, I and Q.
void ReceiveChain::Branch() {
  const std::int32_t mode = playback_.IsPlaying() ? DemodMode::DRM : vars_.CurrentDemodMode;
  float* i = chanI_.data();
  float* q = chanQ_.data();
  const float* block = ifBlock_.data();
  if (IsSideband(mode)) {
    if (vars_.MixerFrequency == IFCentre) {
      MixerIQ_S_S_1(block, i, q, SamplesPerEvent);
    } else {
      oscillator_.MakeOscillatorBlock(vars_.MixerPhaseStep, oscSin_.data(), oscCos_.data(), 1.0F,
                                      SamplesPerEvent);
      Mpy_S_3(block, oscCos_.data(), i, SamplesPerEvent);
      Mpy_S_3(block, oscSin_.data(), q, SamplesPerEvent);
    }
  } else if (mode == DemodMode::FM) {
    filters_.HilbertQ.sTransform(block, q, SamplesPerEvent);
    filters_.HilbertI.sDelaySamples(block, i, SamplesPerEvent);
    for (float* branch : {i, q}) {
      HiThresh_S_1(branch, 0, kFMLimit, SamplesPerEvent);
      LowThresh_S_1(branch, 0, -kFMLimit, SamplesPerEvent);
    }
  } else {
    CopyVector_S(block, i, SamplesPerEvent);
    CopyVector_S(block, q, SamplesPerEvent);
    if (mode == DemodMode::AM) {
      filters_.IQFilterI.Filter_FFT_S_1(i);
      filters_.IQFilterQ.Filter_FFT_S_1(q);
    }
  }
}

void ReceiveChain::Demodulate() {
  float* i = chanI_.data();
  float* q = chanQ_.data();
  float* audio = audioBlock_.data();
  switch (vars_.CurrentDemodMode) {
    case DemodMode::AM:
      demodulators_.DemodAM(i, q, audio);
      break;
    case DemodMode::USB:
      demodulators_.DemodSSB(i, q, audio, !vars_.LowSideLO);
      break;
    case DemodMode::LSB:
      demodulators_.DemodSSB(i, q, audio, vars_.LowSideLO);
      break;
    case DemodMode::FM:
      demodulators_.DemodFM(i, q, audio);
      break;
    case DemodMode::BC:
      demodulators_.DemodBC(i, audio, SamplesPerEvent);
      break;
    default:
      // A transparent pipe for the IF: an outside decoder does the rest.
      CopyVector_S(i, audio, SamplesPerEvent);
  }
}

void ReceiveChain::Finish(AudioNotch& notch, float* audio) {
  if (filters_.NotchFilterI.Active || vars_.DynFilterActive) notch.AudioNotchAndPeak(audio);
  if (filters_.DynFilter.Active) filters_.DynFilter.Filter_FFT_S_1(audio);
  agc_.ApplyAGC(audio);
}

void ReceiveChain::DoDSPReal2IQ(float* i, float* q, float* out, std::int32_t n) {
  filters_.IQFilterI.Filter_FFT_S_1(i);
  filters_.IQFilterQ.Filter_FFT_S_1(q);
  DoDSPIQ(i, q, out, n);
}

void ReceiveChain::DoDSPIQ(float* i, float* q, float* out, std::int32_t n) {
  if (filters_.IFFilterI.Active) {
    filters_.IFFilterI.Filter_FFT_S_1(i);
    filters_.IFFilterQ.Filter_FFT_S_1(q);
  }
  if (filters_.NotchFilterI.Active && vars_.NotchType == NotchTypes::IF) {
    filters_.NotchFilterI.Filter_FFT_S_1(i);
    filters_.NotchFilterQ.Filter_FFT_S_1(q);
  }
  MeasureSignal(i);
  tap_.Show_S(SpectrumSource::PreDemod, i, q);
  const std::int32_t mode = vars_.CurrentDemodMode;
  if (IsSideband(mode)) SumSidebands(i, q, out);
  tap_.Show_S(SpectrumSource::PostDemod, i, q);
  if (mode == DemodMode::AM) {
    demodulators_.DemodAM(i, q, out);
  } else if (mode == DemodMode::FM) {
    demodulators_.DemodFM(i, q, out);
  } else if (mode == DemodMode::BC) {
    demodulators_.DemodBC(i, out, n);
  } else if (!IsSideband(mode)) {
    CopyVector_S(i, out, n);
  }
  Finish(iqAudioNotch_, out);
}

void ReceiveChain::SumSidebands(float* i, float* q, float* out) {
  constexpr std::int32_t n = SamplesPerEvent;
  oscillator_.MakeOscillatorBlock(vars_.MixerPhaseStep, oscSin_.data(), oscCos_.data(), 1.0F, n);
  const float* sine = oscSin_.data();
  const float* cosine = oscCos_.data();
  // The BFO's side of the IF, not that of the LO, decides which branch leads. With the BFO below, LSB takes
  // the cosine on both branches.
  const bool above = vars_.BFOOffset > 0;
  const bool lower = vars_.CurrentDemodMode == DemodMode::LSB;
  Mpy_S_2(above ? sine : cosine, i, n);
  Mpy_S_2(above || lower ? cosine : sine, q, n);
  above || lower ? Add_S_3(i, q, out, n) : Sub_S_3(i, q, out, n);
  filters_.AFFilter.Filter_FFT_S_1(out);
}

}  // namespace quorl
