#include "platform/linux/system/ScratchHome.h"

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>

namespace quorl {

bool AreWritable(const UserDirectories& directories) {
  namespace fs = std::filesystem;
  for (fs::path path : {directories.Config, directories.Data, directories.State}) {
    std::error_code error;
    while (!fs::exists(path, error) && path.has_relative_path()) path = path.parent_path();
    if (!fs::is_directory(path, error) || access(path.c_str(), W_OK | X_OK) != 0) return false;
  }
  return true;
}

ScratchHome::ScratchHome() {
  std::error_code error;
  std::string name = (std::filesystem::temp_directory_path(error) / "quorlsdr-XXXXXX").string();
  if (!error && mkdtemp(name.data()) != nullptr) path_ = name;
}

ScratchHome::~ScratchHome() {
  std::error_code ignored;
  if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
}

UserDirectories ScratchHome::Directories() const {
  if (path_.empty()) return {};
  return {path_ + "/config", path_ + "/data", path_ + "/state"};
}

}  // namespace quorl
