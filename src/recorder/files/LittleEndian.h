// Little-endian numbers in byte arrays, whatever the machine's own order.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace quorl {

inline std::uint16_t GetU16(const unsigned char* bytes) {
  return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

inline std::uint32_t GetU32(const unsigned char* bytes) {
  return GetU16(bytes) | static_cast<std::uint32_t>(GetU16(bytes + 2)) << 16;
}

inline std::uint64_t GetU64(const unsigned char* bytes) {
  return GetU32(bytes) | static_cast<std::uint64_t>(GetU32(bytes + 4)) << 32;
}

inline void PutU16(unsigned char* bytes, std::uint16_t value) {
  bytes[0] = static_cast<unsigned char>(value & 0xFF);
  bytes[1] = static_cast<unsigned char>(value >> 8);
}

inline void PutU32(unsigned char* bytes, std::uint32_t value) {
  PutU16(bytes, static_cast<std::uint16_t>(value & 0xFFFF));
  PutU16(bytes + 2, static_cast<std::uint16_t>(value >> 16));
}

inline void PutU64(unsigned char* bytes, std::uint64_t value) {
  PutU32(bytes, static_cast<std::uint32_t>(value & 0xFFFFFFFF));
  PutU32(bytes + 4, static_cast<std::uint32_t>(value >> 32));
}

// Turns `count` samples between the order of files and the order of this machine, in place.
inline void SwapFileOrder(std::int16_t* samples, std::size_t count) {
  if constexpr (std::endian::native == std::endian::big) {
    for (std::size_t i = 0; i < count; ++i) {
      const auto bits = static_cast<std::uint16_t>(samples[i]);
      samples[i] = static_cast<std::int16_t>(static_cast<std::uint16_t>(bits << 8 | bits >> 8));
    }
  }
}

}  // namespace quorl
