#include "OutputFile.h"

#include <cerrno>
#include <iostream>

#include "recorder/files/StreamIo.h"

namespace quorl::cli {

std::unique_ptr<OutputFile> OutputFile::Create(Files& files, const std::string& path, Failure& failure) {
  auto output = std::make_unique<OutputFile>();
  if (path == "-") return output;
  output->file_ = GrowingFile::Create(files, path, failure);
  if (failure) return {};
  return output;
}

Failure OutputFile::Write(const std::string& content) {
  if (file_) return file_->Append(content.data(), static_cast<std::int64_t>(content.size()));
  errno = 0;
  std::cout << content;
  return Flush();
}

Failure OutputFile::Commit() {
  return file_ ? file_->Commit() : Flush();
}

Failure OutputFile::Flush() {
  std::cout.flush();
  if (std::cout) return {};
  return IoError("standard output", "can't be written");
}

}  // namespace quorl::cli
