// Where this user's settings, files and logs live.
#pragma once

#include <functional>
#include <string>

namespace quorl {

// Absolute paths of the product's own directories below the XDG base directories; not made yet.
struct UserDirectories {
  std::string Config;  // settings
  std::string Data;    // band plans and recordings in progress
  std::string State;   // log
  // The radio's own, and the demo's: two programs side by side share neither.
  std::string SettingsFile(bool demo) const { return Config + (demo ? "/demo.ini" : "/settings.ini"); }
  std::string LogFile(bool demo) const { return State + (demo ? "/QUORLSDR-demo.log" : "/QUORLSDR.log"); }
};

// `variable` gives the value of an environment variable, or null (std::getenv). A base directory that is
// unset or not absolute falls back to ~/.config, ~/.local/share and ~/.local/state.
UserDirectories FindUserDirectories(const std::function<const char*(const char* name)>& variable);

}  // namespace quorl
