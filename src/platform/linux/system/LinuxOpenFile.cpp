#include "platform/linux/system/LinuxOpenFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/system/SystemError.h"

namespace quorl {
namespace {

constexpr mode_t kNewFileMode = 0666;  // the user's mask takes its share

int FlagsOf(OpenMode mode) {
  switch (mode) {
    case OpenMode::Read:
      return O_RDONLY;
    case OpenMode::Create:
      return O_RDWR | O_CREAT | O_EXCL;
    case OpenMode::Update:
      return O_RDWR | O_CREAT;
    case OpenMode::Append:
      return O_WRONLY | O_CREAT | O_APPEND;
    case OpenMode::Feed:
      break;
  }
  return O_WRONLY;
}

}  // namespace

std::unique_ptr<LinuxOpenFile> LinuxOpenFile::Open(const std::string& path, OpenMode mode, Failure& failure) {
  failure.reset();
  FileHandle file(open(path.c_str(), FlagsOf(mode) | O_CLOEXEC, kNewFileMode));
  struct stat facts {};
  int error = file && fstat(file.Get(), &facts) == 0 ? 0 : errno;
  if (error == 0 && S_ISDIR(facts.st_mode)) error = EISDIR;
  if (error != 0) {
    failure = SystemError((mode == OpenMode::Read ? "read " : "write ") + path, error);
    return nullptr;
  }
  return std::unique_ptr<LinuxOpenFile>(new LinuxOpenFile(path, std::move(file), S_ISREG(facts.st_mode)));
}

Failure LinuxOpenFile::Told(const char* what, int error) const {
  return error == 0 ? Failure() : SystemError(what + name_, error);
}

std::optional<std::int64_t> LinuxOpenFile::Size() const {
  struct stat facts {};
  if (!seeks_ || fstat(file_.Get(), &facts) != 0) return {};
  return facts.st_size;
}

std::int64_t LinuxOpenFile::ReadAt(std::int64_t at, void* destination, std::int64_t bytes, Failure& failure) {
  if (!seeks_ && at != done_) {
    failure = Told("read ", ESPIPE);
    return 0;
  }
  char* to = static_cast<char*>(destination);
  std::int64_t done = 0;
  int error = 0;
  while (done < bytes && error == 0) {
    const auto left = static_cast<std::size_t>(bytes - done);
    const ssize_t got =
        seeks_ ? pread(file_.Get(), to + done, left, at + done) : read(file_.Get(), to + done, left);
    if (got == 0) break;
    if (got < 0 && errno != EINTR) error = errno;
    if (got > 0) done += got;
  }
  done_ = at + done;
  if (error != 0) failure = Told("read ", error);
  return done;
}

int LinuxOpenFile::Write(const char* from, std::int64_t bytes, std::int64_t at) {
  if (!seeks_ && at != done_) return ESPIPE;
  for (std::int64_t done = 0; done < bytes;) {
    const auto left = static_cast<std::size_t>(bytes - done);
    const ssize_t put =
        seeks_ ? pwrite(file_.Get(), from + done, left, at + done) : write(file_.Get(), from + done, left);
    if (put < 0 && errno != EINTR) return errno;
    if (put > 0) done += put;
  }
  done_ = at + bytes;
  return 0;
}

Failure LinuxOpenFile::WriteAt(std::int64_t at, const void* source, std::int64_t bytes) {
  return Told("write ", Write(static_cast<const char*>(source), bytes, at));
}

Failure LinuxOpenFile::Append(const void* source, std::int64_t bytes) {
  return WriteAt(Size().value_or(done_), source, bytes);
}

Failure LinuxOpenFile::Truncate(std::int64_t bytes) {
  return Told("cut ", ftruncate(file_.Get(), bytes) == 0 ? 0 : errno);
}

Failure LinuxOpenFile::Sync() {
  return Told("write ", fsync(file_.Get()) == 0 ? 0 : errno);
}

Failure LinuxOpenFile::Lock() {
  static_assert(kLockedElsewhere == EWOULDBLOCK);
  if (flock(file_.Get(), LOCK_EX | LOCK_NB) == 0) return {};
  return SystemError("lock " + name_, errno, "Another running program may be using it.");
}

}  // namespace quorl
