// What stands in the fields: the radio's state, or that of a board that has been chosen and not yet applied.
#include <algorithm>

#include "configuration/FieldTexts.h"
#include "configuration/frmConfig.h"
#include "interaction/PanelColours.h"
#include "support/ScopedFlag.h"

namespace quorl {
namespace {

constexpr const char* kSerialOnly =
    "Interface: the AD9951 of this board takes the serial interface only, which stays";

// Place of device `number`, counted from 1, in a list of `names`; -1 where it is not there.
int PlaceOf(std::int32_t number, const ComboBox& list) {
  return number <= static_cast<std::int32_t>(list.Items().size()) ? std::max(number, 0) - 1 : -1;
}

}  // namespace

void frmConfig::ConnectFields() {
  AddReceiverFields();
  AddInterfaceFields();
  AddSoundFields();
  AddOptions();
  AddDecoderFields();
  AddRemoteFields();
  for (TextBox* field :
       {&Receiver.txtIFFrequency, &Receiver.txtDDSClkin, &Interface.txtPortAddress,
        &Interface.txtParallelPortBitPeriod, &Interface.txtBitPeriod,
        &Display.txtSpectrumDisplaySmoothingCount, &Remote.txtRemoteAddress, &Remote.txtRemotePort}) {
    field->Change = [this, field] { faults_.Clear(*field); };
  }
  Interface.cboComPort.Click = [this] { faults_.Clear(Interface.cboComPort); };
}

void frmConfig::AddReceiverFields() {
  fields_.Add(Receiver.cboSDRModel, [this] { return links_.Chain.SDRModelNo(); });
  fields_.Add(Receiver.txtIFFrequency, [this] { return HertzText(ChosenBoard().IFFrequency); });
  fields_.Add(Receiver.chkLoLO, [this] { return !ChosenBoard().HiSideLO; });
  fields_.Add(Receiver.txtDDSClkin, [this] { return ClockText(ChosenBoard().ClkIn); });
  fields_.Add(Receiver.chkAutoDDSRefresh, [this] { return ChosenBoard().AutoUpdate; });
  fields_.Add(Receiver.chkAutoStartSDR, [this] { return links_.AutoStartSDR; });
  fields_.Add(Receiver.chkUseSPL, [this] { return links_.Panel.Rx.Settings.UseSPL; });
  Receiver.cboSDRModel.Click = [this] { cboSDRModel_Click(); };
}

void frmConfig::AddInterfaceFields() {
  InterfacePage& page = Interface;
  fields_.Add(page.optIF, [this] {
    return links_.InterfaceType == InterfaceType::Parallel ? InterfaceChoice::Parallel
                                                           : InterfaceChoice::Serial;
  });
  fields_.Add(page.txtPortAddress, [this] { return AddressText(links_.Chain.ParallelIF().PortAddress); });
  fields_.Add(page.txtParallelPortBitPeriod,
              [this] { return BitPeriodText(links_.Chain.ParallelIF().WaitTime); });
  fields_.Add(page.chkInvertingIF, [this] { return !links_.Chain.ParallelIF().NonInverting; });
  fields_.Add(page.cboComPort,
              [this] { return PlaceOf(links_.Chain.SerialIF().PortNo, Interface.cboComPort); });
  fields_.Add(page.txtBitPeriod, [this] { return BitPeriodText(links_.Chain.SerialIF().WaitTime); });
  page.optIF.Repeats = true;
  page.optIF.Click = [this](int index) { optIF_Click(index); };
  page.cmdParallelPortDefaults.Click = [this] {
    Interface.txtPortAddress.SetValue(AddressText(clsDDSParallelIF::kDefaultPortAddress));
    Interface.txtParallelPortBitPeriod.SetValue(BitPeriodText(clsDDSParallelIF::kDefaultWaitTime));
  };
  page.cmdBitPeriodDefault.Click = [this] {
    Interface.txtBitPeriod.SetValue(BitPeriodText(clsDDSSerialIF::kDefaultWaitTime));
  };
}

void frmConfig::AddSoundFields() {
  fields_.Add(Sound.cboCapDevices,
              [this] { return PlaceOf(links_.SoundCard.CurrentCaptureDevice, Sound.cboCapDevices); });
  fields_.Add(Sound.cboPlayDevices,
              [this] { return PlaceOf(links_.UsualPlaybackDevice(), Sound.cboPlayDevices); });
}

void frmConfig::AddOptions() {
  fields_.Add(Tuning.chkEnableEncoder, [this] { return links_.Tuning.ShaftEnabled; });
  fields_.Add(Tuning.chkShaftAutoRate, [this] { return links_.Tuning.ShaftAutoRateOn; });
  fields_.Add(Tuning.chkKBDSupport, [this] { return links_.Tuning.KBDSupport; });
  fields_.Add(Tuning.chkScrollWheelEnableOverScope, [this] { return links_.Scope.Pointer.WheelTunes(); });
  fields_.Add(Tuning.chkAutoTrackPresets, [this] { return links_.AutoTrackPresets; });
  fields_.Add(Display.txtSpectrumDisplaySmoothingCount,
              [this] { return std::to_string(links_.Scope.SpectrumAnalyser.SpectrumSmooth()); });
  fields_.Add(Display.chkSpectrumDisplayHideToolTip,
              [this] { return links_.Scope.SpectrumAnalyser.HideFreqToolTip; });
  fields_.Add(Display.chkScollLabelHiliteBorder, [this] { return links_.Panel.Scrollables.HiLiteBorder; });
  fields_.Add(Display.FormCaptionOffOnPwrOn, [this] { return links_.FormCaptionOffOnPwrOn; });
}

std::int32_t frmConfig::ChosenModel() const {
  return std::max(Receiver.cboSDRModel.ListIndex(), 0);
}

BoardValues frmConfig::ChosenBoard() const {
  const std::int32_t model = ChosenModel();
  return model == links_.Chain.SDRModelNo() ? links_.Chain.InUse() : links_.Chain.Stored(model);
}

// Each board has an IF, a side and a clock of its own.
void frmConfig::cboSDRModel_Click() {
  for (const void* field :
       std::initializer_list<const void*>{&Receiver.txtIFFrequency, &Receiver.chkLoLO, &Receiver.txtDDSClkin,
                                          &Receiver.chkAutoDDSRefresh, &Interface.optIF})
    fields_.Load(field);
  if (!TuningChain::TakesParallel(ChosenModel())) Interface.optIF.Press(InterfaceChoice::Serial);
}

void frmConfig::optIF_Click(int index) {
  if (refusing_) return;
  Control& parallel = Interface.optIF(InterfaceChoice::Parallel);
  faults_.Clear(parallel);
  if (index == InterfaceChoice::Parallel && !TuningChain::TakesParallel(ChosenModel())) {
    const ScopedFlag refusing(refusing_);
    faults_.Mark(parallel, kSerialOnly);
    Interface.optIF.Press(InterfaceChoice::Serial);
  }
  ShowInterface();
}

void frmConfig::ShowInterface() {
  const bool parallel = Interface.optIF.Pressed() == InterfaceChoice::Parallel;
  PaintButtons(Interface.optIF, Interface.optIF.Pressed());
  for (Control* control :
       std::initializer_list<Control*>{&Interface.txtPortAddress, &Interface.txtParallelPortBitPeriod,
                                       &Interface.chkInvertingIF, &Interface.cmdParallelPortDefaults})
    control->Enabled = parallel;
  for (Control* control : std::initializer_list<Control*>{&Interface.cboComPort, &Interface.txtBitPeriod,
                                                          &Interface.cmdBitPeriodDefault})
    control->Enabled = !parallel;
}

void frmConfig::ListDevices() {
  ports_.Refresh(links_.Chain.SerialIF(), links_.Serial.List());
  Interface.cboComPort.SetItems(ports_.Names());
  links_.SoundCard.RefreshDevices();
  std::vector<std::string> names;
  links_.SoundCard.GetCapDeviceNames(names);
  Sound.cboCapDevices.SetItems(names);
  links_.SoundCard.GetPlayDeviceNames(names);
  Sound.cboPlayDevices.SetItems(names);
  ListDecoderDevices(names);
}

void frmConfig::Form_Load() {
  faults_.ClearAll();
  ListDevices();
  fields_.Load();
  Colours.Load();
  ShowInterface();
  ShowRemote();
  InitialCaptureDevice_ = Sound.cboCapDevices.Text();
  InitialPlaybackDevice_ = Sound.cboPlayDevices.Text();
}

}  // namespace quorl
