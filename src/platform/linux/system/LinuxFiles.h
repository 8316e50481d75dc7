// Files and directories of the machine.
#pragma once

#include "platform/Files.h"

namespace quorl {

// Every failure names the path, the system's reason and what to do; its code is the system's error number.
class LinuxFiles : public Files {
 public:
  bool Exists(const std::string& path) const override;
  std::optional<std::string> Read(const std::string& path, Failure& failure) const override;
  // The new content stands on the disk before the old one goes; the file keeps its permissions, a symbolic
  // link stays a link. Only a killed process leaves the file beside ("name.<process>.new") behind.
  Failure Replace(const std::string& path, const std::string& content) override;
  Failure Append(const std::string& path, const std::string& content) override;
  Failure MakeDirectory(const std::string& path) override;
  std::vector<std::string> List(const std::string& directory, const std::string& suffix) const override;
};

}  // namespace quorl
