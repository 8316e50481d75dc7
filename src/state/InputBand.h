// Where the peaks of the sound card's input lie.
#pragma once

namespace quorl {

// The receiver wants them in the middle band: below it the converter's own noise counts, above it a fade that
// ends drives the converter to its limit.
enum class InputBand { Low, Right, High };

inline constexpr double kRightFrom = 2048.0, kHighFrom = 16384.0;  // of 32767

// A peak below 0 is one that has run over.
constexpr InputBand InputBandOf(double peak) {
  if (peak < 0.0 || peak >= kHighFrom) return InputBand::High;
  return peak < kRightFrom ? InputBand::Low : InputBand::Right;
}

// The ink of a reading of that peak: yellow, green, red; 24 bits, blue in the high byte.
constexpr unsigned InputBandInk(InputBand band) {
  return band == InputBand::Low ? 0x00FFFF : band == InputBand::Right ? 0x00FF00 : 0x0000FF;
}

}  // namespace quorl
