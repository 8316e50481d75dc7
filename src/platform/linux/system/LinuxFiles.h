// Files and directories of the machine.
#pragma once

#include "platform/files/WholeFiles.h"

namespace quorl {

// May be used by several threads at a time.
class LinuxFiles : public WholeFiles {
 public:
  FileKind Kind(const std::string& path) const override;
  std::string Resolve(const std::string& path) const override;
  std::unique_ptr<OpenFile> Open(const std::string& path, OpenMode mode, Failure& failure) const override;
  Failure Rename(const std::string& from, const std::string& to) override;
  Failure Remove(const std::string& path) override;
  // A file system without permissions refuses, and has none to keep.
  void CopyPermissions(const std::string& from, const std::string& to) override;
  Failure MakeDirectory(const std::string& path) override;
  std::vector<std::string> List(const std::string& directory, const std::string& suffix) const override;
  std::optional<std::int64_t> FreeSpace(const std::string& path) const override;
};

}  // namespace quorl
