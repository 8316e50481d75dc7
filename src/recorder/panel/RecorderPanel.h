// The recorder's strip: ten transport buttons, what is to be recorded and how, what the deck does at present.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "config/SettingsTable.h"
#include "controls/Controls.h"
#include "controls/LatchButton.h"
#include "controls/MarkedSlider.h"
#include "controls/Timer.h"
#include "interaction/PanelContext.h"
#include "platform/files/PostedFiles.h"
#include "recorder/clsWavFile.h"
#include "recorder/panel/Conversions.h"
#include "recorder/panel/NameBox.h"
#include "recorder/panel/RecordFileError.h"
#include "recorder/panel/RecordingOptions.h"
#include "recorder/panel/TrackList.h"

namespace quorl {

// What the panel needs of those beside it. Every entry may stay as it is.
struct RecorderLinks {
  std::function<void(bool on)> PressPower = [](bool) {};
  std::function<bool()> IsOn = [] { return false; };
  // Nothing comes in or goes out, although it is on: the sound card is somebody else's.
  std::function<bool()> IsSoundLent = [] { return false; };
  std::function<void(bool shown)> ShowMemories = [](bool) {};  // make room for the tracks, or come back
  std::function<void()> Changed = [] {};                       // another state of the deck
  // What the timer does or is about to do, in one line; empty for nothing.
  std::function<std::string()> TimerState = [] { return std::string(); };
  std::function<void(const std::string& line)> Log = [](const std::string&) {};
  const SoundFiles* Media = nullptr;  // sounds of other makes, and what tracks are exported to
};

// Places in cmdWavCtls.
struct WavCtl {
  static constexpr int Record = 0, Play = 1, Pause = 2, Stop = 3, Previous = 4, Next = 5, Loop = 6, Load = 7,
                       Save = 8, Close = 9, Count = 10;
};

// PlayerMode beside PlayerModes.
struct DeckMode {
  static constexpr std::int32_t Paused = 3, Stopped = 4;
};

// One click routine serves all buttons, one click at a time: what is pressed while a box of the click before
// stands open is dropped. Buttons look as the deck's state says, whoever brought it there.
class RecorderPanel {
 public:
  // All outlives the panel.
  RecorderPanel(const PanelContext& context, const WavFileMachine& machine, clsWavFile& deck,
                RecorderLinks links);
  ~RecorderPanel();

  Frame frRecorder;
  ControlArray<LatchButton> cmdWavCtls;
  Picture picWavCtlsOffFocus;  // takes the keyboard from a pressed button, so that the keys tune on
  Picture shpLooping;
  Label lblRecorderState, lblRecordTime, lblRecordSize, lblRecorderDisk, lblRecorderDiskDesc;
  MarkedSlider sldRecorderSeek;  // tenths of a second from the file's beginning
  Label lblRecorderLeft;
  Timer tmrRecorderWrite, tmrPlaybackRead;
  NameBox Name;
  RecordingOptions Options;
  TrackList Tracks;
  RecordFileError Error;
  Conversions Sounds;

  void cmdWavCtls_Click(int index);
  // Takes over what the settings have brought.
  void Initialise();
  // After each block that was heard: the numbers.
  void Housekeep();
  // The state, whoever changed it: the deck, the power, the receiver.
  void ShowState();
  bool IsRecording() const { return deck_.IsRecording(); }
  // A click is being carried out, perhaps with a box that waits for an answer.
  bool IsClicking() const { return inClick_; }
  // For the timer: Record at the rate of that place (TimerProgramme::Rate). What was chosen by hand comes
  // back when the deck is free again.
  void RecordAt(std::int32_t rate);
  // The timer has emptied the deck.
  void TakeEmptyDeck();
  // Calls `write` while the deck holds what was chosen by hand.
  void WithOwnChoice(const std::function<void()>& write);
  // Section "Recorder".
  void AddOwnSettings(SettingsTable& table) { Options.AddSettings(table); }

 private:
  enum class Unsaved { None, Goes, Stays };
  struct Choice {
    std::int32_t Decimator;
    bool IF;
  };

  void MakeButtons();
  void ConnectDeck();
  void ConnectControls();
  void GiveKeysBack();
  void RecordPressed();
  void PlayPressed();
  void PausePressed();
  void StopPressed();
  void PreviousPressed() { Tracks.Step(-1); }
  void NextPressed() { Tracks.Step(1); }
  void LoopPressed();
  void LoadPressed();
  void SavePressed();
  void ClosePressed();
  bool HasSomethingToPlay();
  bool SaveForPlaying();
  bool OpenLoaded();
  bool IsToBeReplaced();
  void ConnectSounds();
  void Import();
  void TakeImported();
  void ExportTracks(std::optional<std::size_t> record, bool flac);
  Unsaved AskAboutUnsaved();
  void Rewind();
  void WavFile_CatalogueLoaded();
  void WavFile_DiskRead(std::int64_t position);
  void WavFile_PlayEnd();
  void tmrRecorderWrite_Timer();
  void tmrPlaybackRead_Timer();
  void Seek();

  void ShowButtons();
  void ShowTracks(bool shown);
  void ShowLine();
  void ShowCounters();
  void ShowPlace();
  void LookAtDisk();
  void ShowDisk();
  std::optional<double> HoursLeft() const;
  std::string StateText() const;
  std::string Caution() const;
  bool IsPaused() const { return deck_.PlayerMode() == DeckMode::Paused; }
  bool Takes() const;  // a recording runs or is paused
  bool Gives() const;  // a file is played or is paused
  RecordingFormat Format() const;
  Choice Chosen() const { return {deck_.Decimator(), deck_.RecordIF}; }
  void Choose(const Choice& choice);

  PanelContext context_;
  clsWavFile& deck_;
  Dialogs& boxes_;
  Files& files_;
  const Clock& clock_;
  RecorderLinks links_;
  FileCalls calls_;
  Listening listening_;
  std::int64_t samples_ = 0, shownSamples_ = 0;
  std::optional<std::int64_t> freeBytes_;
  std::int64_t lookedAtDisk_ = 0;  // microseconds
  std::string note_;               // stands in the line until the next click
  std::int32_t parts_ = 0;
  std::optional<Choice> own_;  // by hand, while the timer has chosen another one
  double saved_ = 0;           // share, while a save copies
  bool looking_ = false;
  bool started_ = false;  // nothing is asked of the disk before
  bool inClick_ = false, inWrite_ = false, inRead_ = false, keysHere_ = false;
  bool plays_ = false;                // Play has begun, and neither Stop nor the end has come
  std::string importing_, imported_;  // a sound of another make, and the recording that it has become
  bool replaces_ = false;  // the file that is being opened takes the place of a recording that nobody saved
  bool endWaits_ = false;  // the end came while a click was being carried out
  bool writeFails_ = false;
};

}  // namespace quorl
