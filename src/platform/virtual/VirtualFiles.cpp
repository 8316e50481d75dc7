#include "platform/virtual/VirtualFiles.h"

#include <algorithm>
#include <utility>

#include "support/Text.h"

namespace quorl {
namespace {

constexpr int kNoSuchFile = 2, kBroken = 5, kExists = 17, kIsDirectory = 21, kNoSpace = 28, kNoSeek = 29;

std::string Parent(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? "" : path.substr(0, slash);
}

std::string WithoutLastSlash(const std::string& path) {
  return path.ends_with('/') ? path.substr(0, path.size() - 1) : path;
}

Error NoSuchFile(const std::string& path) {
  return {kNoSuchFile, path + ": No such file or directory"};
}

}  // namespace

Failure VirtualFiles::Disk::Step(FileOperation operation, const std::string& path) {
  if (Dead) return Error{kBroken, path + ": the program has been killed"};
  if (const auto failure = Failures.find(operation); failure != Failures.end()) return failure->second;
  if (StepsToLive == 0) {
    Dead = true;
    for (const auto& [name, node] : Files) node->LockedBy = nullptr;
  }
  if (StepsToLive >= 0) --StepsToLive;
  return {};
}

std::int64_t VirtualFiles::Disk::Used() const {
  std::int64_t used = 0;
  for (const auto& [path, node] : Files) used += static_cast<std::int64_t>(node->Content.size());
  return used;
}

class VirtualFiles::Handle : public OpenFile {
 public:
  Handle(std::shared_ptr<Disk> disk, std::shared_ptr<Node> node, std::string name)
      : disk_(std::move(disk)), node_(std::move(node)), name_(std::move(name)) {}
  ~Handle() override {
    if (node_->LockedBy == this) node_->LockedBy = nullptr;
  }

  const std::string& Name() const override { return name_; }
  std::optional<std::int64_t> Size() const override {
    if (node_->Pipe) return {};
    return static_cast<std::int64_t>(node_->Content.size());
  }

  std::int64_t ReadAt(std::int64_t at, void* destination, std::int64_t bytes, Failure& failure) override {
    if (const auto refusal = disk_->Failures.find(FileOperation::Read); refusal != disk_->Failures.end()) {
      failure = refusal->second;
      return 0;
    }
    if (node_->Pipe && at != done_) {
      failure = Error{kNoSeek, name_ + ": Illegal seek"};
      return 0;
    }
    const auto length = static_cast<std::int64_t>(node_->Content.size());
    const std::int64_t got = std::clamp<std::int64_t>(length - at, 0, bytes);
    std::copy_n(node_->Content.data() + std::min(at, length), got, static_cast<char*>(destination));
    done_ = at + got;
    if (got < bytes && node_->Breaks) failure = Error{kBroken, name_ + ": Input/output error"};
    return got;
  }

  Failure WriteAt(std::int64_t at, const void* source, std::int64_t bytes) override {
    Failure failure = disk_->Step(FileOperation::Write, name_);
    if (failure) return failure;
    std::int64_t room = bytes;
    if (disk_->Dead) room = bytes / 2;
    if (disk_->Space) {
      const std::int64_t grows = std::max<std::int64_t>(at + bytes - *Size(), 0);
      room = std::min(room, std::max<std::int64_t>(bytes - grows + *disk_->Space - disk_->Used(), 0));
    }
    if (disk_->Short) room = std::min(room, *std::exchange(disk_->Short, std::nullopt));
    Put(at, static_cast<const char*>(source), static_cast<std::size_t>(room));
    if (disk_->Dead) throw Killed();
    if (room < bytes) failure = Error{kNoSpace, name_ + ": No space left on device"};
    return failure;
  }

  Failure Append(const void* source, std::int64_t bytes) override {
    return WriteAt(static_cast<std::int64_t>(node_->Content.size()), source, bytes);
  }

  Failure Truncate(std::int64_t bytes) override {
    return Do(FileOperation::Truncate, [&] { node_->Content.resize(static_cast<std::size_t>(bytes)); });
  }

  Failure Sync() override {
    return Do(FileOperation::Sync, [&] { node_->Safe = node_->Content; });
  }

  Failure Lock() override {
    if (node_->LockedBy != nullptr && node_->LockedBy != this)
      return Error{kLockedElsewhere, name_ + " is in use by another running program"};
    return Do(FileOperation::Lock, [&] { node_->LockedBy = this; });
  }

 private:
  template <class Change>
  Failure Do(FileOperation operation, const Change& change) {
    if (Failure failure = disk_->Step(operation, name_)) return failure;
    if (disk_->Dead) throw Killed();
    change();
    return {};
  }

  void Put(std::int64_t at, const char* from, std::size_t bytes) {
    const auto begin = static_cast<std::size_t>(at);
    if (node_->Content.size() < begin + bytes) node_->Content.resize(begin + bytes);
    std::copy_n(from, bytes, node_->Content.begin() + at);
  }

  std::shared_ptr<Disk> disk_;
  std::shared_ptr<Node> node_;
  std::string name_;
  std::int64_t done_ = 0;
};

Failure VirtualFiles::Refusal(FileOperation operation, const std::string& path) const {
  if (const auto failure = disk_->Failures.find(operation); failure != disk_->Failures.end()) {
    return failure->second;
  }
  const std::string parent = Parent(path);
  if (!parent.empty() && !directories_.contains(parent)) return NoSuchFile(path);
  return {};
}

std::string VirtualFiles::Resolve(const std::string& path) const {
  const auto link = links_.find(path);
  return link == links_.end() ? path : Resolve(link->second);
}

FileKind VirtualFiles::Kind(const std::string& path) const {
  const auto file = disk_->Files.find(Resolve(path));
  if (file != disk_->Files.end()) return file->second->Pipe ? FileKind::Other : FileKind::Regular;
  return directories_.contains(WithoutLastSlash(path)) ? FileKind::Directory : FileKind::None;
}

std::unique_ptr<OpenFile> VirtualFiles::Open(const std::string& path, OpenMode mode, Failure& failure) const {
  const std::string target = Resolve(path);
  failure = Refusal(FileOperation::Open, target);
  if (failure) return nullptr;
  auto found = disk_->Files.find(target);
  if (found != disk_->Files.end() && mode == OpenMode::Create)
    failure = Error{kExists, path + ": File exists"};
  if (Kind(target) == FileKind::Directory) failure = Error{kIsDirectory, path + ": Is a directory"};
  const bool makes = mode == OpenMode::Create || mode == OpenMode::Update || mode == OpenMode::Append;
  if (found == disk_->Files.end() && !makes) failure = NoSuchFile(path);
  if (failure) return nullptr;
  if (found == disk_->Files.end()) {
    failure = disk_->Step(FileOperation::Open, path);
    if (failure) return nullptr;
    if (disk_->Dead) throw Killed();
    found = disk_->Files.emplace(target, std::make_shared<Node>()).first;
  }
  return std::make_unique<Handle>(disk_, found->second, path);
}

std::optional<std::string> VirtualFiles::Read(const std::string& path, Failure& failure) const {
  failure = Refusal(FileOperation::Read, path);
  if (failure) return {};
  return WholeFiles::Read(path, failure);
}

Failure VirtualFiles::Replace(const std::string& path, const std::string& content) {
  const Failure refusal = Refusal(FileOperation::Replace, path);
  return refusal ? refusal : WholeFiles::Replace(path, content);
}

Failure VirtualFiles::Append(const std::string& path, const std::string& content) {
  const Failure refusal = Refusal(FileOperation::Append, path);
  return refusal ? refusal : WholeFiles::Append(path, content);
}

Failure VirtualFiles::Copy(const std::string& from, const std::string& to) {
  const Failure refusal = Refusal(FileOperation::Copy, to);
  return refusal ? refusal : WholeFiles::Copy(from, to);
}

Failure VirtualFiles::Rename(const std::string& from, const std::string& to) {
  const auto file = disk_->Files.find(from);
  if (file == disk_->Files.end()) return NoSuchFile(from);
  Failure failure = Refusal(FileOperation::Rename, to);
  if (!failure) failure = disk_->Step(FileOperation::Rename, to);
  if (failure) return failure;
  if (disk_->Dead) throw Killed();
  links_.erase(to);
  const auto node = file->second;
  disk_->Files.erase(file);
  disk_->Files[to] = node;
  return {};
}

Failure VirtualFiles::Remove(const std::string& path) {
  Failure failure = disk_->Step(FileOperation::Remove, path);
  if (failure) return failure;
  if (disk_->Dead) throw Killed();
  if (disk_->Files.erase(path) + links_.erase(path) == 0) return NoSuchFile(path);
  return {};
}

Failure VirtualFiles::MakeDirectory(const std::string& path) {
  Failure failure = disk_->Step(FileOperation::MakeDirectory, path);
  if (failure) return failure;
  if (disk_->Dead) throw Killed();
  for (std::string each = WithoutLastSlash(path); !each.empty(); each = Parent(each)) {
    directories_.insert(each);
  }
  return {};
}

std::vector<std::string> VirtualFiles::List(const std::string& directory, const std::string& suffix) const {
  std::vector<std::string> names;
  for (const auto& [path, node] : disk_->Files) {
    if (Parent(path) == WithoutLastSlash(directory) && EndsWithNoCase(path, suffix)) {
      names.push_back(FileNameOf(path));
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<std::int64_t> VirtualFiles::FreeSpace(const std::string& path) const {
  if (!disk_->Space || (Kind(path) == FileKind::None && Refusal(FileOperation::Open, path))) return {};
  return std::max<std::int64_t>(*disk_->Space - disk_->Used(), 0);
}

void VirtualFiles::Put(const std::string& path, std::string content) {
  for (std::string each = Parent(path); !each.empty(); each = Parent(each)) directories_.insert(each);
  disk_->Files[path] = std::make_shared<Node>(Node{content, std::move(content)});
}

void VirtualFiles::PutPipe(const std::string& path, std::string content, bool breaks) {
  Put(path, std::move(content));
  disk_->Files[path]->Pipe = true;
  disk_->Files[path]->Breaks = breaks;
}

void VirtualFiles::Revive() {
  disk_->Dead = false;
  disk_->StepsToLive = -1;
}

void VirtualFiles::CutPower() {
  for (const auto& [path, node] : disk_->Files) node->Content = node->Safe;
}

std::int64_t VirtualFiles::Held() const {
  std::size_t held = 0;
  for (const auto& [path, node] : disk_->Files) held += node->Content.capacity() + node->Safe.capacity();
  return static_cast<std::int64_t>(held);
}

std::map<std::string, std::string> VirtualFiles::TakeImage() const {
  std::map<std::string, std::string> image;
  for (const auto& [path, node] : disk_->Files) image[path] = node->Content;
  return image;
}

void VirtualFiles::PutBack(const std::map<std::string, std::string>& image) {
  disk_->Files.clear();
  for (const auto& [path, content] : image) Put(path, content);
}

}  // namespace quorl
