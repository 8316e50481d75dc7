#include "core/LiveRadio.h"

#include <algorithm>

#include "platform/Dialogs.h"
#include "sound/FindDevice.h"
#include "support/Product.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr std::int32_t kSilence = -10000;  // hundredths of a decibel
constexpr int kHousekeepingDelay = 3;      // ms after a block has left: in the gap before the next one

}  // namespace

LiveRadio::LiveRadio(Machine& machine, SettingsStore& settings, BlockRecorder& recorder,
                     SettingsStore::LogSink log)
    : Rx(machine.Time, *this, recorder, [&machine] { machine.Queue.Yield(); }),
      tmrPerfStats(machine.Queue,
                   [this] {
                     tmrPerfStats.SetEnabled(false);
                     Housekeeping();
                   }),
      machine_(machine),
      soundCard_(machine.Sound, machine.Queue, machine.Boxes, *this),
      soundEvents_(soundCard_),
      tuning_({machine.Serial, machine.Printer, machine.Queue, machine.Boxes, settings}, std::move(log)) {
  Rx.Tap.TunedFrequency = [this] { return tuning_.Tune().Tuned(); };
}

void LiveRadio::SetSoundFormat(bool shortDelay) {
  soundCard_.FSampling = FSampling;
  soundCard_.NoChannelsIn = NoChannelsIn;
  soundCard_.NoChannelsOut = NoChannelsOut;
  soundCard_.NoBlocksInBuffer = NoBlocksInBuffer;
  soundCard_.SetSamplesPerEvent(SamplesPerEvent);
  soundCard_.BitsPerSample = BitsPerSample;
  soundCard_.Inp2OutpBufferRatio = shortDelay ? 1 : Inp2OutpBufferRatio;
}

bool LiveRadio::CreateTuning(std::int32_t interfaceType, bool shaftEncoder, bool tellsPort,
                             std::optional<std::int32_t> tuned) {
  const bool open = tuning_.OpenInterface(interfaceType, shaftEncoder, tellsPort);
  tuning_.CreateVFO(Rx.Vars.SDRModelNo, interfaceType, tuned);
  // The grid comes with the step: a stored step finer than the usual grid would tune back and forth.
  VFO().SetTuneStep(VFO().TuneStep());
  Rx.SetLowSideLO(!VFO().HiSideLO);
  return open;
}

void LiveRadio::ReleaseTuning() {
  tuning_.Release();
}

bool LiveRadio::ExchangeBoard(std::int32_t SDRModelNo, std::int32_t interfaceType, bool shaftEncoder) {
  const std::int32_t tuned = tuning_.Tune().Wanted();
  const double step = VFO().TuneStep(), grid = VFO().TuneStepLSD();
  const bool locked = VFO().TuneStepLock;
  const std::string chip = tuning_.Driver()->Name;
  const double clock = tuning_.Driver()->Clock();
  tuning_.Save();
  ReleaseTuning();
  Rx.Vars.SDRModelNo = SDRModelNo;
  Rx.Vars.FiltersDirty = true;  // a board of I and Q has a filter for each
  const bool open = CreateTuning(interfaceType, shaftEncoder, true, tuned);
  // The store holds it rounded.
  if (tuning_.Driver()->Name == chip) tuning_.Driver()->SetClkIn(clock);
  VFO().SetTuneStep(step);
  VFO().SetTuneStepLSD(grid);
  VFO().TuneStepLock = locked;
  tuning_.Tune().MoveTo(tuned);
  return open;
}

void LiveRadio::AddSettings(SettingsTable& table) {
  table.Add("CurrentPlaybackDevice", playback_.Number);
  table.Add("CurrentPlaybackDeviceName", playback_.Name);
  table.Add("CurrentCaptureDevice", capture_.Number);
  table.Add("CurrentCaptureDeviceName", capture_.Name);
  table.Add("ShortDelay", ShortDelay);
  table.Add<bool>(
      "AutoDDSRefresh", [this] { return VFO().AutoUpdate; }, [this](bool on) { VFO().AutoUpdate = on; });
  table.AddWritten<std::int32_t>("LastTunedFrequency", [this] { return VFO().TunedFrequency(); });
}

void LiveRadio::Note(const std::vector<std::string>& names, std::int32_t number, StoredDevice& device) {
  if (number < 1 || number > static_cast<std::int32_t>(names.size())) return;
  device = {number, names[static_cast<std::size_t>(number - 1)]};
}

void LiveRadio::NotePlayback(std::int32_t number) {
  std::vector<std::string> names;
  soundCard_.GetPlayDeviceNames(names);
  Note(names, number, playback_);
}

void LiveRadio::NoteDevices() {
  if (!forDecoder_) NotePlayback(soundCard_.CurrentPlaybackDevice);
  std::vector<std::string> names;
  soundCard_.GetCapDeviceNames(names);
  Note(names, soundCard_.CurrentCaptureDevice, capture_);
}

std::string LiveRadio::DeviceText() const {
  const auto text = [](const StoredDevice& device, std::int32_t number) {
    return std::to_string(number) + (device.Name.empty() ? "" : " \"" + device.Name + "\"");
  };
  return "Capture device " + text(capture_, soundCard_.CurrentCaptureDevice) + ", playback device " +
         text(playback_, soundCard_.CurrentPlaybackDevice);
}

bool LiveRadio::ChooseDevices(const std::string& decoderDevice) {
  soundCard_.RefreshDevices();
  std::vector<std::string> names;
  soundCard_.GetCapDeviceNames(names);
  soundCard_.CurrentCaptureDevice = FindDevice(names, capture_.Name, capture_.Number);
  soundCard_.GetPlayDeviceNames(names);
  soundCard_.CurrentPlaybackDevice = FindDevice(names, playback_.Name, playback_.Number);
  const auto own = std::find(names.begin(), names.end(), decoderDevice);
  forDecoder_ = !decoderDevice.empty() && own != names.end();
  if (forDecoder_) soundCard_.CurrentPlaybackDevice = static_cast<std::int32_t>(own - names.begin()) + 1;
  Rx.SetOutputForDecoder(forDecoder_);
  SetOutputAttenuation(volume_);
  return forDecoder_ || decoderDevice.empty();
}

std::int32_t LiveRadio::UsualPlaybackDevice() const {
  std::vector<std::string> names;
  soundCard_.GetPlayDeviceNames(names);
  return forDecoder_ ? FindDevice(names, playback_.Name, playback_.Number) : soundCard_.CurrentPlaybackDevice;
}

void LiveRadio::NoteDevices(std::int32_t capture, std::int32_t playback) {
  soundCard_.CurrentCaptureDevice = capture;
  const bool another = playback != soundCard_.CurrentPlaybackDevice;
  if (!forDecoder_) soundCard_.CurrentPlaybackDevice = playback;
  if (forDecoder_ && another) NotePlayback(playback);
  NoteDevices();
}

Failure LiveRadio::OpenDevices(std::int32_t capture, std::int32_t playback, bool plays) {
  soundCard_.ReleaseDevices();
  NoteDevices(capture, playback);
  Failure failure = plays ? soundCard_.StartSound() : soundCard_.PrepareDevices();
  // What can't be opened has been told, but not what is open and doesn't start.
  if (failure && soundCard_.Prepared())
    machine_.Boxes.ShowMessage({.Text = failure->Text, .Title = kProductName, .Icon = MessageIcon::Warning});
  return failure;
}

Failure LiveRadio::ChangeDevices(std::int32_t capture, std::int32_t playback) {
  const std::int32_t formerCapture = soundCard_.CurrentCaptureDevice,
                     formerPlayback = soundCard_.CurrentPlaybackDevice;
  const StoredDevice usual = playback_;
  const bool plays = soundCard_.InAction, prepared = soundCard_.Prepared();
  if (plays) {
    Rx.FilterMaker.WaitForBlock();
    soundCard_.StopSound();
  }
  if (!OpenDevices(capture, playback, plays)) return {};
  playback_ = usual;
  NoteDevices(formerCapture, formerPlayback);
  return prepared ? OpenDevices(formerCapture, formerPlayback, plays) : Failure{};
}

Failure LiveRadio::Start() {
  return soundCard_.StartSound();
}

void LiveRadio::Stop() {
  soundCard_.StopSound();
  tmrPerfStats.SetEnabled(false);
}

void LiveRadio::Housekeeping() {
  if (inPerfStats_) return;
  ScopedFlag guard(inPerfStats_);
  const std::int64_t begin = machine_.Time.Microseconds();
  BeforeFilters();
  const bool peakMoved = Rx.Housekeeping();
  AfterFilters(peakMoved);
  if (OnHousekept) OnHousekept(static_cast<double>(machine_.Time.Microseconds() - begin));
}

void LiveRadio::SoundCard_DataReady(std::int16_t* samplesI, std::int16_t* samplesQ, std::int32_t) {
  if (OnBlockIn) OnBlockIn(samplesI, samplesQ);
  Rx.Pump.SoundCard_DataReady(samplesI, samplesQ);
}

void LiveRadio::SoundCard_DataOut(std::int16_t*, std::int32_t, std::int32_t) {
  OnBlockOut();
  tmrPerfStats.SetInterval(kHousekeepingDelay);
  tmrPerfStats.SetEnabled(true);
}

void LiveRadio::SetOutputAttenuation(std::int32_t hundredthsOfDecibel) {
  volume_ = hundredthsOfDecibel;
  attenuation_ = forDecoder_ ? 0 : muted_ ? kSilence : volume_;
  soundCard_.SetOutputAttenuation(attenuation_);
}

void LiveRadio::SetMuted(bool muted) {
  muted_ = muted;
  SetOutputAttenuation(volume_);
}

void LiveRadio::Output(const std::int16_t* left, const std::int16_t* right) {
  if (OnAudio) OnAudio(left, attenuation_);
  soundCard_.Output(left, right);
}

}  // namespace quorl
