// A simulated antenna on real loudspeakers: captures come from a source, playback is another sound system's.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "platform/EventQueue.h"
#include "platform/SampleSource.h"
#include "platform/SoundSystem.h"
#include "platform/streams/StreamEvents.h"

namespace quorl {

// There is one capture device. While playback runs, each block that it has played brings as many captured
// frames, delivered just before the playback's own notification, so that the two never drift apart; while it
// does not, the clock paces the captures. Of several buffers that play the one that was opened first paces.
// Everything handed in outlives the system, and the system its buffers.
class SourcedSoundSystem : public SoundSystem {
 public:
  SourcedSoundSystem(SoundSystem& playback, SampleSource& source, EventQueue& queue, const Clock& clock,
                     std::string captureName);
  ~SourcedSoundSystem() override;

  std::vector<std::string> CaptureDeviceNames() override { return {captureName_}; }
  std::vector<std::string> PlaybackDeviceNames() override { return playback_.PlaybackDeviceNames(); }
  std::unique_ptr<CaptureBuffer> CreateCaptureBuffer(int device, const SoundFormat& format, int bytes,
                                                     SoundNotifier notifier, Failure& failure) override;
  std::unique_ptr<PlaybackBuffer> CreatePlaybackBuffer(int device, const SoundFormat& format, int bytes,
                                                       SoundNotifier notifier, Failure& failure) override;
  // Captured blocks are its own, the rest the playback's.
  SoundStatistics Statistics() const override;
  void OnDeviceLost(std::function<void(const Error&)> handler) override { onLost_ = std::move(handler); }

 private:
  class Capture;
  class Playback;

  void Advance(std::int64_t frames);
  // The one that paces the captures; null where none runs.
  const Playback* Pacer() const;
  // Hands the captures to the playback or, where that does not run, to the clock from now on.
  void Pace();
  void StopPacing();
  void TickByClock();

  SoundSystem& playback_;
  SampleSource& source_;
  const Clock& clock_;
  const std::string captureName_;
  SoundCounters counters_;
  StreamEvents events_;
  Capture* capture_ = nullptr;  // the open ones
  std::vector<const Playback*> playbacks_;
  std::function<void(const Error&)> onLost_;
  const Playback* pacer_ = nullptr;           // of this stretch
  std::int64_t origin_ = 0, framesDone_ = 0;  // of the stretch that the clock paces
  int rate_ = 48000;
  std::unique_ptr<QueueTimer> timer_;
};

}  // namespace quorl
