#include "shared/InstalledData.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>

namespace quorl {
namespace {

std::string BesideProgram(const Files& files) {
  const std::filesystem::path program = files.Resolve("/proc/self/exe");
  return (program.parent_path().parent_path() / "share/quorlsdr").string();
}

}  // namespace

std::string FindInstalledData(const Files& files, Failure& failure) {
  failure.reset();
  const char* named = std::getenv("QUORLSDR_DATA");
  std::string data = named != nullptr && *named != 0 ? named : BesideProgram(files);
  if (files.Kind(data) != FileKind::Directory) {
    failure = Error{ENOENT, "the folder " + data +
                                " with the program's data is missing: install the program again, or name the "
                                "folder in QUORLSDR_DATA"};
  }
  return data;
}

std::vector<InstalledFolder> FilledFrom(const std::string& data) {
  return {{data + "/bandplans", ""}, {data + "/themes", "themes"}};
}

}  // namespace quorl
