// Holds the next seconds of a file in memory, so that who plays it never waits for the disk.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "platform/files/PostedFiles.h"

namespace quorl {

class ReadAhead {
 public:
  explicit ReadAhead(FileWorker& worker) : calls_(std::make_unique<FileCalls>(worker)), worker_(worker) {}

  // More of the file is there, or it can't be read.
  std::function<void()> OnArrival = [] {};

  // Reads `file` between the bytes `begin` and `end`. Of these it keeps `hold` bytes from where it was told
  // to follow, and as much of the beginning, for who begins again.
  void Open(std::shared_ptr<OpenFile> file, std::int64_t begin, std::int64_t end, std::int64_t hold);
  void Close();
  bool IsOpen() const { return file_ != nullptr; }

  // Asks for what is missing from `at` on, and lets go of what lies elsewhere.
  void Follow(std::int64_t at);
  // Copies `bytes` from `at`; false where they aren't all there yet. Neither waits nor allocates.
  bool Take(std::int64_t at, void* destination, std::int64_t bytes) const;
  // Set for good once something couldn't be read.
  const Failure& Fault() const { return fault_; }

 private:
  static constexpr std::int64_t kPiece = 65536;

  bool IsWanted(std::int64_t piece, std::int64_t at) const;
  void Ask(std::int64_t piece);
  void Arrived(std::int64_t piece, FileContent content);
  std::int64_t Length(std::int64_t piece) const;

  std::unique_ptr<FileCalls> calls_;  // anew for each file: what was asked of the one before is not told
  FileWorker& worker_;
  std::shared_ptr<OpenFile> file_;
  std::int64_t begin_ = 0, end_ = 0, hold_ = 0, at_ = 0;
  std::map<std::int64_t, std::string> pieces_;
  std::set<std::int64_t> asked_;
  Failure fault_;
};

}  // namespace quorl
