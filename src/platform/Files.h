// Files and directories: whole files, replaced whole or not at all, and open ones.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/Error.h"

namespace quorl {

// One file, open until it is destroyed. Positions count bytes from 0. A write that fails may have written a
// part. A pipe or device is read and written in order: `at` is where the call before ended. Used by one
// thread at a time.
class OpenFile {
 public:
  virtual ~OpenFile() = default;
  // As the file was named when it was opened; stands in its messages.
  virtual const std::string& Name() const = 0;
  // Empty for a pipe or device.
  virtual std::optional<std::int64_t> Size() const = 0;
  // Returns how many bytes came; fewer than `bytes` only at the file's end or with `failure` set.
  virtual std::int64_t ReadAt(std::int64_t at, void* destination, std::int64_t bytes, Failure& failure) = 0;
  virtual Failure WriteAt(std::int64_t at, const void* source, std::int64_t bytes) = 0;
  virtual Failure Append(const void* source, std::int64_t bytes) = 0;
  // Cuts the file, or lengthens it by zeros.
  virtual Failure Truncate(std::int64_t bytes) = 0;
  // What was written survives a power cut once this has succeeded.
  virtual Failure Sync() = 0;
  // Keeps other openers off that ask for the lock too, until this one is destroyed. Fails with
  // `kLockedElsewhere` where another one holds it, and otherwise where the machine can't lock there.
  virtual Failure Lock() = 0;

  static constexpr int kLockedElsewhere = 11;
};

// What stands behind a path and its symbolic links. Other: a pipe, a device, a socket.
enum class FileKind { None, Regular, Directory, Other };

enum class OpenMode {
  Read,    // the file must exist
  Create,  // nothing of that name may exist
  Update,  // reads and writes; made where it is missing
  Append,  // writes at the end, wherever others have moved it to; made where it is missing
  Feed,    // writes only, in order: for pipes and devices
};

// Every failure names the path, the reason and what to do; its code is the system's error number.
class Files {
 public:
  // A whole file beyond this many bytes is not read.
  static constexpr std::int64_t kMostWhole = std::int64_t{64} << 20;

  virtual ~Files() = default;
  virtual FileKind Kind(const std::string& path) const = 0;
  bool Exists(const std::string& path) const { return Kind(path) != FileKind::None; }
  // The path behind symbolic links, also where a link points to nothing yet.
  virtual std::string Resolve(const std::string& path) const = 0;
  // Null with `failure` set where that can't be.
  virtual std::unique_ptr<OpenFile> Open(const std::string& path, OpenMode mode, Failure& failure) const = 0;

  // The whole content; empty with `failure` set where the file can't be read or goes beyond kMostWhole.
  virtual std::optional<std::string> Read(const std::string& path, Failure& failure) const = 0;
  // The new content stands on the disk before the old one goes: neither a crash nor a full disk nor a power
  // cut leaves a torn file. Permissions and links stay; a write-protected file is refused.
  virtual Failure Replace(const std::string& path, const std::string& content) = 0;
  // Adds to the end of the file, which is made where it is missing.
  virtual Failure Append(const std::string& path, const std::string& content) = 0;
  // `to` is replaced as by Replace, whatever the file's length.
  virtual Failure Copy(const std::string& from, const std::string& to) = 0;

  // Over what has that name; on the disk when it has succeeded.
  virtual Failure Rename(const std::string& from, const std::string& to) = 0;
  virtual Failure Remove(const std::string& path) = 0;
  virtual void CopyPermissions(const std::string& from, const std::string& to) = 0;
  // Makes the directory and those above it; no failure where it exists.
  virtual Failure MakeDirectory(const std::string& path) = 0;
  // Names (not paths) of the files in `directory` that end in `suffix` without regard to case, sorted.
  virtual std::vector<std::string> List(const std::string& directory, const std::string& suffix) const = 0;
  // Bytes that the disk of that file or directory can still take from this user; a file need not exist yet.
  // Empty where the machine can't tell.
  virtual std::optional<std::int64_t> FreeSpace(const std::string& path) const = 0;
};

}  // namespace quorl
