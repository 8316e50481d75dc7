// Builds WAV files byte by byte, sound ones and broken ones.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "recorder/files/LittleEndian.h"

namespace quorl::test {

inline std::string U16(unsigned value) {
  unsigned char bytes[2];
  PutU16(bytes, static_cast<std::uint16_t>(value));
  return {reinterpret_cast<char*>(bytes), 2};
}

inline std::string U32(std::uint32_t value) {
  unsigned char bytes[4];
  PutU32(bytes, value);
  return {reinterpret_cast<char*>(bytes), 4};
}

inline std::string Chunk(const std::string& tag, const std::string& body) {
  return tag + U32(static_cast<std::uint32_t>(body.size())) + body + std::string(body.size() % 2, '\0');
}

struct FormatFields {
  unsigned Tag = 1, Channels = 1;
  std::uint32_t Rate = 48000;
  unsigned Bits = 16;
};

inline std::string FormatBody(const FormatFields& f) {
  const unsigned align = f.Channels * f.Bits / 8;
  return U16(f.Tag) + U16(f.Channels) + U32(f.Rate) + U32(f.Rate * align) + U16(align) + U16(f.Bits);
}

// The extensible format; `subFormat` 1 is PCM, 3 is floating point.
inline std::string ExtensibleBody(unsigned channels, unsigned subFormat) {
  static const char guidTail[] = "\0\0\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71";
  return FormatBody({0xFFFE, channels}) + U16(22) + U16(16) + U32(3) + U16(subFormat) +
         std::string(guidTail, 14);
}

inline std::string SampleBytes(const std::vector<std::int16_t>& samples) {
  std::string bytes;
  for (const std::int16_t sample : samples) bytes += U16(static_cast<std::uint16_t>(sample));
  return bytes;
}

inline std::string Riff(const std::string& chunks) {
  return "RIFF" + U32(static_cast<std::uint32_t>(chunks.size() + 4)) + "WAVE" + chunks;
}

inline std::string WavFile(const std::vector<std::int16_t>& samples, const FormatFields& format = {}) {
  return Riff(Chunk("fmt ", FormatBody(format)) + Chunk("data", SampleBytes(samples)));
}

}  // namespace quorl::test
