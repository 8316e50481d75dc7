// The dialog that edits a preset's description, frequency, time stamp, mode and filter.
#pragma once

#include <functional>
#include <string>

#include "controls/Controls.h"
#include "memories/BandPlan.h"

namespace quorl {

// Works on a copy. Everything else waits while it is open: the view makes it modal.
class PresetDialog {
 public:
  explicit PresetDialog(ControlRegistry& registry);

  Frame frmEditUserPreset;  // its caption is the title; hidden while there is nothing to edit
  Label lblPresetIndex;
  ControlArray<TextBox> txtPresetValues;  // description, frequency, date, time
  OptionGroup optDemodulationValue, optFilteringValues;
  CheckBox chkPresetTuneImage;
  CommandButton cmdSave, cmdCancel;

  Preset EditPreset;
  bool EditPresetIsEdit = false;
  bool EditPresetAccepted = false;
  std::string EditPresetTitle, EditPresetButton;

  // Shows EditPreset; `accepted` is called when it is saved.
  void Open(std::function<void()> accepted);
  void cmdSave_Click();
  void cmdCancel_Click();

 private:
  void Close();

  std::function<void()> accepted_;
};

}  // namespace quorl
