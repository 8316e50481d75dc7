// Takes the sound devices' notifications for QUORLDX8, and owns the channel arrays that travel with each
// block.
#pragma once

#include <array>
#include <cstdint>

namespace quorl {

class QUORLDX8;

class frmDX8Events {
 public:
  // A block holds at most this many samples a channel.
  static constexpr std::int32_t kMostSamples = 2049;

  // Makes itself the receiver of `sound`, which outlives it.
  explicit frmDX8Events(QUORLDX8& sound);
  ~frmDX8Events();
  frmDX8Events(const frmDX8Events&) = delete;
  frmDX8Events& operator=(const frmDX8Events&) = delete;

  void DirectXEvent8_DXCallback(std::int32_t eventId);

  std::array<std::int16_t, kMostSamples> SamplesI{}, SamplesQ{};

 private:
  QUORLDX8& sound_;
};

}  // namespace quorl
