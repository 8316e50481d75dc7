#include "recorder/journal/MendPlan.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

#include "recorder/files/LittleEndian.h"

namespace quorl {
namespace {

// A system keeps what is written to itself for half a minute or so. A file that lacks more than these seconds
// before what the journal holds isn't the journal's.
constexpr std::int64_t kMostSilence = 60;

bool HasTrailerAt(OpenFile& file, std::int64_t at, Failure& failure) {
  std::string bytes(kLogTag.size(), '\0');
  bytes.resize(static_cast<std::size_t>(file.ReadAt(at, bytes.data(), std::ssize(bytes), failure)));
  return !bytes.empty() && kLogTag.starts_with(bytes);
}

bool HasHeader(OpenFile& file, const std::string& header, Failure& failure) {
  std::string bytes(header.size(), '\0');
  file.ReadAt(0, bytes.data(), std::ssize(bytes), failure);
  return bytes == header;
}

std::int64_t WholeFrames(const RecordingFormat& format, std::int64_t end) {
  const std::int64_t bytes = std::max<std::int64_t>(end - format.DataAt(), 0);
  return format.DataAt() + bytes - bytes % format.FrameBytes();
}

// Where the samples end, by this file alone: behind what its header tells where a log begins there, whole or
// cut off, and else at the file's end.
std::int64_t SamplesEnd(OpenFile& file, const RecordingFormat& format, Failure& failure) {
  std::array<unsigned char, 4> size{};
  file.ReadAt(format.DataAt() - std::ssize(size), size.data(), std::ssize(size), failure);
  const std::int64_t told = format.DataAt() + std::int64_t{GetU32(size.data())} * (format.Bits == 8 ? 2 : 1);
  const std::int64_t length = file.Size().value_or(0);
  return told < length && HasTrailerAt(file, told, failure) ? told : length;
}

// What the journal holds comes to its place; what the file lacks before that (a power cut takes what was not
// on the disk yet) becomes silence, so that the log still fits. `behind`: the first half of the next part.
void PutHeld(FilePlan& plan, const Journal& journal, const JournalPart& part, std::int64_t behind) {
  std::int64_t silence = kMostSilence * plan.Format.Rate * plan.Format.FrameBytes();
  for (const HeldHalf& held : journal.Held) {
    const std::int64_t place = part.PlaceOf(held.Half);
    if (held.Half < part.FirstHalf || held.Half >= behind) continue;
    if (place > std::max(plan.Keep, plan.End) + silence) break;
    silence = JournalLayout::kSlots * journal.Head.HalfBytes();  // they follow each other
    plan.Pieces.push_back({held, place});
    plan.End = std::max(plan.End, place + std::int64_t{2} * held.Samples);
  }
  plan.End = std::max(plan.End, std::min(part.WrittenTo(), plan.Keep));
  // A write that failed in its middle leaves less than a half behind the end. A file that goes on for longer
  // knows more than its journal.
  if (plan.Keep > plan.End + journal.Head.HalfBytes()) plan.End = plan.Keep;
  plan.End = WholeFrames(plan.Format, plan.End);
  plan.Log = part.Log;
}

// The last record ends one behind the others' count.
void CloseLog(FilePlan& plan) {
  const std::int64_t begin = plan.Format.DataAt();
  for (LogRecord& record : plan.Log) record.Start = std::clamp(record.Start, begin, plan.End);
  for (std::size_t i = 1; i < plan.Log.size(); ++i) plan.Log[i - 1].End = plan.Log[i].Start;
  if (!plan.Log.empty()) plan.Log.back().End = plan.End + 1;
}

class Planning {
 public:
  Planning(const Files& files, const RecordingParts& parts) : files_(files), parts_(parts) {}
  MendPlan Plan();

 private:
  std::optional<Journal> FindJournal();
  void PlanAlone(const std::string& path);
  void PlanByJournal(const Journal& journal);
  FilePlan PlanPart(const Journal& journal, std::size_t index, bool hasFile);

  const Files& files_;
  const RecordingParts& parts_;
  MendPlan plan_;
};

std::optional<Journal> Planning::FindJournal() {
  plan_.HasJournal = files_.Exists(parts_.Journal());
  if (!plan_.HasJournal) return {};
  const auto file = files_.Open(parts_.Journal(), OpenMode::Read, plan_.Fault);
  return file ? ReadJournal(*file, plan_.Fault) : std::nullopt;
}

// By its length and header. A file that isn't a recording stays out of it.
void Planning::PlanAlone(const std::string& path) {
  const auto file = plan_.Fault ? nullptr : files_.Open(path, OpenMode::Read, plan_.Fault);
  if (!file) return;
  const std::optional<ToldSamples> told = ReadRecordingHeader(*file, plan_.Fault, HeaderSizes::Torn);
  if (!told || !IsBoardKnown(told->Format)) return;
  FilePlan plan;
  plan.Path = path;
  plan.Format = told->Format;
  const std::int64_t end = SamplesEnd(*file, plan.Format, plan_.Fault);
  plan.Keep = plan.End = WholeFrames(plan.Format, end);
  plan.Cuts = end == file->Size().value_or(0) || plan.End != end;
  plan.Mends =
      plan.End != end || !HasHeader(*file, MakeWavHeader(plan.Format, plan.End, plan.Frames()), plan_.Fault);
  plan_.LogLost = plan_.LogLost || (plan.Mends && plan.Cuts);
  plan_.Files.push_back(std::move(plan));
}

FilePlan Planning::PlanPart(const Journal& journal, std::size_t index, bool hasFile) {
  const JournalPart& part = journal.Parts[index];
  const bool last = index + 1 == journal.Parts.size();
  FilePlan plan;
  plan.Path = parts_.Current();
  if (!last) plan.FinishedAs = parts_.Finished(part.Number);
  plan.Format = journal.Head.Format;
  plan.Mends = plan.HasLog = true;
  plan.Keep = plan.End = plan.Format.DataAt();
  const auto file = hasFile ? files_.Open(plan.Path, OpenMode::Read, plan_.Fault) : nullptr;
  if (file) plan.Keep = WholeFrames(plan.Format, SamplesEnd(*file, plan.Format, plan_.Fault));
  PutHeld(plan, journal, part,
          last ? std::numeric_limits<std::int64_t>::max() : journal.Parts[index + 1].FirstHalf);
  CloseLog(plan);
  return plan;
}

// Of the parts that aren't finished the first has the file that was written. One that was begun while that
// one waited for the disk has none yet: all of it is in the journal.
void Planning::PlanByJournal(const Journal& journal) {
  const std::int32_t finished = parts_.LastFinished(files_);
  bool hasFile = files_.Exists(parts_.Current());
  if (finished == 0 && !hasFile) return;
  for (std::size_t i = 0; i < journal.Parts.size(); ++i) {
    if (plan_.Fault) return;
    if (journal.Parts[i].Number <= finished) continue;
    FilePlan plan = PlanPart(journal, i, hasFile);
    if (hasFile || plan.Frames() > 0) plan_.Files.push_back(std::move(plan));
    hasFile = false;
  }
  if (hasFile) PlanAlone(parts_.Current());
}

MendPlan Planning::Plan() {
  const std::optional<Journal> journal = FindJournal();
  for (const std::string& path : parts_.Existing(files_)) {
    if (!journal || path != parts_.Current()) PlanAlone(path);
  }
  if (journal) PlanByJournal(*journal);
  if (plan_.Fault) plan_.Files.clear();
  return std::move(plan_);
}

}  // namespace

MendPlan PlanMending(const Files& files, const RecordingParts& parts) {
  return Planning(files, parts).Plan();
}

}  // namespace quorl
