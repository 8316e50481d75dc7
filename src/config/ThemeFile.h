// Theme files (.thm): fifteen colours under their keys.
//
//   [Active]
//   Name=SDRColours
//   [SDRColours]
//   shpSDRBackGroundColour=0
//   ...
//
// A colour is its decimal number, blue in the high byte. "Active" names the section that counts, so that a
// file may hold several sets.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config/ThemeColours.h"
#include "platform/Files.h"

namespace quorl {

inline constexpr char kThemeEnding[] = ".thm";

struct ThemeContent {
  bool HasActive = false;  // without it no colour is taken
  ThemeColours Colours;    // where a key is missing or its text is no colour: what it was before
  std::vector<std::string> Missing, Unfit;  // keys
};

// What the text of a file makes of `before`. The values of the scope, which have no keys, get the colours of
// the panel's numbers where a theme has any of these.
ThemeContent ReadTheme(std::string_view text, const ThemeColours& before);

// One line for a person about what was wrong in that file; empty where nothing was.
std::string ThemeFault(const ThemeContent& content, const std::string& path);

// Writes the fifteen keys into the file, which is made where it is missing; what else it holds stays.
Failure SaveTheme(Files& files, const std::string& path, const ThemeColours& colours);

}  // namespace quorl
