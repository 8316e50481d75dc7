// The controls of the configuration window, page by page.
#pragma once

#include <string>

#include "controls/Controls.h"

namespace quorl {

// The form's name, which stands before that of each of its controls.
inline constexpr char kConfigForm[] = "frmConfig";
// "cboSDRModel" to "frmConfig.cboSDRModel".
std::string ConfigName(const std::string& control);

// Places in TabStrip1 and frConfigs; the window has them in another order.
struct ConfigPage {
  static constexpr int Receiver = 0, Interface = 1, Sound = 2, Tuning = 3, Display = 4, DRM = 5, Colours = 6,
                       About = 7, Remote = 8, Count = 9;
};

struct ReceiverPage {
  explicit ReceiverPage(ControlRegistry& registry);

  ComboBox cboSDRModel;
  TextBox txtIFFrequency;  // Hz
  CheckBox chkLoLO;
  TextBox txtDDSClkin;  // Hz
  CommandButton cmdCalDDS;
  CheckBox chkAutoDDSRefresh, chkAutoStartSDR, chkUseSPL;
  CommandButton cmdFirstStart;
};

// Places in optIF.
struct InterfaceChoice {
  static constexpr int Parallel = 0, Serial = 1;
};

struct InterfacePage {
  explicit InterfacePage(ControlRegistry& registry);

  OptionGroup optIF;  // InterfaceChoice
  TextBox txtPortAddress, txtParallelPortBitPeriod;
  CheckBox chkInvertingIF;
  CommandButton cmdParallelPortDefaults;
  Frame frWiring;
  ControlArray<Label> lblWiring;  // the heads, then a line for each wire
  ComboBox cboComPort;            // COM1 to COM9
  TextBox txtBitPeriod;
  CommandButton cmdBitPeriodDefault;
};

struct SoundPage {
  explicit SoundPage(ControlRegistry& registry);

  ComboBox cboCapDevices, cboPlayDevices;
};

struct TuningPage {
  explicit TuningPage(ControlRegistry& registry);

  CheckBox chkEnableEncoder, chkShaftAutoRate, chkKBDSupport, chkScrollWheelEnableOverScope,
      chkAutoTrackPresets;
};

struct DisplayPage {
  explicit DisplayPage(ControlRegistry& registry);

  TextBox txtSpectrumDisplaySmoothingCount;
  CheckBox chkSpectrumDisplayHideToolTip, chkScollLabelHiliteBorder, FormCaptionOffOnPwrOn;
};

struct DRMPage {
  explicit DRMPage(ControlRegistry& registry);

  CheckBox chkDreamRunOnDRM, chkMuteAFOnDRM, chkCloseSoundCardOnDRM, chkDreamCloseOnExit,
      chkDreamCloseOnModeChange;
  OptionGroup optDreamWindow;
  TextBox txtPathToDream, txtDreamProgArgs;
  CommandButton cmdFindDREAM, cmdDreamDefault;
  ComboBox cboDRMPlayDevices;  // the usual one, then the devices
};

struct RemotePage {
  explicit RemotePage(ControlRegistry& registry);

  CheckBox chkRemoteOn;
  TextBox txtRemoteAddress, txtRemotePort;
  CheckBox chkRemoteOthers;
  Label lblRemoteState;
};

// Gives all of them their words, and each check box its face.
void NameConfigControls(const ControlRegistry& registry);

}  // namespace quorl
