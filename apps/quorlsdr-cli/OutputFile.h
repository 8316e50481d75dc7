// Where a command's table or picture goes: a file that is replaced whole, or standard output.
#pragma once

#include <memory>
#include <string>

#include "platform/files/GrowingFile.h"

namespace quorl::cli {

class OutputFile {
 public:
  // "-" is standard output. Null with `failure` set where the target can't be written. `files` outlives it.
  static std::unique_ptr<OutputFile> Create(Files& files, const std::string& path, Failure& failure);

  // What an interruption has to remove; may be empty.
  std::string Temporary() const { return file_ ? file_->Temporary() : std::string(); }
  Failure Write(const std::string& content);
  // The target is replaced once this has succeeded.
  Failure Commit();

 private:
  static Failure Flush();

  std::unique_ptr<GrowingFile> file_;  // null for standard output
};

}  // namespace quorl::cli
