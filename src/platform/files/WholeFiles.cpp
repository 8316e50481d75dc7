#include "platform/files/WholeFiles.h"

#include <algorithm>
#include <cerrno>

#include "platform/files/GrowingFile.h"

namespace quorl {
namespace {

constexpr std::int64_t kPart = 65536;

}  // namespace

std::optional<std::string> WholeFiles::Read(const std::string& path, Failure& failure) const {
  failure.reset();
  const auto file = Open(path, OpenMode::Read, failure);
  std::string content;
  for (std::int64_t got = kPart; file && got == kPart;) {
    const auto begin = static_cast<std::int64_t>(content.size());
    content.resize(content.size() + kPart);
    got = file->ReadAt(begin, content.data() + begin, kPart, failure);
    content.resize(static_cast<std::size_t>(begin + got));
    if (!failure && begin + got > kMostWhole) {
      failure = Error{EFBIG, "Can't read " + path + ": it goes on beyond " +
                                 std::to_string(kMostWhole >> 20) + " MB. Name another file."};
    }
    if (failure) break;
  }
  if (failure) return {};
  return content;
}

Failure WholeFiles::Replace(const std::string& path, const std::string& content) {
  Failure failure;
  const auto file = GrowingFile::Create(*this, path, failure);
  if (!failure) failure = file->Append(content.data(), static_cast<std::int64_t>(content.size()));
  return failure ? failure : file->Commit();
}

Failure WholeFiles::Append(const std::string& path, const std::string& content) {
  Failure failure;
  const auto file = Open(path, OpenMode::Append, failure);
  return failure ? failure : file->Append(content.data(), static_cast<std::int64_t>(content.size()));
}

Failure WholeFiles::Copy(const std::string& from, const std::string& to) {
  Failure failure;
  const auto source = Open(from, OpenMode::Read, failure);
  if (failure) return failure;
  const auto target = GrowingFile::Create(*this, to, failure);
  std::string part(static_cast<std::size_t>(kPart), '\0');
  for (std::int64_t at = 0, got = kPart; !failure && got == kPart; at += got) {
    got = source->ReadAt(at, part.data(), kPart, failure);
    if (!failure) failure = target->Append(part.data(), got);
  }
  return failure ? failure : target->Commit();
}

}  // namespace quorl
