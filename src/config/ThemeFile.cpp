#include "config/ThemeFile.h"

#include <optional>

#include "profile/ProfileText.h"
#include "profile/modIniFiles.h"
#include "support/Text.h"

namespace quorl {

namespace {

constexpr char kActive[] = "Active", kName[] = "Name", kColours[] = "SDRColours";

std::optional<Colour> ParseColour(const std::string& text) {
  const auto number = ParseInt32(text);
  if (!number || *number < 0 || *number > 0xFFFFFF) return {};
  return static_cast<Colour>(*number);
}

std::string Listed(const std::vector<std::string>& keys) {
  std::string list;
  for (const std::string& key : keys) list += (list.empty() ? "" : ", ") + key;
  return list;
}

}  // namespace

ThemeContent ReadTheme(std::string_view text, const ThemeColours& before) {
  ThemeContent content;
  content.Colours = before;
  const ProfileText profile(text);
  const std::string* section = profile.Find(kActive, kName);
  content.HasActive = section && !section->empty();
  if (!content.HasActive) return content;
  for (std::size_t i = 0; i < kThemeKeyCount; ++i) {
    const char* key = kSwatchNames[i].Key;
    const std::string* value = profile.Find(*section, key);
    const auto colour = value ? ParseColour(*value) : std::nullopt;
    if (colour) {
      content.Colours[static_cast<Swatch>(i)] = *colour;
    } else {
      (value ? content.Unfit : content.Missing).emplace_back(key);
    }
  }
  if (content.Missing.size() + content.Unfit.size() == kThemeKeyCount) return content;
  content.Colours[Swatch::ControlNormal] = content.Colours[Swatch::NormalScrollLabel];
  content.Colours[Swatch::ControlFocused] = content.Colours[Swatch::FocusScrollLabel];
  return content;
}

std::string ThemeFault(const ThemeContent& content, const std::string& path) {
  if (!content.HasActive)
    return path + " is no colour theme: it has no \"" + kName + "\" in a section \"" + kActive +
           "\". The colours stay as they are.";
  std::string fault;
  if (!content.Missing.empty()) fault += "These keys are missing: " + Listed(content.Missing) + ". ";
  if (!content.Unfit.empty())
    fault +=
        "These are no colours, which are whole numbers from 0 to 16777215: " + Listed(content.Unfit) + ". ";
  return fault.empty() ? fault : path + ": " + fault + "Their colours stay as they are.";
}

Failure SaveTheme(Files& files, const std::string& path, const ThemeColours& colours) {
  std::vector<ProfileItem> items{{kActive, kName, kColours}};
  for (std::size_t i = 0; i < kThemeKeyCount; ++i) {
    items.push_back({kColours, kSwatchNames[i].Key,
                     NumberText(static_cast<std::int32_t>(colours[static_cast<Swatch>(i)]))});
  }
  return SaveProfileItems(files, path, items);
}

}  // namespace quorl
