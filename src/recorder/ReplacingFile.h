// An output file that takes its target's place whole, or leaves it as it was.
#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "support/Error.h"

namespace quorl {

// Writes beside the target, in the same directory, and is renamed over it by Commit; destroyed without a
// Commit it leaves nothing behind. A target that is no ordinary file, such as a device or a pipe, can't be
// replaced and is written directly.
class ReplacingFile {
 public:
  // Null with `failure` set where the target can't be written.
  static std::unique_ptr<ReplacingFile> Create(const std::string& target, Failure& failure);
  ~ReplacingFile();
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;

  // The stream to write to; its state tells of failures, the caller asks.
  std::ofstream& Stream() { return stream_; }
  // Target, as the caller named it.
  const std::string& Name() const { return name_; }
  // The file that grows beside the target; empty where the target is written directly, and after Commit.
  const std::filesystem::path& Temporary() const { return temporary_; }
  // Closes and renames. Nothing may be written afterwards, whatever comes back.
  Failure Commit();

 private:
  explicit ReplacingFile(std::string name) : name_(std::move(name)) {}
  Failure Open();
  void Discard();

  std::string name_;
  std::filesystem::path target_;  // behind symbolic links
  std::filesystem::path temporary_;
  std::ofstream stream_;
};

}  // namespace quorl
