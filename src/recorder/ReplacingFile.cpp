#include "recorder/ReplacingFile.h"

#include <cerrno>
#include <random>
#include <system_error>

#include "recorder/StreamIo.h"

namespace quorl {
namespace fs = std::filesystem;
namespace {

// A name beside `target` that nothing has yet.
fs::path FreeNameBeside(const fs::path& target) {
  std::random_device random;
  fs::path name;
  std::error_code ignored;
  do {
    name = target;
    name += ".part-" + std::to_string(random() % 1000000U);
  } while (fs::exists(fs::symlink_status(name, ignored)));
  return name;
}

}  // namespace

std::unique_ptr<ReplacingFile> ReplacingFile::Create(const std::string& target, Failure& failure) {
  std::unique_ptr<ReplacingFile> file(new ReplacingFile(target));
  failure = file->Open();
  if (failure) return nullptr;
  return file;
}

ReplacingFile::~ReplacingFile() {
  Discard();
}

Failure ReplacingFile::Open() {
  std::error_code code;
  const fs::file_status status = fs::status(name_, code);
  if (fs::is_directory(status)) return Error{EISDIR, name_ + ": is a directory; a file name is needed"};
  target_ = name_;
  const bool replaced = fs::is_regular_file(status);
  if (replaced) {
    // Renaming would go past a write protection, so the target itself is asked.
    errno = 0;
    if (!std::ofstream(name_, std::ios::binary | std::ios::app)) {
      return IoError(name_, "can't be written; a writable file is needed");
    }
    if (fs::path real = fs::canonical(name_, code); !code) target_ = std::move(real);
  }
  const bool direct = fs::exists(status) && !replaced;
  if (!direct) temporary_ = FreeNameBeside(target_);
  errno = 0;
  stream_.open(direct ? target_ : temporary_, std::ios::binary | std::ios::out | std::ios::trunc);
  if (!stream_) {
    const Error error = IoError(name_, "can't be written; a writable place is needed");
    temporary_.clear();
    return error;
  }
  if (replaced) fs::permissions(temporary_, status.permissions(), code);
  return std::nullopt;
}

Failure ReplacingFile::Commit() {
  errno = 0;
  stream_.close();
  if (!stream_) {
    const Error error = IoError(name_, "can't be written");
    Discard();
    return error;
  }
  if (temporary_.empty()) return std::nullopt;
  std::error_code code;
  fs::rename(temporary_, target_, code);
  if (code) {
    Discard();
    return Error{code.value(), name_ + ": can't be replaced: " + code.message()};
  }
  temporary_.clear();
  return std::nullopt;
}

void ReplacingFile::Discard() {
  if (stream_.is_open()) stream_.close();
  if (temporary_.empty()) return;
  std::error_code ignored;
  fs::remove(temporary_, ignored);
  temporary_.clear();
}

}  // namespace quorl
