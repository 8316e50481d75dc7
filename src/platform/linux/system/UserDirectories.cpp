#include "platform/linux/system/UserDirectories.h"

#include <pwd.h>
#include <unistd.h>

#include <vector>

namespace quorl {
namespace {

using Variable = std::function<const char*(const char* name)>;

bool IsAbsolute(const char* path) {
  return path != nullptr && path[0] == '/';
}

std::string Home(const Variable& variable) {
  const char* home = variable("HOME");
  if (IsAbsolute(home)) return home;
  std::vector<char> memory(16384);
  passwd entry{};
  passwd* found = nullptr;
  getpwuid_r(getuid(), &entry, memory.data(), memory.size(), &found);
  return found != nullptr && IsAbsolute(found->pw_dir) ? found->pw_dir : "/tmp";
}

}  // namespace

UserDirectories FindUserDirectories(const Variable& variable) {
  const std::string home = Home(variable);
  const auto find = [&](const char* name, const char* fallback) {
    const char* base = variable(name);
    return (IsAbsolute(base) ? std::string(base) : home + fallback) + "/quorlsdr";
  };
  return {find("XDG_CONFIG_HOME", "/.config"), find("XDG_DATA_HOME", "/.local/share"),
          find("XDG_STATE_HOME", "/.local/state")};
}

}  // namespace quorl
