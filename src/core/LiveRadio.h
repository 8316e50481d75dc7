// The receiver on the air: engine, sound card and tuning chain put together, with housekeeping after each
// block.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "config/SettingsTable.h"
#include "controls/Timer.h"
#include "platform/Machine.h"
#include "receiver/Receiver.h"
#include "sound/QUORLDX8.h"
#include "sound/SoundEvents.h"
#include "sound/frmDX8Events.h"
#include "tuning/TuningChain.h"

namespace quorl {

// All of it is there from the start, but reads, opens and makes nothing before its step, so that whoever puts
// it together tells each step before it is taken.
class LiveRadio final : public SoundEvents, public SoundOutput {
 public:
  // Everything outlives the radio.
  LiveRadio(Machine& machine, SettingsStore& settings, BlockRecorder& recorder, SettingsStore::LogSink log);

  Receiver Rx;
  Timer tmrPerfStats;  // armed by each block that leaves for the loudspeaker; one shot

  // Gives the sound card the format of the signal path. A short delay holds two blocks in the playback buffer
  // instead of four, and has half the time to bridge where the machine is busy.
  void SetSoundFormat(bool shortDelay = false);
  // VFO, driver and interface of the board `Rx.Vars.SDRModelNo`; takes the LO side from the VFO. False
  // where the interface can't be opened: frequencies are noted, but tune nothing. The log has the reason, and
  // the user has been told; `tellsPort` false leaves telling of a serial port to the caller. With `tuned`
  // (dHz) the radio is tuned there instead of where it was stored.
  bool CreateTuning(std::int32_t interfaceType, bool shaftEncoder, bool tellsPort = true,
                    std::optional<std::int32_t> tuned = std::nullopt);
  // Closes the port and lets the chip go; their settings are stored by TuningChain::Save.
  void ReleaseTuning();
  // Stores the chain and makes that of another board, while nothing is on the wire. Frequency and step stay,
  // the filters follow. As CreateTuning.
  bool ExchangeBoard(std::int32_t SDRModelNo, std::int32_t interfaceType, bool shaftEncoder);

  // The devices and the sound's delay.
  void AddSettings(SettingsTable& table);
  // Finds the stored devices among those that are there now. A playback device named here takes the place of
  // the stored one, which stays stored, for a decoder that listens there: it gets the full level, whatever
  // volume and mute say. False where there is none of that name: the stored one plays.
  bool ChooseDevices(const std::string& decoderDevice = {});
  // Number of the stored playback device, whatever plays now.
  std::int32_t UsualPlaybackDevice() const;
  // Takes the sound card's devices for those to be stored.
  void NoteDevices();
  // Takes other devices, by their numbers, for the next time that they are opened. Another playback device is
  // the usual one from now on, where a decoder has one of its own, too.
  void NoteDevices(std::int32_t capture, std::int32_t playback);
  // The same, and opens them: they play on where the radio plays. Where they fail, which has been told, the
  // former ones are back; what is left of those is the failure.
  Failure ChangeDevices(std::int32_t capture, std::int32_t playback);
  // Both devices, for the log: the number that was tried and the name that was wanted.
  std::string DeviceText() const;
  bool ShortDelay = false;  // of the sound, at the next start

  // Starts and stops reception. Start fails where a device can't be opened, which has been told to the user.
  Failure Start();
  void Stop();

  // Silences the loudspeaker whatever the volume; what is recorded goes on.
  void SetMuted(bool muted);

  QUORLDX8& SoundCard() { return soundCard_; }
  TuningChain& Tuning() { return tuning_; }
  // That of the board that was made last.
  clsVFO& VFO() const { return *tuning_.VFO(); }

  // One round of housekeeping: `BeforeFilters`, the waits and rebuilds, `AfterFilters`. Not re-entered.
  void Housekeeping();
  std::function<void()> BeforeFilters = [] {};  // S-meter, statistics
  std::function<void(bool peakMoved)> AfterFilters = [](bool) {};
  std::function<void(double microseconds)> OnHousekept;  // told what a round took; may be empty
  std::function<void()> OnBlockOut = [] {};              // the tick of the display

  // Told each captured block [SamplesPerEvent], left and right, before it is worked on. May be empty.
  std::function<void(const std::int16_t* left, const std::int16_t* right)> OnBlockIn;
  // Told each block of audio [SamplesPerEvent] on its way to the sound card, and the card's attenuation in
  // hundredths of a decibel.
  std::function<void(const std::int16_t* block, std::int32_t attenuation)> OnAudio;

  // SoundEvents and SoundOutput, between sound card and pump.
  void SoundCard_DataReady(std::int16_t* samplesI, std::int16_t* samplesQ, std::int32_t n) override;
  void SoundCard_DataOut(std::int16_t* buffer, std::int32_t readPtr, std::int32_t n) override;
  void SetOutputAttenuation(std::int32_t hundredthsOfDecibel) override;
  void Output(const std::int16_t* left, const std::int16_t* right) override;

 private:
  // A device that is gone keeps its name, so that it is found again when it is back.
  struct StoredDevice {
    std::int32_t Number = 1;
    std::string Name;  // decides where it is still there
  };

  static void Note(const std::vector<std::string>& names, std::int32_t number, StoredDevice& device);
  void NotePlayback(std::int32_t number);
  Failure OpenDevices(std::int32_t capture, std::int32_t playback, bool plays);

  Machine& machine_;
  QUORLDX8 soundCard_;
  frmDX8Events soundEvents_;
  TuningChain tuning_;
  StoredDevice playback_, capture_;
  std::int32_t volume_ = 0;  // what the receiver wants, and what is in force
  std::int32_t attenuation_ = 0;
  bool muted_ = false;
  bool forDecoder_ = false;  // what plays is a device of its own for a decoder
  bool inPerfStats_ = false;
};

}  // namespace quorl
