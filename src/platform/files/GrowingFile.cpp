#include "platform/files/GrowingFile.h"

#include <cerrno>
#include <string_view>

namespace quorl {
namespace {

constexpr std::string_view kEnding = ".new";
constexpr int kMostBeside = 1000;  // files growing, or left behind, for one target

std::string Beside(const std::string& target, int number) {
  return target + "." + std::to_string(number) + std::string(kEnding);
}

}  // namespace

std::unique_ptr<GrowingFile> GrowingFile::Create(Files& files, const std::string& target, Failure& failure) {
  std::unique_ptr<GrowingFile> file(new GrowingFile(files, target));
  failure = file->Open();
  return failure ? nullptr : std::move(file);
}

GrowingFile::~GrowingFile() {
  Discard();
}

Failure GrowingFile::Open() {
  Failure failure;
  target_ = files_.Resolve(name_);
  const FileKind kind = files_.Kind(target_);
  if (kind == FileKind::Directory || kind == FileKind::Other) {
    direct_ = true;
    file_ = files_.Open(name_, OpenMode::Feed, failure);
    return failure;
  }
  // Renaming would go past a write protection, so the target itself is asked.
  if (kind == FileKind::Regular && !files_.Open(target_, OpenMode::Update, failure)) return Named(failure);
  failure = OpenBeside();
  if (!failure && kind == FileKind::Regular) files_.CopyPermissions(target_, temporary_);
  return failure;
}

Failure GrowingFile::OpenBeside() {
  Failure failure;
  for (int number = 1; number <= kMostBeside; ++number) {
    temporary_ = Beside(target_, number);
    file_ = files_.Open(temporary_, OpenMode::Create, failure);
    if (file_ || failure->Code != EEXIST) break;
  }
  if (file_) return {};
  failure = Named(failure);
  temporary_.clear();
  return failure;
}

Failure GrowingFile::Append(const void* source, std::int64_t bytes) {
  return Named(file_->Append(source, bytes));
}

Failure GrowingFile::WriteAt(std::int64_t at, const void* source, std::int64_t bytes) {
  return Named(file_->WriteAt(at, source, bytes));
}

Failure GrowingFile::Commit() {
  Failure failure = Finish();
  if (failure) Discard();
  return failure;
}

Failure GrowingFile::Finish() {
  if (direct_) return {};
  if (Failure failure = file_->Sync()) return Named(failure);
  file_.reset();
  if (Failure failure = files_.Rename(temporary_, target_)) return Named(failure);
  temporary_.clear();
  return {};
}

void GrowingFile::Discard() {
  file_.reset();
  if (!temporary_.empty()) files_.Remove(temporary_);
  temporary_.clear();
}

// Tells the file that was asked for, not the one beside it.
Failure GrowingFile::Named(Failure failure) const {
  const std::string& grown = temporary_.empty() ? target_ : temporary_;
  const std::size_t at = failure ? failure->Text.find(grown) : std::string::npos;
  if (at != std::string::npos) failure->Text.replace(at, grown.size(), name_);
  return failure;
}

void RemoveLeftovers(Files& files, const std::string& path) {
  const std::string target = files.Resolve(path);
  const std::size_t name = target.rfind('/') + 1;  // 0 where there is no directory
  const std::string directory = target.substr(0, name), start = target.substr(name) + ".";
  for (const std::string& each : files.List(directory, std::string(kEnding))) {
    if (!each.starts_with(start) || each.size() <= start.size() + kEnding.size()) continue;
    const std::string number = each.substr(start.size(), each.size() - start.size() - kEnding.size());
    if (number.find_first_not_of("0123456789") == std::string::npos) files.Remove(directory + each);
  }
}

}  // namespace quorl
