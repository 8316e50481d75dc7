#include "recorder/files/RecordingHeader.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "recorder/files/LittleEndian.h"
#include "recorder/files/SampleStream.h"

namespace quorl {
namespace {

constexpr std::size_t kPlainHeader = 44, kIFHeader = 80, kPiece = std::size_t{1} << 20;
constexpr std::size_t kListAt = 36, kDataAtInIF = 72;
constexpr std::array<std::int32_t, 5> kRates{48000, 24000, 12000, 6000, 3000};

std::string U16(std::int64_t value) {
  std::array<unsigned char, 2> bytes;
  PutU16(bytes.data(), static_cast<std::uint16_t>(value));
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string U32(std::int64_t value) {
  std::array<unsigned char, 4> bytes;
  PutU32(bytes.data(), static_cast<std::uint32_t>(value));
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

const unsigned char* At(std::string_view bytes, std::size_t place) {
  return reinterpret_cast<const unsigned char*>(bytes.data()) + place;
}

bool HasTag(std::string_view bytes, std::size_t place, std::string_view tag) {
  return bytes.substr(place, tag.size()) == tag;
}

std::string ListChunk(const IFOrigin& origin) {
  return "LIST" + U32(28) + "qIF " + "mod " + U32(4) + U32(origin.Model) + "side" + U32(4) +
         U32(origin.LowSideLO ? 1 : 0);
}

std::optional<IFOrigin> ParseList(std::string_view header) {
  if (header.size() < kIFHeader || !HasTag(header, 0, "RIFF") || !HasTag(header, 8, "WAVE") ||
      !HasTag(header, 12, "fmt ") || !HasTag(header, kListAt, "LIST") ||
      !HasTag(header, kListAt + 8, "qIF ") || !HasTag(header, kListAt + 12, "mod ") ||
      !HasTag(header, kListAt + 24, "side") || !HasTag(header, kDataAtInIF, "data")) {
    return {};
  }
  return IFOrigin{static_cast<std::int32_t>(GetU32(At(header, kListAt + 20))),
                  GetU32(At(header, kListAt + 32)) != 0};
}

// 16 bits wide, whatever the header says.
std::optional<RecordingFormat> FormatOf(const WavHeader& header, const std::optional<IFOrigin>& origin,
                                        HeaderSizes sizes) {
  if (header.FormatSize != 16 || header.FormatTag != 1) return {};
  const RecordingFormat format{static_cast<std::int32_t>(header.Rate), header.Channels, header.Bits, origin};
  const bool sized = header.Bits == 16 || sizes == HeaderSizes::Torn ||
                     header.RiffSize == std::uint64_t{36} + std::uint64_t{2} * header.DataSize;
  const bool fits = (origin || header.HasTags) && sized && IsRecordingFormat(format);
  return fits ? std::optional(format) : std::nullopt;
}

class Reading {
 public:
  explicit Reading(OpenFile& file) : file_(file) {}
  RecordingRead Read();

 private:
  Failure Fault(int code, const std::string& text) const { return Error{code, file_.Name() + ": " + text}; }
  std::string Bytes(std::int64_t at, std::size_t count);
  void FindLog(Recording& recording, std::uint32_t dataSize);
  bool TakeLog(Recording& recording, std::int64_t at);

  OpenFile& file_;
  Failure failure_;
};

std::string Reading::Bytes(std::int64_t at, std::size_t count) {
  std::string bytes(count, '\0');
  const std::int64_t got = file_.ReadAt(at, bytes.data(), static_cast<std::int64_t>(count), failure_);
  bytes.resize(static_cast<std::size_t>(std::max<std::int64_t>(got, 0)));
  return bytes;
}

bool Reading::TakeLog(Recording& recording, std::int64_t at) {
  if (at + static_cast<std::int64_t>(kLogTag.size()) > recording.FileBytes) return false;
  if (Bytes(at, kLogTag.size()) != kLogTag) return false;
  LogUnpacker unpacker;
  std::int64_t place = at + static_cast<std::int64_t>(kLogTag.size());
  const std::int64_t most = place + static_cast<std::int64_t>(LogUnpacker::kMostRecords) * kLogRecordBytes;
  for (const std::int64_t end = std::min(recording.FileBytes, most); place < end && !failure_;) {
    const std::string piece = Bytes(place, std::min(kPiece, static_cast<std::size_t>(end - place)));
    if (piece.empty()) break;
    unpacker.Take(piece);
    place += static_cast<std::int64_t>(piece.size());
  }
  recording.Log = std::move(unpacker.Records);
  recording.LogStart = at + 1;
  return true;
}

// Behind the samples as the data size tells them; in a file whose header announces 8 bits they end where the
// RIFF structure does.
void Reading::FindLog(Recording& recording, std::uint32_t dataSize) {
  const std::int64_t behind = recording.Format.DataAt() + dataSize;
  if (!TakeLog(recording, behind) && recording.Format.Bits == 8) {
    TakeLog(recording, recording.Format.DataAt() + std::int64_t{2} * dataSize);
  }
}

RecordingRead Reading::Read() {
  RecordingRead read;
  const std::optional<std::int64_t> size = file_.Size();
  if (!size) return read;
  const std::optional<ToldSamples> told = ReadRecordingHeader(file_, failure_);
  if (failure_) return {{}, failure_};
  if (!told) return read;
  if (!IsBoardKnown(told->Format)) {
    return {{},
            Fault(SampleFault::Format, "recorded from a receiver board of number " +
                                           std::to_string(told->Format.IF->Model) + "; one of 0 to " +
                                           std::to_string(IFOrigin::Models - 1) + " is needed")};
  }

  const std::int64_t held = *size - told->Format.DataAt();
  if (told->Bytes > held) {
    return {{},
            Fault(SampleFault::TruncatedData, "holds " + std::to_string(held) +
                                                  " bytes of samples, but its header tells of " +
                                                  std::to_string(told->Bytes) + "; fetch the whole file")};
  }
  Recording recording{told->Format, *size, told->Bytes - told->Bytes % told->Format.FrameBytes(), 0, {}};
  FindLog(recording, told->DataSize);
  if (failure_) return {{}, failure_};
  read.Own = std::move(recording);
  return read;
}

}  // namespace

bool IsRecordingFormat(const RecordingFormat& format) {
  if (format.IF) {
    return format.Rate == kRates[0] && format.Bits == 16 && (format.Channels == 1 || format.Channels == 2);
  }
  return format.Channels == 1 && (format.Bits == 16 || format.Bits == 8) &&
         std::find(kRates.begin(), kRates.end(), format.Rate) != kRates.end();
}

bool IsBoardKnown(const RecordingFormat& format) {
  return !format.IF || (format.IF->Model >= 0 && format.IF->Model < IFOrigin::Models);
}

std::string MakeWavHeader(const RecordingFormat& format, std::int64_t fileBytes, std::int64_t frames) {
  const std::int64_t frameBytes = std::int64_t{format.Channels} * format.Bits / 8;
  return "RIFF" + U32(fileBytes - 8) + "WAVEfmt " + U32(16) + U16(1) + U16(format.Channels) +
         U32(format.Rate) + U32(format.Rate * frameBytes) + U16(frameBytes) + U16(format.Bits) +
         (format.IF ? ListChunk(*format.IF) : "") + "data" + U32(frames * frameBytes);
}

std::vector<LogRecord> MoveLog(std::vector<LogRecord> log, const RecordingFormat& from,
                               const RecordingFormat& to) {
  const auto move = [&](std::int64_t position) {
    const std::int64_t frames = (position - from.DataAt()) / from.FrameBytes();
    return to.DataAt() + std::max<std::int64_t>(frames, 0) * to.FrameBytes();
  };
  for (LogRecord& record : log) {
    record.Start = move(record.Start);
    record.End = move(record.End);
  }
  if (!log.empty()) ++log.back().End;
  return log;
}

WavHeader ParseWavHeader(std::string_view bytes) {
  WavHeader header;
  header.RiffSize = GetU32(At(bytes, 4));
  header.FormatSize = GetU32(At(bytes, 16));
  header.FormatTag = GetU16(At(bytes, 20));
  header.Channels = GetU16(At(bytes, 22));
  header.Rate = GetU32(At(bytes, 24));
  header.BytesPerSecond = GetU32(At(bytes, 28));
  header.BlockAlign = GetU16(At(bytes, 32));
  header.Bits = GetU16(At(bytes, 34));
  header.DataSize = GetU32(At(bytes, 40));
  header.HasTags = HasTag(bytes, 0, "RIFF") && HasTag(bytes, 8, "WAVE") && HasTag(bytes, 12, "fmt ") &&
                   HasTag(bytes, 36, "data");
  return header;
}

std::optional<ToldSamples> ReadRecordingHeader(OpenFile& file, Failure& failure, HeaderSizes sizes) {
  std::string bytes(kIFHeader, '\0');
  bytes.resize(static_cast<std::size_t>(file.ReadAt(0, bytes.data(), std::ssize(bytes), failure)));
  if (failure || bytes.size() < kPlainHeader) return {};
  WavHeader header = ParseWavHeader(bytes);
  const std::optional<IFOrigin> origin = ParseList(bytes);
  if (origin) header.DataSize = GetU32(At(bytes, kDataAtInIF + 4));
  const std::optional<RecordingFormat> format = FormatOf(header, origin, sizes);
  if (!format) return {};
  return ToldSamples{*format, std::int64_t{header.DataSize} * (format->Bits == 8 ? 2 : 1), header.DataSize};
}

RecordingRead ReadRecording(OpenFile& file) {
  return Reading(file).Read();
}

}  // namespace quorl
