#include "platform/files/FileInstanceLock.h"

namespace quorl {

Failure FileInstanceLock::Acquire(const std::string& path) {
  if (IsHeld()) return {};
  const std::string file = files_.Resolve(path);
  if (files_.Exists(file) && files_.Kind(file) != FileKind::Regular) return {};
  if (const auto slash = file.rfind('/'); slash != std::string::npos && slash > 0) {
    files_.MakeDirectory(file.substr(0, slash));
  }
  Failure failure;
  auto lock = files_.Open(file + ".lock", OpenMode::Update, failure);
  if (lock) failure = lock->Lock();
  if (failure && failure->Code == OpenFile::kLockedElsewhere) {
    return Error{failure->Code, path +
                                    " is in use by another running program. Close that one, or name another "
                                    "settings file."};
  }
  if (!failure) file_ = std::move(lock);
  return {};
}

}  // namespace quorl
