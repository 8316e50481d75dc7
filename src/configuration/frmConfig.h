// The configuration: all options that are not on the main panel, put in force by Apply.
#pragma once

#include <string>
#include <vector>

#include "configuration/ColourPage.h"
#include "configuration/ComPorts.h"
#include "configuration/ConfigLinks.h"
#include "configuration/ConfigPages.h"
#include "configuration/FieldFaults.h"
#include "configuration/LiveFields.h"
#include "controls/Controls.h"
#include "controls/Timer.h"

namespace quorl {

// The radio plays on while it is open. A field shows what the radio has until somebody changes it; Apply
// takes what was changed, step by step. What is no value for its field is marked there, told in
// lblConfigMessage and left out, and the rest goes on; an IF or a clock that no board can have is told in a
// box and ends it. What came before stays applied.
class frmConfig {
 public:
  frmConfig(ControlRegistry& registry, ConfigLinks links);

  CommandButton cmdConfig;  // on the main panel
  Frame Form;               // hidden while the window is closed
  OptionGroup TabStrip1;    // ConfigPage
  ControlArray<Frame> frConfigs;
  ReceiverPage Receiver;
  InterfacePage Interface;
  SoundPage Sound;
  TuningPage Tuning;
  DisplayPage Display;
  DRMPage DRM;
  RemotePage Remote;
  ColourPage Colours;
  Label lblAbout;
  CommandButton cmdGuide;
  Label lblConfigMessage;
  CommandButton cmdOK, cmdApply, cmdCancel;

  void Open();
  // Looks for devices and ports, and shows the radio's state in all fields.
  void Form_Load();
  // Applies; where the chip is being tuned or a block is in work, as soon as that is done.
  void cmdApply_Click();
  // Applies, tells what could not be taken, and closes.
  void cmdOK_Click();
  void cmdCancel_Click();
  // No more: the end of the program.
  void Stop();
  // Apply waits for its turn, or is under way.
  bool IsApplying() const { return waits_ || applying_; }
  bool IsUnderWay() const { return applying_; }

 private:
  void Connect();
  void ConnectFields();
  void AddReceiverFields();
  void AddInterfaceFields();
  void AddSoundFields();
  void AddOptions();
  void AddDecoderFields();
  void ListDecoderDevices(const std::vector<std::string>& names);
  int DecoderDevicePlace() const;
  void AddRemoteFields();
  void ShowRemote();
  void cmdFindDREAM_Click();
  void cmdDreamDefault_Click();
  void cmdCalDDS_Click();
  void Close();
  void ShowPage(int page);
  void MarkTabs();
  void ShowInterface();
  void ListDevices();

  std::int32_t ChosenModel() const;
  BoardValues ChosenBoard() const;
  void cboSDRModel_Click();
  void optIF_Click(int index);

  void ApplyWhenIdle();
  void Apply();
  bool IsIdle() const;
  bool ApplySteps();
  void ApplyModel();
  bool ApplyIF();
  bool ApplyClock();
  void ApplyDevices();
  void ApplyInterfaceType();
  void ApplyParallel();
  void ApplySerial();
  void OpenSerial(std::int32_t portNo, bool tells);
  void SetUpChip();
  void ApplyOptions();
  void ApplyDecoder();
  void ApplyRemote();
  void TakeRemoteAddress();
  void TakeRemotePort();
  void ApplySmoothing();
  void TakeBitPeriod(TextBox& field, const char* name, double& waitTime);
  bool Refuse(Control& field, const char* text);

  ConfigLinks links_;
  LiveFields fields_;
  FieldFaults faults_;
  ComPorts ports_;
  Timer tmrFollow_, tmrApply_;
  std::vector<std::string> decoderDevices_;  // of its list; empty for the usual one
  std::string InitialCaptureDevice_, InitialPlaybackDevice_;
  bool waits_ = false, applying_ = false;
  bool refusing_ = false;      // a choice is being taken back
  bool closes_ = false;        // when it has been applied
  bool linesChanged_ = false;  // the way to the chip is another one: it is to be set up anew
};

}  // namespace quorl
