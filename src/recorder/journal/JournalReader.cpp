#include "recorder/journal/JournalReader.h"

#include <algorithm>
#include <string>

namespace quorl {
namespace {

constexpr std::int64_t kPiece = JournalLayout::kEventBytes * 32768;

std::string Bytes(OpenFile& file, std::int64_t at, std::int64_t count, Failure& failure) {
  std::string bytes(static_cast<std::size_t>(count), '\0');
  bytes.resize(static_cast<std::size_t>(file.ReadAt(at, bytes.data(), count, failure)));
  return bytes;
}

class Reading {
 public:
  Reading(OpenFile& file, Journal& journal, Failure& failure)
      : file_(file), journal_(journal), layout_{journal.Head.HalfBytes()}, failure_(failure) {}
  void ReadEvents();
  void ReadSlots();

 private:
  bool Take(const JournalEvent& event);
  bool TakePart(const JournalEvent& event);
  std::optional<HeldHalf> ReadSlot(int slot);

  OpenFile& file_;
  Journal& journal_;
  JournalLayout layout_;
  Failure& failure_;
};

bool Reading::TakePart(const JournalEvent& event) {
  JournalPart& last = journal_.Parts.back();
  if (event.Number != last.Number + 1 || event.Place < last.FirstHalf) return false;
  journal_.Parts.push_back(last.Next(event.Place));
  return true;
}

bool Reading::Take(const JournalEvent& event) {
  switch (event.What) {
    case JournalEvent::Kind::Log:
      journal_.Parts.back().Log.push_back({event.When, event.Number, event.Place, 0});
      return true;
    case JournalEvent::Kind::Written:
      journal_.PartOf(event.Place).NoteWritten(event.Place, event.Bytes);
      return true;
    case JournalEvent::Kind::Lost:
      journal_.PartOf(event.Place).NoteLost(event.Place, event.Bytes);
      return true;
    case JournalEvent::Kind::Part:
      return TakePart(event);
  }
  return false;
}

// Up to the first that is torn or makes no sense.
void Reading::ReadEvents() {
  const std::int64_t end = file_.Size().value_or(0);
  for (std::int64_t at = layout_.EventsAt(); at < end; at += kPiece) {
    const std::string piece = Bytes(file_, at, std::min(kPiece, end - at), failure_);
    for (std::size_t i = 0; i < piece.size(); i += JournalLayout::kEventBytes) {
      const auto event = ParseJournalEvent(std::string_view(piece).substr(i, JournalLayout::kEventBytes));
      if (!event || !Take(*event)) return;
    }
  }
}

// By the slot head that counts most of the latest half.
std::optional<HeldHalf> Reading::ReadSlot(int slot) {
  std::optional<SlotHead> best;
  for (int turn = 0; turn < 2; ++turn) {
    const auto head =
        ParseSlotHead(Bytes(file_, layout_.SlotHeadAt(slot, turn), JournalLayout::kSlotHeadBytes, failure_));
    if (!head || head->Samples > journal_.Head.HalfSamples) continue;
    const bool later =
        !best || head->Half > best->Half || (head->Half == best->Half && head->Samples > best->Samples);
    if (later) best = head;
  }
  if (!best) return {};
  const HeldHalf held{best->Half, best->Samples, layout_.SamplesAt(slot)};
  const std::string samples = Bytes(file_, held.At, std::int64_t{2} * held.Samples, failure_);
  if (std::ssize(samples) < std::int64_t{2} * held.Samples || Checksum(samples) != best->Checksum) return {};
  return held;
}

void Reading::ReadSlots() {
  for (int slot = 0; slot < JournalLayout::kSlots; ++slot) {
    const auto held = ReadSlot(slot);
    if (held && held->Half >= journal_.Parts.front().FirstHalf &&
        !journal_.PartOf(held->Half).IsLost(held->Half)) {
      journal_.Held.push_back(*held);
    }
  }
  std::sort(journal_.Held.begin(), journal_.Held.end(),
            [](const HeldHalf& a, const HeldHalf& b) { return a.Half < b.Half; });
}

}  // namespace

JournalPart JournalPart::Next(std::int64_t half) {
  JournalPart next(head_, Number + 1, half);
  const std::int64_t place = PlaceOf(half);
  const auto behind = std::find_if(Log.begin(), Log.end(),
                                   [place](const LogRecord& record) { return record.Start >= place; });
  next.Log.assign(behind, Log.end());
  Log.erase(behind, Log.end());
  if (!Log.empty() && (next.Log.empty() || next.Log.front().Start > place)) {
    next.Log.insert(next.Log.begin(), {Log.back().When, Log.back().Freq, place, 0});
  }
  for (LogRecord& record : next.Log) record.Start -= place - head_.Format.DataAt();
  return next;
}

// What starts within the half starts where it would have stood, what starts behind it moves down.
void JournalPart::NoteLost(std::int64_t half, std::int64_t bytes) {
  if (IsLost(half)) return;
  const std::int64_t place = PlaceOf(half);
  for (auto record = Log.rbegin(); record != Log.rend() && record->Start > place; ++record) {
    record->Start = std::max(place, record->Start - bytes);
  }
  const auto later =
      std::find_if(losses_.rbegin(), losses_.rend(), [half](const Loss& loss) { return loss.Half < half; });
  losses_.insert(later.base(), {half, bytes});
  lostBytes_ += bytes;
}

void JournalPart::NoteWritten(std::int64_t half, std::int64_t bytes) {
  if (half < lastWritten_) return;
  lastWritten_ = half;
  lastBytes_ = bytes;
}

bool JournalPart::IsLost(std::int64_t half) const {
  return std::binary_search(losses_.begin(), losses_.end(), Loss{half, 0},
                            [](const Loss& a, const Loss& b) { return a.Half < b.Half; });
}

std::int64_t JournalPart::PlaceOf(std::int64_t half) const {
  std::int64_t lost = lostBytes_;
  for (auto loss = losses_.rbegin(); loss != losses_.rend() && loss->Half >= half; ++loss) {
    lost -= loss->Bytes;
  }
  const std::int64_t begin = head_.Format.DataAt();
  return std::max(begin, begin + head_.HalfBytes() * (half - FirstHalf) - lost);
}

std::int64_t JournalPart::WrittenTo() const {
  return lastWritten_ < FirstHalf ? head_.Format.DataAt() : PlaceOf(lastWritten_) + lastBytes_;
}

JournalPart& Journal::PartOf(std::int64_t half) {
  const auto begun = std::find_if(Parts.rbegin(), Parts.rend(),
                                  [half](const JournalPart& part) { return part.FirstHalf <= half; });
  return begun == Parts.rend() ? Parts.front() : *begun;
}

std::optional<Journal> ReadJournal(OpenFile& file, Failure& failure) {
  const auto head = ParseJournalHead(Bytes(file, 0, JournalLayout::kHeadBytes, failure));
  if (failure || !head) return {};
  Journal journal{*head, {JournalPart(*head, head->Part, 0)}, {}};
  Reading reading(file, journal, failure);
  reading.ReadEvents();
  if (!failure) reading.ReadSlots();
  if (failure) return {};
  return journal;
}

}  // namespace quorl
