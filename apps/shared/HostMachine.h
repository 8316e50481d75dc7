// The machine that a radio runs on: real board and sound card, or the simulated band; real time or virtual.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "config/SettingsStore.h"
#include "platform/Machine.h"
#include "platform/files/FileInstanceLock.h"
#include "platform/linux/lines/LinuxPrinterPort.h"
#include "platform/linux/lines/LinuxSerialPort.h"
#include "platform/linux/media/SndfileSoundFiles.h"
#include "platform/linux/net/LinuxSockets.h"
#include "platform/linux/sound/RtAudioSoundSystem.h"
#include "platform/linux/system/LinuxClock.h"
#include "platform/linux/system/LinuxFileWorker.h"
#include "platform/linux/system/LinuxFiles.h"
#include "platform/linux/system/LinuxProcesses.h"
#include "platform/linux/system/ScratchHome.h"
#include "platform/linux/system/UserDirectories.h"
#include "platform/linux/windows/X11Windows.h"
#include "platform/virtual/SourcedSoundSystem.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualFileWorker.h"
#include "platform/virtual/VirtualSockets.h"
#include "platform/virtual/VirtualSoundSystem.h"
#include "shared/DemoBoard.h"
#include "sim/RecordingSource.h"

namespace quorl {

struct HostMachineOptions {
  bool Demo = false;         // simulated board and band
  bool VirtualTime = false;  // demo only: as fast as the machine allows, and silent
  bool Loudspeaker = true;   // false plays silently in the demo
  DemoBoard::Options Board;
  std::string Antenna;  // demo: WAV file that takes the antenna's place
  std::string Capture;  // name or number of the sound devices; empty is the first
  std::string Playback;
  std::string Settings;  // settings file; empty is the usual one
};

// Without a loudspeaker the demo plays silently at the clock's pace.
class HostMachine {
 public:
  // `queue` and `boxes` outlive the machine. In virtual time a queue of its own takes the place of `queue`.
  // Null with `failure` set where something that was asked for isn't there.
  static std::unique_ptr<HostMachine> Create(const HostMachineOptions& options, EventQueue& queue,
                                             Dialogs& boxes, Failure& failure);

  Machine& Parts() { return *machine_; }
  // The demo's board is that of this model from now on; nothing without a demo.
  void SetModel(std::int32_t SDRModelNo);
  SettingsStore& Settings() { return *settings_; }
  // Where the loudspeaker that the settings name isn't there today, the first one takes its place. For the
  // demo: unlike a radio's input, whatever plays is good enough to try it.
  void FindLoudspeaker(SettingsStore& store);
  LinuxFiles& Storage() { return files_; }
  const UserDirectories& Directories() const { return directories_; }
  // Each settings file has a log of its own.
  std::string LogFile() const;
  int CaptureDevice() const { return captureDevice_; }  // number of the device that was asked for, from 1
  int PlaybackDevice() const { return playbackDevice_; }
  // Lines for the user about what is not as one would expect.
  const std::vector<std::string>& Notices() const { return notices_; }
  bool IsVirtualTime() const { return virtualQueue_ != nullptr; }

 private:
  HostMachine(EventQueue& queue, Dialogs& boxes);
  Failure PutTogether(const HostMachineOptions& options);
  void FindRoomForDemo();
  Failure ConnectDemo(const HostMachineOptions& options);
  Failure ConnectDemoSound(const HostMachineOptions& options, SampleSource& antenna);
  void ConnectAntenna(SoundSystem& speakers, SampleSource& antenna);
  Failure ConnectRadio(const HostMachineOptions& options);
  SampleSource* AntennaOf(const HostMachineOptions& options, Failure& failure);
  EventQueue& Queue() { return virtualQueue_ ? static_cast<EventQueue&>(*virtualQueue_) : queue_; }
  const Clock& Time() const { return virtualQueue_ ? static_cast<const Clock&>(virtualClock_) : clock_; }

  EventQueue& queue_;
  Dialogs& boxes_;
  std::unique_ptr<ScratchHome> scratch_;  // what uses its files goes first
  UserDirectories directories_;
  LinuxClock clock_;
  VirtualClock virtualClock_;
  std::unique_ptr<VirtualEventQueue> virtualQueue_;
  LinuxFiles files_;
  SndfileSoundFiles media_{files_};
  FileInstanceLock lock_{files_};
  X11Windows windows_{queue_};
  LinuxProcesses processes_{&queue_, &windows_};
  LinuxSerialCalls serialCalls_;
  LinuxPrinterCalls printerCalls_;
  std::unique_ptr<LinuxSerialPort> serial_;
  std::unique_ptr<LinuxPrinterPort> printer_;
  std::unique_ptr<DemoBoard> board_;
  std::unique_ptr<RecordingSource> recording_;
  std::unique_ptr<RtAudioSoundSystem> soundCard_;
  std::unique_ptr<VirtualSoundSystem> virtualSound_;
  std::unique_ptr<SourcedSoundSystem> sourcedSound_;
  std::unique_ptr<SettingsStore> settings_;
  std::unique_ptr<FileWorker> fileWorker_;
  std::unique_ptr<Sockets> network_;  // in virtual time nobody outside can connect
  std::unique_ptr<Machine> machine_;
  int captureDevice_ = 1, playbackDevice_ = 1;
  std::vector<std::string> notices_;
};

}  // namespace quorl
