// Rate and size of a recording's samples, and how it begins and ends.
#pragma once

#include <cstdint>
#include <functional>

#include "config/SettingsTable.h"
#include "controls/Controls.h"
#include "interaction/PanelContext.h"
#include "recorder/clsWavFile.h"

namespace quorl {

// While the deck holds a recording or a file its rate is pressed, and nobody can press another.
class RecordingOptions {
 public:
  // All outlives it.
  RecordingOptions(const PanelContext& context, clsWavFile& deck);

  Frame frRecordSampling, frRecordBitsPerSample;
  OptionGroup optRecordSampleRate, optRecordSamplePerBit;
  CheckBox chkRecordIF;
  CheckBox chkKeepTail;
  CheckBox chkStayOn;  // the power goes on again after Stop
  Label lblRecordMBytesPerHr, lblRecordMBytesDesc;

  // A recording that would begin now is another one.
  std::function<void()> Changed = [] {};

  // Brings the buttons in line with the deck.
  void Show();
  // What a recording takes of the disk, or would take.
  std::int64_t BytesPerHour() const;
  void AddSettings(SettingsTable& table);

 private:
  void optRecordSampleRate_Click(int index);
  void optRecordSamplePerBit_Click(int index);
  void chkRecordIF_Click();

  clsWavFile& deck_;
  Receiver& rx_;
  bool showing_ = false;
};

}  // namespace quorl
