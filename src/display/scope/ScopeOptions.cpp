#include "display/scope/ScopeOptions.h"

#include <cstdlib>
#include <span>

#include "support/Text.h"

namespace quorl {

namespace {

std::int32_t NearestOf(std::span<const std::int32_t> good, std::int32_t value) {
  std::int32_t nearest = good.front();
  for (const std::int32_t one : good) {
    if (std::abs(std::int64_t{one} - value) < std::abs(std::int64_t{nearest} - value)) nearest = one;
  }
  return nearest;
}

void AddNumber(SettingsTable& table, const char* key, std::int32_t& variable,
               std::span<const std::int32_t> good) {
  table.Add<std::int32_t>(
      key, [&variable] { return variable; },
      [&variable, good](std::int32_t value) { variable = NearestOf(good, value); });
}

template <typename T>
void AddWord(SettingsTable& table, const char* key, T& variable, std::span<const char* const> words) {
  table.Add<std::string>(
      key, [&variable, words] { return std::string(words[static_cast<std::size_t>(variable)]); },
      [&variable, words](const std::string& text) {
        for (std::size_t i = 0; i < words.size(); ++i) {
          if (EqualsNoCase(text, words[i])) variable = static_cast<T>(i);
        }
      });
}

}  // namespace

void ScopeOptions::AddSettings(SettingsTable& table) {
  table.Add("LevelView", LevelView);
  AddWord(table, "Window", Window, kWindowNames);
  table.Add("Waterfall", Waterfall);
  AddNumber(table, "WaterfallBlocks", LineBlocks, kLineBlocks);
  AddWord(table, "Palette", Palette, kPaletteNames);
  AddNumber(table, "TimeMarks", TimeMarks, kTimeMarks);
  table.Add("Cursor", Cursor);
  AddWord(table, "PeakHold", PeakHold, kPeakNames);
  table.Add("Fill", Fill);
  table.Add("Passband", Passband);
  table.Add("EdgeDrag", EdgeDrag);
  table.Add("Names", Names);
  table.Add("BandShading", BandShading);
  table.Add("Gestures", Gestures);
  table.Add("TwoSided", TwoSided);
}

void PutScopeDefaults(SettingsStore& store) {
  constexpr char kAnalyser[] = "SpectrumAnalyser";
  if (store.HasSection(kAnalyser)) return;
  const auto put = [&store](const char* section, const char* key, const char* value) {
    if (store.GetSetting(section, key, "").empty()) store.SaveSetting(section, key, value);
  };
  store.SaveSetting(kMainSection, "SpectrumAnalyserOn", "1");
  put(kAnalyser, ".Mode.0.LogMode", "True");
  put(kAnalyser, ".Mode.0.Chn2.Enabled", "False");
  // The mean of audio that nothing triggers is a flat line.
  put(kAnalyser, ".Mode.1.FastMode", "True");
  put(kAnalyser, ".Mode.2.FastMode", "True");
  for (const char* key :
       {"LevelView", "Waterfall", "Cursor", "Passband", "Names", "BandShading", "Gestures"}) {
    put(kScopeSection, key, "True");
  }
  put(kScopeSection, "Window", ScopeOptions::kWindowNames.back());
}

}  // namespace quorl
