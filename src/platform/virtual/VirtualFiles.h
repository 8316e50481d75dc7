// A file system made of memory, which can fail, fill up, be killed and lose its power.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "platform/files/WholeFiles.h"

namespace quorl {

enum class FileOperation {
  Read,
  Replace,
  Append,
  Copy,
  Open,
  Write,
  Truncate,
  Sync,
  Lock,
  Rename,
  Remove,
  MakeDirectory
};

// Ends what a program was doing with its files.
struct Killed {};

// Paths are taken as they are written. A file needs its directory, as on a disk; the root and the working
// directory ("" ) always exist. Open files may outlive this object.
class VirtualFiles : public WholeFiles {
 public:
  FileKind Kind(const std::string& path) const override;
  std::string Resolve(const std::string& path) const override;
  std::unique_ptr<OpenFile> Open(const std::string& path, OpenMode mode, Failure& failure) const override;
  std::optional<std::string> Read(const std::string& path, Failure& failure) const override;
  Failure Replace(const std::string& path, const std::string& content) override;
  Failure Append(const std::string& path, const std::string& content) override;
  Failure Copy(const std::string& from, const std::string& to) override;
  Failure Rename(const std::string& from, const std::string& to) override;
  Failure Remove(const std::string& path) override;
  void CopyPermissions(const std::string&, const std::string&) override {}
  Failure MakeDirectory(const std::string& path) override;
  std::vector<std::string> List(const std::string& directory, const std::string& suffix) const override;
  // Empty before SetSpace.
  std::optional<std::int64_t> FreeSpace(const std::string& path) const override;

  // Puts a file there, directories included, safe on the disk, whatever failures are set.
  void Put(const std::string& path, std::string content);
  // A pipe that gives `content` to its reader, and then an I/O error where it `breaks`.
  void PutPipe(const std::string& path, std::string content, bool breaks = false);
  void PutLink(const std::string& path, const std::string& target) { links_[path] = target; }

  // Every `operation` fails with `error` from now on and changes nothing; ClearFailures ends it,
  // and forgets WriteShort.
  void Fail(FileOperation operation, Error error) { disk_->Failures[operation] = std::move(error); }
  void ClearFailures() {
    disk_->Failures.clear();
    disk_->Short.reset();
  }
  // All files together hold no more than `bytes`; a write beyond puts down what fits, and fails.
  void SetSpace(std::int64_t bytes) { disk_->Space = bytes; }
  // The next write puts down no more than `bytes`, and fails.
  void WriteShort(std::int64_t bytes) { disk_->Short = bytes; }
  // Kills the program at the step after `steps` more: that one throws Killed, a write in its middle. The dead
  // program's later calls fail and change nothing until Revive. Every call that changes the disk is a step.
  void KillAfter(int steps) { disk_->StepsToLive = steps; }
  void Revive();
  // What no Sync has put on the disk is lost.
  void CutPower();
  // Bytes of all files together.
  std::int64_t Used() const { return disk_->Used(); }
  // Bytes of memory that they take here.
  std::int64_t Held() const;
  // All files as they stand, and the disk with these and no others, none of them open: what a program that is
  // killed between two steps leaves to the next one.
  std::map<std::string, std::string> TakeImage() const;
  void PutBack(const std::map<std::string, std::string>& image);

 private:
  struct Node {
    std::string Content, Safe;  // Safe is what a power cut leaves
    bool Pipe = false, Breaks = false;
    const void* LockedBy = nullptr;
  };
  struct Disk {
    std::map<std::string, std::shared_ptr<Node>> Files;
    std::map<FileOperation, Error> Failures;
    std::optional<std::int64_t> Space, Short;
    int StepsToLive = -1;  // below 0: for ever
    bool Dead = false;

    Failure Step(FileOperation operation, const std::string& path);
    std::int64_t Used() const;
  };
  class Handle;

  Failure Refusal(FileOperation operation, const std::string& path) const;

  std::shared_ptr<Disk> disk_ = std::make_shared<Disk>();
  std::map<std::string, std::string> links_;
  std::set<std::string> directories_;
};

}  // namespace quorl
