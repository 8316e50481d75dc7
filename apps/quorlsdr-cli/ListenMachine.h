// The machine that `listen` runs on: real or simulated board, real or silent loudspeaker, real or virtual
// time.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ListenOptions.h"
#include "config/SettingsStore.h"
#include "platform/Machine.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/LinuxEventQueue.h"
#include "platform/linux/LinuxFiles.h"
#include "platform/linux/LinuxInstanceLock.h"
#include "platform/linux/LinuxPrinterPort.h"
#include "platform/linux/LinuxProcesses.h"
#include "platform/linux/LinuxSerialPort.h"
#include "platform/linux/RtAudioSoundSystem.h"
#include "platform/linux/TerminalDialogs.h"
#include "platform/virtual/SourcedSoundSystem.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualSoundSystem.h"
#include "shared/DemoBoard.h"
#include "sim/RecordingSource.h"

namespace quorl::cli {

// Without a loudspeaker the demo plays silently at the clock's pace; with an output file and a length it runs
// on virtual time, as fast as the machine allows.
class ListenMachine {
 public:
  // Null with `failure` set where something that was asked for isn't there.
  static std::unique_ptr<ListenMachine> Create(const ListenOptions& options, Failure& failure);

  Machine& Parts() { return *machine_; }
  SettingsStore& Settings() { return *settings_; }
  int CaptureDevice() const { return captureDevice_; }
  int PlaybackDevice() const { return playbackDevice_; }
  // One line for the user about what is not as one would expect; may be empty.
  const std::string& Notice() const { return notice_; }
  bool IsVirtualTime() const { return virtualQueue_ != nullptr; }
  // Real time only: keys from the terminal come through it.
  LinuxEventQueue& RealQueue() { return queue_; }

  // Delivers events until `done` says so.
  void RunUntil(const std::function<bool()>& done);

 private:
  ListenMachine() = default;
  Failure PutTogether(const ListenOptions& options);
  Failure ConnectDemo(const ListenOptions& options);
  Failure ConnectRadio(const ListenOptions& options);
  SampleSource* AntennaOf(const ListenOptions& options, Failure& failure);

  LinuxEventQueue queue_;
  LinuxClock clock_;
  VirtualClock virtualClock_;
  std::unique_ptr<VirtualEventQueue> virtualQueue_;
  LinuxFiles files_;
  LinuxInstanceLock lock_;
  LinuxProcesses processes_;
  LinuxSerialCalls serialCalls_;
  LinuxPrinterCalls printerCalls_;
  std::unique_ptr<TerminalDialogs> dialogs_;
  std::unique_ptr<LinuxSerialPort> serial_;
  std::unique_ptr<LinuxPrinterPort> printer_;
  std::unique_ptr<DemoBoard> board_;
  std::unique_ptr<RecordingSource> recording_;
  std::unique_ptr<RtAudioSoundSystem> soundCard_;
  std::unique_ptr<VirtualSoundSystem> virtualSound_;
  std::unique_ptr<SourcedSoundSystem> sourcedSound_;
  std::unique_ptr<SettingsStore> settings_;
  std::unique_ptr<Machine> machine_;
  int captureDevice_ = 1, playbackDevice_ = 1;
  std::string notice_;
};

}  // namespace quorl::cli
