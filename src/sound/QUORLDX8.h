// The sound card as the receiver sees it: captured blocks come as events, audio blocks go out through a ring.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Dialogs.h"
#include "platform/EventQueue.h"
#include "platform/SoundSystem.h"
#include "sound/SoundEvents.h"

namespace quorl {

class frmDX8Events;

// One block captured is one DataReady, and the clock of everything behind it; playback follows with the delay
// of OutDelay blocks. Where the two sides of the output ring have drifted apart, they start over: a short gap
// in the sound, and nothing to tell. All on the event queue's thread. EventHandler, Capture and Output
// allocate nothing.
//
// Set the channel counts, then SetSamplesPerEvent; a frmDX8Events made on this object takes the
// notifications. FSampling, the devices and the channel counts act at the next PrepareDevices.
class QUORLDX8 {
 public:
  // What `LastErr` says where a channel count is neither 1 nor 2.
  static constexpr std::int32_t kErrorChannels = 1001;

  // Everything outlives the object. `events` hears the blocks.
  QUORLDX8(SoundSystem& system, EventQueue& queue, Dialogs& dialogs, SoundEvents& events);
  ~QUORLDX8();
  QUORLDX8(const QUORLDX8&) = delete;
  QUORLDX8& operator=(const QUORLDX8&) = delete;

  std::int32_t FSampling = 44100;  // Hz, of both streams
  std::int32_t BitsPerSample = 16;
  std::int32_t NoChannelsIn = 2;      // 1 or 2
  std::int32_t NoChannelsOut = 2;     // 1 or 2
  std::int32_t NoBlocksInBuffer = 2;  // blocks in the capture buffer
  std::int32_t Inp2OutpBufferRatio =
      2;  // the playback buffer holds NoBlocksInBuffer times as many; product >= 2
  std::int32_t CurrentCaptureDevice = 1;  // 1 to N
  std::int32_t CurrentPlaybackDevice = 1;
  std::int32_t hWnd = 0;  // window that owns the playback device; 0 where there is none
  frmDX8Events* EventForm = nullptr;
  bool InAction = false;      // samples are being captured
  std::int32_t LastErr = 0;   // 0 is no error
  std::int32_t OutDelay = 0;  // capture events until playback starts; 0 while it runs

  // Samples a channel in one block, up to frmDX8Events::kMostSamples. Sets the block sizes and empties the
  // ring.
  void SetSamplesPerEvent(std::int32_t n);
  std::int32_t SamplesPerEvent() const { return samplesPerEvent_; }

  // Hundredths of a decibel, negative; below -10000 it is -10000. Zero and above play at full level. Reads
  // back as whole decibels where it is negative, as it was set otherwise.
  void SetOutputAttenuation(std::int32_t hundredths);
  std::int32_t OutputAttenuation() const;

  // Told before the devices are opened: whoever else of this program holds one of them lets go of it.
  std::function<void()> OnPrepare = [] {};
  // Opens both devices. Where one fails, the user gets a message, LastErr the system's number, and the
  // failure comes back; nothing is open then.
  Failure PrepareDevices();
  // Stops, and lets other programs use the devices.
  void ReleaseDevices();
  bool Prepared() const { return prepared_; }
  // The sound should run, and a device has stopped by itself.
  bool HasLostDevice() const;

  // Entry i is device number i + 1. Empty before the first RefreshDevices.
  void GetPlayDeviceNames(std::vector<std::string>& deviceNames) const { deviceNames = playNames_; }
  void GetCapDeviceNames(std::vector<std::string>& deviceNames) const { deviceNames = captureNames_; }
  // Looks again which devices there are. The current devices keep their names: their numbers follow.
  void RefreshDevices();

  // Starts capturing; nothing where it runs. Fails as PrepareDevices does, or where the device does not
  // start.
  Failure StartSound();
  void StopSound();

  // Takes the captured block apart: both channels of a stereo source, the one of a mono source twice.
  void Capture(std::int16_t* samplesI, std::int16_t* samplesQ);
  // Puts one block into the ring; `samplesQ` is ignored where the output is mono.
  void Output(const std::int16_t* samplesI, const std::int16_t* samplesQ);
  // For every notification. True for a captured block.
  bool EventHandler(std::int32_t eventId, std::int16_t* samplesI, std::int16_t* samplesQ);

  // How often the ring started over because it was full, and because it was empty, since the object was made.
  struct RingStatistics {
    std::int64_t Overruns = 0, Starvations = 0;
  };
  RingStatistics Recoveries() const { return recoveries_; }
  std::int32_t OutBufferWritePtr() const { return writePtr_; }
  std::int32_t OutBufferReadPtr() const { return readPtr_; }
  bool OutBufferWritePtrWrap() const { return writePtrWrap_; }
  bool OutBufferReadPtrWrap() const { return readPtrWrap_; }
  // Blocks in the ring that were written and not read since it last started over; negative where the reader
  // is ahead of the writer.
  std::int64_t UnreadBlocks() const { return blocksWritten_ - blocksRead_; }

 private:
  void CreateSoundObjects(Failure& failure);
  void SetNotifications();
  std::vector<SoundNotification> MakeNotifications(std::int32_t bufferBytes, std::int32_t blockBytes);
  void DropNotifications(std::vector<SoundNotification>& notifications);
  SoundNotifier Notifier();
  void HandleCapture(const SoundNotification& notification, std::int16_t* samplesI, std::int16_t* samplesQ);
  void HandleOutput(const SoundNotification& notification);
  void FeedBlock(std::int32_t offset);
  void Resynchronise();
  std::int32_t RingBound() const { return static_cast<std::int32_t>(outputRing_.size()) - 1; }
  std::int32_t StartDelay() const { return NoBlocksInBuffer * Inp2OutpBufferRatio - 1; }
  void TellChannelError();

  SoundSystem& system_;
  EventQueue& queue_;
  Dialogs& dialogs_;
  SoundEvents& events_;
  std::vector<std::string> captureNames_, playNames_;

  std::int32_t samplesPerEvent_ = 0;
  std::int32_t outputAttenuation_ = 5000;
  bool prepared_ = false;
  std::vector<std::int16_t> captureSamples_;
  // Pointers count elements and step by the bytes of a block, so that a mono block fills half of its slot and
  // the ring has eight slots.
  std::vector<std::int16_t> outputRing_;
  std::int32_t writePtr_ = 0, readPtr_ = 0;
  bool writePtrWrap_ = false, readPtrWrap_ = false;
  std::int64_t blocksWritten_ = 0, blocksRead_ = 0;  // since the ring last started over
  std::int32_t captureBlockBytes_ = 0, outputBlockBytes_ = 0;
  std::int32_t captureBufferBytes_ = 0, playbackBufferBytes_ = 0;
  std::unique_ptr<PlaybackBuffer> playbackBuffer_;
  std::unique_ptr<CaptureBuffer> captureBuffer_;
  std::vector<SoundNotification> captureNotifications_{1}, outputNotifications_{1};
  std::int32_t lastEventId_ = 0;
  RingStatistics recoveries_;
};

}  // namespace quorl
