// Directories for a program whose user has none that can be written.
#pragma once

#include <string>

#include "platform/linux/system/UserDirectories.h"

namespace quorl {

// True where all of them take files, or can be made. Makes none.
bool AreWritable(const UserDirectories& directories);

// The same below a folder for temporary files; all of it goes with the object.
class ScratchHome {
 public:
  ScratchHome();
  ~ScratchHome();
  ScratchHome(const ScratchHome&) = delete;
  ScratchHome& operator=(const ScratchHome&) = delete;

  // Empty paths where the system gives no such folder.
  UserDirectories Directories() const;

 private:
  std::string path_;
};

}  // namespace quorl
