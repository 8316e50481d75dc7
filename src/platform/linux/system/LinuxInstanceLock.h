// The instance lock as a lock on a file beside the settings file.
#pragma once

#include "platform/InstanceLock.h"
#include "platform/linux/system/FileHandle.h"

namespace quorl {

// The file ("settings.ini.lock") stays when the lock goes: removing it would let a third program lock a new
// file of that name while a second one has just opened the old.
class LinuxInstanceLock : public InstanceLock {
 public:
  Failure Acquire(const std::string& path) override;
  bool IsHeld() const override { return static_cast<bool>(file_); }

 private:
  FileHandle file_;
};

}  // namespace quorl
