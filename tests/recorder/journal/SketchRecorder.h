// A recorder without a deck around it: halves to the file, one after the other, and the journal beside them.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "recorder/journal/JournalWriter.h"
#include "recorder/journal/RecordingParts.h"

namespace quorl {

class SketchRecorder {
 public:
  SketchRecorder(Files& files, FileWorker& worker, RecordingParts parts, const JournalHead& head)
      : files_(files),
        parts_(std::move(parts)),
        head_(head),
        journal_(files, worker, parts_.Journal()),
        calls_(worker) {}

  void Open(std::int32_t freq) {
    freq_ = freq;
    Then([this] { return MakeFile(); });
    journal_.Begin(head_);
    Tune(freq_);
  }

  // The time of a record is a number of its own.
  void Tune(std::int32_t freq) {
    freq_ = freq;
    part_->Log.push_back({++when_, freq, head_.Format.DataAt() + 2 * part_->Samples, 0});
    journal_.NoteLog(part_->Log.back());
  }

  // `samples` divide the half.
  void Feed(const std::vector<std::int16_t>& samples) {
    const auto count = static_cast<std::int32_t>(samples.size());
    journal_.NoteSamples(half_, static_cast<std::int32_t>(filling_.size()), samples.data(), count);
    filling_.insert(filling_.end(), samples.begin(), samples.end());
    part_->Samples += count;
    if (std::ssize(filling_) < head_.HalfSamples) return;
    Write(half_++, std::exchange(filling_, {}));
  }

  // Between two halves.
  void BeginPart() {
    journal_.NotePart(++number_, half_);
    Then([this, part = part_] { return Finish(*part); });
    Then([this, number = number_ - 1] {
      file_ = nullptr;
      return files_.Rename(parts_.Current(), parts_.Finished(number));
    });
    Then([this] { return MakeFile(); });
    part_ = std::make_shared<Part>();
    Tune(freq_);
  }

  void Close() {
    Then([this, part = part_] { return Finish(*part); }, [this] { journal_.Remove(); });
  }

  bool IsIdle() const { return line_.empty(); }

 private:
  struct Part {
    std::vector<LogRecord> Log;
    std::int64_t Samples = 0;   // that were fed, less those that were lost
    std::int64_t Position = 0;  // on the disk
  };
  struct Job {
    std::function<Failure()> Work;
    std::function<void()> Done, Failed;
  };

  void Then(std::function<Failure()> work, std::function<void()> done = {},
            std::function<void()> failed = {}) {
    line_.push_back({std::move(work), std::move(done), std::move(failed)});
    if (line_.size() == 1) Next();
  }

  void Next() {
    if (line_.empty()) return;
    calls_.Make<Failure>(
        line_.front().Work ? line_.front().Work : [] { return Failure(); },
        [this](const Failure& failure) {
          const Job job = line_.front();
          if (const auto& told = failure ? job.Failed : job.Done) told();
          line_.pop_front();
          Next();
        });
  }

  void Write(std::int64_t half, std::vector<std::int16_t> samples) {
    const std::int64_t bytes = 2 * std::ssize(samples);
    const auto write = [this, part = part_, bytes, samples = std::move(samples)] {
      return file_->WriteAt(head_.Format.DataAt() + part->Position, samples.data(), bytes);
    };
    Then(
        write,
        [this, part = part_, half, bytes] {
          part->Position += bytes;
          journal_.NoteWritten(half);
        },
        [this, part = part_, half, bytes] {
          TakeOut(*part, head_.Format.DataAt() + part->Position, bytes);
          journal_.NoteLost(half, bytes);
        });
  }

  static void TakeOut(Part& part, std::int64_t place, std::int64_t bytes) {
    part.Samples -= bytes / 2;
    for (LogRecord& record : part.Log) {
      if (record.Start > place) record.Start = std::max(place, record.Start - bytes);
    }
  }

  Failure MakeFile() {
    Failure failure;
    file_ = files_.Open(parts_.Current(), OpenMode::Create, failure);
    return file_ ? PutHeader(0) : failure;
  }

  Failure PutHeader(std::int64_t bytes) {
    const RecordingFormat& format = head_.Format;
    const std::string header = MakeWavHeader(format, format.DataAt() + bytes, bytes / format.FrameBytes());
    return file_->WriteAt(0, header.data(), std::ssize(header));
  }

  Failure Finish(Part& part) {
    const std::int64_t end = head_.Format.DataAt() + part.Position;
    for (std::size_t i = 1; i < part.Log.size(); ++i) part.Log[i - 1].End = part.Log[i].Start;
    part.Log.back().End = end + 1;
    const std::string trailer = MakeTrailer(part.Log);
    Failure failure = PutHeader(part.Position);
    if (!failure) failure = file_->Truncate(end);
    return failure ? failure : file_->Append(trailer.data(), std::ssize(trailer));
  }

  Files& files_;
  RecordingParts parts_;
  JournalHead head_;
  JournalWriter journal_;
  std::unique_ptr<OpenFile> file_;
  std::shared_ptr<Part> part_ = std::make_shared<Part>();
  std::vector<std::int16_t> filling_;
  std::int64_t half_ = 0;
  std::int32_t number_ = 1, freq_ = 0;
  double when_ = 0.0;
  std::deque<Job> line_;
  FileCalls calls_;
};

}  // namespace quorl
