#include "recorder/journal/Recovery.h"

#include <algorithm>
#include <memory>

#include "recorder/journal/MendPlan.h"

namespace quorl {
namespace {

FoundRecording Told(const MendPlan& plan) {
  FoundRecording found;
  found.Fault = plan.Fault;
  for (const FilePlan& file : plan.Files) {
    found.Files.push_back(file.FinishedAs.empty() ? file.Path : file.FinishedAs);
    found.Format = file.Format;
    found.Frames += file.Frames();
    found.NeedsMending = found.NeedsMending || file.Mends;
  }
  if (found.Frames == 0) return {{}, {}, 0, false, false, found.Fault};
  found.NeedsMending = found.NeedsMending || plan.HasJournal;
  found.LogLost = plan.LogLost;
  return found;
}

class Mending {
 public:
  Mending(Files& files, const RecordingParts& parts) : files_(files), parts_(parts) {}
  Failure Do(const MendPlan& plan);

 private:
  Failure Mend(const FilePlan& plan);
  Failure Put(OpenFile& file, std::int64_t at, std::string_view bytes) const {
    return file.WriteAt(at, bytes.data(), std::ssize(bytes));
  }
  Failure PutSamples(OpenFile& file, const FilePlan& plan);
  Failure PutEnds(OpenFile& file, const FilePlan& plan);
  Failure PutAll(OpenFile& file, const FilePlan& plan);

  Files& files_;
  const RecordingParts& parts_;
  std::unique_ptr<OpenFile> journal_;
};

Failure Mending::PutSamples(OpenFile& file, const FilePlan& plan) {
  for (const FilePlan::Piece& piece : plan.Pieces) {
    Failure failure;
    std::string samples(2 * static_cast<std::size_t>(piece.From.Samples), '\0');
    journal_->ReadAt(piece.From.At, samples.data(), std::ssize(samples), failure);
    if (!failure) failure = Put(file, piece.At, samples);
    if (failure) return failure;
  }
  return {};
}

// The header first: while a trailer is there in parts, the header tells where it begins.
Failure Mending::PutEnds(OpenFile& file, const FilePlan& plan) {
  if (Failure failure = Put(file, 0, MakeWavHeader(plan.Format, plan.End, plan.Frames()))) return failure;
  if (!plan.HasLog) return {};
  return Put(file, plan.End, MakeTrailer(plan.Log));
}

Failure Mending::PutAll(OpenFile& file, const FilePlan& plan) {
  Failure failure = file.Truncate(plan.Keep);
  if (!failure) failure = PutSamples(file, plan);
  if (!failure) failure = file.Truncate(plan.End);
  if (!failure) failure = PutEnds(file, plan);
  return failure;
}

Failure Mending::Mend(const FilePlan& plan) {
  Failure failure;
  const auto file = files_.Open(plan.Path, OpenMode::Update, failure);
  if (!file) return failure;
  // Without a journal the header comes first: what is cut off behind the samples could look like a log's
  // beginning.
  if (!plan.HasLog) failure = PutEnds(*file, plan);
  if (!failure && plan.Cuts) failure = PutAll(*file, plan);
  if (!failure) failure = file->Sync();
  return failure;
}

Failure Mending::Do(const MendPlan& plan) {
  Failure failure = plan.Fault;
  if (!failure && plan.HasJournal) journal_ = files_.Open(parts_.Journal(), OpenMode::Read, failure);
  for (const FilePlan& file : plan.Files) {
    if (!failure && file.Mends) failure = Mend(file);
    if (!failure && !file.FinishedAs.empty()) failure = files_.Rename(file.Path, file.FinishedAs);
  }
  journal_ = nullptr;
  if (!failure && plan.HasJournal) failure = files_.Remove(parts_.Journal());
  return failure;
}

}  // namespace

FoundRecording FindRecording(const Files& files, const RecordingParts& parts) {
  return Told(PlanMending(files, parts));
}

FoundRecording MendRecording(Files& files, const RecordingParts& parts) {
  const MendPlan plan = PlanMending(files, parts);
  FoundRecording mended = Told(plan);
  mended.Fault = Mending(files, parts).Do(plan);
  mended.NeedsMending = mended.Fault.has_value();
  return mended;
}

void Recovery::Find(Done done) {
  calls_.Make<FoundRecording>([&files = files_, parts = parts_] { return FindRecording(files, parts); },
                              std::move(done));
}

void Recovery::Mend(Done done) {
  calls_.Make<FoundRecording>([&files = files_, parts = parts_] { return MendRecording(files, parts); },
                              std::move(done));
}

}  // namespace quorl
