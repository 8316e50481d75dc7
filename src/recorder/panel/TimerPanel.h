// The dialog of the timer: eight programmes, and the fields of the one that is chosen.
#pragma once

#include <optional>
#include <string>

#include "controls/Controls.h"
#include "platform/Clock.h"
#include "recorder/RecordingTimer.h"
#include "recorder/panel/TimerTargetFields.h"

namespace quorl {

// The radio plays on while it is open. What is typed counts when it is saved; what can't be recorded is told
// at its field, and stays as it was typed.
class TimerPanel {
 public:
  // All outlives the panel.
  TimerPanel(ControlRegistry& registry, RecordingTimer& timer, const clsWavFile& deck, const Clock& clock,
             TimerPanelLinks links);

  CommandButton cmdTimer;  // opens the dialog
  Frame frmTimer;          // hidden while it is closed
  Label lblTimerHeaders;
  ListBox lstTimer;
  CheckBox chkTimerOn;
  TextBox txtTimerDate, txtTimerStart, txtTimerEnd;
  OptionGroup optTimerRepeat;
  TimerTargetFields Target;
  OptionGroup optTimerRate;  // places of TimerProgramme::Rate
  Label lblTimerMessage;     // the fault, or what the timer does next
  CommandButton cmdTimerSave, cmdTimerClear, cmdTimerClose;

  void Open();
  // The timer has gone on to its next time: list and state follow, what is being typed stays.
  void ShowList();
  void cmdTimerSave_Click();
  void cmdTimerClear_Click();
  void cmdTimerClose_Click();

 private:
  struct Field {
    TextBox& Box;
    const char* Hint;
  };

  void NameControls();
  void ConnectControls();
  void ShowProgramme();
  void ShowWhen(const TimerProgramme& programme);
  void ClearFaults();
  void Replace(const TimerProgramme& programme);
  std::string Line(std::size_t which) const;
  std::string Refuse(Control& field, const std::string& fault);
  // Fills a programme from the fields; the fault, or empty.
  std::string Take(TimerProgramme& programme);
  std::string TakeWhen(TimerProgramme& programme);
  void Tell(const std::string& fault);
  TimerProgramme Suggestion() const;
  double Now() const;

  RecordingTimer& timer_;
  const clsWavFile& deck_;
  const Clock& clock_;
  TimerPanelLinks links_;
  std::size_t chosen_ = 0;
  bool showing_ = false;
};

}  // namespace quorl
