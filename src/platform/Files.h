// Text files and directories. A file is replaced whole or not at all.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "support/Error.h"

namespace quorl {

class Files {
 public:
  virtual ~Files() = default;
  virtual bool Exists(const std::string& path) const = 0;
  // The whole content; empty where the file can't be read, with the reason in `failure`.
  virtual std::optional<std::string> Read(const std::string& path, Failure& failure) const = 0;
  // Writes beside `path` and renames over it, so that a crash or a full disk keeps the old content.
  virtual Failure Replace(const std::string& path, const std::string& content) = 0;
  // Adds to the end of the file, which is made where it is missing.
  virtual Failure Append(const std::string& path, const std::string& content) = 0;
  // Makes the directory and those above it; no failure where it exists.
  virtual Failure MakeDirectory(const std::string& path) = 0;
  // Names (not paths) of the files in `directory` that end in `suffix` without regard to case, sorted.
  virtual std::vector<std::string> List(const std::string& directory, const std::string& suffix) const = 0;
};

}  // namespace quorl
