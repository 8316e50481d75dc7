// The timer on the radio: what it presses, and what its dialog is told.
#include "core/frmMain.h"

namespace quorl {

TimerLinks frmMain::LinksOfTimer() {
  TimerLinks links;
  links.IsReady = [this] { return IsReadyForTimer(); };
  links.Tune = [this](const TimerTarget& target) { return TuneForTimer(target); };
  links.IsOn = [this] { return on_; };
  links.SetPower = [this](bool on) { optPwr_.Press(on ? 0 : 1); };
  links.Record = [this](std::int32_t rate) { recorder_.RecordAt(rate); };
  links.Release = [this] { recorder_.TakeEmptyDeck(); };
  links.Log = [this](const std::string& line) { log_.AddLog(line); };
  links.Changed = [this] { TimerChanged(); };
  return links;
}

TimerPanelLinks frmMain::LinksOfTimerPanel() {
  TimerPanelLinks links;
  links.Plans = [this] {
    std::vector<std::string> names;
    for (const BandPlan& plan : memories_.BandPlans) names.push_back(plan.Name);
    return names;
  };
  links.Plan = [this](const std::string& name) { return memories_.PlanNamed(name); };
  links.Tuned = [this] { return TunedForTimer(); };
  links.Highest = [this] { return radio_.Tuning().Tune().Highest(); };
  links.Changed = [this] { TimerChanged(); };
  return links;
}

// What waits for a plan or for an answer goes on when this has returned. A recording that was left behind is
// taken, and saved with the next look: at night nobody answers for it.
bool frmMain::IsReadyForTimer() {
  if (switching_ || config_.IsApplying() || recorder_.IsClicking() || memories_.IsLoading() ||
      memories_.Memory.ApplyingSettings) {
    return false;
  }
  if (!offer_.IsOpen()) return true;
  offer_.Take();
  return false;
}

std::string frmMain::TuneForTimer(const TimerTarget& target) {
  if (!target.Plan.empty()) {
    const bool recalled = memories_.RecallByPlace(target.Plan, target.SubBand, target.Preset);
    return recalled ? "" : "the plan " + target.Plan + " has no such preset any more";
  }
  radio_.Rx.SetDemodMode(target.Mode);
  radio_.Rx.SetFilterMode(target.FilterMode);
  radio_.Tuning().Tune().MoveTo(target.Freq);
  return {};
}

TimerTarget frmMain::TunedForTimer() {
  TimerTarget target;
  target.Freq = radio_.Tuning().Tune().Wanted();
  target.Mode = radio_.Rx.Vars.CurrentDemodMode;
  target.FilterMode = radio_.Rx.Vars.CurrentFilterMode;
  return target;
}

void frmMain::TimerChanged() {
  timerPanel_.ShowList();
  recorder_.ShowState();
  SaveNow();
}

}  // namespace quorl
