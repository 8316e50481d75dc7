#include "recorder/journal/JournalWriter.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "recorder/files/LittleEndian.h"

namespace quorl {

class JournalWriter::Disk {
 public:
  Disk(Files& files, std::string path, const JournalHead& head)
      : files_(files), path_(std::move(path)), head_(head), layout_{head.HalfBytes()} {}

  // A fault takes the journal with it: one that ends before its recording would mislead.
  Failure Do(const std::function<Failure(Disk&)>& work);

  Failure Begin();
  Failure PutSamples(std::int64_t half, std::int32_t offset, std::vector<std::int16_t> samples);
  Failure PutEvent(const JournalEvent& event);
  Failure Free(std::int64_t half);
  Failure Remove();

 private:
  struct Slot {
    std::int64_t Half = -1;  // below 0: free
    std::int32_t Samples = 0;
    std::uint32_t Checksum = 0;
    int Turn = 0;
  };
  Slot* SlotOf(std::int64_t half);

  Files& files_;
  std::string path_;
  JournalHead head_;
  JournalLayout layout_;
  std::unique_ptr<OpenFile> file_;  // null before the journal and behind its end
  std::array<Slot, JournalLayout::kSlots> slots_;
  std::int64_t end_ = 0;
};

Failure JournalWriter::Disk::Do(const std::function<Failure(Disk&)>& work) {
  Failure failure = work(*this);
  if (failure) Remove();
  return failure;
}

Failure JournalWriter::Disk::Begin() {
  if (Failure failure = Remove()) return failure;
  Failure failure;
  file_ = files_.Open(path_, OpenMode::Create, failure);
  if (!file_) return failure;
  end_ = layout_.EventsAt();
  if (failure = file_->Truncate(end_); failure) return failure;
  const JournalHeadBytes head = Pack(head_);
  return file_->WriteAt(0, head.data(), std::ssize(head));
}

// The slot that holds the half, or a free one for it; null where all are taken.
JournalWriter::Disk::Slot* JournalWriter::Disk::SlotOf(std::int64_t half) {
  const auto holds = [](std::int64_t number) {
    return [number](const Slot& slot) { return slot.Half == number; };
  };
  auto found = std::find_if(slots_.begin(), slots_.end(), holds(half));
  if (found != slots_.end()) return &*found;
  found = std::find_if(slots_.begin(), slots_.end(), holds(-1));
  if (found == slots_.end()) return nullptr;
  *found = {half, 0, 0, found->Turn};
  return &*found;
}

// Samples that don't join those noted before can't be counted.
Failure JournalWriter::Disk::PutSamples(std::int64_t half, std::int32_t offset,
                                        std::vector<std::int16_t> samples) {
  if (!file_) return {};
  Slot* const slot = SlotOf(half);
  const auto count = static_cast<std::int32_t>(samples.size());
  if (slot == nullptr || offset != slot->Samples || count > head_.HalfSamples - offset) return {};
  SwapFileOrder(samples.data(), samples.size());
  const auto index = static_cast<int>(slot - slots_.data());
  const std::string_view bytes(reinterpret_cast<const char*>(samples.data()), 2 * samples.size());
  if (Failure failure = file_->WriteAt(layout_.SamplesAt(index) + std::int64_t{2} * offset, bytes.data(),
                                       std::ssize(bytes))) {
    return failure;
  }
  slot->Samples += count;
  slot->Checksum = Checksum(bytes, slot->Checksum);
  slot->Turn = 1 - slot->Turn;
  const SlotHeadBytes head = Pack(SlotHead{slot->Half, slot->Samples, slot->Checksum});
  return file_->WriteAt(layout_.SlotHeadAt(index, slot->Turn), head.data(), std::ssize(head));
}

Failure JournalWriter::Disk::PutEvent(const JournalEvent& event) {
  if (!file_) return {};
  const JournalEventBytes bytes = Pack(event);
  Failure failure = file_->WriteAt(end_, bytes.data(), std::ssize(bytes));
  end_ += std::ssize(bytes);
  return failure;
}

Failure JournalWriter::Disk::Free(std::int64_t half) {
  for (Slot& slot : slots_) {
    if (slot.Half == half) slot.Half = -1;
  }
  return {};
}

Failure JournalWriter::Disk::Remove() {
  file_ = nullptr;
  return files_.Exists(path_) ? files_.Remove(path_) : Failure();
}

JournalWriter::JournalWriter(Files& files, FileWorker& worker, std::string path)
    : files_(files), path_(std::move(path)), calls_(worker) {}

void JournalWriter::Post(std::function<Failure(Disk&)> work, std::int64_t samples) {
  if (!disk_) return;
  *waiting_ += samples;
  calls_.Make<Failure>([disk = disk_, work = std::move(work)] { return disk->Do(work); },
                       [this, waiting = waiting_, samples](const Failure& failure) {
                         *waiting -= samples;
                         if (failure && OnFault) OnFault(*failure);
                       });
}

void JournalWriter::Begin(const JournalHead& head) {
  head_ = head;
  disk_ = std::make_shared<Disk>(files_, path_, head);
  waiting_ = std::make_shared<std::int64_t>(0);
  Post([](Disk& disk) { return disk.Begin(); });
}

void JournalWriter::NoteEvent(const JournalEvent& event) {
  Post([event](Disk& disk) { return disk.PutEvent(event); });
}

void JournalWriter::NoteLog(const LogRecord& record) {
  NoteEvent({JournalEvent::Kind::Log, record.Freq, record.Start, 0, record.When});
}

void JournalWriter::NoteSamples(std::int64_t half, std::int32_t offset, const std::int16_t* samples,
                                std::int32_t count) {
  if (!disk_ || *waiting_ + count > std::int64_t{JournalLayout::kSlots} * head_.HalfSamples) return;
  auto put = [half, offset, block = std::vector<std::int16_t>(samples, samples + count)](Disk& disk) mutable {
    return disk.PutSamples(half, offset, std::move(block));
  };
  Post(std::move(put), count);
}

void JournalWriter::NoteWritten(std::int64_t half, std::int32_t samples) {
  const std::int64_t bytes = samples < 0 ? head_.HalfBytes() : std::int64_t{2} * samples;
  NoteEvent({JournalEvent::Kind::Written, 0, half, bytes});
  Post([half](Disk& disk) { return disk.Free(half); });
}

void JournalWriter::NoteLost(std::int64_t half, std::int64_t bytes) {
  NoteEvent({JournalEvent::Kind::Lost, 0, half, bytes});
  Post([half](Disk& disk) { return disk.Free(half); });
}

void JournalWriter::NotePart(std::int32_t part, std::int64_t half) {
  NoteEvent({JournalEvent::Kind::Part, part, half});
}

void JournalWriter::Remove() {
  Post([](Disk& disk) { return disk.Remove(); });
  disk_ = nullptr;
}

}  // namespace quorl
