// The tuned frequency: what the listener wants to hear, and the oscillator frequency that brings it in.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "config/SettingsStore.h"
#include "support/Error.h"
#include "tuning/Oscillator.h"

namespace quorl {

// Frequencies are signed 32-bit integers in deci-hertz (dHz, tenths of a hertz), up to 214748364.7 Hz, unless
// they are told in hertz. Main thread. While a frequency is on its way to the chip the event queue runs; one
// that is set meanwhile is dropped: whoever tunes while events run goes through Tuner, which keeps it.
class clsVFO {
 public:
  explicit clsVFO(SettingsStore& settings);
  clsVFO(const clsVFO&) = delete;
  clsVFO& operator=(const clsVFO&) = delete;

  std::string Name;                     // section of the settings
  std::shared_ptr<Oscillator> OscType;  // the chip driver
  bool HiSideLO = true;                 // the oscillator stands at tuned frequency plus IF, else minus IF
  std::int32_t OscMultiplier = 1;       // for boards that divide the oscillator, such as for quadrature
  bool AutoUpdate = false;            // the frequency is to be sent again now and then; the caller's to read
  std::int32_t OscOut = 0;            // dHz, the last oscillator frequency asked for
  bool TuneStepLock = false;          // the two steps can't be set
  std::int32_t DDSInterfaceType = 0;  // 0 serial, 1 parallel

  std::int32_t TunedFrequency() const { return tunedFrequency_; }
  // Tunes to |dHz|, or as far as the oscillator goes. Fails without OscType (the frequency is kept then) and
  // where the arithmetic leaves 32 bits.
  Failure SetTunedFrequency(std::int32_t dHz);

  // Hertz. Don't retune. The settings fail, and keep the old value, where ten times the value leaves 32 bits.
  std::int32_t IFFrequency() const;
  Failure SetIFFrequency(std::int32_t hertz);
  std::int32_t CalibOffset() const;
  Failure SetCalibOffset(std::int32_t hertz);

  // Step of Inc_Freq and Dec_Freq in dHz. Setting it sets the grid too.
  double TuneStep() const { return tuneStep_; }
  void SetTuneStep(double dHz);
  // Grid that a step first rounds to, at most 10000 dHz.
  double TuneStepLSD() const { return tuneStepLSD_; }
  void SetTuneStepLSD(double dHz);
  // The grid point next to `dHz`; the one of the last step where there is no grid.
  double GridPoint(std::int32_t dHz) const;

  // TunedFrequency in nine digits or more.
  std::string FormattedTunedFreq() const;
  // Notes the frequency that the text tells and tunes nothing.
  void SetFormattedTunedFreq(const std::string& text);

  // The oscillator frequency that brings `dHz` in; OscOut where the arithmetic leaves 32 bits.
  std::int32_t OscillatorFor(std::int32_t dHz) const;
  // The highest frequency that chip and IF can do, below 0 where they can do none: the tuning word of half
  // the clock itself doesn't fit. 0 without OscType.
  std::int64_t Reach() const;
  // The highest frequency that SetTunedFrequency leaves as it is.
  std::int64_t HighestNoted() const;

  // Works OscOut out and sends it. Where the arithmetic leaves 32 bits the old OscOut is sent; without
  // OscType nothing is.
  void Refresh();

  // Moves to the nearest point of the grid, then on by `Increment`, or by TuneStep where that is 0. Returns
  // the frequency that came of it. It is sent twice, unless another one waits already.
  double Inc_Freq(double Increment);
  // The same downwards. `Decrement` becomes what was added: minus itself, or minus TuneStep.
  double Dec_Freq(double& Decrement);
  // A step is on its way to the chip; AutoUpdate is down meanwhile.
  bool IsStepping() const { return stepsUnderWay_ > 0; }
  // Whether another frequency waits for the one that is being sent.
  std::function<bool()> IsSuperseded = [] { return false; };

  // Takes over what the store holds under Name; the rest stays. Tunes nothing and ignores TuneStepLock.
  // "CalibOffset" is stored in hertz and read as dHz.
  void RestoreSettings();
  // The way back into the store.
  void SaveSettings() const;

 private:
  SettingsStore& settings_;
  std::int32_t tunedFrequency_ = 100000000;
  std::int32_t ifFrequency_ = 0;  // dHz
  std::int32_t calibOffset_ = 0;  // dHz
  double tuneStep_ = 0;
  double tuneStepLSD_ = 0;
  int stepsUnderWay_ = 0;  // the queue may bring the next step while one is sent
  double snapped_ = 0;     // the grid point of the last step
  std::int32_t enteredFrequency_ = 0;
  bool setting_ = false;
};

}  // namespace quorl
