// The dialog that derives the DDS chip's true clock from a station whose frequency is known.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "controls/Controls.h"
#include "controls/Timer.h"
#include "platform/EventQueue.h"
#include "receiver/Receiver.h"
#include "tuning/TuningChain.h"

namespace quorl {

// The word that the chip holds brings a station to the middle of the IF, and the station's frequency is
// known: so the clock is, too. The radio stays in the listener's hand meanwhile. All figures are in hertz.
class frmCalibrate {
 public:
  // All of it outlives the dialog. Of the receiver it reads the beat, while it is open.
  frmCalibrate(ControlRegistry& registry, TuningChain& tuning, Receiver& receiver, EventQueue& queue);

  Frame Form;  // "frmCalibrate"; hidden while it is closed
  Label lblCurrentTunedFreq, lblDDSClkInCurrent;
  TextBox txtOfficialFreq;
  Label lblDDSClkinNew;  // the new clock, or why there is none
  Label lblBeat;         // how far the strongest carrier is from the tuned frequency
  Label lblCarrier;      // where it therefore stands, by the clock in force
  Label lblNote;         // what else there is to know
  CommandButton cmdZeroBeat, cmdTry, cmdApply, cmdCancel;

  // Takes frequency, word and clock as they are now. `closed` is told when it closes, whether the new clock
  // is the chip's from now on.
  void Open(std::function<void(bool applied)> closed);
  bool IsOpen() const { return Form.Visible(); }
  // The new clock in force, and the chip sent to the tuned frequency by it.
  void cmdTry_Click();
  void cmdApply_Click();
  // The clock that was there before, to the last digit.
  void cmdCancel_Click();
  // Tunes to the strongest carrier, and takes frequency and word anew.
  void cmdZeroBeat_Click();
  // Closes as Cancel does; nothing where it is closed.
  void Leave();

 private:
  void TakeTuning();
  void txtOfficialFreq_Change();
  void ShowProblem(const std::string& text);
  bool TakeClock(double hertz);
  void Close(bool applied);
  void Follow();
  void FollowZeroBeat();
  void ShowBeat(std::optional<double> hertz);
  void ShowNote();

  TuningChain& tuning_;
  Receiver& receiver_;
  Timer tmrBeat_;
  std::function<void(bool)> closed_;
  double newClock_ = 0;  // 0: there is none
  double previousClock_ = 0;
  std::int32_t currentTuned_ = 0;  // dHz
  std::uint32_t word_ = 0;
  std::optional<double> beat_;
  std::optional<std::int32_t> zeroing_;  // dHz, on its way to the chip
  std::int32_t heardAt_ = 0;             // dHz, what the beat meter has been listening to
};

}  // namespace quorl
