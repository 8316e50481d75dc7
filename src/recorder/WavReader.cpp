#include "recorder/WavReader.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string_view>

#include "recorder/LittleEndian.h"
#include "recorder/StreamIo.h"

namespace quorl {
namespace {

constexpr std::uint16_t FormatPcm = 1;
constexpr std::uint16_t FormatExtensible = 0xFFFE;
constexpr int PlainFormatBytes = 16;
constexpr int ExtensibleFormatBytes = 40;
constexpr int SubFormatOffset = 24;
// The globally unique number that says PCM in the extensible format.
constexpr std::array<unsigned char, 16> SubFormatPcm = {0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x10, 0x00,
                                                        0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};

// Walks the chunks of one file up to the first sample.
class HeaderParser {
 public:
  HeaderParser(std::istream& in, const std::string& name, const WavNeeds& needs)
      : in_(in), name_(name), needs_(needs) {}

  Failure Parse();
  int Channels() const { return channels_; }
  std::int64_t DataBytes() const { return dataBytes_; }

 private:
  Failure ParseFormat(std::uint32_t size);
  Failure CheckFormat(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate, std::uint16_t align,
                      std::uint16_t bits) const;
  Failure CheckData(std::uint32_t size);
  Failure Fill(unsigned char* bytes, int count, const std::string& where);
  Failure Skip(std::int64_t bytes, const std::string& where);
  Failure Truncated(const std::string& where) const {
    return Fault(SampleFault::TruncatedHeader,
                 "ends " + where + "; a complete WAV header and data are needed");
  }
  Failure Fault(int code, const std::string& text) const { return Error{code, name_ + ": " + text}; }

  std::istream& in_;
  const std::string& name_;
  const WavNeeds& needs_;
  int channels_ = 0;  // 0 until the format chunk has been seen
  std::int64_t dataBytes_ = 0;
};

// The four letters of a chunk as they may be shown to people.
std::string ChunkName(const unsigned char* bytes) {
  std::string name;
  for (int i = 0; i < 4; ++i) name += bytes[i] >= ' ' && bytes[i] <= '~' ? static_cast<char>(bytes[i]) : '?';
  return '"' + name + '"';
}

bool HasTag(const unsigned char* bytes, std::string_view tag) {
  return std::memcmp(bytes, tag.data(), tag.size()) == 0;
}

// Bytes from the read position to the end; empty where the stream can't tell.
std::optional<std::int64_t> BytesLeft(std::istream& in) {
  const auto here = in.tellg();
  if (here < 0 || !in.seekg(0, std::ios::end)) {
    in.clear();
    return std::nullopt;
  }
  const auto end = in.tellg();
  in.seekg(here);
  return static_cast<std::int64_t>(end - here);
}

Failure HeaderParser::Parse() {
  std::array<unsigned char, 12> riff;
  Failure failure;
  const std::int64_t got = ReadBytes(in_, riff.data(), 12, name_, failure);
  if (failure) return failure;
  if (got < 4 || !HasTag(riff.data(), "RIFF") || (got == 12 && !HasTag(&riff[8], "WAVE"))) {
    return Fault(SampleFault::NotWave, "not a RIFF/WAVE file; a WAV file with 16-bit PCM is needed");
  }
  if (got < 12) return Truncated("within the RIFF header");

  std::array<unsigned char, 8> chunk;
  for (;;) {
    if ((failure = Fill(chunk.data(), 8, "before a \"data\" chunk"))) return failure;
    const std::uint32_t size = GetU32(&chunk[4]);
    if (HasTag(chunk.data(), "data")) return CheckData(size);
    failure = HasTag(chunk.data(), "fmt ")
                  ? ParseFormat(size)
                  : Skip(std::int64_t{size} + size % 2, "within the chunk " + ChunkName(chunk.data()));
    if (failure) return failure;
  }
}

Failure HeaderParser::ParseFormat(std::uint32_t size) {
  std::array<unsigned char, ExtensibleFormatBytes> format{};
  if (size < PlainFormatBytes) {
    return Fault(SampleFault::TruncatedHeader,
                 "the format chunk has " + std::to_string(size) + " bytes; at least 16 are needed");
  }
  const int known = static_cast<int>(std::min<std::uint32_t>(size, ExtensibleFormatBytes));
  Failure failure = Fill(format.data(), known, "within the format chunk");
  if (failure) return failure;

  std::uint16_t tag = GetU16(&format[0]);
  if (tag == FormatExtensible && known == ExtensibleFormatBytes) {
    const bool pcm = std::equal(SubFormatPcm.begin(), SubFormatPcm.end(), &format[SubFormatOffset]);
    tag = pcm ? FormatPcm : tag;
  }
  const std::uint16_t channels = GetU16(&format[2]);
  failure = CheckFormat(tag, channels, GetU32(&format[4]), GetU16(&format[12]), GetU16(&format[14]));
  if (failure) return failure;
  channels_ = channels;
  return Skip(std::int64_t{size} + size % 2 - known, "within the format chunk");
}

Failure HeaderParser::CheckFormat(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate,
                                  std::uint16_t align, std::uint16_t bits) const {
  if (tag != FormatPcm) {
    return Fault(SampleFault::Format,
                 "samples are coded in format " + std::to_string(tag) + "; 16-bit PCM is needed");
  }
  if (bits != 16) {
    return Fault(SampleFault::Format, "samples have " + std::to_string(bits) + " bits; 16 are needed");
  }
  if (rate != static_cast<std::uint32_t>(needs_.SampleRate)) {
    return Fault(SampleFault::Format, "the sample rate is " + std::to_string(rate) + " Hz; " +
                                          std::to_string(needs_.SampleRate) + " Hz is needed");
  }
  if (channels < 1 || channels > needs_.MaxChannels) {
    return Fault(
        SampleFault::Format,
        "has " + std::to_string(channels) + " channels; " +
            (needs_.MaxChannels > 1 ? "1 to " + std::to_string(needs_.MaxChannels) + " are" : "1 is") +
            " needed");
  }
  if (align != 2 * channels) {
    return Fault(SampleFault::Format, "frames have " + std::to_string(align) + " bytes; " +
                                          std::to_string(2 * channels) + " are needed");
  }
  return std::nullopt;
}

Failure HeaderParser::CheckData(std::uint32_t size) {
  if (channels_ == 0) {
    return Fault(SampleFault::TruncatedHeader, "samples stand before any format chunk; one is needed first");
  }
  const std::optional<std::int64_t> left = BytesLeft(in_);
  if (left && *left < size) {
    return Fault(SampleFault::TruncatedData, "the header promises " + std::to_string(size) +
                                                 " bytes of samples, the file ends after " +
                                                 std::to_string(*left) + "; a complete file is needed");
  }
  if (size % (2U * static_cast<std::uint32_t>(channels_)) != 0) {
    return Fault(SampleFault::OddLength, "has " + std::to_string(size) +
                                             " bytes of samples; a whole number of frames of " +
                                             std::to_string(2 * channels_) + " bytes is needed");
  }
  dataBytes_ = size;
  return std::nullopt;
}

Failure HeaderParser::Fill(unsigned char* bytes, int count, const std::string& where) {
  Failure failure;
  const std::int64_t got = ReadBytes(in_, bytes, count, name_, failure);
  if (!failure && got < count) failure = Truncated(where);
  return failure;
}

Failure HeaderParser::Skip(std::int64_t bytes, const std::string& where) {
  const std::optional<std::int64_t> left = BytesLeft(in_);
  if (left && *left < bytes) return Truncated(where);
  if (left) {
    in_.seekg(bytes, std::ios::cur);
  } else {
    in_.ignore(static_cast<std::streamsize>(bytes));
    if (in_.gcount() < bytes) return Truncated(where);
  }
  return std::nullopt;
}

}  // namespace

std::unique_ptr<WavReader> WavReader::Open(std::unique_ptr<std::istream> in, const std::string& name,
                                           const WavNeeds& needs, Failure& failure) {
  HeaderParser header(*in, name, needs);
  failure = header.Parse();
  if (failure) return nullptr;
  const std::int64_t frames = header.DataBytes() / (2 * header.Channels());
  return std::unique_ptr<WavReader>(new WavReader(std::move(in), name, header.Channels(), frames));
}

std::unique_ptr<WavReader> WavReader::OpenFile(const std::string& path, const WavNeeds& needs,
                                               Failure& failure) {
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored)) {
    failure = Error{EISDIR, path + ": is a directory; a WAV file is needed"};
    return nullptr;
  }
  errno = 0;
  auto file = std::make_unique<std::ifstream>(path, std::ios::binary);
  if (!*file) {
    failure = IoError(path, "can't be opened; a readable WAV file is needed");
    return nullptr;
  }
  return Open(std::move(file), path, needs, failure);
}

int WavReader::Read(std::int16_t* interleaved, int frames, Failure& failure) {
  const std::int64_t frameBytes = 2 * channels_;
  const std::int64_t wanted = std::min<std::int64_t>(frames, left_);
  const std::int64_t bytes = ReadBytes(*in_, interleaved, wanted * frameBytes, name_, failure);
  const std::int64_t got = bytes / frameBytes;
  left_ -= got;
  if (got < wanted && !failure) {
    failure = Error{SampleFault::TruncatedData, name_ + ": the file ends " + std::to_string(left_) +
                                                    " frames before the length that its header tells; a "
                                                    "complete file is needed"};
  }
  SwapFileOrder(interleaved, static_cast<std::size_t>(got * channels_));
  return static_cast<int>(got);
}

}  // namespace quorl
