#include "platform/linux/system/ProcessTable.h"

#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>

#include "platform/linux/system/SystemError.h"
#include "support/Text.h"

namespace quorl {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kOwnNameLength = 15;  // the system keeps no more of a program's own name

bool SameName(const std::string& path, const std::string& name) {
  return !path.empty() && EqualsNoCase(path.substr(path.find_last_of("/\\") + 1), name);
}

std::string FirstPart(std::istream& stream, char end) {
  std::string part;
  std::getline(stream, part, end);
  return part;
}

std::string FirstPart(const fs::path& file, char end) {
  std::ifstream stream(file);
  return FirstPart(stream, end);
}

bool HasEnded(const fs::path& process) {
  const std::string line = FirstPart(process / "stat", '\n');
  const std::size_t name = line.rfind(") ");
  return name == std::string::npos || name + 2 >= line.size() || line[name + 2] == 'Z' ||
         line[name + 2] == 'X';
}

bool RunsProgram(const fs::path& process, const std::string& program) {
  std::error_code error;
  if (SameName(fs::read_symlink(process / "exe", error).string(), program)) return true;
  std::ifstream words(process / "cmdline");
  if (SameName(FirstPart(words, '\0'), program)) return true;
  const std::string script = FirstPart(words, '\0');
  const std::string own = FirstPart(process / "comm", '\n');
  if (program.size() <= kOwnNameLength) return SameName(own, program);
  return SameName(script, program) && EqualsNoCase(own, program.substr(0, kOwnNameLength));
}

bool IsOf(const fs::path& process, unsigned user) {
  struct stat about {};
  return stat(process.c_str(), &about) == 0 && about.st_uid == user;
}

}  // namespace

std::vector<int> FindPrograms(const std::string& folder, unsigned user, const std::string& program,
                              Failure& failure) {
  std::vector<int> found;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (const fs::directory_iterator end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    int process = 0;
    const auto parsed = std::from_chars(name.data(), name.data() + name.size(), process);
    if (parsed.ec != std::errc() || parsed.ptr != name.data() + name.size()) continue;
    if (IsOf(entry->path(), user) && RunsProgram(entry->path(), program) && !HasEnded(entry->path()))
      found.push_back(process);
  }
  failure.reset();
  if (error) {
    failure = SystemError("read the running programs in " + folder, error.value());
    return {};
  }
  std::sort(found.begin(), found.end());
  return found;
}

}  // namespace quorl
