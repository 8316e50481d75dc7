#include "recorder/files/RiffReader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "recorder/files/LittleEndian.h"
#include "recorder/files/SampleStream.h"

namespace quorl {
namespace {

constexpr std::uint16_t FormatExtensible = 0xFFFE;
constexpr int PlainFormatBytes = 16;
constexpr int ExtensibleFormatBytes = 40;
constexpr int SubFormatOffset = 24;
// The globally unique number that says PCM in the extensible format.
constexpr std::array<unsigned char, 16> SubFormatPcm = {0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x10, 0x00,
                                                        0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};

// The four letters of a chunk as they may be shown to people.
std::string ChunkName(const unsigned char* bytes) {
  std::string name;
  for (int i = 0; i < 4; ++i) name += bytes[i] >= ' ' && bytes[i] <= '~' ? static_cast<char>(bytes[i]) : '?';
  return '"' + name + '"';
}

bool HasTag(const unsigned char* bytes, std::string_view tag) {
  return std::memcmp(bytes, tag.data(), tag.size()) == 0;
}

class ChunkWalk {
 public:
  explicit ChunkWalk(OpenFile& file) : file_(file) {}

  Failure ToSamples();
  WavLayout Layout;

 private:
  Failure TakeRiff();
  Failure TakeFormat(std::uint32_t size);
  Failure TakeData(std::uint32_t size);
  Failure Fill(unsigned char* bytes, int count, const std::string& where);
  Failure Skip(std::int64_t bytes, const std::string& where);
  Failure SkipPipe(std::int64_t bytes, const std::string& where);
  Failure Truncated(const std::string& where) const {
    return Fault(SampleFault::TruncatedHeader,
                 "ends " + where + "; a complete WAV header and data are needed");
  }
  Failure Fault(int code, const std::string& text) const { return Error{code, file_.Name() + ": " + text}; }

  OpenFile& file_;
  std::int64_t at_ = 0;
  bool formatSeen_ = false;
};

Failure ChunkWalk::TakeRiff() {
  std::array<unsigned char, 12> riff;
  Failure failure;
  const std::int64_t got = file_.ReadAt(0, riff.data(), 12, failure);
  if (failure) return failure;
  if (got < 4 || !HasTag(riff.data(), "RIFF") || (got == 12 && !HasTag(&riff[8], "WAVE"))) {
    return Fault(SampleFault::NotWave, "not a RIFF/WAVE file; a WAV file with 16-bit PCM is needed");
  }
  at_ = got;
  return got < 12 ? Truncated("within the RIFF header") : std::nullopt;
}

Failure ChunkWalk::ToSamples() {
  if (Failure failure = TakeRiff()) return failure;
  for (;;) {
    std::array<unsigned char, 8> chunk;
    if (Failure failure = Fill(chunk.data(), 8, "before a \"data\" chunk")) return failure;
    const std::uint32_t size = GetU32(&chunk[4]);
    if (HasTag(chunk.data(), "data")) return TakeData(size);
    Failure failure = HasTag(chunk.data(), "fmt ") ? TakeFormat(size)
                                                   : Skip(std::int64_t{size} + size % 2,
                                                          "within the chunk " + ChunkName(chunk.data()));
    if (failure) return failure;
  }
}

Failure ChunkWalk::TakeFormat(std::uint32_t size) {
  std::array<unsigned char, ExtensibleFormatBytes> format{};
  if (size < PlainFormatBytes) {
    return Fault(SampleFault::TruncatedHeader,
                 "the format chunk has " + std::to_string(size) + " bytes; at least 16 are needed");
  }
  const int known = static_cast<int>(std::min<std::uint32_t>(size, ExtensibleFormatBytes));
  if (Failure failure = Fill(format.data(), known, "within the format chunk")) return failure;
  std::uint16_t tag = GetU16(&format[0]);
  if (tag == FormatExtensible && known == ExtensibleFormatBytes) {
    const bool pcm = std::equal(SubFormatPcm.begin(), SubFormatPcm.end(), &format[SubFormatOffset]);
    tag = pcm ? WavFormat::Pcm : tag;
  }
  Layout.Format = {tag, GetU16(&format[2]), GetU32(&format[4]), GetU16(&format[12]), GetU16(&format[14])};
  formatSeen_ = true;
  return Skip(std::int64_t{size} + size % 2 - known, "within the format chunk");
}

Failure ChunkWalk::TakeData(std::uint32_t size) {
  if (!formatSeen_) {
    return Fault(SampleFault::TruncatedHeader, "samples stand before any format chunk; one is needed first");
  }
  Layout.DataAt = at_;
  Layout.DataBytes = size;
  if (const auto bytes = file_.Size()) Layout.BytesThere = std::clamp<std::int64_t>(*bytes - at_, 0, size);
  return {};
}

Failure ChunkWalk::Fill(unsigned char* bytes, int count, const std::string& where) {
  Failure failure;
  const std::int64_t got = file_.ReadAt(at_, bytes, count, failure);
  at_ += got;
  if (!failure && got < count) failure = Truncated(where);
  return failure;
}

Failure ChunkWalk::Skip(std::int64_t bytes, const std::string& where) {
  const std::optional<std::int64_t> size = file_.Size();
  if (!size) return SkipPipe(bytes, where);
  at_ += bytes;
  return at_ > *size ? Truncated(where) : std::nullopt;
}

Failure ChunkWalk::SkipPipe(std::int64_t bytes, const std::string& where) {
  std::array<unsigned char, 4096> passed;
  while (bytes > 0) {
    const int part =
        static_cast<int>(std::min<std::int64_t>(bytes, static_cast<std::int64_t>(passed.size())));
    if (Failure failure = Fill(passed.data(), part, where)) return failure;
    bytes -= part;
  }
  return {};
}

}  // namespace

std::optional<WavLayout> ReadWavLayout(OpenFile& file, Failure& failure) {
  ChunkWalk walk(file);
  failure = walk.ToSamples();
  if (failure) return {};
  return walk.Layout;
}

Failure ShortOfSamples(const OpenFile& file, const WavLayout& layout) {
  if (!layout.BytesThere || *layout.BytesThere >= layout.DataBytes) return {};
  return Error{SampleFault::TruncatedData,
               file.Name() + ": the header promises " + std::to_string(layout.DataBytes) +
                   " bytes of samples, the file ends after " + std::to_string(*layout.BytesThere) +
                   "; a complete file is needed"};
}

}  // namespace quorl
