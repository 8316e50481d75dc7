#include "shared/HostMachine.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "recorder/files/WavReader.h"
#include "shared/InstalledData.h"
#include "state/PublicConstants.h"

namespace quorl {

namespace {

constexpr const char* kDemoAntenna = "Demo antenna";
constexpr const char* kNoLoudspeaker = "No loudspeaker";

// Number from 1 of the device that `wanted` names or counts; empty is the first one.
int DeviceNumber(const std::vector<std::string>& names, const std::string& wanted, const char* kind,
                 Failure& failure) {
  if (wanted.empty()) return 1;
  const auto named = std::find(names.begin(), names.end(), wanted);
  if (named != names.end()) return static_cast<int>(named - names.begin()) + 1;
  int number = 0;
  const char* end = wanted.data() + wanted.size();
  const auto [stop, fault] = std::from_chars(wanted.data(), end, number);
  if (fault == std::errc() && stop == end && number >= 1 && number <= static_cast<int>(names.size()))
    return number;
  failure = Error{
      2, std::string("no ") + kind + " device is called '" + wanted + "'; 'quorlsdr-cli devices' lists them"};
  return 0;
}

}  // namespace

HostMachine::HostMachine(EventQueue& queue, Dialogs& boxes)
    : queue_(queue),
      boxes_(boxes),
      directories_(FindUserDirectories([](const char* name) -> const char* { return std::getenv(name); })) {}

std::unique_ptr<HostMachine> HostMachine::Create(const HostMachineOptions& options, EventQueue& queue,
                                                 Dialogs& boxes, Failure& failure) {
  std::unique_ptr<HostMachine> machine(new HostMachine(queue, boxes));
  failure = machine->PutTogether(options);
  return failure ? nullptr : std::move(machine);
}

// A demo can be tried by whoever has no home, or a full one. What it keeps then goes with it.
void HostMachine::FindRoomForDemo() {
  if (AreWritable(directories_)) return;
  auto scratch = std::make_unique<ScratchHome>();
  if (!AreWritable(scratch->Directories())) return;
  notices_.push_back(directories_.Config +
                     " or a folder beside it can't be written: nothing of this run is kept");
  scratch_ = std::move(scratch);
  directories_ = scratch_->Directories();
}

Failure HostMachine::PutTogether(const HostMachineOptions& options) {
  if (options.Demo) FindRoomForDemo();
  const std::string usual = directories_.SettingsFile(options.Demo);
  const auto log = [](const std::string& line) { std::cerr << line << "\n"; };
  settings_ = std::make_unique<SettingsStore>(files_, options.Settings.empty() ? usual : options.Settings,
                                              &lock_, log);
  if (options.VirtualTime) virtualQueue_ = std::make_unique<VirtualEventQueue>(virtualClock_);
  if (virtualQueue_) {
    fileWorker_ = std::make_unique<VirtualFileWorker>(*virtualQueue_);
    network_ = std::make_unique<VirtualSockets>(*virtualQueue_);
  } else {
    fileWorker_ = std::make_unique<LinuxFileWorker>(queue_);
    network_ = std::make_unique<LinuxSockets>(queue_);
  }
  return options.Demo ? ConnectDemo(options) : ConnectRadio(options);
}

void HostMachine::SetModel(std::int32_t SDRModelNo) {
  if (board_) board_->Receiver().SetModel(SDRModelNo);
}

void HostMachine::FindLoudspeaker(SettingsStore& store) {
  const std::string named = store.GetSetting("frmMain", "CurrentPlaybackDeviceName", "");
  const std::vector<std::string> names = machine_->Sound.PlaybackDeviceNames();
  if (std::find(names.begin(), names.end(), named) != names.end()) return;
  store.SaveSetting("frmMain", "CurrentPlaybackDeviceName", "");
  store.SaveSetting("frmMain", "CurrentPlaybackDevice", "1");
}

std::string HostMachine::LogFile() const {
  const std::string settings = files_.Resolve(settings_->Path());
  for (const bool demo : {false, true}) {
    if (settings == files_.Resolve(directories_.SettingsFile(demo))) return directories_.LogFile(demo);
  }
  return settings + ".log";
}

SampleSource* HostMachine::AntennaOf(const HostMachineOptions& options, Failure& failure) {
  if (options.Antenna.empty()) return &board_->Antenna();
  const auto open = [&files = files_,
                     path = options.Antenna](Failure& fault) -> std::unique_ptr<SampleReader> {
    return WavReader::Open(files, path, WavNeeds{}, fault);
  };
  recording_ = RecordingSource::Open(open, failure);
  if (recording_ && options.Board.SDRModelNo == SDRModel::IQXtalRX && recording_->Channels() != 2) {
    failure = Error{2, options.Antenna + ": has 1 channel; model iq needs I and Q in 2 channels"};
  }
  return recording_.get();
}

Failure HostMachine::ConnectDemo(const HostMachineOptions& options) {
  Failure failure;
  DemoBoard::Options board = options.Board;
  if (board.DataFolder.empty()) board.DataFolder = FindInstalledData(files_, failure) + "/demo";
  if (failure) return failure;
  board_ = DemoBoard::Create(board, files_, Queue(), failure);
  if (!board_) return failure;
  SampleSource* antenna = AntennaOf(options, failure);
  if (failure) return failure;
  failure = ConnectDemoSound(options, *antenna);
  if (failure) return failure;
  machine_ = std::make_unique<Machine>(Machine{Queue(), Time(), boxes_, files_, *fileWorker_, media_, lock_,
                                               *sourcedSound_, board_->Serial(), board_->Printer(),
                                               processes_, *network_});
  return {};
}

Failure HostMachine::ConnectDemoSound(const HostMachineOptions& options, SampleSource& antenna) {
  Failure failure;
  if (options.Loudspeaker && !virtualQueue_) {
    soundCard_ = std::make_unique<RtAudioSoundSystem>(queue_);
    const std::vector<std::string> names = soundCard_->PlaybackDeviceNames();
    if (!names.empty() || !options.Playback.empty()) {
      playbackDevice_ = DeviceNumber(names, options.Playback, "playback", failure);
      if (failure) return failure;
      ConnectAntenna(*soundCard_, antenna);
      return {};
    }
    notices_.push_back("no sound card was found: nothing can be heard; --output FILE writes it to a file");
  }
  virtualSound_ = std::make_unique<VirtualSoundSystem>(Queue(), Time());
  virtualSound_->AddPlaybackDevice(kNoLoudspeaker, nullptr);
  ConnectAntenna(*virtualSound_, antenna);
  return {};
}

void HostMachine::ConnectAntenna(SoundSystem& speakers, SampleSource& antenna) {
  sourcedSound_ = std::make_unique<SourcedSoundSystem>(speakers, antenna, Queue(), Time(), kDemoAntenna);
}

Failure HostMachine::ConnectRadio(const HostMachineOptions& options) {
  Failure failure;
  serial_ = std::make_unique<LinuxSerialPort>(queue_, serialCalls_);
  printer_ = std::make_unique<LinuxPrinterPort>(printerCalls_);
  soundCard_ = std::make_unique<RtAudioSoundSystem>(queue_);
  // Nobody asks the sound system before it is needed.
  if (!options.Capture.empty())
    captureDevice_ = DeviceNumber(soundCard_->CaptureDeviceNames(), options.Capture, "capture", failure);
  if (!failure && !options.Playback.empty())
    playbackDevice_ = DeviceNumber(soundCard_->PlaybackDeviceNames(), options.Playback, "playback", failure);
  if (failure) return failure;
  machine_ = std::make_unique<Machine>(Machine{queue_, clock_, boxes_, files_, *fileWorker_, media_, lock_,
                                               *soundCard_, *serial_, *printer_, processes_, *network_});
  return {};
}

}  // namespace quorl
