// Levels, gain, oscillator and load in numbers.
#pragma once

#include "config/SettingsTable.h"
#include "controls/Controls.h"
#include "state/PublicVars.h"
#include "state/PumpStatistics.h"

namespace quorl {

class StatsPanel {
 public:
  static constexpr int kCount = 12;
  // Places of the read-outs; 6 to 8 are empty, and from kThreads on nothing is measured yet.
  static constexpr int kPeakIn = 0, kPeakOut = 1, kAGCGain = 2, kLO = 3, kLoad = 4, kTime = 5, kThreads = 9;

  // `statistics` and `vars` are used as long as the panel lives.
  StatsPanel(ControlRegistry& registry, PublicVars& vars, const PumpStatistics& statistics);

  CheckBox chkPerfStatsOn;
  ControlArray<Label> lblStats;     // what each is
  ControlArray<Label> lblStatsVal;  // its value

  void chkPerfStatsOn_Click();
  // Once for each block; nothing moves while PerfStatsOn is clear.
  void Update();
  // Nothing is received: levels, gain and load go blank; the oscillator stays.
  void Rest();
  // The oscillator's output, dHz.
  void ShowOscOut(std::int32_t oscOut);
  void AddSettings(SettingsTable& table);

 private:
  template <typename Ring>
  static double Mean(const Ring& ring);
  void ShowPeak(int index, double peak);
  void ShowLoad();

  PublicVars& vars_;
  const PumpStatistics& statistics_;
};

}  // namespace quorl
