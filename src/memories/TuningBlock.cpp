#include "memories/TuningBlock.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <variant>

#include "support/Text.h"

namespace quorl {
namespace {

constexpr std::int32_t kMostHertz = std::numeric_limits<std::int32_t>::max() / 10;
constexpr std::int32_t kMostNotchWidth = 13000, kNotchWidth = 100;  // Hz

using Whole = std::int32_t TuningSettings::*;
using Single = float TuningSettings::*;
using Flag = bool TuningSettings::*;

struct Item {
  const char* Key;
  std::variant<Whole, Single, Flag> Field;
  const char* Otherwise;  // where the key is missing; null leaves the field
};

using T = TuningSettings;

// In the order of reading, which decides what a text that isn't understood costs.
const std::array<Item, 24> kItems = {{
    {"DemodMode", &T::DemodMode, nullptr},
    {"FreqCurrent", &T::FreqCurrent, nullptr},
    {"LowSideLO", &T::LowSideLO, nullptr},
    {"TuneStep", &T::TuneStep, "1000"},
    {"FilterMode", &T::FilterMode, nullptr},
    {"FilterHi", &T::FilterHi, "-1"},
    {"FilterLo", &T::FilterLo, "-1"},
    {"MusicModeActive", &T::MusicModeActive, "False"},
    {"DynFilterActive", &T::DynFilterActive, "False"},
    {"IFFilterActive", &T::IFFilterActive, "False"},
    {"IFFilterMode", &T::IFFilterMode, "2"},
    {"IFFilterHi", &T::IFFilterHi, "4500"},
    {"IFFilterLo", &T::IFFilterLo, "50"},
    {"AGCOn", &T::AGCOn, "True"},
    {"AGCMode", &T::AGCMode, "2"},
    {"AGCAttack", &T::AGCAttack, "10"},
    {"AGCDecay", &T::AGCDecay, "10"},
    {"NotchActive", &T::NotchActive, "False"},
    {"NotchMode", &T::NotchMode, "1"},
    {"NotchType", &T::NotchType, "0"},
    {"NotchMirror", &T::NotchMirror, "False"},
    {"NotchFilterCenter", &T::NotchFilterCenter, "1000"},
    {"NotchFilterWidth", &T::NotchFilterWidth, "100"},
    {"OutputAttenuation", &T::OutputAttenuation, "0"},
}};

constexpr std::array<const char*, 24> kWriteOrder = {
    "DemodMode",        "FreqCurrent",     "LowSideLO",
    "TuneStep",         "MusicModeActive", "DynFilterActive",
    "IFFilterActive",   "IFFilterMode",    "IFFilterHi",
    "IFFilterLo",       "FilterMode",      "FilterHi",
    "FilterLo",         "AGCOn",           "AGCMode",
    "AGCAttack",        "AGCDecay",        "NotchActive",
    "NotchMode",        "NotchType",       "NotchFilterCenter",
    "NotchFilterWidth", "NotchMirror",     "OutputAttenuation"};

const Item& ItemOf(std::string_view key) {
  return *std::find_if(kItems.begin(), kItems.end(), [key](const Item& item) { return key == item.Key; });
}

// False where the text is no value of the field.
bool Take(const Item& item, const std::string& text, TuningSettings& block) {
  if (const auto* flag = std::get_if<Flag>(&item.Field)) {
    block.*(*flag) = ParseFlag(text).value_or(block.*(*flag));
    return true;
  }
  if (const auto* single = std::get_if<Single>(&item.Field)) {
    const auto number = ParseDouble(text);
    if (!number || std::abs(*number) > std::numeric_limits<float>::max()) return false;
    block.*(*single) = static_cast<float>(*number);
    return true;
  }
  const Whole field = std::get<Whole>(item.Field);
  const auto number = field == &T::FreqCurrent ? ParseHertz(text) : ParseInt32(text);
  if (number) block.*field = *number;
  return number.has_value();
}

std::string TextOf(const Item& item, const TuningSettings& block) {
  if (const auto* flag = std::get_if<Flag>(&item.Field)) return FlagText(block.*(*flag));
  if (const auto* single = std::get_if<Single>(&item.Field)) return NumberText(double{block.*(*single)});
  return NumberText(block.*std::get<Whole>(item.Field));
}

}  // namespace

std::optional<std::int32_t> ParseHertz(std::string_view text) {
  const auto number = ParseInt32(text);
  return number && std::abs(std::int64_t{*number}) <= kMostHertz ? number : std::nullopt;
}

std::string LoadTuningSettings(const clsINIFile& file, std::string_view section, TuningSettings& block) {
  block.Changed = false;
  block.HasLowSideLO = file.HasItem(section, "LowSideLO");
  block.HasOutputAttenuation = file.HasItem(section, "OutputAttenuation");
  for (const Item& item : kItems) {
    if (item.Otherwise == nullptr && !file.HasItem(section, item.Key)) continue;
    const std::string text = file.LoadItem(section, item.Key, item.Otherwise ? item.Otherwise : "");
    if (!Take(item, text, block)) return item.Key;
  }
  if (block.NotchFilterWidth >= kMostNotchWidth) block.NotchFilterWidth = kNotchWidth;
  return {};
}

void SaveTuningSettings(const TuningSettings& block, const PutKey& put) {
  if (!block.Changed) return;
  for (const char* key : kWriteOrder) put(key, TextOf(ItemOf(key), block));
}

std::vector<std::string> TuningKeys() {
  std::vector<std::string> keys;
  for (const Item& item : kItems) keys.emplace_back(item.Key);
  return keys;
}

bool IsTuningKey(std::string_view key) {
  return std::any_of(kItems.begin(), kItems.end(),
                     [key](const Item& item) { return EqualsNoCase(key, item.Key); });
}

}  // namespace quorl
