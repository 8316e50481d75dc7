// The grid of time that the simulated band is made on: chunks of 10 ms, each a pure function of its number.
//
// Everything on the air is computed from the chunk's number alone, so that any moment can be rendered without
// what came before it, and rendering on gives the same samples as jumping there.
#pragma once

#include <cstdint>
#include <string_view>

namespace quorl {

constexpr int kChunksPerSecond = 100;
constexpr int kChunkFrames = 480;                                // at the sound card's 48000 Hz
constexpr double kOutputRate = kChunkFrames * kChunksPerSecond;  // samples per second
constexpr int kSlowChunkFrames = 80;                             // at 8000 Hz: speech, keying, music
constexpr int kFastChunkFrames = 240;  // at 24000 Hz: what is wider than a telephone channel
// Chunk of second 0 of the evening: a minute of room, so that what reaches back finds something there.
constexpr std::int64_t kFirstChunk = 60LL * kChunksPerSecond;
constexpr int kSlowRate = 8000;
constexpr int kFastRate = 24000;

// Complex samples as two arrays of the same length, owned by the caller.
struct IqSpan {
  float* I;
  float* Q;
  int Count;
};

// Remainder that is never negative.
constexpr std::int64_t FloorModulo(std::int64_t value, std::int64_t modulus) {
  const std::int64_t remainder = value % modulus;
  return remainder < 0 ? remainder + modulus : remainder;
}

// Random bits as a function of two numbers: the finaliser of SplitMix64 over both.
constexpr std::uint64_t HashOf(std::uint64_t seed, std::uint64_t index) {
  std::uint64_t z = seed + (index + 1) * 0x9E3779B97F4A7C15ULL;
  z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27U)) * 0x94D049BB133111EBULL;
  return z ^ (z >> 31U);
}

// 0 (included) to 1 (excluded).
constexpr double UnitHash(std::uint64_t seed, std::uint64_t index) {
  return static_cast<double>(HashOf(seed, index) >> 11U) * 0x1.0p-53;
}

// The same text gives the same number on every machine (FNV-1a).
constexpr std::uint64_t HashOfText(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325ULL;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3ULL;
  return hash;
}

}  // namespace quorl
