// Finds a preset in all plans, whether they have been opened or not.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "controls/Controls.h"
#include "memories/BandPlan.h"
#include "platform/Files.h"

namespace quorl {

// Enter looks for what was typed; the only preset that fits is recalled, of several a list comes up.
class StationFinder {
 public:
  static constexpr std::size_t kMost = 30;  // that the list shows

  // All is used as long as the panel lives. `recall` gets the block of the chosen preset.
  StationFinder(ControlRegistry& registry, const Files& files, const std::vector<BandPlan>& plans,
                std::function<void(const TuningSettings& block)> recall);

  TextBox txtFind;
  PopupBox lstFound;

  // Presets whose name or kHz holds `text`, in any case, by frequency. A plan that has not been opened is
  // read from its file, and stays unopened.
  struct Found {
    std::string Text;  // "7205 kHz  Radio Horizon  (Demo, 41m)"
    TuningSettings Block;
  };
  std::vector<Found> Search(const std::string& text) const;

 private:
  void txtFind_KeyDown(const Key& key);
  void Find();
  void Choose(int index);

  const Files& files_;
  const std::vector<BandPlan>& plans_;
  std::function<void(const TuningSettings& block)> recall_;
  std::vector<Found> found_;
};

}  // namespace quorl
