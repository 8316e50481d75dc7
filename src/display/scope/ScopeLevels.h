// The decibels at the top and at the floor of the level view and of the waterfall's colours.
#pragma once

#include "config/SettingsTable.h"
#include "display/scope/ScopeContext.h"

namespace quorl {

class ScopeLevels {
 public:
  explicit ScopeLevels(const ScopeContext& context);

  Label lblScopeTop, lblScopeFloor;

  // Told after each change. May be empty.
  std::function<void()> OnLevels;
  double Top() const { return context_.Analyser.LevelTop; }
  double Floor() const { return context_.Analyser.LevelFloor; }

  void lblScopeTop_Wheel();
  void lblScopeFloor_Wheel();
  // Fits both to what the last seconds have shown: the floor under the noise, the top over the highest peak.
  void Fit() { context_.Analyser.FitLevels(); }
  void AddSettings(SettingsTable& table);

 private:
  void Take(double top, double floor);

  ScopeContext context_;
  bool taking_ = false;
};

}  // namespace quorl
