// The level of a sound input, channel by channel: for who sets the input's gain, and for who looks for the
// contact that is loose.
#pragma once

#include <array>
#include <cstdint>

namespace quorl {

// Takes blocks of a stereo input at 48000 Hz. Allocates nothing.
class InputLevel {
 public:
  static constexpr double kFall = 20;  // decibels a second, from a peak that has gone

  // What is wrong with a second of signal. Channels are alike where both carry the same wave, whatever their
  // levels and their sign: then they are one signal twice, and no pair.
  enum class Fault { None, NoSignal, LeftSilent, RightSilent, Alike };

  // `n` samples a channel.
  void Take(const std::int16_t* left, const std::int16_t* right, std::int32_t n);
  // As if nothing had ever been heard.
  void Rest() { *this = InputLevel(); }

  // 0 to 32768 of the left channel (0) or the right one (1): rises with a peak at once, falls slowly.
  double Peak(int channel) const { return peaks_[static_cast<std::size_t>(channel)]; }
  bool IsHeard() const { return heard_; }  // a block has come
  // Of the last whole second; None until there is one.
  Fault SignalFault() const { return fault_; }

 private:
  // Sums over the second so far.
  struct Moments {
    std::int64_t Samples = 0, Left = 0, Right = 0, LeftSquares = 0, RightSquares = 0, Products = 0;
  };
  static Fault Judge(const Moments& moments);

  std::array<double, 2> peaks_{};
  Moments moments_;
  Fault fault_ = Fault::None;
  bool heard_ = false;
};

}  // namespace quorl
