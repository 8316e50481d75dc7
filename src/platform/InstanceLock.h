// Keeps two running programs from using the same settings file.
#pragma once

#include <string>

#include "support/Error.h"

namespace quorl {

class InstanceLock {
 public:
  // Releases. A process that dies in any way releases too.
  virtual ~InstanceLock() = default;
  // Takes the lock of the settings file `path`, which need not exist yet; other spellings of the same path
  // are the same lock. Fails only where another running program holds it. Where the machine can't lock there
  // at all, it goes on without: no failure, and IsHeld stays false. A lock that is held already stays as it
  // is.
  virtual Failure Acquire(const std::string& path) = 0;
  virtual bool IsHeld() const = 0;
};

}  // namespace quorl
