#include "core/LiveRadio.h"

#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr std::int32_t kSilence = -10000;  // hundredths of a decibel
constexpr int kHousekeepingDelay = 3;      // ms after a block has left: in the gap before the next one

}  // namespace

LiveRadio::LiveRadio(Machine& machine, BlockRecorder& recorder, KernelSettings settings)
    : Rx(
          machine.Time, *this, recorder, [&machine] { machine.Queue.Yield(); }, std::move(settings)),
      tmrPerfStats(machine.Queue,
                   [this] {
                     tmrPerfStats.SetEnabled(false);
                     Housekeeping();
                   }),
      machine_(machine) {
  Rx.Tap.TunedFrequency = [this] { return VFO() == nullptr ? 0 : VFO()->TunedFrequency(); };
}

LiveRadio::~LiveRadio() = default;

void LiveRadio::CreateSoundCard() {
  soundCard_ = std::make_unique<QUORLDX8>(machine_.Sound, machine_.Queue, machine_.Boxes, *this);
  soundEvents_ = std::make_unique<frmDX8Events>(*soundCard_);
}

void LiveRadio::SetSoundFormat(bool shortDelay) {
  QUORLDX8& card = *soundCard_;
  card.FSampling = FSampling;
  card.NoChannelsIn = NoChannelsIn;
  card.NoChannelsOut = NoChannelsOut;
  card.NoBlocksInBuffer = NoBlocksInBuffer;
  card.SetSamplesPerEvent(SamplesPerEvent);
  card.BitsPerSample = BitsPerSample;
  card.Inp2OutpBufferRatio = shortDelay ? 1 : Inp2OutpBufferRatio;
}

bool LiveRadio::CreateTuning(SettingsStore& settings, std::int32_t interfaceType, bool shaftEncoder,
                             const SettingsStore::LogSink& log, bool tellsPort) {
  const TuningMachine machine{machine_.Serial, machine_.Printer, machine_.Queue, machine_.Boxes, settings};
  tuning_ = std::make_unique<TuningChain>(machine, log);
  const bool open = tuning_->OpenInterface(interfaceType, shaftEncoder, tellsPort);
  tuning_->CreateVFO(Rx.Vars.SDRModelNo, interfaceType);
  Rx.SetLowSideLO(!VFO()->HiSideLO);
  return open;
}

void LiveRadio::ReleaseTuning() {
  tuning_.reset();
}

Failure LiveRadio::Start() {
  return soundCard_->StartSound();
}

void LiveRadio::Stop() {
  if (soundCard_) soundCard_->StopSound();
  tmrPerfStats.SetEnabled(false);
}

void LiveRadio::Housekeeping() {
  if (inPerfStats_) return;
  ScopedFlag guard(inPerfStats_);
  const std::int64_t begin = machine_.Time.Microseconds();
  BeforeFilters();
  const bool peakMoved = Rx.Housekeeping();
  AfterFilters(peakMoved);
  if (OnHousekept) OnHousekept(static_cast<double>(machine_.Time.Microseconds() - begin));
}

void LiveRadio::SoundCard_DataReady(std::int16_t* samplesI, std::int16_t* samplesQ, std::int32_t) {
  Rx.Pump.SoundCard_DataReady(samplesI, samplesQ);
}

void LiveRadio::SoundCard_DataOut(std::int16_t*, std::int32_t, std::int32_t) {
  OnBlockOut();
  tmrPerfStats.SetInterval(kHousekeepingDelay);
  tmrPerfStats.SetEnabled(true);
}

void LiveRadio::SetOutputAttenuation(std::int32_t hundredthsOfDecibel) {
  volume_ = hundredthsOfDecibel;
  attenuation_ = muted_ ? kSilence : volume_;
  if (soundCard_) soundCard_->SetOutputAttenuation(attenuation_);
}

void LiveRadio::SetMuted(bool muted) {
  muted_ = muted;
  SetOutputAttenuation(volume_);
}

void LiveRadio::Output(const std::int16_t* left, const std::int16_t* right) {
  if (OnAudio) OnAudio(left, attenuation_);
  if (soundCard_) soundCard_->Output(left, right);
}

}  // namespace quorl
