// The tuning front panel: digits, dial, held keys and mouse buttons, step selector, shaft encoder.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "config/SettingsTable.h"
#include "controls/Controls.h"
#include "controls/Timer.h"
#include "diagnostics/Profiler.h"
#include "platform/Clock.h"
#include "platform/EventQueue.h"
#include "state/PublicVars.h"
#include "tuning/ShaftDecoder.h"
#include "tuning/Tuner.h"
#include "tuning/clsDDSSerialIF.h"

namespace quorl {

// What the panel needs of the panels beside it. Every entry may stay as it is.
struct TuningPanelLinks {
  std::function<void()> ActivateDisplay = [] {};                // gives the digits the keys
  std::function<bool()> DisplayIsActive = [] { return true; };  // whether they have them
  // Whether the key belongs to a frequency that is typed outright.
  std::function<bool(const Key& key)> TypeFrequency = [](const Key&) { return false; };
  std::function<void()> ReviveDisplay = [] {};  // where the keyboard came to them
  std::function<void(const std::string& text)> ShowOscillator = [](const std::string&) {};
  std::function<void()> ScopePeriodic = [] {};
  std::function<void(std::int32_t dHz)> TellRecorder = [](std::int32_t) {};  // what is tuned, at each tick
  std::function<void(bool low)> SetLowSideLO = [](bool) {};  // the receiver's side of the local oscillator
  std::function<void(std::int32_t dHz)> StoreTuneStep = [](std::int32_t) {};  // in the active sub-band
};

struct TuningColours {
  Colour Digit = 0, ChosenDigit = 0;
  Colour Label = 0;
  Colour Tuning = 0;      // what is not as usual
  Colour LockedRate = 0;  // the rate while it is locked; while it is free, it has that of the chosen digit
};

// The rate is free (moving over the digits chooses it), locked (TuningRateLocked), or the VFO's step is
// locked (TuneStepLock, imgTuneStepLock shown). Digit i weighs 10^(8 - i) dHz.
class TuningPanel {
 public:
  static constexpr int kDigits = 9;

  TuningPanel(ControlRegistry& registry, EventQueue& queue, const Clock& clock, const PublicVars& vars,
              TuningPanelLinks links);

  // Tunes through `tuner` from now on, which must outlive the panel or be taken away with null. The rate
  // starts as its VFO's step.
  void SetTuner(Tuner* tuner);
  // Reads the encoder from `serial`; null for none.
  void SetEncoder(clsDDSSerialIF* serial);
  void SetColours(const TuningColours& colours);

  Frame frFreqCtl;
  ControlArray<Label> lbl7Seg;
  Label lbl7SegTop;      // the figure of 100 MHz, shown where there is one
  Label lblTuningLimit;  // why tuning stopped, until it goes another way
  FrequencyDisplay picFreqDisp;
  Dial dialtuner;
  PopupBox cboTuningSteps;
  Label lblTuningRate, lblTuneDialRate, lblClock;
  Picture imgTuneStepLock;
  Menu mnuVFOControlSub, mnuVFOStepSub;
  CheckBox chkTuneLo;
  Timer tmrTune, tmrShaft, tmrVFOUpdate, tmrClock;

  float TuneRate = 0.0F;  // dHz, step of the held keys and of the wheel over a digit
  std::int32_t TuneDigit = 0;
  std::int32_t TuneStepIndex = 0;
  bool TuneUpHeld = false, TuneDownHeld = false;
  bool ShaftEnabled = false, ShaftAutoRateOn = false;
  bool TuningRateLocked = false;
  bool KBDSupport = false;

  // Fills cboTuningSteps with the texts of the step table.
  void FillTuningSteps();
  // Nine digits or ten; nothing where they are on display already.
  void Display7Seg(const std::string& text);
  // The digits that show the frequency that is wanted plus the BFO offset.
  void DisplayFrequency();
  void SetTuneDigit(std::int32_t digit, float multiplier);
  // Takes the step `index`; wraps at both ends. `override` releases a locked step first.
  void SetTuningRate(std::int32_t index, bool override);
  // Tunes by the rate, as a wheel over the chosen digit does.
  void StepByRate(int notches) { Step(notches * double{TuneRate}); }
  // Takes `dHz` for step and rate, unless one of them is locked.
  void TakeStep(double dHz);
  void DecodeShaft();
  void chkTuneLo_Click();
  // Whether a key tunes up or down where the digits have the keys. With Ctrl letters are the window's, with
  // Alt letters and arrows a menu's.
  static bool TurnsFrequency(const Key& key);
  // Page Up and Page Down tune by the step, with Shift by ten, with Ctrl by a tenth of it. False for other
  // keys.
  bool TuneByKey(const Key& key);
  // `early` is read before the chain is made.
  void AddSettings(SettingsTable& table, SettingsTable& early);

 private:
  void ConnectDigits();
  void ConnectRate();
  void lbl7Seg_MouseMove(std::int32_t index);
  void lbl7Seg_DblClick(std::int32_t index);
  void lblTuningRate_Click();
  void imgTuneStepLock_DblClick();
  void SetRateLocked(bool locked);
  void mnuVFOControlSub_Click(std::int32_t index);
  void ShowStepSelector(const Control& beside);
  void cboTuningSteps_Click();
  void dialtuner_Change();
  void picFreqDisp_KeyDown(Key key);
  void picFreqDisp_KeyUp();
  void PressTuneKey(std::int32_t code, int direction);
  void tmrTune_Timer();
  void tmrShaft_Timer();
  void tmrVFOUpdate_Timer();
  void tmrClock_Timer();
  void Step(double dHz);
  void StepAndTurn(int direction, double dHz);
  void ShowWanted();
  void ShowLimit(const std::string& why);
  void TurnDial(std::int32_t steps);
  void LockDigit(std::int32_t digit);
  std::int32_t DigitOfRate() const;
  void HighlightDigit(std::int32_t digit);
  void ShowRate(std::int32_t digit);
  void ShowDial();
  void ShowLock();
  void ShaftAutoRateStep();

  const Clock& clock_;
  const PublicVars& vars_;
  TuningPanelLinks links_;
  Tuner* tuner_ = nullptr;
  clsVFO* vfo_ = nullptr;  // the tuner's
  clsDDSSerialIF* encoder_ = nullptr;
  Profiler shaftProfiler_;
  ShaftDecoder shaftDecoder_;
  ShaftAutoRate shaftRate_;
  std::int32_t shaftUpCount_ = 0, shaftDownCount_ = 0;
  std::int32_t lastDigit_ = 0;    // the highlighted one
  std::int32_t lockedDigit_ = 0;  // whose step the lock holds
  std::int32_t menuDigit_ = 0;    // that the menu was opened on
  std::int32_t dialLastValue_ = 0;
  bool inDial_ = false;         // the knob is being turned along
  std::int32_t heldKey_ = 0;    // of the tuning keys
  std::int64_t lastPress_ = 0;  // of it, or of its repeats; microseconds
  bool digitFromRate_ = false;  // TuneDigit has been taken from TuneRate once
  std::uint32_t random_ = 1;
  std::string displayed_;
  TuningColours colours_;
};

}  // namespace quorl
