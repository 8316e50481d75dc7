// The whole radio without a window: frame, panels, sound devices of memory and a simulated board, on the
// virtual clock.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/frmMain.h"
#include "platform/files/FileInstanceLock.h"
#include "platform/linux/media/SndfileSoundFiles.h"
#include "platform/virtual/VirtualFileWorker.h"
#include "platform/virtual/VirtualFiles.h"
#include "platform/virtual/VirtualProcesses.h"
#include "platform/virtual/VirtualSockets.h"
#include "platform/virtual/VirtualSoundSystem.h"
#include "rigs/Hands.h"
#include "rigs/VirtualDesk.h"
#include "signals/Measures.h"
#include "sim/SimulatedReceiver.h"
#include "support/Text.h"

namespace quorl::test {

// A broadcaster on 7205 kHz with a heterodyne 1300 Hz above it, and a sideband station.
inline constexpr char kTinyBand[] =
    "[band]\nnoise_dbm_hz = -170\n"
    "[station Broadcaster]\nfrequency_khz = 7205\nmode = am\nlevel_dbm = -60\ndepth_percent = 10\n"
    "programme = tone 500 20\n"
    "[station Heterodyne]\nfrequency_khz = 7206.3\nmode = carrier\nlevel_dbm = -66\n"
    "[station Talker]\nfrequency_khz = 7100\nmode = lsb\nlevel_dbm = -60\nprogramme = tone 800 20\n";

// Two sub-bands, one of them with the sideband station as its preset.
inline constexpr char kTinyPlan[] =
    "[MainBand]\r\nCaption=Ham\r\n"
    "[SubBand.0]\r\nCaption=40m\r\nFreqMin=7000000\r\nFreqMax=7300000\r\nActivePreset=0\r\nFreqCurrent="
    "7205000\r\n"
    "[Preset.0.0]\r\nFreqCurrent=7100000\r\nDemodMode=2\r\nFilterMode=2\r\nIFFilterActive=True\r\n"
    "IFFilterMode=2\r\n"
    "[SubBand.1]\r\nCaption=30m\r\nFreqMin=10100000\r\nFreqMax=10150000\r\n";

inline std::unique_ptr<SimulatedBand> TinyBand() {
  BandDefinition definition;
  Failure failure = ParseStations(kTinyBand, "tiny", definition);
  if (failure) throw std::runtime_error(failure->Text);
  auto band = SimulatedBand::Build(definition, "tiny", {}, failure);
  if (failure) throw std::runtime_error(failure->Text);
  return band;
}

// Counts how often each file is written, and refuses nothing.
class CountingFiles : public VirtualFiles {
 public:
  Failure Replace(const std::string& path, const std::string& content) override {
    if (path == Watched) ++Writes;
    Failure failure = VirtualFiles::Replace(path, content);
    if (path == Watched && !failure) LastWritten = content;
    return failure;
  }
  std::string Watched;
  std::string LastWritten;  // with success
  int Writes = 0;
};

// Breaks in the middle of the start when told to.
class BreakingSound : public VirtualSoundSystem {
 public:
  using VirtualSoundSystem::VirtualSoundSystem;
  std::vector<std::string> CaptureDeviceNames() override {
    OnList();
    if (Breaks) throw std::runtime_error("the sound system is out of order");
    return VirtualSoundSystem::CaptureDeviceNames();
  }
  std::unique_ptr<PlaybackBuffer> CreatePlaybackBuffer(int device, const SoundFormat& format, int bytes,
                                                       SoundNotifier notifier, Failure& failure) override {
    OnOpen(device);
    if (device == BrokenPlayback) {
      failure = Error{19, "the device is in use"};
      return nullptr;
    }
    return VirtualSoundSystem::CreatePlaybackBuffer(device, format, bytes, std::move(notifier), failure);
  }
  bool Breaks = false;
  int BrokenPlayback = 0;                        // number of one that can't be opened
  std::function<void()> OnList = [] {};          // the start asks for its devices half way
  std::function<void(int)> OnOpen = [](int) {};  // a playback device is about to be opened
};

class FrameRig : public VirtualDesk, public Hands {
 public:
  static constexpr char kSettings[] = "config/settings.ini";

  explicit FrameRig(const std::string& moreSettings = {}, int model = 0, bool lowSide = false)
      : Board(model, TinyBand(), SettingsOf(model, lowSide)) {
    Listen(Board.Cable(), false);
    Sound.AddCaptureDevice("Line In", Board.Board());
    Sound.AddCaptureDevice("Microphone", Board.Board());
    Sound.AddPlaybackDevice("Loudspeaker", nullptr);
    Sound.AddPlaybackDevice("Headset", nullptr);
    Storage.Put("plans/Broadcast.bpl", "");
    Storage.Put("plans/Amateur.bpl", "");
    Storage.Put("plans/readme.txt", "");
    Storage.Put(kSettings,
                "[Memories]\nSafeMemories=True\n[frmMain]\nKBDSupport=True\n[DDSAD9951]\nClkIn=360096000\n["
                "VFO1.DRT1]\nTunedFrequency="
                "72050000\n" +
                    moreSettings);
    Storage.Watched = kSettings;
  }
  ~FrameRig() override { Stop(); }

  // The frame as it stands before its start.
  void Make() {
    lock_ = std::make_unique<FileInstanceLock>(Storage);
    store_ = std::make_unique<SettingsStore>(Storage, kSettings, lock_.get());
    Options.OnBoard = [this](std::int32_t model) { Board.SetModel(model); };
    Log = std::make_unique<LogBook>(Storage, Clock, "log/quorl.log");
    frame_ = std::make_unique<frmMain>(Machine{Queue, Clock, Boxes, Storage, Worker, Media, *lock_, Sound,
                                               Serial, Printer, Programs, Network},
                                       *store_, *Log, Options);
    frame_->OnSplash = [this](bool visible) { Splash.push_back(visible); };
    frame_->OnClose = [this] { ++Closed; };
    frame_->OnForm = [this] { OnForm(); };
  }
  // False where the program would end.
  bool Start() {
    Make();
    const bool started = frame_->Form_Initialize();
    if (started) Hear();
    return started;
  }
  // The program ends; the files stay for the next start.
  void Stop() {
    if (frame_) frame_->Form_Unload();
    frame_.reset();
    Log.reset();
    store_.reset();
    lock_.reset();
  }
  void Restart() {
    Stop();
    if (!Start()) throw std::runtime_error("the radio does not start again");
  }

  frmMain& Frame() { return *frame_; }
  PublicVars& Vars() { return frame_->Radio().Rx.Vars; }
  clsVFO& VFO() { return frame_->Radio().VFO(); }
  SettingsStore& Store() { return *store_; }

  const ControlRegistry& Registry() override { return frame_->Controls(); }
  // Frequency at the board's chip, dHz, rounded.
  std::int64_t Oscillator() { return std::llround(Board.Chip().OutputHz().value_or(0.0) * 10.0); }
  std::string StoredText() {
    Failure failure;
    return Storage.Read(kSettings, failure).value_or("");
  }

  // Amplitude of a tone in the last `seconds` of what was heard.
  double Tone(double hertz, double seconds = 1.0) const {
    return LineAt(LastHeard(seconds), hertz, Window::Blackman);
  }
  double Loudness(double seconds = 0.5) const { return RootMeanSquare(LastHeard(seconds)); }

  CountingFiles Storage;
  SndfileSoundFiles Media{Storage};
  VirtualFileWorker Worker{Queue};
  VirtualProcesses Programs;
  VirtualSockets Network{Queue};
  SimulatedReceiver Board;
  BreakingSound Sound{Queue, Clock};
  StartOptions Options{"", "plans", {}};
  std::unique_ptr<LogBook> Log;
  std::vector<bool> Splash;
  int Closed = 0;
  std::function<void()> OnForm = [] {};
  bool KeepAudio = true;
  std::int64_t Blocks = 0;
  std::vector<std::int16_t> Heard;
  std::int32_t Attenuation = 0;

 private:
  static BoardSettings SettingsOf(int model, bool lowSide) {
    BoardSettings settings = BoardOfModel(model);
    settings.LowSideInjection = lowSide;
    return settings;
  }
  std::span<const std::int16_t> LastHeard(double seconds) const {
    return std::span<const std::int16_t>(Heard).last(
        std::min(Heard.size(), static_cast<std::size_t>(seconds * FSampling)));
  }
  void Hear() {
    frame_->Radio().OnAudio = [this](const std::int16_t* block, std::int32_t attenuation) {
      ++Blocks;
      Attenuation = attenuation;
      if (KeepAudio) Heard.insert(Heard.end(), block, block + SamplesPerEvent);
    };
  }

  std::unique_ptr<FileInstanceLock> lock_;
  std::unique_ptr<SettingsStore> store_;
  std::unique_ptr<frmMain> frame_;
};

}  // namespace quorl::test
