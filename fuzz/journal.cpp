// Any bytes as a journal beside any temporary file: mended, or left alone, to files that read as recordings;
// and once more to the same ones where the mending was killed.
//
// The input: a byte of flags, the step of the kill, the length of the temporary file in two bytes, that file,
// the journal.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "Demand.h"
#include "platform/virtual/VirtualFiles.h"
#include "recorder/files/LittleEndian.h"
#include "recorder/journal/JournalFormat.h"
#include "recorder/journal/Recovery.h"

namespace {

using quorl::fuzz::Demand;
using Layout = quorl::JournalLayout;

constexpr std::uint8_t kSealed = 1, kFinishedPart = 2;
constexpr char kFolder[] = "music";

struct Case {
  std::string Journal, Temporary;
  bool HasFinished = false;
  int KillAfter = 0;
};

// Puts right the checksum that ends `length` bytes.
void Seal(std::string& journal, std::int64_t at, std::int64_t length) {
  if (at + length > std::ssize(journal)) return;
  const auto from = static_cast<std::size_t>(at), covered = static_cast<std::size_t>(length) - 4;
  const std::uint32_t sum = quorl::Checksum(std::string_view(journal).substr(from, covered));
  quorl::PutU32(reinterpret_cast<unsigned char*>(journal.data()) + from + covered, sum);
}

void SealSlot(std::string& journal, std::int64_t headAt, std::int64_t samplesAt) {
  if (samplesAt > std::ssize(journal)) return;
  auto* const head = reinterpret_cast<unsigned char*>(journal.data()) + headAt;
  const std::size_t bytes = std::size_t{2} * quorl::GetU32(head + 8);
  const auto from = static_cast<std::size_t>(samplesAt);
  quorl::PutU32(head + 12, quorl::Checksum(std::string_view(journal).substr(from, bytes)));
  Seal(journal, headAt, Layout::kSlotHeadBytes);
}

// Checksums can't be guessed: most cases get theirs.
void SealAll(std::string& journal) {
  Seal(journal, 0, Layout::kHeadBytes);
  const auto head = quorl::ParseJournalHead(
      std::string_view(journal).substr(0, static_cast<std::size_t>(Layout::kHeadBytes)));
  if (!head) return;
  const Layout layout{head->HalfBytes()};
  for (int slot = 0; slot < Layout::kSlots; ++slot) {
    for (int turn = 0; turn < 2; ++turn) {
      SealSlot(journal, layout.SlotHeadAt(slot, turn), layout.SamplesAt(slot));
    }
  }
  for (std::int64_t at = layout.EventsAt(); at < std::ssize(journal); at += Layout::kEventBytes) {
    Seal(journal, at, Layout::kEventBytes);
  }
}

Case CaseOf(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data) + 4, size - 4);
  Case made;
  const std::size_t length = std::min<std::size_t>(quorl::GetU16(data + 2), bytes.size());
  made.Temporary = bytes.substr(0, length);
  made.Journal = bytes.substr(length);
  if ((data[0] & kSealed) != 0) SealAll(made.Journal);
  made.HasFinished = (data[0] & kFinishedPart) != 0;
  made.KillAfter = data[1] % 32;
  return made;
}

std::map<std::string, std::string> All(const quorl::VirtualFiles& files) {
  std::map<std::string, std::string> contents;
  for (const std::string& name : files.List(kFolder, "")) {
    quorl::Failure failure;
    contents[name] = files.Read(std::string(kFolder) + "/" + name, failure).value_or("");
  }
  return contents;
}

void Put(quorl::VirtualFiles& files, const quorl::RecordingParts& parts, const Case& made) {
  files.Put(parts.Current(), made.Temporary);
  files.Put(parts.Journal(), made.Journal);
  const std::string samples(16, 's');
  if (made.HasFinished) files.Put(parts.Finished(1), quorl::MakeWavHeader({}, 60, 8) + samples);
}

void DemandWhole(const quorl::VirtualFiles& files, const quorl::FoundRecording& found) {
  std::int64_t frames = 0;
  for (const std::string& path : found.Files) {
    quorl::Failure failure;
    const auto file = files.Open(path, quorl::OpenMode::Read, failure);
    Demand(file != nullptr);
    const quorl::RecordingRead read = quorl::ReadRecording(*file);
    Demand(read.Own && !read.Fault);
    frames += read.Own->Frames();
  }
  Demand(frames == found.Frames);
}

}  // namespace

// A minute of silence in a file is large, and gone at once.
extern "C" const char* __asan_default_options() {
  return "quarantine_size_mb=32";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 4) return 0;
  const Case made = CaseOf(data, size);
  const quorl::RecordingParts parts(kFolder);
  quorl::VirtualFiles files, killed;
  Put(files, parts, made);
  const auto before = All(files);
  const quorl::FoundRecording found = quorl::FindRecording(files, parts);
  Demand(All(files) == before && !found.Fault);
  const quorl::FoundRecording mended = quorl::MendRecording(files, parts);
  Demand(!mended.Fault && !files.Exists(parts.Journal()));
  Demand(mended.Files == found.Files && mended.Frames == found.Frames);
  DemandWhole(files, mended);
  const quorl::FoundRecording again = quorl::FindRecording(files, parts);
  Demand(!again.NeedsMending && again.Frames == mended.Frames);

  Put(killed, parts, made);
  killed.KillAfter(made.KillAfter);
  try {
    quorl::MendRecording(killed, parts);
  } catch (const quorl::Killed&) {
  }
  killed.Revive();
  quorl::MendRecording(killed, parts);
  Demand(All(killed) == All(files));
  return 0;
}
