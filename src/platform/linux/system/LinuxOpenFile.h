// An open file of the machine.
#pragma once

#include <string>

#include "platform/Files.h"
#include "platform/linux/system/FileHandle.h"

namespace quorl {

class LinuxOpenFile final : public OpenFile {
 public:
  // Null with `failure` set where the file can't be opened so.
  static std::unique_ptr<LinuxOpenFile> Open(const std::string& path, OpenMode mode, Failure& failure);

  const std::string& Name() const override { return name_; }
  std::optional<std::int64_t> Size() const override;
  std::int64_t ReadAt(std::int64_t at, void* destination, std::int64_t bytes, Failure& failure) override;
  Failure WriteAt(std::int64_t at, const void* source, std::int64_t bytes) override;
  Failure Append(const void* source, std::int64_t bytes) override;
  Failure Truncate(std::int64_t bytes) override;
  Failure Sync() override;
  Failure Lock() override;

 private:
  LinuxOpenFile(std::string name, FileHandle file, bool seeks)
      : name_(std::move(name)), file_(std::move(file)), seeks_(seeks) {}
  // The system's error number, 0 for none.
  int Write(const char* from, std::int64_t bytes, std::int64_t at);
  Failure Told(const char* what, int error) const;

  std::string name_;
  FileHandle file_;
  bool seeks_;             // no pipe or device
  std::int64_t done_ = 0;  // where the last call on a pipe ended
};

}  // namespace quorl
