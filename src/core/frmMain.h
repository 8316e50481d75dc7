// The main panel as composition root: brings the receiver alive, keeps its settings, lets it go.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "config/ColourSchemes.h"
#include "config/SettingsStore.h"
#include "config/SettingsTable.h"
#include "configuration/ConfigSetup.h"
#include "configuration/frmCalibrate.h"
#include "configuration/frmConfig.h"
#include "controls/ControlRegistry.h"
#include "controls/Controls.h"
#include "core/LiveRadio.h"
#include "core/MainOptions.h"
#include "core/PlayedBand.h"
#include "core/StartOptions.h"
#include "core/SteeredRadio.h"
#include "core/UnattendedDialogs.h"
#include "diagnostics/LogBook.h"
#include "diagnostics/LogPanel.h"
#include "diagnostics/StatsPanel.h"
#include "display/SMeterPanel.h"
#include "display/scope/ScopePanel.h"
#include "drm/HandOver.h"
#include "drm/modDream.h"
#include "interaction/PanelColours.h"
#include "interaction/PanelTexts.h"
#include "interaction/ScrollableControls.h"
#include "memories/panel/MemoriesPanel.h"
#include "platform/Machine.h"
#include "platform/files/PostedFiles.h"
#include "reception/AGCPanel.h"
#include "reception/BFOPanel.h"
#include "reception/DecoderNote.h"
#include "reception/DemodPanel.h"
#include "reception/FilterPanel.h"
#include "reception/IFFilterPanel.h"
#include "reception/NBPanel.h"
#include "reception/NotchPanel.h"
#include "reception/VolumePanel.h"
#include "recorder/RecoveryOffer.h"
#include "recorder/panel/RecorderPanel.h"
#include "recorder/panel/TimerPanel.h"
#include "remote/RemoteServer.h"
#include "tuning/FrequencyEntry.h"
#include "tuning/TuningPanel.h"

namespace quorl {

// Stands before the routine's name in the log lines of the start.
inline constexpr char kFrameTag[] = "frmMain:frmMain:";

// States: loading (until Form_Load ends), Off, On. All parts are there from construction as shells, which
// read, open and make nothing. Every step of the start writes its line to the log before it does its work;
// where that has been done with the parts' construction, the line is all there is of it. Those lines are what
// a user sends in when a start fails.
class frmMain {
 public:
  // Everything outlives the panel. `store` is loaded here.
  frmMain(Machine machine, SettingsStore& store, LogBook& log, StartOptions options);
  ~frmMain();
  frmMain(const frmMain&) = delete;
  frmMain& operator=(const frmMain&) = delete;

  // The whole start. False where the program has to end; the user has been told why.
  bool Form_Initialize();
  // Stops the sound, stores the settings, lets the objects go. Once; the controls go with it.
  void Form_Unload();

  void optPwr_Click(int index);
  // Whether anybody can see the panel. Unseen, its digits and its scope follow the radio at their leisure.
  void SetSeen(bool seen);
  // The window's size, in pixels, to be kept for the next start; and the last start's, 0 for none.
  void NoteWindowSize(std::int32_t width, std::int32_t height);
  std::int32_t WindowWidth() const { return stored_.WindowWidth; }
  std::int32_t WindowHeight() const { return stored_.WindowHeight; }
  void RestoreSettings();
  void SaveSettings();

  // The user wants the program to end.
  std::function<void()> OnClose = [] {};
  // The title bar is to go, while the power is on, or to come back; the panel below it keeps its size.
  std::function<void(bool shown)> OnCaption = [](bool) {};
  // The user wants the page of the first start. False leaves it to the panel, which shows it over the
  // configuration.
  std::function<bool()> OnFirstStart = [] { return false; };
  // The user wants to read the guide.
  std::function<void()> OnGuide = [] {};
  // Told at the start, when the splash panel comes and goes.
  std::function<void(bool visible)> OnSplash = [](bool) {};
  // The colours of the panel, once they have been read and whenever it is painted anew.
  std::function<void(const ColourSchemes& colours)> OnColours = [](const ColourSchemes&) {};
  // Told at the start, when the form's controls are there: the window may open, and the boxes of the steps to
  // come stand over it.
  std::function<void()> OnForm = [] {};

  ControlRegistry& Controls() { return registry_; }
  LiveRadio& Radio() { return radio_; }
  TuningPanel& Tuning() { return tuning_; }
  ScopePanel& Scope() { return scope_; }
  ScrollableControls& Scrollables() { return scrollables_; }
  const std::vector<BandPlan>& MainBands() const { return memories_.BandPlans; }
  MemoriesPanel& Memories() { return memories_; }
  PlayedBand& Played() { return played_; }
  frmCalibrate& Calibrate() { return calibrate_; }
  clsWavFile& WavFile() { return wavFile_; }
  modDream& Dream() { return dream_; }
  HandOver& Decoder() { return handOver_; }
  // What clients on the network get hold of.
  RemoteRadio& Steered() { return steered_; }
  bool IsOn() const { return on_; }
  bool CaptionRemoved() const { return captionRemoved_; }

 private:
  void Log(const char* routine, const std::string& text);
  void INIT();
  bool FindBandPlans();
  bool Form_Load();
  void LoadSteps();
  void ConnectForm();
  void ConnectColours();
  void AddSettings();
  void WriteSettings();
  TuningPanelLinks LinksOfTuning();
  ScopePanelLinks LinksOfScope();
  MemoryLinks LinksOfMemories();
  WavFileMachine DeckMachine() const;
  RecorderLinks LinksOfRecorder();
  TimerLinks LinksOfTimer();
  TimerPanelLinks LinksOfTimerPanel();
  bool IsReadyForTimer();
  std::string TuneForTimer(const TimerTarget& target);
  TimerTarget TunedForTimer();
  void TimerChanged();
  ConfigLinks LinksOfConfig();
  ConfigSetupLinks LinksOfSetup();
  void ConnectSetup();
  void ExchangeBoard(std::int32_t SDRModelNo, std::int32_t interfaceType);
  void ChangeDevices(std::int32_t capture, std::int32_t playback);
  void PaintPanel();
  void MakeTuning();
  void TakeTuning();
  void LetGoOfTuning();
  void TellTuningFaults(bool open);
  void ApplyStored();
  void InitialiseSoundCard();
  void ConnectHousekeeping();
  void ConnectScope();
  void ConnectRecorder();
  void FollowDeck();
  void ApplyPace();
  void EnableTimers();
  void SwitchPower(bool on);
  void FollowPower();
  void RemoveCaption(bool removed);
  void PowerOn();
  void PowerOff();
  void ChooseDevices();
  void StartSound();
  DreamLinks LinksOfDream();
  HandOverLinks LinksOfHandOver();
  SteeredRadioLinks LinksOfSteered();
  void ReleaseSound();
  void OpenSound();
  void StartRemote();
  void LogSoundFailure(const Error& failure);
  void PaintPower();
  void RestMeters();
  void StartSaving();
  void SaveNow();
  void Form_KeyDown(const Key& key);
  bool IsTuningKey(const Key& key);
  bool TypesFrequency(const Key& key);
  void ReportLoadError(const std::string& text);

  UnattendedDialogs boxes_;
  Machine machine_;  // with these boxes
  SettingsStore& store_;
  PostedFiles beside_{machine_.Storage, machine_.Beside};
  LogBook& log_;
  StartOptions options_;
  clsWavFile wavFile_;
  RecoveryOffer offer_;
  MainOptions stored_;
  bool loading_ = true;
  bool on_ = false;
  bool powerWanted_ = false;  // what the last click asked for
  bool switching_ = false;
  bool seen_ = true;
  bool captionRemoved_ = false;
  bool formed_ = false;  // the form is there: what follows has to be let go
  bool unloaded_ = false;
  int wantedSize_ = 0;  // optDisplaySize
  int loadStep_ = 0;

  ControlRegistry registry_;
  ColourSchemes scheme_;
  LiveRadio radio_;
  PlayedBand played_;
  std::string playedFile_;  // that what is set belongs to
  LogPanel logPanel_;
  Picture form_;  // the window itself: keys and pointer that no control took
  Frame frPwr_, frDispMode_;
  OptionGroup optPwr_, optDisplaySize_;
  ScrollableControls scrollables_;
  PanelColours colours_;
  PanelContext context_;
  TuningPanel tuning_;
  FrequencyEntry entry_;
  IFFilterPanel ifFilter_;
  FilterPanel filter_;
  DemodPanel demod_;
  DecoderNote decoderNote_;
  NotchPanel notch_;
  NBPanel nb_;
  AGCPanel agc_;
  VolumePanel volume_;
  BFOPanel bfo_;
  StatsPanel stats_;
  SMeterPanel smeter_;
  ScopePanel scope_;
  MemoriesPanel memories_;
  RecorderPanel recorder_;
  RecordingTimer timer_;
  TimerPanel timerPanel_;
  modDream dream_;
  HandOver handOver_;
  SteeredRadio steered_;
  RemoteOptions remote_;
  RemoteServer server_;
  frmCalibrate calibrate_;
  frmConfig config_;
  ConfigSetup setup_;
  Timer tmrSaveSettings_, tmrUnload_;
  SettingsTable early_;     // read before window and tuning are made of it: colours, size, board, interface
  SettingsTable settings_;  // the rest, read at its own step
  SettingsTable ownMemories_{"Memories"}, wavFileRows_{"WavFile"}, ownRecorder_{"Recorder"},
      timerRows_{"Timer"}, remoteRows_{"Remote"};
  Listening following_;
};

}  // namespace quorl
