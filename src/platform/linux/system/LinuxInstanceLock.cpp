#include "platform/linux/system/LinuxInstanceLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <filesystem>

namespace quorl {

Failure LinuxInstanceLock::Acquire(const std::string& path) {
  namespace fs = std::filesystem;
  if (IsHeld()) return std::nullopt;
  std::error_code error;
  fs::path file = fs::weakly_canonical(fs::absolute(path, error), error);
  if (error) file = path;
  fs::create_directories(file.parent_path(), error);
  FileHandle lock(open((file.string() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
  if (!lock) return std::nullopt;
  if (flock(lock.Get(), LOCK_EX | LOCK_NB) == 0) {
    file_ = std::move(lock);
  } else if (errno == EWOULDBLOCK) {
    return Error{EWOULDBLOCK, path +
                                  " is in use by another running program. Close that one, or name another "
                                  "settings file."};
  }
  return std::nullopt;
}

}  // namespace quorl
