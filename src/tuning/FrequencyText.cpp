#include "tuning/FrequencyText.h"

#include <array>

#include "support/NumberPicture.h"
#include "support/Text.h"

namespace quorl {

namespace {

struct Unit {
  const char* Name;
  double Hertz;
};
// The longer ones first.
constexpr std::array kUnits{Unit{"mhz", 1e6}, Unit{"khz", 1e3}, Unit{"hz", 1.0}, Unit{"m", 1e6},
                            Unit{"k", 1e3}};
constexpr double kBareUnit = 1e3;

}  // namespace

std::optional<double> ParseFrequency(std::string_view text) {
  std::string_view number = Trim(text);
  double unit = kBareUnit;
  for (const Unit& each : kUnits) {
    if (!EndsWithNoCase(number, each.Name)) continue;
    unit = each.Hertz;
    number.remove_suffix(std::string_view(each.Name).size());
    break;
  }
  const std::optional<double> value = ParseDouble(number);
  if (!value || *value < 0.0) return {};
  return *value * unit;
}

std::string TuningLimitText(std::int32_t highest) {
  return FormatPicture(highest / 10000.0, "#,##0.0 kHz") + " is as far as DDS clock and IF go";
}

}  // namespace quorl
