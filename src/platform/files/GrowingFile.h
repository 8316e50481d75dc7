// A file that is written beside its target and takes the target's place whole, or leaves it as it was.
#pragma once

#include <memory>
#include <string>

#include "platform/Files.h"

namespace quorl {

// Grows as NAME.<number>.new beside the target, behind its links, and is renamed over it by Commit; destroyed
// without a Commit it leaves nothing behind. A pipe or device can't be replaced and is written directly.
class GrowingFile {
 public:
  // Null with `failure` set where the target can't be written. `files` outlives the file.
  static std::unique_ptr<GrowingFile> Create(Files& files, const std::string& target, Failure& failure);
  ~GrowingFile();
  GrowingFile(const GrowingFile&) = delete;
  GrowingFile& operator=(const GrowingFile&) = delete;

  // Target, as the caller named it.
  const std::string& Name() const { return name_; }
  // The file that grows; empty where the target is written directly, and after Commit.
  const std::string& Temporary() const { return temporary_; }
  // False where what was written can't be gone back to.
  bool IsDirect() const { return direct_; }

  Failure Append(const void* source, std::int64_t bytes);
  Failure WriteAt(std::int64_t at, const void* source, std::int64_t bytes);
  // Once everything stands on the disk it is renamed over the target. Nothing may be written afterwards,
  // whatever comes back.
  Failure Commit();

 private:
  GrowingFile(Files& files, std::string name) : files_(files), name_(std::move(name)) {}
  Failure Open();
  Failure OpenBeside();
  Failure Finish();
  void Discard();
  Failure Named(Failure failure) const;

  Files& files_;
  std::string name_;
  std::string target_;  // behind links
  std::string temporary_;
  bool direct_ = false;
  std::unique_ptr<OpenFile> file_;
};

// Removes what killed programs have left beside `path`. Only for who knows that nobody else is writing it.
void RemoveLeftovers(Files& files, const std::string& path);

}  // namespace quorl
