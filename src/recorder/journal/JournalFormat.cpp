#include "recorder/journal/JournalFormat.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "recorder/files/LittleEndian.h"

namespace quorl {
namespace {

constexpr std::string_view kMagic = "QUORLJNL";
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kChecksumBytes = 4;
// Beyond any recording; sums of such positions stay within 64 bits.
constexpr std::int64_t kMostHalves = std::int64_t{1} << 36, kMostBytes = std::int64_t{1} << 40;

constexpr std::array<std::uint32_t, 256> ChecksumTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < table.size(); ++i) {
    std::uint32_t sum = i;
    for (int bit = 0; bit < 8; ++bit) sum = sum >> 1 ^ (sum & 1 ? 0xEDB88320 : 0);
    table[i] = sum;
  }
  return table;
}

constexpr std::array<std::uint32_t, 256> kTable = ChecksumTable();

template <class Bytes>
unsigned char* Field(Bytes& bytes, std::size_t at) {
  return reinterpret_cast<unsigned char*>(bytes.data()) + at;
}

const unsigned char* Field(std::string_view bytes, std::size_t at) {
  return reinterpret_cast<const unsigned char*>(bytes.data()) + at;
}

// The last field is the checksum of all before it.
template <class Bytes>
void Seal(Bytes& bytes) {
  const std::size_t covered = bytes.size() - kChecksumBytes;
  PutU32(Field(bytes, covered), Checksum({bytes.data(), covered}));
}

bool IsSealed(std::string_view bytes, std::int64_t length) {
  if (static_cast<std::int64_t>(bytes.size()) != length) return false;
  const std::size_t covered = bytes.size() - kChecksumBytes;
  return GetU32(Field(bytes, covered)) == Checksum(bytes.substr(0, covered));
}

std::int32_t Number(std::string_view bytes, std::size_t at) {
  return static_cast<std::int32_t>(GetU32(Field(bytes, at)));
}

std::int64_t LongNumber(std::string_view bytes, std::size_t at) {
  return static_cast<std::int64_t>(GetU64(Field(bytes, at)));
}

bool IsWithin(std::int64_t value, std::int64_t least, std::int64_t most) {
  return value >= least && value <= most;
}

bool IsSound(const JournalHead& head) {
  return IsRecordingFormat(head.Format) && IsBoardKnown(head.Format) &&
         IsWithin(head.HalfSamples, 1, JournalHead::kMostSamples) &&
         head.HalfSamples % head.Format.Channels == 0 && IsWithin(head.Part, 1, 1 << 20);
}

bool IsSound(const JournalEvent& event) {
  switch (event.What) {
    case JournalEvent::Kind::Log:
      return IsWithin(event.Place, 0, kMostBytes) && std::isfinite(event.When);
    case JournalEvent::Kind::Written:
    case JournalEvent::Kind::Lost:
    case JournalEvent::Kind::Part:
      return IsWithin(event.Place, 0, kMostHalves) && IsWithin(event.Bytes, 0, kMostBytes);
  }
  return false;
}

}  // namespace

std::uint32_t Checksum(std::string_view bytes, std::uint32_t before) {
  std::uint32_t sum = ~before;
  for (const char byte : bytes) sum = sum >> 8 ^ kTable[(sum ^ static_cast<unsigned char>(byte)) & 0xFF];
  return ~sum;
}

JournalHeadBytes Pack(const JournalHead& head) {
  JournalHeadBytes bytes{};
  std::copy(kMagic.begin(), kMagic.end(), bytes.begin());
  const RecordingFormat& format = head.Format;
  const IFOrigin origin = format.IF.value_or(IFOrigin{});
  const std::array<std::int32_t, 9> numbers{
      kVersion,          format.Rate,  format.Channels,          format.Bits,
      format.IF ? 1 : 0, origin.Model, origin.LowSideLO ? 1 : 0, head.HalfSamples,
      head.Part};
  std::size_t at = kMagic.size();
  for (const std::int32_t number : numbers) {
    PutU32(Field(bytes, at), static_cast<std::uint32_t>(number));
    at += 4;
  }
  Seal(bytes);
  return bytes;
}

SlotHeadBytes Pack(const SlotHead& head) {
  SlotHeadBytes bytes{};
  PutU64(Field(bytes, 0), static_cast<std::uint64_t>(head.Half));
  PutU32(Field(bytes, 8), static_cast<std::uint32_t>(head.Samples));
  PutU32(Field(bytes, 12), head.Checksum);
  Seal(bytes);
  return bytes;
}

JournalEventBytes Pack(const JournalEvent& event) {
  JournalEventBytes bytes{};
  const bool log = event.What == JournalEvent::Kind::Log;
  PutU32(Field(bytes, 0), static_cast<std::uint32_t>(event.What));
  PutU32(Field(bytes, 4), static_cast<std::uint32_t>(event.Number));
  PutU64(Field(bytes, 8), static_cast<std::uint64_t>(event.Place));
  PutU64(Field(bytes, 16),
         log ? std::bit_cast<std::uint64_t>(event.When) : static_cast<std::uint64_t>(event.Bytes));
  Seal(bytes);
  return bytes;
}

std::optional<JournalHead> ParseJournalHead(std::string_view bytes) {
  if (!IsSealed(bytes, JournalLayout::kHeadBytes) || !bytes.starts_with(kMagic)) return {};
  if (GetU32(Field(bytes, 8)) != kVersion) return {};
  JournalHead head;
  head.Format = {Number(bytes, 12), Number(bytes, 16), Number(bytes, 20), {}};
  if (Number(bytes, 24) != 0) head.Format.IF = IFOrigin{Number(bytes, 28), Number(bytes, 32) != 0};
  head.HalfSamples = Number(bytes, 36);
  head.Part = Number(bytes, 40);
  return IsSound(head) ? std::optional(head) : std::nullopt;
}

std::optional<SlotHead> ParseSlotHead(std::string_view bytes) {
  if (!IsSealed(bytes, JournalLayout::kSlotHeadBytes)) return {};
  const SlotHead head{LongNumber(bytes, 0), Number(bytes, 8), GetU32(Field(bytes, 12))};
  if (!IsWithin(head.Half, 0, kMostHalves) || head.Samples < 1) return {};
  return head;
}

std::optional<JournalEvent> ParseJournalEvent(std::string_view bytes) {
  if (!IsSealed(bytes, JournalLayout::kEventBytes)) return {};
  JournalEvent event;
  event.What = static_cast<JournalEvent::Kind>(GetU32(Field(bytes, 0)));
  event.Number = Number(bytes, 4);
  event.Place = LongNumber(bytes, 8);
  const bool log = event.What == JournalEvent::Kind::Log;
  if (log) event.When = std::bit_cast<double>(GetU64(Field(bytes, 16)));
  if (!log) event.Bytes = LongNumber(bytes, 16);
  return IsSound(event) ? std::optional(event) : std::nullopt;
}

}  // namespace quorl
