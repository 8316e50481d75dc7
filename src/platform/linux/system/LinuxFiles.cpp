#include "platform/linux/system/LinuxFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "platform/linux/system/FileHandle.h"
#include "platform/linux/system/LinuxOpenFile.h"
#include "platform/linux/system/SystemError.h"
#include "support/Text.h"

namespace quorl {
namespace {

namespace fs = std::filesystem;

constexpr int kMostLinks = 40;  // as many as the system itself follows

void SyncDirectory(const fs::path& path) {
  FileHandle directory(open(path.empty() ? "." : path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // Some file systems have no sync for directories; the content is safe by then either way.
  if (directory) fsync(directory.Get());
}

}  // namespace

FileKind LinuxFiles::Kind(const std::string& path) const {
  struct stat facts {};
  if (stat(path.c_str(), &facts) != 0) return FileKind::None;
  if (S_ISREG(facts.st_mode)) return FileKind::Regular;
  return S_ISDIR(facts.st_mode) ? FileKind::Directory : FileKind::Other;
}

std::string LinuxFiles::Resolve(const std::string& path) const {
  fs::path file(path);
  std::error_code error;
  for (int links = 0; links < kMostLinks && fs::is_symlink(file, error); ++links) {
    const fs::path target = fs::read_symlink(file, error);
    if (error) break;
    file = target.is_absolute() ? target : file.parent_path() / target;
  }
  return file.string();
}

std::unique_ptr<OpenFile> LinuxFiles::Open(const std::string& path, OpenMode mode, Failure& failure) const {
  return LinuxOpenFile::Open(path, mode, failure);
}

Failure LinuxFiles::Rename(const std::string& from, const std::string& to) {
  if (rename(from.c_str(), to.c_str()) != 0) return SystemError("write " + to, errno);
  SyncDirectory(fs::path(to).parent_path());
  return {};
}

Failure LinuxFiles::Remove(const std::string& path) {
  if (unlink(path.c_str()) == 0) return {};
  return SystemError("remove " + path, errno);
}

void LinuxFiles::CopyPermissions(const std::string& from, const std::string& to) {
  struct stat facts {};
  if (stat(from.c_str(), &facts) == 0) static_cast<void>(chmod(to.c_str(), facts.st_mode & 07777));
}

Failure LinuxFiles::MakeDirectory(const std::string& path) {
  std::error_code error;
  fs::create_directories(path, error);
  if (!error && !fs::is_directory(path, error) && !error)
    error = std::make_error_code(std::errc::file_exists);
  if (!error) return {};
  return SystemError("make the directory " + path, error.value());
}

std::vector<std::string> LinuxFiles::List(const std::string& directory, const std::string& suffix) const {
  std::vector<std::string> names;
  std::error_code error;
  const fs::path place = directory.empty() ? "." : directory;
  for (fs::directory_iterator entry(place, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code ignored;
    const std::string name = entry->path().filename().string();
    if (entry->is_regular_file(ignored) && EndsWithNoCase(name, suffix)) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<std::int64_t> LinuxFiles::FreeSpace(const std::string& path) const {
  struct statvfs facts {};
  const std::string parent = fs::path(path).parent_path().string();
  for (const std::string& place : {path, parent.empty() ? std::string(".") : parent}) {
    if (statvfs(place.c_str(), &facts) == 0)
      return static_cast<std::int64_t>(facts.f_bavail) * static_cast<std::int64_t>(facts.f_frsize);
  }
  return {};
}

}  // namespace quorl
