// Calls on files that are done beside the event queue's thread; what they bring comes back through the queue.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/EventQueue.h"
#include "platform/FileWorker.h"
#include "platform/Files.h"

namespace quorl {

// Hands calls to a worker and their results back. Calls run in the order they were made; each `done` runs
// once, on the event queue's thread, and never after this object has gone: calls that are out are finished
// then, and nobody is told.
class FileCalls {
 public:
  explicit FileCalls(FileWorker& worker) : worker_(worker) {}

  template <class Result>
  void Make(std::function<Result()> call, std::function<void(Result)> done) {
    const auto result = std::make_shared<std::optional<Result>>();
    worker_.Run([call = std::move(call), result] { *result = call(); },
                [done = std::move(done), result, alive = std::weak_ptr<bool>(alive_)] {
                  if (done && !alive.expired()) done(std::move(**result));
                });
  }
  // Makes the call and delivers what `queue` brings meanwhile, until its result is there. The caller sees to
  // it that nothing of that destroys this object.
  template <class Result>
  Result Await(EventQueue& queue, std::function<Result()> call) {
    std::optional<Result> result;
    Make<Result>(std::move(call), [&result](Result brought) { result.emplace(std::move(brought)); });
    while (!result) queue.Wait(std::chrono::milliseconds(10));
    return std::move(*result);
  }

 private:
  FileWorker& worker_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>();
};

using FileDone = std::function<void(Failure)>;
struct FileContent {
  std::string Bytes;
  Failure Fault;
};
using ContentDone = std::function<void(FileContent)>;

// An open file of PostedFiles. It is closed when it has gone and its last call is done.
class PostedFile {
 public:
  PostedFile(FileWorker& worker, std::shared_ptr<OpenFile> file) : calls_(worker), file_(std::move(file)) {}

  // Fewer than `bytes` only at the file's end or with a fault.
  void ReadAt(std::int64_t at, std::int64_t bytes, ContentDone done);
  void WriteAt(std::int64_t at, std::string content, FileDone done);
  void Append(std::string content, FileDone done);
  void Truncate(std::int64_t bytes, FileDone done);
  void Sync(FileDone done);
  void Lock(FileDone done);

 private:
  FileCalls calls_;
  std::shared_ptr<OpenFile> file_;
};

struct OpenedFile {
  std::unique_ptr<PostedFile> File;  // null with `Fault` set
  Failure Fault;
};

// The calls of Files. `files` and `worker` outlive it.
class PostedFiles {
 public:
  PostedFiles(Files& files, FileWorker& worker) : files_(files), worker_(worker), calls_(worker) {}

  void Open(const std::string& path, OpenMode mode, std::function<void(OpenedFile)> done);
  void Read(const std::string& path, ContentDone done);
  void Replace(const std::string& path, std::string content, FileDone done);
  void Append(const std::string& path, std::string content, FileDone done);
  void Copy(const std::string& from, const std::string& to, FileDone done);
  void Rename(const std::string& from, const std::string& to, FileDone done);
  void Remove(const std::string& path, FileDone done);

 private:
  Files& files_;
  FileWorker& worker_;
  FileCalls calls_;
};

}  // namespace quorl
