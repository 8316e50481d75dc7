#include "memories/panel/StationFinder.h"

#include <algorithm>

#include "config/Inks.h"
#include "memories/modBandPlan.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr const char* kHowTo = "Part of a name, or kHz; Enter looks in all plans";
constexpr const char* kNothing = "No preset of any plan has that in its name or frequency";

void Collect(const BandPlan& plan, const std::string& wanted, std::vector<StationFinder::Found>& found) {
  for (const SubBand& band : plan.SubBands) {
    if (!band.Used) continue;
    for (const Preset& preset : band.Presets) {
      const std::int32_t hertz = preset.Settings.FreqCurrent;
      const std::string kilohertz = NumberText(hertz / 1000.0);
      const bool fits = ToLower(preset.Description).find(wanted) != std::string::npos ||
                        kilohertz.find(wanted) != std::string::npos;
      if (hertz < 1 || !fits) continue;
      found.push_back(
          {kilohertz + " kHz  " + preset.Description + "  (" + plan.Caption + ", " + band.Caption + ")",
           preset.Settings});
    }
  }
}

}  // namespace

StationFinder::StationFinder(ControlRegistry& registry, const Files& files,
                             const std::vector<BandPlan>& plans,
                             std::function<void(const TuningSettings& block)> recall)
    : txtFind(registry, "txtFind"),
      lstFound(registry, "lstFound"),
      files_(files),
      plans_(plans),
      recall_(std::move(recall)) {
  txtFind.AccessibleName = std::string("Find a station");
  txtFind.ToolTip = std::string(kHowTo);
  txtFind.KeyDown = [this](const Key& key) { txtFind_KeyDown(key); };
  txtFind.Change = [this] {
    txtFind.ForeColour = kNoColour;
    txtFind.ToolTip = std::string(kHowTo);
  };
  lstFound.AccessibleName = std::string("Stations found");
  lstFound.Visible = false;
  lstFound.Click = [this] { Choose(lstFound.ListIndex()); };
  lstFound.KeyDown = [this](const Key& key) {
    if (key.Code == Key::Escape) lstFound.Visible = false;
  };
  lstFound.LostFocus = [this] { lstFound.Visible = false; };
}

std::vector<StationFinder::Found> StationFinder::Search(const std::string& text) const {
  std::vector<Found> found;
  const std::string wanted = ToLower(Trim(text));
  if (wanted.empty()) return found;
  for (const BandPlan& plan : plans_) {
    Collect(plan.Loaded ? plan : PlanAsKept(files_, plan), wanted, found);
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const Found& a, const Found& b) { return a.Block.FreqCurrent < b.Block.FreqCurrent; });
  return found;
}

void StationFinder::txtFind_KeyDown(const Key& key) {
  if (key.Code == Key::Enter) Find();
  if (key.Code == Key::Escape) txtFind.SetValue("");
}

void StationFinder::Find() {
  found_ = Search(txtFind.Value());
  if (found_.empty() && !Trim(txtFind.Value()).empty()) {
    txtFind.ForeColour = kWrongInk;
    txtFind.ToolTip = std::string(kNothing);
  }
  if (found_.size() == 1) return Choose(0);
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < std::min(found_.size(), kMost); ++i) lines.push_back(found_[i].Text);
  lstFound.SetItems(std::move(lines));
  lstFound.Beside = &txtFind;
  lstFound.Visible = !found_.empty();
}

void StationFinder::Choose(int index) {
  lstFound.Visible = false;
  if (index < 0 || index >= static_cast<int>(found_.size())) return;
  recall_(found_[static_cast<std::size_t>(index)].Block);
}

}  // namespace quorl
