// The receiver on the air: engine, sound card and tuning chain put together, with housekeeping after each
// block.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "controls/Timer.h"
#include "platform/Machine.h"
#include "receiver/Receiver.h"
#include "sound/QUORLDX8.h"
#include "sound/SoundEvents.h"
#include "sound/frmDX8Events.h"
#include "tuning/TuningChain.h"

namespace quorl {

// Built in steps, so that whoever puts it together tells each step before it is taken. Without a sound card
// it can be tuned; without a tuning chain it can be heard.
class LiveRadio final : public SoundEvents, public SoundOutput {
 public:
  // Everything outlives the radio.
  LiveRadio(Machine& machine, BlockRecorder& recorder, KernelSettings settings = {});
  ~LiveRadio() override;

  Receiver Rx;
  Timer tmrPerfStats;  // armed by each block that leaves for the loudspeaker; one shot

  // The sound object. Opens nothing yet.
  void CreateSoundCard();
  // Gives it the format of the signal path. A short delay holds two blocks in the playback buffer instead of
  // four, and has half the time to bridge where the machine is busy.
  void SetSoundFormat(bool shortDelay = false);
  // VFO, driver and interface of the board `Rx.Vars.SDRModelNo`; takes the LO side from the VFO. False
  // where the interface can't be opened: frequencies are noted, but tune nothing. The log has the reason, and
  // the user has been told; `tellsPort` false leaves telling of a serial port to the caller.
  bool CreateTuning(SettingsStore& settings, std::int32_t interfaceType, bool shaftEncoder,
                    const SettingsStore::LogSink& log, bool tellsPort = true);
  // Lets go of the chain; its settings are stored by TuningChain::Save.
  void ReleaseTuning();

  // Starts and stops reception. Start fails where a device can't be opened, which has been told to the user.
  Failure Start();
  void Stop();

  // Silences the loudspeaker whatever the volume; what is recorded goes on.
  void SetMuted(bool muted);

  QUORLDX8& SoundCard() { return *soundCard_; }
  bool HasSoundCard() const { return soundCard_ != nullptr; }
  TuningChain& Tuning() { return *tuning_; }
  clsVFO* VFO() const { return tuning_ ? tuning_->VFO().get() : nullptr; }

  // One round of housekeeping: `BeforeFilters`, the waits and rebuilds, `AfterFilters`. Not re-entered.
  void Housekeeping();
  std::function<void()> BeforeFilters = [] {};  // S-meter, statistics
  std::function<void(bool peakMoved)> AfterFilters = [](bool) {};
  std::function<void(double microseconds)> OnHousekept;  // told what a round took; may be empty
  std::function<void()> OnBlockOut = [] {};              // the tick of the display

  // Told each block of audio [SamplesPerEvent] on its way to the sound card, and the card's attenuation in
  // hundredths of a decibel.
  std::function<void(const std::int16_t* block, std::int32_t attenuation)> OnAudio;

  // SoundEvents and SoundOutput, between sound card and pump.
  void SoundCard_DataReady(std::int16_t* samplesI, std::int16_t* samplesQ, std::int32_t n) override;
  void SoundCard_DataOut(std::int16_t* buffer, std::int32_t readPtr, std::int32_t n) override;
  void SetOutputAttenuation(std::int32_t hundredthsOfDecibel) override;
  void Output(const std::int16_t* left, const std::int16_t* right) override;

 private:
  Machine& machine_;
  std::unique_ptr<QUORLDX8> soundCard_;
  std::unique_ptr<frmDX8Events> soundEvents_;
  std::unique_ptr<TuningChain> tuning_;
  std::int32_t volume_ = 0;  // what the receiver wants, and what is in force
  std::int32_t attenuation_ = 0;
  bool muted_ = false;
  bool inPerfStats_ = false;
};

}  // namespace quorl
