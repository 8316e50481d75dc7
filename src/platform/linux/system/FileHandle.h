// An open file descriptor that closes itself.
#pragma once

#include <unistd.h>

#include <utility>

namespace quorl {

class FileHandle {
 public:
  FileHandle() = default;
  explicit FileHandle(int file) : file_(file) {}
  FileHandle(FileHandle&& other) noexcept : file_(std::exchange(other.file_, -1)) {}
  FileHandle& operator=(FileHandle&& other) noexcept {
    std::swap(file_, other.file_);
    return *this;
  }
  ~FileHandle() { Close(); }

  int Get() const { return file_; }
  explicit operator bool() const { return file_ >= 0; }
  // False where the system tells only now that something written before was lost.
  bool Close() { return file_ < 0 || close(std::exchange(file_, -1)) == 0; }

 private:
  int file_ = -1;
};

}  // namespace quorl
