#include "configuration/frmCalibrate.h"

#include <cmath>
#include <utility>

#include "support/CheckedMath.h"
#include "support/NumberPicture.h"
#include "support/Product.h"
#include "support/Rounding.h"
#include "support/Text.h"

namespace quorl {

namespace {

constexpr char kHertz[] = "#0 000 000";
constexpr char kTenths[] = "#0 000 000.0";
constexpr double kTwoTo32 = 4294967296.0;
constexpr int kBeatInterval = 250;  // ms

}  // namespace

frmCalibrate::frmCalibrate(ControlRegistry& registry, TuningChain& tuning, Receiver& receiver,
                           EventQueue& queue)
    : Form(registry, "frmCalibrate"),
      lblCurrentTunedFreq(registry, "frmCalibrate.lblCurrentTunedFreq"),
      lblDDSClkInCurrent(registry, "frmCalibrate.lblDDSClkInCurrent"),
      txtOfficialFreq(registry, "frmCalibrate.txtOfficialFreq"),
      lblDDSClkinNew(registry, "frmCalibrate.lblDDSClkinNew"),
      lblBeat(registry, "frmCalibrate.lblBeat"),
      lblCarrier(registry, "frmCalibrate.lblCarrier"),
      lblNote(registry, "frmCalibrate.lblNote"),
      cmdZeroBeat(registry, "frmCalibrate.cmdZeroBeat"),
      cmdTry(registry, "frmCalibrate.cmdTry"),
      cmdApply(registry, "frmCalibrate.cmdApply"),
      cmdCancel(registry, "frmCalibrate.cmdCancel"),
      tuning_(tuning),
      receiver_(receiver),
      tmrBeat_(queue, [this] { Follow(); }) {
  Form.Visible = false;
  Form.Caption = std::string(kProductName) + " - Calibrate DDS CLKIN";
  lblCurrentTunedFreq.AccessibleName = "Current Tuned Freq";
  lblDDSClkInCurrent.AccessibleName = "DDS CLKIN (Current)";
  lblDDSClkinNew.AccessibleName = "DDS CLKIN (New)";
  lblBeat.AccessibleName = "Beat";
  lblCarrier.AccessibleName = "Carrier";
  txtOfficialFreq.AccessibleName = "Official frequency";
  txtOfficialFreq.ToolTip = "What the station is known to send on, in hertz";
  cmdZeroBeat.Caption = "&Zero beat";
  cmdZeroBeat.ToolTip = "Tunes to the carrier that is heard";
  cmdTry.Caption = "&Try It";
  cmdTry.ToolTip = "The new clock for a trial; Cancel takes it back";
  cmdApply.Caption = "&Apply";
  cmdCancel.Caption = "&Cancel";
  txtOfficialFreq.Change = [this] { txtOfficialFreq_Change(); };
  cmdZeroBeat.Click = [this] { cmdZeroBeat_Click(); };
  cmdTry.Click = [this] { cmdTry_Click(); };
  cmdApply.Click = [this] { cmdApply_Click(); };
  cmdCancel.Click = [this] { cmdCancel_Click(); };
  Form.KeyDown = [this](const Key& key) {
    if (key.Code == Key::Escape) cmdCancel_Click();
    if (key.Code == Key::Enter) cmdApply_Click();
  };
}

void frmCalibrate::Open(std::function<void(bool applied)> closed) {
  if (IsOpen() || !tuning_.Driver()) return;
  closed_ = std::move(closed);
  previousClock_ = tuning_.Driver()->Clock();
  newClock_ = 0;
  zeroing_ = {};
  beat_ = {};
  lblDDSClkInCurrent.Caption = FormatPicture(previousClock_, kHertz);
  lblDDSClkinNew.Caption = "";
  TakeTuning();
  txtOfficialFreq.SetValue(lblCurrentTunedFreq.Caption());
  txtOfficialFreq_Change();
  receiver_.Beat.SetActive(true);
  ShowBeat({});
  tmrBeat_.SetInterval(kBeatInterval);
  tmrBeat_.SetEnabled(true);
  Form.Visible = true;
}

void frmCalibrate::TakeTuning() {
  heardAt_ = currentTuned_ = tuning_.VFO()->TunedFrequency();
  word_ = static_cast<std::uint32_t>(tuning_.Driver()->CurrentTuningWord);
  lblCurrentTunedFreq.Caption = FormatPicture(RoundHalfEven(currentTuned_ / 10.0), kHertz);
  ShowNote();
}

void frmCalibrate::ShowProblem(const std::string& text) {
  newClock_ = 0;
  lblDDSClkinNew.Caption = text;
}

void frmCalibrate::txtOfficialFreq_Change() {
  txtOfficialFreq.Fault = "";
  const auto typed = ParseTyped(txtOfficialFreq.Value());
  const auto official = typed ? ToInt32(*typed) : std::nullopt;
  if (!official) {
    txtOfficialFreq.Fault = "A frequency in hertz is needed, such as 10 000 000";
    return ShowProblem("Official Frequency is no number");
  }
  if (*official == 0) return ShowProblem("Official Frequency must not be ZERO");
  const clsVFO& vfo = *tuning_.VFO();
  // Below the IF, low-side injection counts backwards: the oscillator runs at what is left.
  const double oscillator = std::abs(*official + (vfo.HiSideLO ? 1.0 : -1.0) * vfo.IFFrequency());
  if (oscillator == 0) return;
  if (word_ == 0) return ShowProblem("The chip has not been tuned yet");
  newClock_ = kTwoTo32 * (oscillator * 10) / word_ / 10;
  lblDDSClkinNew.Caption = FormatPicture(newClock_, kHertz);
}

bool frmCalibrate::TakeClock(double hertz) {
  if (tuning_.Driver()->SetClkIn(hertz)) {
    ShowProblem("No chip has a clock of " + FormatPicture(hertz, kHertz) + " Hz");
    return false;
  }
  tuning_.Tune().Settle();
  receiver_.Beat.Restart();
  return true;
}

void frmCalibrate::cmdTry_Click() {
  if (newClock_ != 0) TakeClock(newClock_);
}

void frmCalibrate::cmdApply_Click() {
  if (newClock_ != 0 && TakeClock(newClock_)) Close(true);
}

void frmCalibrate::cmdCancel_Click() {
  TakeClock(previousClock_);
  Close(false);
}

void frmCalibrate::Leave() {
  if (IsOpen()) cmdCancel_Click();
}

void frmCalibrate::Close(bool applied) {
  tmrBeat_.SetEnabled(false);
  receiver_.Beat.SetActive(false);
  Form.Visible = false;
  if (const auto closed = std::exchange(closed_, {})) closed(applied);
}

void frmCalibrate::cmdZeroBeat_Click() {
  if (!beat_ || zeroing_) return;
  zeroing_ = tuning_.Tune().MoveTo(RoundHalfEven(tuning_.VFO()->TunedFrequency() + *beat_ * 10));
  FollowZeroBeat();
}

// A frame that was out has to come first: then frequency and word are there with a later look.
void frmCalibrate::FollowZeroBeat() {
  if (!zeroing_ || tuning_.Driver()->CMDOutActive || tuning_.VFO()->IsStepping()) return;
  if (tuning_.VFO()->TunedFrequency() != tuning_.Tune().Wanted()) return;
  zeroing_ = {};
  receiver_.Beat.Restart();
  TakeTuning();
  txtOfficialFreq_Change();
}

void frmCalibrate::Follow() {
  FollowZeroBeat();
  const std::int32_t tuned = tuning_.Tune().Tuned();
  const bool plays = tuned != tuning_.VFO()->TunedFrequency();
  if (plays || tuned != heardAt_) {
    heardAt_ = tuned;
    receiver_.Beat.Restart();
  }
  ShowBeat(receiver_.Beat.Offset());
  ShowNote();
}

// With the oscillator above the signal the IF runs the other way round.
void frmCalibrate::ShowBeat(std::optional<double> offset) {
  if (offset && !receiver_.Vars.LowSideLO) offset = -*offset;
  beat_ = offset;
  cmdZeroBeat.Enabled = offset.has_value();
  lblBeat.Caption = offset ? FormatPicture(*offset, "0.0") + " Hz" : std::string("no carrier yet");
  lblCarrier.Caption =
      offset ? FormatPicture(tuning_.Tune().Tuned() / 10.0 + *offset, kTenths) + " Hz" : std::string("-");
}

void frmCalibrate::ShowNote() {
  const clsVFO& vfo = *tuning_.VFO();
  if (tuning_.Tune().Tuned() != vfo.TunedFrequency()) {
    lblNote.Caption = "A recording plays: the clock can only be told from what the antenna hears";
  } else if (vfo.TunedFrequency() != currentTuned_) {
    lblNote.Caption = "The radio is tuned elsewhere by now: Zero beat takes its frequency anew";
  } else if (vfo.CalibOffset() != 0) {
    lblNote.Caption =
        "The offset of " + NumberText(vfo.CalibOffset()) + " Hz in CalibOffset plays no part here";
  } else {
    lblNote.Caption = "Tune to a station whose frequency is known, and type that in";
  }
}

}  // namespace quorl
