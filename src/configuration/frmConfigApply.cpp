// Apply: what the fields say becomes the radio's, one step after the other.
#include <cmath>
#include <utility>

#include "configuration/FieldTexts.h"
#include "configuration/frmConfig.h"
#include "sound/FindDevice.h"
#include "support/Product.h"
#include "support/Rounding.h"
#include "support/ScopedFlag.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr const char* kClockErrorTitle = " CLKIN - ERROR";
constexpr double kMostIFFrequency = 214748364.0, kMostClock = 429496729.0;  // Hz
constexpr double kLeastClock = 1.0;
constexpr int kMostSmooth = AnalyserSettings::kMostSmooth;

// "IF frequency: "abc" is no number of hertz up to 214 748 364 - the old one stays".
std::string Unfit(const char* field, const std::string& typed, const std::string& wanted) {
  return std::string(field) + ": \"" + typed + "\" is no " + wanted + " - the old one stays";
}

// Number of the device that is chosen, among those of today; the present one's where none is.
int NumberOf(const ComboBox& list, const std::vector<std::string>& names, std::int32_t present) {
  return list.ListIndex() < 0 ? present : FindDevice(names, list.Text(), list.ListIndex() + 1);
}

}  // namespace

void frmConfig::Apply() {
  {
    const ScopedFlag applying(applying_);
    links_.LeaveRecording();
    fields_.Follow();
    faults_.ClearAll();
    ApplySteps();
    fields_.Settle();
    links_.SaveSettings();
    InitialCaptureDevice_ = Sound.cboCapDevices.Text();
    InitialPlaybackDevice_ = Sound.cboPlayDevices.Text();
  }
  if (!std::exchange(closes_, false)) return;
  const std::string faults = faults_.Untold();
  if (!faults.empty())
    links_.Boxes.ShowMessage({.Text = faults, .Title = Form.Caption, .Icon = MessageIcon::Warning});
  Close();
}

bool frmConfig::ApplySteps() {
  linesChanged_ = false;
  ApplyModel();
  if (!ApplyIF() || !ApplyClock()) return false;
  ApplyDevices();
  ApplyInterfaceType();
  ApplyParallel();
  ApplySerial();
  if (linesChanged_) SetUpChip();
  ApplyOptions();
  links_.PaintPanel();
  faults_.Show();
  return true;
}

// The other board's values are in the fields already, and stay there for the steps to come.
void frmConfig::ApplyModel() {
  const std::int32_t model = ChosenModel();
  if (model == links_.Chain.SDRModelNo()) return;
  const bool parallel = links_.InterfaceType == InterfaceType::Parallel && TuningChain::TakesParallel(model);
  links_.ExchangeBoard(model, parallel ? InterfaceType::Parallel : InterfaceType::Serial);
}

bool frmConfig::Refuse(Control& field, const char* text) {
  links_.Boxes.ShowMessage(
      {.Text = text, .Title = std::string(kProductName) + kClockErrorTitle, .Icon = MessageIcon::Critical});
  faults_.Mark(field, text, true);
  return false;
}

// A chip takes its clock from the store when it is set up.
void frmConfig::SetUpChip() {
  links_.Chain.Save();
  links_.Chain.Tune().Revive();
}

// What was typed by nobody keeps the fractions that its picture doesn't show.
bool frmConfig::ApplyIF() {
  TextBox& field = Receiver.txtIFFrequency;
  const std::optional<double> hertz = ParseTyped(field.Value());
  if (hertz && *hertz < 0) return Refuse(field, "IF Frequency must be greater than 0.4 MHZ");
  clsVFO& vfo = *links_.Chain.VFO();
  vfo.HiSideLO = !Receiver.chkLoLO.Value();
  if (!hertz || *hertz > kMostIFFrequency) {
    faults_.Mark(field, Unfit("IF frequency", field.Value(), "number of hertz up to 214 748 364"));
  } else if (fields_.IsTouched(&field)) {
    vfo.SetIFFrequency(RoundHalfEven(*hertz));
    fields_.Load(&field);
  }
  vfo.AutoUpdate = Receiver.chkAutoDDSRefresh.Value();
  links_.Tuning.chkTuneLo.SetValue(Receiver.chkLoLO.Value());
  return true;
}

bool frmConfig::ApplyClock() {
  TextBox& field = Receiver.txtDDSClkin;
  const std::optional<double> hertz = ParseTyped(field.Value());
  if (hertz && *hertz <= kLeastClock) return Refuse(field, "CLKIN must be greater than 1.0000 MHZ");
  if (!hertz || *hertz > kMostClock) {
    faults_.Mark(field, Unfit("DDS clock", field.Value(), "number of hertz up to 429 496 729"));
  } else if (fields_.IsTouched(&field)) {
    links_.Chain.Driver()->SetClkIn(*hertz);
    fields_.Load(&field);
  }
  links_.Chain.Tune().Refresh();
  if (const Failure fault = links_.Chain.ClockFault(); fault && field.Fault().empty())
    faults_.Mark(field, "DDS clock: half of it has to lie above the IF, or nothing can be tuned");
  return true;
}

void frmConfig::ApplyDevices() {
  const bool same = Sound.cboCapDevices.Text() == InitialCaptureDevice_ &&
                    Sound.cboPlayDevices.Text() == InitialPlaybackDevice_ &&
                    !fields_.IsTouched(&Sound.cboCapDevices) && !fields_.IsTouched(&Sound.cboPlayDevices);
  if (same) return;
  std::vector<std::string> names;
  links_.SoundCard.GetCapDeviceNames(names);
  const int capture = NumberOf(Sound.cboCapDevices, names, links_.SoundCard.CurrentCaptureDevice);
  links_.SoundCard.GetPlayDeviceNames(names);
  const int playback = NumberOf(Sound.cboPlayDevices, names, links_.UsualPlaybackDevice());
  (links_.IsSoundCardLent() ? links_.NoteDevices : links_.ChangeDevices)(capture, playback);
  fields_.Load(&Sound.cboCapDevices);
  fields_.Load(&Sound.cboPlayDevices);
}

void frmConfig::ApplyInterfaceType() {
  const std::int32_t type = Interface.optIF.Pressed() == InterfaceChoice::Parallel ? InterfaceType::Parallel
                                                                                   : InterfaceType::Serial;
  if (type == links_.InterfaceType) return;
  if (type == InterfaceType::Parallel) links_.Chain.SerialIF().ClosePort();
  links_.InterfaceType = type;
  links_.Chain.Connect(type);
  linesChanged_ = true;
}

void frmConfig::TakeBitPeriod(TextBox& field, const char* name, double& waitTime) {
  const std::optional<double> seconds = ParseBitPeriod(field.Value());
  if (!seconds) {
    faults_.Mark(field, Unfit(name, field.Value(), "number of seconds from 0 on"));
  } else if (fields_.IsTouched(&field)) {
    waitTime = *seconds;
    fields_.Load(&field);
  }
}

void frmConfig::ApplyParallel() {
  clsDDSParallelIF& parallel = links_.Chain.ParallelIF();
  TextBox& field = Interface.txtPortAddress;
  const std::optional<std::uint16_t> address = ParseAddress(field.Value());
  if (!address) {
    faults_.Mark(field, Unfit("Port address", field.Value(), "address from 0 to 65535, such as &H378"));
  } else {
    if (*address != parallel.PortAddress && links_.InterfaceType == InterfaceType::Parallel)
      linesChanged_ = true;
    parallel.PortAddress = *address;
    fields_.Load(&field);
  }
  TakeBitPeriod(Interface.txtParallelPortBitPeriod, "Bit period", parallel.WaitTime);
  parallel.NonInverting = !Interface.chkInvertingIF.Value();
  if (!linesChanged_ || links_.InterfaceType != InterfaceType::Parallel) return;
  if (const Failure fault = links_.Chain.PrinterFault()) faults_.Mark(field, fault->Text);
}

// Where the board hangs on the printer port, number and mode are for later. A port that failed is tried again
// without another box.
void frmConfig::ApplySerial() {
  const std::int32_t before = links_.Chain.SerialIF().PortNo;
  const int place = Interface.cboComPort.ListIndex();
  const std::int32_t portNo = place < 0 ? before : place + 1;
  const std::string device = fields_.IsTouched(&Interface.cboComPort) ? ports_.NewPath(portNo) : "";
  if (!device.empty())
    links_.Store.SaveSetting(links_.Chain.SerialIF().Name, "COM" + std::to_string(portNo), device);
  const bool changes = portNo != before || linesChanged_ || !device.empty() ||
                       Tuning.chkEnableEncoder.Value() != links_.Tuning.ShaftEnabled;
  if (links_.InterfaceType != InterfaceType::Serial) {
    links_.Chain.SerialIF().PortNo = portNo;
  } else if (changes || links_.Chain.SerialIF().OpenFailure()) {
    OpenSerial(portNo, changes);
  }
  TakeBitPeriod(Interface.txtBitPeriod, "Bit period", links_.Chain.SerialIF().WaitTime);
}

void frmConfig::OpenSerial(std::int32_t portNo, bool tells) {
  links_.Tuning.SetEncoder(nullptr);
  const bool open = links_.Chain.ReopenSerial(portNo, Tuning.chkEnableEncoder.Value(), tells);
  links_.Tuning.SetEncoder(&links_.Chain.SerialIF());
  if (open) linesChanged_ = true;
  const Failure& fault = links_.Chain.SerialIF().OpenFailure();
  if (fault) faults_.Mark(Interface.cboComPort, "COM" + std::to_string(portNo) + ": " + fault->Text, true);
}

void frmConfig::ApplySmoothing() {
  TextBox& field = Display.txtSpectrumDisplaySmoothingCount;
  const std::optional<double> count = ParseTyped(field.Value());
  if (!count || *count != std::floor(*count) || *count < 1 || *count > kMostSmooth) {
    faults_.Mark(field, Unfit("Smoothing", field.Value(), "number of pictures from 1 to 24"));
  } else if (fields_.IsTouched(&field)) {
    links_.Panel.Scrollables.SetValue(CtlIndex::SpectrumSmooth, static_cast<float>(*count));
    links_.Scope.SpectrumAnalyser.DefaultSmoothCount = static_cast<std::int32_t>(*count);
    fields_.Load(&field);
  }
}

void frmConfig::ApplyOptions() {
  KernelSettings& kernel = links_.Panel.Rx.Settings;
  if (kernel.SPLAvailable) kernel.UseSPL = Receiver.chkUseSPL.Value();
  links_.Tuning.ShaftAutoRateOn = Tuning.chkShaftAutoRate.Value();
  links_.Tuning.ShaftEnabled = Tuning.chkEnableEncoder.Value();
  links_.Scope.Pointer.SetWheelTunes(Tuning.chkScrollWheelEnableOverScope.Value());
  ApplyDecoder();
  links_.Scope.SpectrumAnalyser.HideFreqToolTip = Display.chkSpectrumDisplayHideToolTip.Value();
  ApplySmoothing();
  links_.Panel.Scrollables.HiLiteBorder = Display.chkScollLabelHiliteBorder.Value();
  links_.Tuning.KBDSupport = Tuning.chkKBDSupport.Value();
  links_.AutoTrackPresets = Tuning.chkAutoTrackPresets.Value();
  Colours.Apply();
  links_.FormCaptionOffOnPwrOn = Display.FormCaptionOffOnPwrOn.Value();
  links_.CaptionChanged();
  ApplyRemote();
  links_.AutoStartSDR = Receiver.chkAutoStartSDR.Value();
}

}  // namespace quorl
