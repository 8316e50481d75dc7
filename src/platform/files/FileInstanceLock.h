// The instance lock as a lock on a file beside the settings file.
#pragma once

#include <memory>

#include "platform/Files.h"
#include "platform/InstanceLock.h"

namespace quorl {

// The file ("settings.ini.lock") stays when the lock goes: removing it would let a third program lock a new
// file of that name while a second one has just opened the old. A link is the file that it points to; what is
// no ordinary file can't be a settings file and isn't locked.
class FileInstanceLock : public InstanceLock {
 public:
  // `files` outlives the lock.
  explicit FileInstanceLock(Files& files) : files_(files) {}

  Failure Acquire(const std::string& path) override;
  bool IsHeld() const override { return file_ != nullptr; }

 private:
  Files& files_;
  std::unique_ptr<OpenFile> file_;
};

}  // namespace quorl
