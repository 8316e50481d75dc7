// A file system made of memory, whose operations can be told to fail.
#pragma once

#include <map>
#include <set>
#include <string>

#include "platform/Files.h"

namespace quorl {

enum class FileOperation { Read, Replace, Append, MakeDirectory };

// Paths are taken as they are written. A file needs its directory, as on a disk; the root and the working
// directory ("" ) always exist.
class VirtualFiles : public Files {
 public:
  bool Exists(const std::string& path) const override;
  std::optional<std::string> Read(const std::string& path, Failure& failure) const override;
  Failure Replace(const std::string& path, const std::string& content) override;
  Failure Append(const std::string& path, const std::string& content) override;
  Failure MakeDirectory(const std::string& path) override;
  std::vector<std::string> List(const std::string& directory, const std::string& suffix) const override;

  // Puts a file there, directories included, whatever failures are set.
  void Put(const std::string& path, std::string content);
  void Remove(const std::string& path) { files_.erase(path); }
  // Every `operation` fails with `error` from now on and changes nothing; ClearFailures ends it.
  void Fail(FileOperation operation, Error error) { failures_[operation] = std::move(error); }
  void ClearFailures() { failures_.clear(); }

 private:
  Failure Refusal(FileOperation operation, const std::string& path) const;

  std::map<std::string, std::string> files_;
  std::set<std::string> directories_;
  std::map<FileOperation, Error> failures_;
};

}  // namespace quorl
