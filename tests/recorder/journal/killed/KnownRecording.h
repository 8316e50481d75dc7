// What the program records that is killed, so that each sample and each log record tells where it belongs.
#pragma once

#include <atomic>
#include <cstdint>

namespace quorl {

struct KnownRecording {
  static constexpr std::int32_t Block = 2048;        // fed in real time
  static constexpr std::int32_t Half = 32768;        // 0.68 s: many go to the disk
  static constexpr std::int64_t PartBytes = 120000;  // a half and its log
  static constexpr std::int32_t BlocksATuning = 3;
  static constexpr std::int32_t FirstFreq = 70000000, FreqStep = 1000;

  static std::int16_t Sample(std::int64_t index) {
    const auto mixed = static_cast<std::uint64_t>(index + 1) * 0x9E3779B97F4A7C15U;
    return static_cast<std::int16_t>(mixed >> 48);
  }
  static std::int32_t FreqAt(std::int64_t block) {
    return FirstFreq + static_cast<std::int32_t>(block / BlocksATuning) * FreqStep;
  }
  // The first sample that a frequency was in force for.
  static std::int64_t SampleOf(std::int32_t freq) {
    return std::int64_t{(freq - FirstFreq) / FreqStep} * BlocksATuning * Block;
  }
};

// In memory that the killed program shares with who kills it.
struct KilledProgress {
  std::atomic<std::int64_t> Fed;  // samples
};

}  // namespace quorl
