#include "platform/linux/system/LinuxFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "platform/linux/system/FileHandle.h"
#include "platform/linux/system/SystemError.h"
#include "support/Text.h"

namespace quorl {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kNewFileMode = 0666;  // the user's mask takes its share

// 0 or the system's error number.
int WriteAll(int file, const std::string& content) {
  for (std::size_t done = 0; done < content.size();) {
    const ssize_t written = write(file, content.data() + done, content.size() - done);
    if (written < 0 && errno != EINTR) return errno;
    if (written > 0) done += static_cast<std::size_t>(written);
  }
  return 0;
}

int WriteWhole(const std::string& path, const std::string& content, const std::string& modeOf) {
  FileHandle file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, kNewFileMode));
  if (!file) return errno;
  struct stat old {};
  // A file system without permissions refuses, and has none to keep.
  if (stat(modeOf.c_str(), &old) == 0) static_cast<void>(fchmod(file.Get(), old.st_mode & 07777));
  if (const int error = WriteAll(file.Get(), content)) return error;
  // Without this a power cut soon after the rename could leave the new name with no content.
  if (fsync(file.Get()) != 0) return errno;
  return file.Close() ? 0 : errno;
}

void SyncDirectory(const std::string& path) {
  FileHandle directory(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // Some file systems have no sync for directories; the content is safe by then either way.
  if (directory) fsync(directory.Get());
}

std::string ResolveLink(const std::string& path) {
  std::error_code error;
  if (!fs::is_symlink(path, error)) return path;
  const fs::path target = fs::canonical(path, error);
  return error ? path : target.string();
}

}  // namespace

bool LinuxFiles::Exists(const std::string& path) const {
  return access(path.c_str(), F_OK) == 0;
}

std::optional<std::string> LinuxFiles::Read(const std::string& path, Failure& failure) const {
  failure.reset();
  FileHandle file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  std::string content;
  char part[16384];
  ssize_t count = file ? 1 : -1;
  while (count > 0 || (count < 0 && file && errno == EINTR)) {
    count = read(file.Get(), part, sizeof part);
    if (count > 0) content.append(part, static_cast<std::size_t>(count));
  }
  if (count == 0) return content;
  failure = SystemError("read " + path, errno);
  return std::nullopt;
}

Failure LinuxFiles::Replace(const std::string& path, const std::string& content) {
  const std::string target = ResolveLink(path);
  const std::string beside = target + "." + std::to_string(getpid()) + ".new";
  int error = WriteWhole(beside, content, target);
  if (error == 0 && rename(beside.c_str(), target.c_str()) != 0) error = errno;
  if (error != 0) {
    unlink(beside.c_str());
    return SystemError("write " + path, error);
  }
  const std::string directory = fs::path(target).parent_path().string();
  SyncDirectory(directory.empty() ? "." : directory);
  return std::nullopt;
}

Failure LinuxFiles::Append(const std::string& path, const std::string& content) {
  FileHandle file(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, kNewFileMode));
  int error = file ? WriteAll(file.Get(), content) : errno;
  if (error == 0 && !file.Close()) error = errno;
  if (error == 0) return std::nullopt;
  return SystemError("add to " + path, error);
}

Failure LinuxFiles::MakeDirectory(const std::string& path) {
  std::error_code error;
  fs::create_directories(path, error);
  if (!error && !fs::is_directory(path, error) && !error)
    error = std::make_error_code(std::errc::file_exists);
  if (!error) return std::nullopt;
  return SystemError("make the directory " + path, error.value());
}

std::vector<std::string> LinuxFiles::List(const std::string& directory, const std::string& suffix) const {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code ignored;
    const std::string name = entry->path().filename().string();
    if (entry->is_regular_file(ignored) && EndsWithNoCase(name, suffix)) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace quorl
