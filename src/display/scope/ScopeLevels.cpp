#include "display/scope/ScopeLevels.h"

#include <algorithm>

#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr double kLeastRange = 10.0;  // dB
constexpr const char* kHowTo =
    "dB; wheel, A, Z and the arrow keys change it; right click fits both to what is on the air";

}  // namespace

ScopeLevels::ScopeLevels(const ScopeContext& context)
    : lblScopeTop(context.Panel.Registry, "lblScopeTop"),
      lblScopeFloor(context.Panel.Registry, "lblScopeFloor"),
      context_(context) {
  ScrollableControls& scrollables = context_.Panel.Scrollables;
  scrollables.Bind(CtlIndex::ScopeTop, lblScopeTop, [this] { lblScopeTop_Wheel(); });
  scrollables.Bind(CtlIndex::ScopeFloor, lblScopeFloor, [this] { lblScopeFloor_Wheel(); });
  for (Label* label : {&lblScopeTop, &lblScopeFloor}) {
    label->ToolTip = std::string(kHowTo);
    label->MouseDown = [this](const MouseEvent& at) {
      if (at.Button == MouseButton::Right) Fit();
    };
  }
  context_.Analyser.OnLevelsFitted = [this] { Take(Top(), Floor()); };
  Take(scrollables(CtlIndex::ScopeTop).Value, scrollables(CtlIndex::ScopeFloor).Value);
}

// The one that is turned pushes the other along.
void ScopeLevels::lblScopeTop_Wheel() {
  const double top = context_.Panel.Scrollables(CtlIndex::ScopeTop).Value;
  if (!taking_) Take(top, std::min(Floor(), top - kLeastRange));
}

void ScopeLevels::lblScopeFloor_Wheel() {
  const double floor = context_.Panel.Scrollables(CtlIndex::ScopeFloor).Value;
  if (!taking_) Take(std::max(Top(), floor + kLeastRange), floor);
}

void ScopeLevels::Take(double top, double floor) {
  ScopedFlag guard(taking_);
  ScrollableControls& scrollables = context_.Panel.Scrollables;
  const auto put = [&scrollables](int index, double value) {
    const ScrollableControl& entry = scrollables(index);
    scrollables.SetValue(index, std::clamp(static_cast<float>(value), entry.MinValue, entry.MaxValue));
    return double{entry.Value};
  };
  context_.Analyser.LevelTop = put(CtlIndex::ScopeTop, top);
  context_.Analyser.LevelFloor = put(CtlIndex::ScopeFloor, std::min(floor, Top() - kLeastRange));
  if (OnLevels) OnLevels();
}

void ScopeLevels::AddSettings(SettingsTable& table) {
  const auto add = [&](const char* key, int index) {
    table.Add<std::int32_t>(
        key, [this, index] { return WholeValue(context_.Panel.Scrollables, index); },
        [this, index](std::int32_t value) {
          const ScrollableControl& entry = context_.Panel.Scrollables(index);
          const auto within = std::clamp(static_cast<float>(value), entry.MinValue, entry.MaxValue);
          context_.Panel.Scrollables.SetValue(index, within);
        });
  };
  add("Top", CtlIndex::ScopeTop);
  add("Floor", CtlIndex::ScopeFloor);
}

}  // namespace quorl
