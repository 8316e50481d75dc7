#include "core/MemoryMarks.h"

#include <algorithm>
#include <cctype>

#include "support/Text.h"

namespace quorl {
namespace {

// A description that is nothing but a frequency says less than the frequency in kHz.
std::string NameOf(const Preset& preset) {
  const std::string& text = preset.Description;
  const bool named =
      std::any_of(text.begin(), text.end(), [](unsigned char c) { return c >= 0x80 || std::isalpha(c); });
  return named && !text.ends_with(" Hz") ? text : NumberText(preset.Settings.FreqCurrent / 1000.0);
}

}  // namespace

void MemoryMarks(const BandPlan* plan, double low, double high, ScopeMarks& marks) {
  if (plan == nullptr) return;
  for (const SubBand& band : plan->SubBands) {
    if (IsNarrow(band) && band.FreqMin <= high && band.FreqMax >= low) {
      marks.Spans.push_back({double(band.FreqMin), double(band.FreqMax), band.Caption});
    }
    for (const Preset& preset : band.Presets) {
      const double hertz = preset.Settings.FreqCurrent;
      if (band.Used && hertz >= 1 && hertz >= low && hertz <= high)
        marks.Marks.push_back({hertz, NameOf(preset)});
    }
  }
}

}  // namespace quorl
