#include "sound/QUORLDX8.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "dsp/kernel/VectorKernel.h"
#include "sound/FindDevice.h"
#include "sound/frmDX8Events.h"
#include "support/Product.h"

namespace quorl {
namespace {

constexpr std::int32_t kBytesPerSample = 2, kRingBlocks = 16, kLowestAttenuation = -10000;
constexpr std::int32_t kRingSlots = 8;
constexpr std::int32_t kErrorNotPrepared = 1002;

// Keeps the number of the current device with its name.
void Renumber(const std::vector<std::string>& before, const std::vector<std::string>& now,
              std::int32_t& number) {
  if (number < 1 || number > static_cast<std::int32_t>(before.size())) return;
  number = FindDevice(now, before[static_cast<std::size_t>(number) - 1], number);
}

}  // namespace

QUORLDX8::QUORLDX8(SoundSystem& system, EventQueue& queue, Dialogs& dialogs, SoundEvents& events)
    : system_(system), queue_(queue), dialogs_(dialogs), events_(events) {
  SetSamplesPerEvent(2048);
}

QUORLDX8::~QUORLDX8() {
  ReleaseDevices();
}

void QUORLDX8::SetSamplesPerEvent(std::int32_t n) {
  samplesPerEvent_ = n;
  captureBlockBytes_ = NoChannelsIn * n * kBytesPerSample;
  outputBlockBytes_ = NoChannelsOut * n * kBytesPerSample;
  captureSamples_.assign(static_cast<std::size_t>(NoChannelsIn * n) + 1, 0);
  outputRing_.assign(static_cast<std::size_t>(NoChannelsOut * n * kRingBlocks) + 1, 0);
}

void QUORLDX8::SetOutputAttenuation(std::int32_t hundredths) {
  outputAttenuation_ = std::max(hundredths, kLowestAttenuation);
}

std::int32_t QUORLDX8::OutputAttenuation() const {
  if (outputAttenuation_ >= 0) return outputAttenuation_;
  return static_cast<std::int32_t>(std::nearbyint(outputAttenuation_ / 100.0));
}

void QUORLDX8::RefreshDevices() {
  const auto captureBefore = std::exchange(captureNames_, system_.CaptureDeviceNames());
  const auto playBefore = std::exchange(playNames_, system_.PlaybackDeviceNames());
  Renumber(captureBefore, captureNames_, CurrentCaptureDevice);
  Renumber(playBefore, playNames_, CurrentPlaybackDevice);
}

SoundNotifier QUORLDX8::Notifier() {
  return [this](int eventId) {
    if (EventForm != nullptr) EventForm->DirectXEvent8_DXCallback(eventId);
  };
}

Failure QUORLDX8::PrepareDevices() {
  if (prepared_) return {};
  OnPrepare();
  Failure failure;
  CreateSoundObjects(failure);
  if (failure) return failure;
  SetNotifications();
  prepared_ = true;
  return {};
}

void QUORLDX8::CreateSoundObjects(Failure& failure) {
  LastErr = 0;
  const auto block = [this](std::int32_t channels) {
    return samplesPerEvent_ * static_cast<std::int32_t>(std::nearbyint(BitsPerSample / 8.0 * channels));
  };
  captureBlockBytes_ = block(NoChannelsIn);
  captureBufferBytes_ = captureBlockBytes_ * NoBlocksInBuffer;
  outputBlockBytes_ = block(NoChannelsOut);
  playbackBufferBytes_ = outputBlockBytes_ * NoBlocksInBuffer * Inp2OutpBufferRatio;

  Failure playbackFailure, captureFailure;
  playbackBuffer_ =
      system_.CreatePlaybackBuffer(CurrentPlaybackDevice, {FSampling, BitsPerSample, NoChannelsOut},
                                   playbackBufferBytes_, Notifier(), playbackFailure);
  queue_.Yield();
  captureBuffer_ = system_.CreateCaptureBuffer(CurrentCaptureDevice, {FSampling, BitsPerSample, NoChannelsIn},
                                               captureBufferBytes_, Notifier(), captureFailure);
  queue_.Yield();
  if (playbackBuffer_ && captureBuffer_) return;

  failure = playbackBuffer_ ? captureFailure : playbackFailure;
  if (!failure) failure = Error{kErrorNotPrepared, "the sound device did not open"};
  playbackBuffer_.reset();
  captureBuffer_.reset();
  LastErr = failure->Code;
  dialogs_.ShowMessage({"Unable to start DirectSound. Check proper sound card installation", kProductName,
                        MessageIcon::Critical, MessageButtons::Ok});
}

std::vector<SoundNotification> QUORLDX8::MakeNotifications(std::int32_t bufferBytes,
                                                           std::int32_t blockBytes) {
  std::vector<SoundNotification> notifications;
  const auto count = static_cast<std::int32_t>(std::nearbyint(static_cast<double>(bufferBytes) / blockBytes));
  notifications.reserve(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i)
    notifications.push_back({(i + 1) * blockBytes - 1, ++lastEventId_});
  return notifications;
}

void QUORLDX8::SetNotifications() {
  captureNotifications_ = MakeNotifications(captureBufferBytes_, captureBlockBytes_);
  captureBuffer_->SetNotificationPositions(captureNotifications_);
  outputNotifications_ = MakeNotifications(playbackBufferBytes_, outputBlockBytes_);
  playbackBuffer_->SetNotificationPositions(outputNotifications_);
}

void QUORLDX8::DropNotifications(std::vector<SoundNotification>& notifications) {
  // What the queue runs meanwhile may come here too.
  for (const SoundNotification& each : std::exchange(notifications, {{}})) {
    if (each.EventId != 0) queue_.Yield();
  }
}

void QUORLDX8::ReleaseDevices() {
  if (!prepared_) return;
  if (InAction) StopSound();
  DropNotifications(captureNotifications_);
  DropNotifications(outputNotifications_);
  playbackBuffer_.reset();
  captureBuffer_.reset();
  prepared_ = InAction = false;
}

bool QUORLDX8::HasLostDevice() const {
  if (!prepared_ || !InAction) return false;
  return !captureBuffer_->IsRunning() || (OutDelay == 0 && !playbackBuffer_->IsRunning());
}

Failure QUORLDX8::StartSound() {
  if (InAction) return {};
  if (auto failure = PrepareDevices()) return failure;
  writePtr_ = readPtr_ = 0;
  writePtrWrap_ = readPtrWrap_ = false;
  blocksWritten_ = blocksRead_ = 0;
  InAction = true;
  OutDelay = StartDelay();
  auto failure = captureBuffer_->Start();
  if (failure) {
    LastErr = failure->Code;
    InAction = false;
  }
  return failure;
}

void QUORLDX8::StopSound() {
  if (!prepared_ || !InAction) return;
  captureBuffer_->Stop();
  playbackBuffer_->Stop();
  // What the queue runs meanwhile may let go of the devices.
  do {
    queue_.Yield();
  } while (captureBuffer_ && captureBuffer_->IsRunning());
  do {
    queue_.Yield();
  } while (playbackBuffer_ && playbackBuffer_->IsRunning());
  InAction = false;
}

void QUORLDX8::TellChannelError() {
  LastErr = kErrorChannels;
  dialogs_.ShowMessage({"Unknown Number of channels, only Mono or Stereo allowed", kProductName,
                        MessageIcon::Critical, MessageButtons::Ok});
}

void QUORLDX8::Capture(std::int16_t* samplesI, std::int16_t* samplesQ) {
  if (NoChannelsIn == 1) {
    CopyVector_16(captureSamples_.data(), samplesI, samplesPerEvent_);
    CopyVector_16(captureSamples_.data(), samplesQ, samplesPerEvent_);
  } else if (NoChannelsIn == 2) {
    DeInterlace_16_2(captureSamples_.data(), samplesI, samplesQ, 2 * samplesPerEvent_);
  } else {
    TellChannelError();
  }
}

void QUORLDX8::Output(const std::int16_t* samplesI, const std::int16_t* samplesQ) {
  std::int16_t* slot = outputRing_.data() + writePtr_;
  if (NoChannelsOut == 1) {
    CopyVector_16(samplesI, slot, samplesPerEvent_);
  } else if (NoChannelsOut == 2) {
    Interlace_16_2(samplesI, samplesQ, slot, 2 * samplesPerEvent_);
  } else {
    TellChannelError();
    return;
  }
  ++blocksWritten_;
  writePtrWrap_ = false;
  writePtr_ += outputBlockBytes_;
  if (writePtr_ >= RingBound()) {
    writePtr_ = 0;
    writePtrWrap_ = true;
  }
}

bool QUORLDX8::EventHandler(std::int32_t eventId, std::int16_t* samplesI, std::int16_t* samplesQ) {
  const auto find =
      [eventId](const std::vector<SoundNotification>& notifications) -> const SoundNotification* {
    for (const SoundNotification& item : notifications) {
      if (item.EventId == eventId) return &item;
    }
    return nullptr;
  };
  if (!prepared_ || eventId == 0) return false;
  if (const SoundNotification* captured = find(captureNotifications_)) {
    HandleCapture(*captured, samplesI, samplesQ);
    return true;
  }
  if (const SoundNotification* played = find(outputNotifications_)) HandleOutput(*played);
  return false;
}

void QUORLDX8::HandleCapture(const SoundNotification& notification, std::int16_t* samplesI,
                             std::int16_t* samplesQ) {
  captureBuffer_->Read(notification.Offset - captureBlockBytes_ + 1, captureBlockBytes_,
                       captureSamples_.data());
  Capture(samplesI, samplesQ);
  events_.SoundCard_DataReady(samplesI, samplesQ, samplesPerEvent_);
  // The handler may have yielded, and what ran then may have stopped the sound.
  if (!InAction || OutDelay <= 0) return;
  if (--OutDelay > 0) return;
  if (const Failure failure = playbackBuffer_->Play()) LastErr = failure->Code;
}

void QUORLDX8::HandleOutput(const SoundNotification& notification) {
  playbackBuffer_->SetVolume(std::min(outputAttenuation_, 0));
  const bool lapped = UnreadBlocks() > kRingSlots;
  const bool starved = readPtrWrap_ && UnreadBlocks() < 0;
  if (lapped || starved) {
    ++(lapped ? recoveries_.Overruns : recoveries_.Starvations);
    Resynchronise();
    return;
  }
  FeedBlock(notification.Offset - outputBlockBytes_ + 1);
}

void QUORLDX8::FeedBlock(std::int32_t offset) {
  events_.SoundCard_DataOut(outputRing_.data(), readPtr_, outputBlockBytes_);
  if (!playbackBuffer_) return;  // the handler may have let go of it
  std::int16_t* slot = outputRing_.data() + readPtr_;
  playbackBuffer_->Write(offset, outputBlockBytes_, slot);
  ZeroVector_16(slot, outputBlockBytes_ / kBytesPerSample);  // a stale block must not be heard a second time
  ++blocksRead_;
  readPtr_ += outputBlockBytes_;
  readPtrWrap_ = false;
  if (readPtr_ >= RingBound()) {
    readPtr_ = 0;
    readPtrWrap_ = true;
  }
}

void QUORLDX8::Resynchronise() {
  readPtr_ = writePtr_ = 0;
  writePtrWrap_ = false;
  blocksWritten_ = blocksRead_ = 0;
  OutDelay = StartDelay();
  playbackBuffer_->Stop();
}

}  // namespace quorl
