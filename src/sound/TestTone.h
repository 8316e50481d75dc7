// A second of tone on a sound output: is it the right one, and can it be heard?
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/EventQueue.h"
#include "platform/SoundSystem.h"

namespace quorl {

class TestTone {
 public:
  static constexpr double kHertz = 1000, kDecibels = -20, kSeconds = 1;  // dB of full scale

  // Both outlive the tone.
  TestTone(SoundSystem& system, EventQueue& queue);

  // Plays on the device (from 1); nothing while it plays already. The device is free again when the tone has
  // been heard.
  Failure Start(int device);
  // Ends it, and lets go of the device at once.
  void Stop();
  bool IsPlaying() const { return buffer_ != nullptr; }
  // Told when it has ended, however it did. May be empty.
  std::function<void()> OnEnd;

 private:
  void Played(int block);

  SoundSystem& system_;
  std::unique_ptr<PlaybackBuffer> buffer_;
  std::int64_t played_ = 0;  // samples
  std::unique_ptr<QueueTimer> end_;
};

}  // namespace quorl
