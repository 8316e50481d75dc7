#include "platform/virtual/VirtualFiles.h"

#include <algorithm>

#include "support/Text.h"

namespace quorl {
namespace {

constexpr int kNoSuchFile = 2;

std::string Parent(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? "" : path.substr(0, slash);
}

std::string WithoutLastSlash(const std::string& path) {
  return path.ends_with('/') ? path.substr(0, path.size() - 1) : path;
}

}  // namespace

Failure VirtualFiles::Refusal(FileOperation operation, const std::string& path) const {
  if (const auto failure = failures_.find(operation); failure != failures_.end()) {
    return failure->second;
  }
  const std::string parent = Parent(path);
  if (operation != FileOperation::MakeDirectory && !parent.empty() && !directories_.contains(parent)) {
    return Error{kNoSuchFile, path + ": No such file or directory"};
  }
  return {};
}

bool VirtualFiles::Exists(const std::string& path) const {
  return files_.contains(path) || directories_.contains(WithoutLastSlash(path));
}

std::optional<std::string> VirtualFiles::Read(const std::string& path, Failure& failure) const {
  failure = Refusal(FileOperation::Read, path);
  const auto file = files_.find(path);
  if (!failure && file == files_.end()) {
    failure = Error{kNoSuchFile, path + ": No such file or directory"};
  }
  if (failure) {
    return {};
  }
  return file->second;
}

Failure VirtualFiles::Replace(const std::string& path, const std::string& content) {
  auto refusal = Refusal(FileOperation::Replace, path);
  if (!refusal) {
    files_[path] = content;
  }
  return refusal;
}

Failure VirtualFiles::Append(const std::string& path, const std::string& content) {
  auto refusal = Refusal(FileOperation::Append, path);
  if (!refusal) {
    files_[path] += content;
  }
  return refusal;
}

Failure VirtualFiles::MakeDirectory(const std::string& path) {
  auto refusal = Refusal(FileOperation::MakeDirectory, path);
  if (!refusal) {
    for (std::string each = WithoutLastSlash(path); !each.empty(); each = Parent(each)) {
      directories_.insert(each);
    }
  }
  return refusal;
}

std::vector<std::string> VirtualFiles::List(const std::string& directory, const std::string& suffix) const {
  std::vector<std::string> names;
  for (const auto& [path, content] : files_) {
    if (Parent(path) == WithoutLastSlash(directory) && EndsWithNoCase(path, suffix)) {
      names.push_back(path.substr(path.rfind('/') + 1));
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

void VirtualFiles::Put(const std::string& path, std::string content) {
  for (std::string each = Parent(path); !each.empty(); each = Parent(each)) {
    directories_.insert(each);
  }
  files_[path] = std::move(content);
}

}  // namespace quorl
