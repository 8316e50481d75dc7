#include "recorder/RecordingWriter.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "recorder/files/LittleEndian.h"

namespace quorl {
namespace {

// Room for what is tuned between the last look at the length and the file's end.
constexpr std::int64_t kSpareRecords = 256;

std::string FileBytesOf(std::vector<std::int16_t> samples) {
  SwapFileOrder(samples.data(), samples.size());
  std::string bytes(samples.size() * sizeof(std::int16_t), '\0');
  std::memcpy(bytes.data(), samples.data(), bytes.size());
  return bytes;
}

Failure WriteHeader(OpenFile& file, const RecordingFormat& format, std::int64_t bytes) {
  const std::int64_t frames = (bytes - format.DataAt()) / format.FrameBytes();
  const std::string header = MakeWavHeader(format, bytes, frames);
  return file.WriteAt(0, header.data(), static_cast<std::int64_t>(header.size()));
}

// A file whose samples end after `bytes` gets header and log. Where the log finds no room the samples stay.
Failure FinishFile(OpenFile& file, const RecordingFormat& format, std::int64_t bytes,
                   const std::string& trailer) {
  if (Failure failure = file.Truncate(bytes)) return failure;
  if (Failure failure = WriteHeader(file, format, bytes)) return failure;
  if (Failure failure = file.WriteAt(bytes, trailer.data(), static_cast<std::int64_t>(trailer.size()))) {
    file.Truncate(bytes);
    return failure;
  }
  return file.Sync();
}

struct Opened {
  std::shared_ptr<OpenFile> File;
  Failure Fault;
};

Opened OpenNew(Files& files, const std::string& path, const RecordingFormat& format) {
  Opened opened;
  if (files.Exists(path)) opened.Fault = files.Remove(path);
  if (!opened.Fault) opened.File = files.Open(path, OpenMode::Update, opened.Fault);
  if (opened.File) opened.Fault = WriteHeader(*opened.File, format, format.DataAt());
  if (opened.Fault) opened.File.reset();
  return opened;
}

// A part that ends at `position` keeps what was tuned in it; the next one begins with the frequency in force.
struct SplitLog {
  SplitLog(const std::vector<LogRecord>& log, std::int64_t position, std::int64_t dataAt) {
    const auto behind =
        std::find_if(log.begin(), log.end(), [position](const LogRecord& r) { return r.Start >= position; });
    Ended.assign(log.begin(), behind);
    Next.assign(behind, log.end());
    if (!Ended.empty() && (Next.empty() || Next.front().Start > position)) {
      Next.insert(Next.begin(), {Ended.back().When, Ended.back().Freq, position, Ended.back().End});
    }
    if (!Ended.empty()) Ended.back().End = position + 1;
    const std::int64_t moved = position - dataAt;
    for (LogRecord& record : Next) {
      record.Start -= moved;
      record.End = std::max(record.End - moved, record.Start);
    }
  }

  std::vector<LogRecord> Ended, Next;
};

}  // namespace

RecordingWriter::RecordingWriter(Files& files, FileWorker& worker, EventQueue& queue,
                                 std::vector<LogRecord>& log, const RecordingParts& names)
    : files_(files),
      queue_(queue),
      calls_(worker),
      journal_(files, worker, names.Journal()),
      log_(log),
      names_(names) {
  journal_.OnFault = [this](const Error& fault) { OnJournalFault(fault); };
}

Failure RecordingWriter::Open(const RecordingFormat& format, const RecordingLimits& limits) {
  format_ = format;
  limits_ = limits;
  waiting_.clear();
  fault_ = {};
  part_ = notedPart_ = 1;
  position_ = format.DataAt();
  frames_ = base_ = 0;
  log_.clear();
  Opened opened = calls_.Await<Opened>(
      queue_, [&files = files_, path = names_.Current(), format] { return OpenNew(files, path, format); });
  if (opened.Fault) return opened.Fault;
  file_ = std::move(opened.File);
  journal_.Begin({format, limits.HalfSamples, part_});
  return {};
}

std::int64_t RecordingWriter::PartFrames() const {
  return (position_ - format_.DataAt()) / format_.FrameBytes();
}

void RecordingWriter::Follow(std::int64_t half, std::int32_t offset, const std::int16_t* samples,
                             std::int32_t count) {
  if (count > 0) journal_.NoteSamples(half, offset, samples, count);
}

void RecordingWriter::Write(std::int64_t half, std::vector<std::int16_t> samples) {
  const auto bytes = static_cast<std::int64_t>(samples.size() * sizeof(std::int16_t));
  waiting_.push_back({half, bytes, FileBytesOf(std::move(samples)), false});
  WriteNext();
}

void RecordingWriter::Lose(std::int64_t half) {
  waiting_.push_back({half, std::int64_t{2} * limits_.HalfSamples, {}, true});
  WriteNext();
}

void RecordingWriter::NoteTuning(std::int32_t freq, double when, std::int64_t samples) {
  const std::int64_t start = format_.DataAt() + 2 * samples - base_;
  if (!log_.empty()) log_.back().End = start;
  log_.push_back({when, freq, start, start});
  LogRecord noted = log_.back();
  if (notedPart_ > part_) noted.Start -= position_ - format_.DataAt();
  journal_.NoteLog(noted);
}

bool RecordingWriter::IsPartFull(std::int64_t bytes) const {
  if (PartFrames() == 0) return false;
  const std::int64_t trailer = (static_cast<std::int64_t>(log_.size()) + kSpareRecords) * kLogRecordBytes;
  return position_ + bytes + trailer > limits_.MostBytes ||
         PartFrames() + bytes / format_.FrameBytes() > limits_.MostFrames;
}

void RecordingWriter::WriteNext() {
  while (!busy_ && !waiting_.empty() && waiting_.front().Lost) LoseFirst();
  if (busy_ || waiting_.empty()) return;
  busy_ = true;
  if (IsPartFull(waiting_.front().Length)) {
    TurnPart();
    return;
  }
  calls_.Make<Failure>(
      [file = file_, at = position_, bytes = std::move(waiting_.front().Bytes)] {
        return file->WriteAt(at, bytes.data(), static_cast<std::int64_t>(bytes.size()));
      },
      [this](const Failure& failure) { Written(failure); });
}

void RecordingWriter::Written(const Failure& failure) {
  busy_ = false;
  if (failure) {
    fault_ = failure;
    LoseFirst();
  } else {
    const Half half = std::move(waiting_.front());
    waiting_.pop_front();
    position_ += half.Length;
    frames_ += half.Length / format_.FrameBytes();
    journal_.NoteWritten(half.Number, static_cast<std::int32_t>(half.Length / 2));
  }
  OnWritten();
  WriteNext();
}

// What was tuned within the lost half counts from its begin, what was tuned behind it moves up to it.
void RecordingWriter::LoseFirst() {
  const Half half = std::move(waiting_.front());
  waiting_.pop_front();
  const auto moved = [this, &half](std::int64_t at) {
    return at <= position_ ? at : std::max(position_, at - half.Length);
  };
  for (LogRecord& record : log_) record = {record.When, record.Freq, moved(record.Start), moved(record.End)};
  base_ += half.Length;
  journal_.NoteLost(half.Number, half.Length);
}

// What is tuned meanwhile counts from the old part's begin, until the new one is there. A try that failed
// behind the renaming goes on from there: the new file's name must not go over the finished part's.
void RecordingWriter::TurnPart() {
  const std::string trailer = MakeTrailer(SplitLog(log_, position_, format_.DataAt()).Ended);
  const auto turn = [&files = files_, file = file_, format = format_, bytes = position_, trailer,
                     current = names_.Current(), numbered = names_.Finished(part_)] {
    Failure failure;
    if (!files.Exists(numbered)) {
      failure = FinishFile(*file, format, bytes, trailer);
      if (!failure) failure = files.Rename(current, numbered);
    }
    return failure ? Opened{nullptr, failure} : OpenNew(files, current, format);
  };
  if (notedPart_ == part_) journal_.NotePart(notedPart_ = part_ + 1, waiting_.front().Number);
  calls_.Make<Opened>(turn, [this](Opened next) {
    if (next.Fault) {
      Written(next.Fault);
      return;
    }
    file_ = std::move(next.File);
    log_ = SplitLog(log_, position_, format_.DataAt()).Next;
    base_ += position_ - format_.DataAt();
    position_ = format_.DataAt();
    busy_ = false;
    OnPart(part_++);
    WriteNext();
  });
}

Failure RecordingWriter::Finish() {
  while (!waiting_.empty()) queue_.Wait(kDiskWait);
  if (!log_.empty()) log_.back().End = position_ + 1;
  const std::string trailer = MakeTrailer(log_);
  const auto finish = [file = file_, format = format_, bytes = position_, trailer] {
    return FinishFile(*file, format, bytes, trailer);
  };
  Failure failure = calls_.Await<Failure>(queue_, finish);
  if (failure) return failure;
  file_.reset();
  journal_.Remove();
  return {};
}

void RecordingWriter::Abandon() {
  if (waiting_.size() > 1) waiting_.erase(waiting_.begin() + 1, waiting_.end());
  while (busy_) queue_.Wait(kDiskWait);
  file_.reset();
  journal_.Remove();
}

Failure RecordingWriter::TakeFault() {
  return std::exchange(fault_, std::nullopt);
}

}  // namespace quorl
