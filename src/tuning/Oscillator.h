// What the two DDS chip drivers have in common: the clock, the tuning word, the guard of SetFrequency.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "config/SettingsStore.h"
#include "platform/Dialogs.h"
#include "support/Error.h"

namespace quorl {

// Frequencies are deci-hertz (dHz, tenths of a hertz) unless they are told in hertz.
class Oscillator {
 public:
  virtual ~Oscillator() = default;
  Oscillator(const Oscillator&) = delete;
  Oscillator& operator=(const Oscillator&) = delete;

  std::int32_t MaxFreq = 0;            // dHz; SetFrequency goes no higher
  bool CMDOutActive = false;           // a command sequence is going out
  std::int32_t OscOut = 0;             // dHz
  std::int32_t CurrentTuningWord = 0;  // f * 2^32 / clock, 32 bits
  std::string Name;                    // section of the driver's settings

  // The chip's clock in hertz. MaxFreq becomes half of it. Fails for 0 and for clocks whose half doesn't fit
  // MaxFreq; all stays as it was then.
  Failure SetClkIn(double hertz);
  double ClkIn() const;                         // rounded
  double Clock() const { return clock_ / 10; }  // as it was set, in hertz
  // The clock that the store holds under "ClkIn" of section `name`, as a chip of that name takes it at the
  // start.
  static double StoredClkIn(const SettingsStore& settings, const std::string& name);

  // Sends the frequency, or MaxFreq where it is higher, to the chip; returns the one that was sent. Dropped
  // while another call is under way. Shows a message and sends nothing where the clock isn't set.
  std::int32_t SetFrequency(std::int32_t dHz);
  // The word that SetFrequency sends for that frequency.
  std::int32_t WordFor(std::int32_t dHz) const { return TuningWord(std::min(dHz, MaxFreq)); }
  // The word of the last frequency frame that went out whole since the chip was initialised.
  std::optional<std::int32_t> WordSent() const { return wordSent_; }
  // The clock is set and the lines to the chip are open.
  virtual bool CanSend() const = 0;
  // A frame or a command sequence is on its way to the chip.
  bool IsSending() const { return busy_ || CMDOutActive; }
  // Stores the clock under "CLKIn" where one has been set.
  void Save() const;
  // Brings the chip into its working state.
  virtual Failure Initialise() = 0;
  // Sends the last command again; call Initialise first.
  virtual void Refresh() = 0;

 protected:
  // `clock` in dHz; neither MaxFreq nor the factor follow from it.
  Oscillator(SettingsStore& settings, Dialogs& dialogs, std::string name, double clock);

  virtual void SendTuningWord(std::int32_t word) = 0;
  bool HasFactor() const { return factor_ > 0; }
  // Takes the clock from key "ClkIn" of section Name, 50 MHz where there is none. Takes that too, and tells
  // why, where the text is no clock that a chip can have.
  Failure RestoreClock();

  SettingsStore& settings_;
  Dialogs& dialogs_;
  std::optional<std::int32_t> wordSent_;

 private:
  std::int32_t TuningWord(std::int32_t dHz) const;

  double factor_ = 0;  // tuning word counts for one dHz
  double clock_;       // dHz
  bool busy_ = false;
};

}  // namespace quorl
