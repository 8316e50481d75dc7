// What a programme of the timer records: a preset, or a frequency with mode and filter.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "controls/Controls.h"
#include "memories/BandPlan.h"
#include "recorder/TimerProgramme.h"

namespace quorl {

// What the timer's dialog asks of the radio.
struct TimerPanelLinks {
  std::function<std::vector<std::string>()> Plans = [] { return std::vector<std::string>(); };  // names
  // A plan's presets, whether it has been opened or not.
  std::function<BandPlan(const std::string& name)> Plan = [](const std::string&) { return BandPlan(); };
  std::function<TimerTarget()> Tuned = [] { return TimerTarget(); };  // what is heard now
  std::function<std::int32_t()> Highest = [] { return std::numeric_limits<std::int32_t>::max(); };  // dHz
  std::function<void()> Changed = [] {};  // programmes are to be stored
};

// Places in optTimerTarget.
struct TimerTargetKind {
  static constexpr int Preset = 0, Frequency = 1, Count = 2;
};

// A field at fault shows in red and says why in its tool tip, until it is changed.
void TellFault(Control& field, const std::string& fault);
void ClearFault(Control& field, const char* hint);

// Whoever chooses a preset means a preset, who types a frequency means that.
class TimerTargetFields {
 public:
  // `links` is used as long as it lives.
  TimerTargetFields(ControlRegistry& registry, const TimerPanelLinks& links);

  OptionGroup optTimerTarget;
  ComboBox cboTimerPlan, cboTimerSubBand, cboTimerPreset;
  TextBox txtTimerFreq;  // kHz
  OptionGroup optTimerMode, optTimerFilter;
  CommandButton cmdTimerTuned;

  void Show(const TimerTarget& target);
  // Takes what the fields say; why they say nothing, for a person, or empty.
  std::string Take(TimerTarget& target);
  // "7205 kHz USB", "Broadcast 41m Radio Horizon".
  std::string Text(const TimerTarget& target) const;

 private:
  void ConnectFields();
  void ShowFrequency(const TimerTarget& target);
  void ChoosePlan(std::int32_t subBand, std::int32_t preset);
  void ChooseSubBand(std::int32_t preset);
  void ShowKind();
  std::string TakePreset(TimerTarget& target);
  std::string TakeFrequency(TimerTarget& target);

  const TimerPanelLinks& links_;
  BandPlan plan_;                              // the one that is chosen
  std::vector<std::int32_t> bands_, presets_;  // places of what the boxes list
  bool showing_ = false;
};

}  // namespace quorl
