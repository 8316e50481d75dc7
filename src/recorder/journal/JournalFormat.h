// The layout of the journal beside a recording: what the recording's own file doesn't hold yet.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "recorder/files/RecordingHeader.h"

namespace quorl {

// A recording is filled and written in halves of its queue. All of one recording are of one length, and are
// counted from 0 through all of its parts, lost ones too.
struct JournalHead {
  // More don't stand in a half, whatever the channels.
  static constexpr std::int32_t kMostSamples = 1 << 22;

  RecordingFormat Format;
  std::int32_t HalfSamples = 0;  // as they go to the disk, of all channels; 1 to kMostSamples
  std::int32_t Part = 1;         // of the file that is written at first

  std::int64_t HalfBytes() const { return std::int64_t{2} * HalfSamples; }
  bool operator==(const JournalHead&) const = default;
};

// The journal: the head; the slots, each two slot heads and room for a half; the events to the end.
//
// A slot's two heads are written by turns, so that one of them is whole at any moment; the one that counts
// more of the latest half holds. Samples are written before a head counts them.
struct JournalLayout {
  // One half is filled, one written, and four at most wait for the disk: the seventh finds a slot free again.
  static constexpr int kSlots = 6;
  static constexpr std::int64_t kHeadBytes = 64, kSlotHeadBytes = 24, kEventBytes = 28;

  std::int64_t HalfBytes = 0;

  // `turn` 0 or 1.
  std::int64_t SlotHeadAt(int slot, int turn) const { return SlotAt(slot) + turn * kSlotHeadBytes; }
  std::int64_t SamplesAt(int slot) const { return SlotAt(slot) + 2 * kSlotHeadBytes; }
  std::int64_t EventsAt() const { return SlotAt(kSlots); }

 private:
  std::int64_t SlotAt(int slot) const { return kHeadBytes + slot * (2 * kSlotHeadBytes + HalfBytes); }
};

struct SlotHead {
  std::int64_t Half = 0;
  std::int32_t Samples = 0;    // of the slot that are valid
  std::uint32_t Checksum = 0;  // of these
};

struct JournalEvent {
  enum class Kind : std::uint32_t {
    Log = 1,  // a log record
    Written,  // a half stands in the file
    Lost,     // a half never will
    Part,     // a half is the first of a new part
  };

  Kind What = Kind::Log;
  std::int32_t Number = 0;  // Log: dHz; Part: its number
  std::int64_t Place = 0;   // Log: where it starts in the file; else the number of the half
  std::int64_t Bytes = 0;   // Written, Lost
  double When = 0.0;        // Log: days
};

// CRC-32. `before`: that of the bytes in front of these.
std::uint32_t Checksum(std::string_view bytes, std::uint32_t before = 0);

using JournalHeadBytes = std::array<char, JournalLayout::kHeadBytes>;
using SlotHeadBytes = std::array<char, JournalLayout::kSlotHeadBytes>;
using JournalEventBytes = std::array<char, JournalLayout::kEventBytes>;
JournalHeadBytes Pack(const JournalHead& head);
SlotHeadBytes Pack(const SlotHead& head);
JournalEventBytes Pack(const JournalEvent& event);

// Empty where the bytes are torn, of another kind, or tell what can't be. Bytes as many as are packed.
std::optional<JournalHead> ParseJournalHead(std::string_view bytes);
std::optional<SlotHead> ParseSlotHead(std::string_view bytes);
std::optional<JournalEvent> ParseJournalEvent(std::string_view bytes);

}  // namespace quorl
