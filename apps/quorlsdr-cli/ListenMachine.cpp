#include "ListenMachine.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "platform/linux/UserDirectories.h"
#include "recorder/WavReader.h"
#include "shared/InstalledData.h"

namespace quorl::cli {
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
  const auto [end, fault] = std::from_chars(wanted.data(), wanted.data() + wanted.size(), number);
  if (fault == std::errc() && *end == 0 && number >= 1 && number <= static_cast<int>(names.size()))
    return number;
  failure = Error{
      2, std::string("no ") + kind + " device is called '" + wanted + "'; 'quorlsdr-cli devices' lists them"};
  return 0;
}

}  // namespace

std::unique_ptr<ListenMachine> ListenMachine::Create(const ListenOptions& options, Failure& failure) {
  std::unique_ptr<ListenMachine> machine(new ListenMachine);
  failure = machine->PutTogether(options);
  return failure ? nullptr : std::move(machine);
}

Failure ListenMachine::PutTogether(const ListenOptions& options) {
  const UserDirectories directories =
      FindUserDirectories([](const char* name) -> const char* { return std::getenv(name); });
  const std::string usual = directories.Config + (options.Demo ? "/demo.ini" : "/settings.ini");
  const auto log = [](const std::string& line) { std::cerr << line << "\n"; };
  settings_ = std::make_unique<SettingsStore>(files_, options.Settings.empty() ? usual : options.Settings,
                                              &lock_, log);
  if (const Failure failure = settings_->Load()) return failure;
  if (options.Demo && !options.Output.empty() && options.Seconds > 0.0) {
    virtualQueue_ = std::make_unique<VirtualEventQueue>(virtualClock_);
  }
  dialogs_ = std::make_unique<TerminalDialogs>(std::cerr);
  return options.Demo ? ConnectDemo(options) : ConnectRadio(options);
}

SampleSource* ListenMachine::AntennaOf(const ListenOptions& options, Failure& failure) {
  if (options.Antenna.empty()) return &board_->Antenna();
  const auto open = [path = options.Antenna](Failure& fault) -> std::unique_ptr<SampleReader> {
    return WavReader::OpenFile(path, WavNeeds{}, fault);
  };
  recording_ = RecordingSource::Open(open, failure);
  return recording_.get();
}

Failure ListenMachine::ConnectDemo(const ListenOptions& options) {
  Failure failure;
  EventQueue& queue = virtualQueue_ ? static_cast<EventQueue&>(*virtualQueue_) : queue_;
  const Clock& clock = virtualQueue_ ? static_cast<const Clock&>(virtualClock_) : clock_;
  DemoBoard::Options board;
  board.SDRModelNo = options.Reception.SDRModelNo;
  board.LowSideLO = options.Reception.LowSideLO;
  board.ErrorPpm = options.BoardErrorPpm;
  board.DataFolder = options.Folder.empty() ? FindInstalledData(files_) + "/demo" : options.Folder;
  board_ = DemoBoard::Create(board, files_, queue, failure);
  if (!board_) return failure;
  PutDemoClocks(*settings_);
  SampleSource* antenna = AntennaOf(options, failure);
  if (failure) return failure;

  const bool wantsLoudspeaker = !virtualQueue_ && (options.Output.empty() || !options.Playback.empty());
  if (wantsLoudspeaker) {
    soundCard_ = std::make_unique<RtAudioSoundSystem>(queue_);
    const std::vector<std::string> names = soundCard_->PlaybackDeviceNames();
    if (!names.empty() || !options.Playback.empty()) {
      playbackDevice_ = DeviceNumber(names, options.Playback, "playback", failure);
      if (failure) return failure;
      sourcedSound_ =
          std::make_unique<SourcedSoundSystem>(*soundCard_, *antenna, queue_, clock_, kDemoAntenna);
    } else {
      notice_ =
          "no sound card was found: nothing can be heard; --output FILE --seconds S writes it to a file";
    }
  }
  if (!sourcedSound_) {
    virtualSound_ = std::make_unique<VirtualSoundSystem>(queue, clock);
    virtualSound_->AddCaptureDevice(kDemoAntenna, *antenna);
    virtualSound_->AddPlaybackDevice(kNoLoudspeaker, nullptr);
  }
  SoundSystem& sound = sourcedSound_ ? static_cast<SoundSystem&>(*sourcedSound_) : *virtualSound_;
  machine_ = std::make_unique<Machine>(Machine{queue, clock, *dialogs_, files_, lock_, sound,
                                               board_->Serial(), board_->Printer(), processes_});
  return {};
}

Failure ListenMachine::ConnectRadio(const ListenOptions& options) {
  Failure failure;
  serial_ = std::make_unique<LinuxSerialPort>(queue_, serialCalls_);
  printer_ = std::make_unique<LinuxPrinterPort>(printerCalls_);
  soundCard_ = std::make_unique<RtAudioSoundSystem>(queue_);
  captureDevice_ = DeviceNumber(soundCard_->CaptureDeviceNames(), options.Capture, "capture", failure);
  if (failure) return failure;
  playbackDevice_ = DeviceNumber(soundCard_->PlaybackDeviceNames(), options.Playback, "playback", failure);
  if (failure) return failure;
  machine_ = std::make_unique<Machine>(
      Machine{queue_, clock_, *dialogs_, files_, lock_, *soundCard_, *serial_, *printer_, processes_});
  return {};
}

void ListenMachine::RunUntil(const std::function<bool()>& done) {
  constexpr std::chrono::milliseconds kPatience(100);
  while (!done()) {
    virtualQueue_ ? virtualQueue_->Wait(kPatience) : queue_.Wait(kPatience);
  }
}

}  // namespace quorl::cli
