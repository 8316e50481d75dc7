#include "platform/files/PostedFiles.h"

namespace quorl {
namespace {

std::int64_t Length(const std::string& content) {
  return static_cast<std::int64_t>(content.size());
}

FileContent ReadPart(OpenFile& file, std::int64_t at, std::int64_t bytes) {
  FileContent content;
  content.Bytes.resize(static_cast<std::size_t>(bytes));
  content.Bytes.resize(static_cast<std::size_t>(file.ReadAt(at, content.Bytes.data(), bytes, content.Fault)));
  return content;
}

}  // namespace

void PostedFile::ReadAt(std::int64_t at, std::int64_t bytes, ContentDone done) {
  calls_.Make<FileContent>([file = file_, at, bytes] { return ReadPart(*file, at, bytes); }, std::move(done));
}

void PostedFile::WriteAt(std::int64_t at, std::string content, FileDone done) {
  calls_.Make<Failure>(
      [file = file_, at, content = std::move(content)] {
        return file->WriteAt(at, content.data(), Length(content));
      },
      std::move(done));
}

void PostedFile::Append(std::string content, FileDone done) {
  calls_.Make<Failure>(
      [file = file_, content = std::move(content)] { return file->Append(content.data(), Length(content)); },
      std::move(done));
}

void PostedFile::Truncate(std::int64_t bytes, FileDone done) {
  calls_.Make<Failure>([file = file_, bytes] { return file->Truncate(bytes); }, std::move(done));
}

void PostedFile::Sync(FileDone done) {
  calls_.Make<Failure>([file = file_] { return file->Sync(); }, std::move(done));
}

void PostedFile::Lock(FileDone done) {
  calls_.Make<Failure>([file = file_] { return file->Lock(); }, std::move(done));
}

void PostedFiles::Open(const std::string& path, OpenMode mode, std::function<void(OpenedFile)> done) {
  struct Opened {
    std::shared_ptr<OpenFile> File;
    Failure Fault;
  };
  const auto open = [&files = files_, path, mode] {
    Opened opened;
    opened.File = files.Open(path, mode, opened.Fault);
    return opened;
  };
  calls_.Make<Opened>(open, [this, done = std::move(done)](Opened opened) {
    auto file = opened.File ? std::make_unique<PostedFile>(worker_, std::move(opened.File)) : nullptr;
    done({std::move(file), std::move(opened.Fault)});
  });
}

void PostedFiles::Read(const std::string& path, ContentDone done) {
  const auto read = [&files = files_, path] {
    FileContent content;
    content.Bytes = files.Read(path, content.Fault).value_or("");
    return content;
  };
  calls_.Make<FileContent>(read, std::move(done));
}

void PostedFiles::Replace(const std::string& path, std::string content, FileDone done) {
  calls_.Make<Failure>(
      [&files = files_, path, content = std::move(content)] { return files.Replace(path, content); },
      std::move(done));
}

void PostedFiles::Append(const std::string& path, std::string content, FileDone done) {
  calls_.Make<Failure>(
      [&files = files_, path, content = std::move(content)] { return files.Append(path, content); },
      std::move(done));
}

void PostedFiles::Copy(const std::string& from, const std::string& to, FileDone done) {
  calls_.Make<Failure>([&files = files_, from, to] { return files.Copy(from, to); }, std::move(done));
}

void PostedFiles::Rename(const std::string& from, const std::string& to, FileDone done) {
  calls_.Make<Failure>([&files = files_, from, to] { return files.Rename(from, to); }, std::move(done));
}

void PostedFiles::Remove(const std::string& path, FileDone done) {
  calls_.Make<Failure>([&files = files_, path] { return files.Remove(path); }, std::move(done));
}

}  // namespace quorl
