#include "configuration/ConfigPages.h"

#include <array>

#include "controls/ControlRegistry.h"
#include "interaction/PanelColours.h"
#include "interaction/PanelTexts.h"

namespace quorl {
namespace {

constexpr int kInterfaces = 2, kWindowStyles = 4;

constexpr const char* kWiringHead = "Parallel Port to RX Wiring";
constexpr std::array<const char*, 5> kWiring{"PC(DB25)       RX(DB9)", "D0(2)    --->  SDIO(7) ",
                                             "D1(3)    --->  SCLK(3)", "D2(4)    --->  IOUPD/FSYNC(4)",
                                             "0V(18)   <-->  0V(5)"};

struct ConfigText {
  const char* Name;
  const char* Caption;  // of what has one
  const char* ToolTip;
  const char* Spoken;  // where the caption doesn't say it
};

constexpr ConfigText kReceiverTexts[] = {
    {"cboSDRModel", "", "The receiver board", "Receiver board"},
    {"txtIFFrequency", "", "Of the board's first mixer, in hertz", "IF frequency, hertz"},
    {"chkLoLO", "Low side LO", "The oscillator lies below the signal, not above it", ""},
    {"txtDDSClkin", "", "Of the DDS chip on the board, in hertz", "DDS clock, hertz"},
    {"cmdCalDDS", "Calibrate", "Finds the clock from a station whose frequency is known",
     "Calibrate the DDS clock"},
    {"chkAutoDDSRefresh", "Auto refresh", "Sends the frequency to the board every few seconds",
     "Refresh the DDS automatically"},
    {"chkAutoStartSDR", "Start receiving at once", "Presses On when the program starts", ""},
    {"chkUseSPL", "Use SPL", "Click to use Intel SPL", ""},
    {"cmdFirstStart", "First start", "Asks the five questions of the first start again", ""},
};
constexpr ConfigText kInterfaceTexts[] = {
    {"txtPortAddress", "", "Such as &H378, 0x378 or 888: the first printer port", "Port address"},
    {"txtParallelPortBitPeriod", "", "Seconds; 0 sends a whole frame without a pause",
     "Bit period of the parallel port, seconds"},
    {"chkInvertingIF", "Inverting interface",
     "For an inverting buffer, as the board has one. Unticked, every bit is sent as 0", ""},
    {"cmdParallelPortDefaults", "Defaults", "Address &H378 and the usual bit period",
     "Defaults of the parallel port"},
    {"cboComPort", "", "The serial port that the board is connected to", "Serial port"},
    {"txtBitPeriod", "", "Seconds; 0 sends a whole frame without a pause",
     "Bit period of the serial port, seconds"},
    {"cmdBitPeriodDefault", "Default", "The usual bit period", "Default bit period of the serial port"},
};
constexpr ConfigText kSoundTexts[] = {
    {"cboCapDevices", "", "The input that the board's IF comes in by", "Sound input"},
    {"cboPlayDevices", "", "Where the radio is heard", "Sound output"},
};
constexpr ConfigText kTuningTexts[] = {
    {"chkEnableEncoder", "Shaft encoder", "An encoder turns CTS and DSR of the board's serial port", ""},
    {"chkShaftAutoRate", "Encoder sets the step", "The faster it turns, the larger the step", ""},
    {"chkKBDSupport", "Keyboard tuning",
     "A, Z, arrows and Page Up and Down tune wherever the pointer is; off, they need it over the frequency",
     ""},
    {"chkScrollWheelEnableOverScope", "Wheel tunes over the scope",
     "Click to enable Tuning by ScrollWheel over the Spectrum Display", ""},
    {"chkAutoTrackPresets", "Sub-bands follow", "A sub-band is found as it was left, not at its preset",
     "Sub-bands follow the tuning"},
};
constexpr ConfigText kDisplayTexts[] = {
    {"txtSpectrumDisplaySmoothingCount", "", "1 to 24 pictures make the mean of the spectrum",
     "Smoothing of the spectrum, pictures"},
    {"chkSpectrumDisplayHideToolTip", "No frequency at the pointer",
     "The scope doesn't tell the frequency under the pointer", ""},
    {"chkScollLabelHiliteBorder", "Border round the active value",
     "The value that the wheel turns has a border", ""},
    {"FormCaptionOffOnPwrOn", "No title bar while receiving",
     "The title bar goes when the radio is switched on", ""},
};
constexpr ConfigText kDRMTexts[] = {
    {"chkDreamRunOnDRM", "Start the decoder in DRM mode", "", ""},
    {"chkMuteAFOnDRM", "Silence the radio in DRM mode", "The decoder is heard alone", ""},
    {"chkCloseSoundCardOnDRM", "Hand over the sound card", "The decoder has it while the mode is DRM", ""},
    {"chkDreamCloseOnExit", "Close the decoder at the end", "When this program ends", ""},
    {"chkDreamCloseOnModeChange", "Close the decoder with the mode", "At every change of the mode", ""},
    {"txtPathToDream", "", "The decoder's program file; empty: none is started", "Path of the decoder"},
    {"txtDreamProgArgs", "", "%CurFreq% stands for the tuned frequency in kHz", "Arguments of the decoder"},
    {"cmdFindDREAM", "Browse", "Looks for the decoder's program file", "Find the decoder"},
    {"cmdDreamDefault", "Defaults", "All options of the decoder as at first", "Defaults of the decoder"},
    {"cboDRMPlayDevices", "", "Where the receiver plays in DRM mode, such as a null sink for the decoder",
     "Sound output in DRM mode"},
};
constexpr ConfigText kRemoteTexts[] = {
    {"chkRemoteOn", "Let other programs tune the radio",
     "Loggers and decoders that speak the Hamlib protocol", ""},
    {"txtRemoteAddress", "", "127.0.0.1: programs on this computer; 0.0.0.0: on all networks that it is in",
     "Address for remote control"},
    {"txtRemotePort", "", "1 to 65535; programs expect 4532", "Port for remote control"},
    {"chkRemoteOthers", "Other computers may connect",
     "Anybody on that network can then tune the radio: there is no password", ""},
    {"lblRemoteState", "", "", "State of remote control"},
};

constexpr std::array<const char*, kWindowStyles> kWindowStyleTexts{"Behind", "Minimised", "Hidden", "Normal"};
constexpr std::array<const char*, kWindowStyles> kWindowStyleTips{
    "An ordinary window that doesn't take the keyboard", "Only in the task bar", "No window",
    "An ordinary window, in front"};

void Name(Control& control, const ConfigText& text) {
  if (auto* box = dynamic_cast<CheckBox*>(&control)) {
    box->Caption = text.Caption;
    BindToggle(*box, [] {});
  } else if (auto* button = dynamic_cast<CommandButton*>(&control)) {
    button->Caption = text.Caption;
  }
  control.ToolTip = text.ToolTip;
  control.AccessibleName = text.Spoken;
}

}  // namespace

std::string ConfigName(const std::string& control) {
  return std::string(kConfigForm) + "." + control;
}

ReceiverPage::ReceiverPage(ControlRegistry& registry)
    : cboSDRModel(registry, ConfigName("cboSDRModel")),
      txtIFFrequency(registry, ConfigName("txtIFFrequency")),
      chkLoLO(registry, ConfigName("chkLoLO")),
      txtDDSClkin(registry, ConfigName("txtDDSClkin")),
      cmdCalDDS(registry, ConfigName("cmdCalDDS")),
      chkAutoDDSRefresh(registry, ConfigName("chkAutoDDSRefresh")),
      chkAutoStartSDR(registry, ConfigName("chkAutoStartSDR")),
      chkUseSPL(registry, ConfigName("chkUseSPL")),
      cmdFirstStart(registry, ConfigName("cmdFirstStart")) {
  cboSDRModel.SetItems({SDRModelNames.begin(), SDRModelNames.end()});
  chkUseSPL.Enabled = false;
}

InterfacePage::InterfacePage(ControlRegistry& registry)
    : optIF(registry, ConfigName("optIF"), kInterfaces),
      txtPortAddress(registry, ConfigName("txtPortAddress")),
      txtParallelPortBitPeriod(registry, ConfigName("txtParallelPortBitPeriod")),
      chkInvertingIF(registry, ConfigName("chkInvertingIF")),
      cmdParallelPortDefaults(registry, ConfigName("cmdParallelPortDefaults")),
      frWiring(registry, ConfigName("frWiring")),
      lblWiring(registry, ConfigName("lblWiring"), static_cast<int>(kWiring.size())),
      cboComPort(registry, ConfigName("cboComPort")),
      txtBitPeriod(registry, ConfigName("txtBitPeriod")),
      cmdBitPeriodDefault(registry, ConfigName("cmdBitPeriodDefault")) {
  SetTexts(optIF, InterfaceTypeTexts);
  optIF(InterfaceChoice::Parallel).Caption = "Parallel";
  optIF(InterfaceChoice::Serial).Caption = "Serial";
  frWiring.Caption = kWiringHead;
  for (int i = 0; i < lblWiring.Count(); ++i) lblWiring(i).Caption = kWiring[static_cast<std::size_t>(i)];
}

SoundPage::SoundPage(ControlRegistry& registry)
    : cboCapDevices(registry, ConfigName("cboCapDevices")),
      cboPlayDevices(registry, ConfigName("cboPlayDevices")) {}

TuningPage::TuningPage(ControlRegistry& registry)
    : chkEnableEncoder(registry, ConfigName("chkEnableEncoder")),
      chkShaftAutoRate(registry, ConfigName("chkShaftAutoRate")),
      chkKBDSupport(registry, ConfigName("chkKBDSupport")),
      chkScrollWheelEnableOverScope(registry, ConfigName("chkScrollWheelEnableOverScope")),
      chkAutoTrackPresets(registry, ConfigName("chkAutoTrackPresets")) {}

DisplayPage::DisplayPage(ControlRegistry& registry)
    : txtSpectrumDisplaySmoothingCount(registry, ConfigName("txtSpectrumDisplaySmoothingCount")),
      chkSpectrumDisplayHideToolTip(registry, ConfigName("chkSpectrumDisplayHideToolTip")),
      chkScollLabelHiliteBorder(registry, ConfigName("chkScollLabelHiliteBorder")),
      FormCaptionOffOnPwrOn(registry, ConfigName("FormCaptionOffOnPwrOn")) {}

DRMPage::DRMPage(ControlRegistry& registry)
    : chkDreamRunOnDRM(registry, ConfigName("chkDreamRunOnDRM")),
      chkMuteAFOnDRM(registry, ConfigName("chkMuteAFOnDRM")),
      chkCloseSoundCardOnDRM(registry, ConfigName("chkCloseSoundCardOnDRM")),
      chkDreamCloseOnExit(registry, ConfigName("chkDreamCloseOnExit")),
      chkDreamCloseOnModeChange(registry, ConfigName("chkDreamCloseOnModeChange")),
      optDreamWindow(registry, ConfigName("optDreamWindow"), kWindowStyles),
      txtPathToDream(registry, ConfigName("txtPathToDream")),
      txtDreamProgArgs(registry, ConfigName("txtDreamProgArgs")),
      cmdFindDREAM(registry, ConfigName("cmdFindDREAM")),
      cmdDreamDefault(registry, ConfigName("cmdDreamDefault")),
      cboDRMPlayDevices(registry, ConfigName("cboDRMPlayDevices")) {
  for (int i = 0; i < kWindowStyles; ++i) {
    optDreamWindow(i).Caption = kWindowStyleTexts[static_cast<std::size_t>(i)];
    optDreamWindow(i).ToolTip = kWindowStyleTips[static_cast<std::size_t>(i)];
  }
}

RemotePage::RemotePage(ControlRegistry& registry)
    : chkRemoteOn(registry, ConfigName("chkRemoteOn")),
      txtRemoteAddress(registry, ConfigName("txtRemoteAddress")),
      txtRemotePort(registry, ConfigName("txtRemotePort")),
      chkRemoteOthers(registry, ConfigName("chkRemoteOthers")),
      lblRemoteState(registry, ConfigName("lblRemoteState")) {}

void NameConfigControls(const ControlRegistry& registry) {
  const auto name = [&registry](const auto& texts) {
    for (const ConfigText& text : texts) {
      if (Control* control = registry.Find(ConfigName(text.Name))) Name(*control, text);
    }
  };
  name(kReceiverTexts);
  name(kInterfaceTexts);
  name(kSoundTexts);
  name(kTuningTexts);
  name(kDisplayTexts);
  name(kDRMTexts);
  name(kRemoteTexts);
}

}  // namespace quorl
