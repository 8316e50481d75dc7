// Listens to a sound input beside the radio, for a level meter.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

#include "platform/SoundSystem.h"

namespace quorl {

class InputCapture {
 public:
  static constexpr std::int32_t kBlockSamples =
      8192;  // a channel; six blocks a second are enough for the eye
  // The arrays are the capture's.
  using Block = std::function<void(const std::int16_t* left, const std::int16_t* right, std::int32_t n)>;

  // `system` outlives the capture.
  InputCapture(SoundSystem& system, Block onBlock) : system_(system), onBlock_(std::move(onBlock)) {}

  // Opens the device (from 1), in place of the one before, and captures from it.
  Failure Open(int device);
  // Lets go of it.
  void Close() { buffer_.reset(); }
  // False also where the device has vanished.
  bool IsRunning() const { return buffer_ && buffer_->IsRunning(); }

 private:
  void Take(int block);

  SoundSystem& system_;
  Block onBlock_;
  std::unique_ptr<CaptureBuffer> buffer_;
  std::array<std::int16_t, std::size_t{2} * kBlockSamples> samples_{};
  std::array<std::int16_t, kBlockSamples> left_{}, right_{};
};

}  // namespace quorl
