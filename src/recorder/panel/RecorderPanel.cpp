// What the buttons do; what they show is in RecorderPanelShow.cpp.
#include "recorder/panel/RecorderPanel.h"

#include <array>
#include <utility>

#include "support/Product.h"
#include "support/ScopedFlag.h"

namespace quorl {
namespace {

constexpr int kWriteDelay = 2, kReadDelay = 4;  // ms

constexpr std::array<ButtonText, WavCtl::Count> kTexts{{
    {"Record", "Record"},
    {"Play", "Play"},
    {"Pause", "Pause"},
    {"Stop", "Stop"},
    {"Previous Track", "Previous Track"},
    {"Next Track", "Next Track"},
    {"Loop", "Continuous Looping Playback"},
    {"Load Wav File", "Load Wav File"},
    {"Save Recording", "Save Recording"},
    {"Close Recorder", "Close Recorder"},
}};

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash);
}

constexpr const char* kAnotherApplication =
    "\n Another application may be using the file\nClose the file in the other application";

}  // namespace

RecorderPanel::RecorderPanel(const PanelContext& context, const WavFileMachine& machine, clsWavFile& deck,
                             RecorderLinks links)
    : frRecorder(context.Registry, "frRecorder"),
      cmdWavCtls(context.Registry, "cmdWavCtls", WavCtl::Count),
      picWavCtlsOffFocus(context.Registry, "picWavCtlsOffFocus"),
      shpLooping(context.Registry, "shpLooping"),
      lblRecorderState(context.Registry, "lblRecorderState"),
      lblRecordTime(context.Registry, "lblRecordTime"),
      lblRecordSize(context.Registry, "lblRecordSize"),
      lblRecorderDisk(context.Registry, "lblRecorderDisk"),
      lblRecorderDiskDesc(context.Registry, "lblRecorderDiskDesc"),
      sldRecorderSeek(context.Registry, "sldRecorderSeek"),
      lblRecorderLeft(context.Registry, "lblRecorderLeft"),
      tmrRecorderWrite(machine.Queue, [this] { tmrRecorderWrite_Timer(); }),
      tmrPlaybackRead(machine.Queue, [this] { tmrPlaybackRead_Timer(); }),
      Name(context.Registry, deck, machine.Boxes),
      Options(context, deck),
      Tracks(context.Registry),
      Error(context.Registry),
      Sounds(machine, links.Media, FolderOf(deck.TempFileName())),
      context_(context),
      deck_(deck),
      boxes_(machine.Boxes),
      files_(machine.Storage),
      clock_(machine.Time),
      links_(std::move(links)),
      calls_(machine.Worker) {
  context_.Colours.Add(frRecorder);
  context_.Colours.Add(Tracks.picRecorderTrackList);
  MakeButtons();
  ConnectControls();
  ConnectDeck();
  ConnectSounds();
}

RecorderPanel::~RecorderPanel() {
  deck_.ReadNextBlockFromDisk = deck_.WriteNextBlockToDisk = deck_.PlayEnd = [] {};
  deck_.CatalogueLoaded = deck_.PartFinished = [](std::int32_t) {};
  deck_.DiskRead = [](std::int64_t) {};
  deck_.SamplesPlayed = [](std::int32_t, std::int64_t) {};
  deck_.SaveProgress = [](double) {};
  deck_.Report = [](const std::string&) {};
}

void RecorderPanel::MakeButtons() {
  for (int i = 0; i < WavCtl::Count; ++i) {
    LatchButton& button = cmdWavCtls(i);
    button.Caption = kTexts[static_cast<std::size_t>(i)].Caption;
    button.ToolTip = kTexts[static_cast<std::size_t>(i)].ToolTip;
    button.Click = [this, i] { cmdWavCtls_Click(i); };
    button.GotFocus = [this] { keysHere_ = true; };
    button.LostFocus = [this] { keysHere_ = false; };
  }
}

void RecorderPanel::ConnectControls() {
  picWavCtlsOffFocus.AccessibleName = "Recorder, the keys tune";
  shpLooping.Caption = "Loop";
  shpLooping.Visible = false;
  lblRecordTime.Caption = "00:00:00";
  lblRecordTime.AccessibleName = "Elapsed";
  lblRecordSize.Caption = "000,000,000";
  lblRecordSize.AccessibleName = "Size (KB)";
  lblRecorderState.AccessibleName = "Recorder";
  lblRecorderDisk.AccessibleName = "Hours that the disk still holds";
  lblRecorderDiskDesc.Caption = "h free";
  lblRecorderDisk.Visible = lblRecorderDiskDesc.Visible = false;
  lblRecorderLeft.AccessibleName = "Time left";
  sldRecorderSeek.AccessibleName = "Place in the recording";
  sldRecorderSeek.Scroll = [this] { Seek(); };
  Tracks.Chosen = [this](std::int32_t record) {
    deck_.NumSamples = 0;
    deck_.PlayFrom(record);
  };
  Options.Changed = [this] { ShowState(); };
  listening_ = context_.Rx.Changed.Listen([this](ReceiverPart) { ShowLine(); });
}

void RecorderPanel::ConnectDeck() {
  deck_.MuteTrailer = true;
  deck_.WriteNextBlockToDisk = [this] {
    tmrRecorderWrite.SetInterval(kWriteDelay);
    tmrRecorderWrite.SetEnabled(true);
  };
  deck_.ReadNextBlockFromDisk = [this] {
    tmrPlaybackRead.SetInterval(kReadDelay);
    tmrPlaybackRead.SetEnabled(true);
  };
  deck_.SamplesPlayed = [this](std::int32_t, std::int64_t samples) { samples_ = samples; };
  deck_.CatalogueLoaded = [this](std::int32_t) { WavFile_CatalogueLoaded(); };
  deck_.DiskRead = [this](std::int64_t position) { WavFile_DiskRead(position); };
  deck_.PlayEnd = [this] { WavFile_PlayEnd(); };
  deck_.PartFinished = [this](std::int32_t part) {
    parts_ = part;
    links_.Log("Recording: part " + std::to_string(part) + " is full, it goes on in the next file");
    ShowLine();
  };
  deck_.SaveProgress = [this](double share) {
    saved_ = share;
    ShowLine();
  };
  deck_.Report = [this](const std::string& line) { links_.Log(line); };
}

void RecorderPanel::Initialise() {
  started_ = true;
  ShowState();
}

// Pressed from the keyboard, a button gives it up, so that the next key tunes.
void RecorderPanel::GiveKeysBack() {
  if (keysHere_ && context_.Scrollables.GiveFocus) context_.Scrollables.GiveFocus(picWavCtlsOffFocus);
}

void RecorderPanel::cmdWavCtls_Click(int index) {
  using Routine = void (RecorderPanel::*)();
  static constexpr std::array<Routine, WavCtl::Count> kRoutines{
      &RecorderPanel::RecordPressed, &RecorderPanel::PlayPressed,     &RecorderPanel::PausePressed,
      &RecorderPanel::StopPressed,   &RecorderPanel::PreviousPressed, &RecorderPanel::NextPressed,
      &RecorderPanel::LoopPressed,   &RecorderPanel::LoadPressed,     &RecorderPanel::SavePressed,
      &RecorderPanel::ClosePressed};
  if (inClick_ || deck_.IsBusy()) return;
  {
    const ScopedFlag clicking(inClick_);
    GiveKeysBack();
    note_.clear();
    Name.Take();
    (this->*kRoutines.at(static_cast<std::size_t>(index)))();
  }
  saved_ = 0;
  TakeImported();
  ShowState();
  if (std::exchange(endWaits_, false)) WavFile_PlayEnd();
}

void RecorderPanel::RecordPressed() {
  if (IsPaused()) return deck_.Pause();
  if (deck_.IsRecording() || AskAboutUnsaved() == Unsaved::Stays || !IsToBeReplaced()) return;
  Sounds.Stop();
  replaces_ = plays_ = false;
  parts_ = 0;
  if (Gives()) {  // what the radio lent to the file it has back before anything is noted
    deck_.StopPlayer();
    links_.Changed();
  }
  if (deck_.OpenRecording() != 0) {
    links_.Log(deck_.LastFault() ? deck_.LastFault()->Text : "The recorder is busy");
    Error.Show("Unable to Create Temporary File " + deck_.TempFileName() + kAnotherApplication);
    if (keysHere_ && context_.Scrollables.GiveFocus)
      context_.Scrollables.GiveFocus(cmdWavCtls(WavCtl::Pause));
    return;
  }
  ShowTracks(false);
}

// Before a recording goes that nobody has saved.
RecorderPanel::Unsaved RecorderPanel::AskAboutUnsaved() {
  if (!deck_.IsUnsaved()) return Unsaved::None;
  const MessageAnswer answer = boxes_.ShowMessage({.Text = "Do you want to save the Recording ?",
                                                   .Title = kProductName,
                                                   .Icon = MessageIcon::Question,
                                                   .Buttons = MessageButtons::YesNoCancel});
  if (answer == MessageAnswer::No) return Unsaved::Goes;
  if (answer == MessageAnswer::Yes) deck_.Save();
  return answer == MessageAnswer::Yes && !deck_.IsUnsaved() ? Unsaved::None : Unsaved::Stays;
}

// One that was left behind, offered at the start and refused, goes with the first new one.
bool RecorderPanel::IsToBeReplaced() {
  if (!deck_.IsLeftBehind()) return true;
  return boxes_.ShowMessage(
             {.Text = "An earlier recording was left behind without being saved. The new one takes "
                      "its place.\nDo you want to record ?",
              .Title = kProductName,
              .Icon = MessageIcon::Question,
              .Buttons = MessageButtons::YesNo}) == MessageAnswer::Yes;
}

void RecorderPanel::PlayPressed() {
  if (!HasSomethingToPlay()) return;
  const std::int16_t result = deck_.Play();
  if (result != 0 && result != DeckCode::PlaysAlready) {
    note_ = "Nothing to play: Load a file";
    return;
  }
  plays_ = true;
  ShowButtons();
  links_.PressPower(true);
  if (links_.IsOn()) return;
  plays_ = false;  // without the sound nothing is played
  deck_.StopPlayer();
}

// A recording that has just been made is what Play means.
bool RecorderPanel::HasSomethingToPlay() {
  if (deck_.IsUnsaved()) return SaveForPlaying();
  if (deck_.HasFile() || deck_.StatusOfMedia() != MediaStatus::Saved) return true;
  deck_.TakeName(deck_.RecordFileName);
  return OpenLoaded();
}

bool RecorderPanel::SaveForPlaying() {
  const MessageAnswer answer = boxes_.ShowMessage(
      {.Text = "Recording must be saved before playback\nDo you want to save the Recording ?",
       .Title = kProductName,
       .Icon = MessageIcon::Question,
       .Buttons = MessageButtons::YesNo});
  if (answer != MessageAnswer::Yes) return false;
  const std::string before = std::exchange(deck_.RecordFileName, "");
  deck_.Save();
  if (deck_.IsUnsaved()) {
    deck_.RecordFileName = before;
    return false;
  }
  deck_.TakeName(deck_.RecordFileName);
  return OpenLoaded();
}

// With a file that can't be opened all stays as it was. One of another make becomes a recording first.
bool RecorderPanel::OpenLoaded() {
  lblRecorderState.Caption = "Opening " + deck_.FileShortName;
  const std::int16_t result = deck_.OpenFile();
  if (result == DeckCode::NotOurs && Sounds.CanConvert()) {
    Import();
    return false;
  }
  if (result != 0) {
    Error.Show(deck_.LastFault() ? deck_.LastFault()->Text
                                 : deck_.FileName + ": this is no recording of " + kProductName +
                                       ". Load a WAV file that was recorded with it");
    return false;
  }
  plays_ = false;
  samples_ = 0;
  if (std::exchange(replaces_, false)) deck_.Discard();
  Name.Show(deck_.FileName);
  ShowTracks(true);
  return true;
}

void RecorderPanel::ConnectSounds() {
  Sounds.Changed = [this] { ShowLine(); };
  Sounds.Failed = [this](const quorl::Error& fault) { Error.Show(fault.Text); };
  Sounds.Exported = [this](const std::string& line) {
    note_ = line;
    links_.Log(line);
  };
  Tracks.Export = [this](std::optional<std::size_t> record, bool flac) { ExportTracks(record, flac); };
}

void RecorderPanel::Import() {
  importing_ = deck_.FileName;
  Sounds.Import(importing_, [this](const std::string& recording) {
    imported_ = recording;
    if (inClick_ || deck_.IsBusy()) return;
    TakeImported();
    ShowState();
  });
}

// It goes by the name that it came from. Whoever records meanwhile doesn't want it any more.
void RecorderPanel::TakeImported() {
  const std::string recording = std::exchange(imported_, "");
  if (recording.empty() || (deck_.IsUnsaved() && !replaces_)) return;
  const ScopedFlag clicking(inClick_);
  const std::string directory = deck_.LastDirectory;
  deck_.TakeName(recording);
  const bool opened = OpenLoaded();
  deck_.TakeName(importing_);
  deck_.LastDirectory = directory;
  if (opened) Name.Show(importing_);
}

// The deck plays on meanwhile.
void RecorderPanel::ExportTracks(std::optional<std::size_t> record, bool flac) {
  if (!deck_.HasFile() || Sounds.IsRunning()) return;
  note_.clear();
  Sounds.Export(
      {deck_.FileName, TrackFolder(deck_.FileName), flac ? SoundFileKind::Flac : SoundFileKind::Wav, record});
}

void RecorderPanel::PausePressed() {
  const std::int32_t mode = deck_.PlayerMode();
  if (mode == PlayerModes::Recording || mode == PlayerModes::Playing || mode == DeckMode::Paused)
    deck_.Pause();
}

void RecorderPanel::StopPressed() {
  if (Sounds.IsRunning()) return Sounds.Stop();
  const bool again = Options.chkStayOn.Value() && links_.IsOn();
  plays_ = false;
  links_.PressPower(false);
  deck_.StopPlayer();
  ShowButtons();
  if (again) links_.PressPower(true);
}

void RecorderPanel::LoopPressed() {
  deck_.Looping = !deck_.Looping;
}

void RecorderPanel::LoadPressed() {
  const Unsaved unsaved = AskAboutUnsaved();
  if (unsaved == Unsaved::Stays || deck_.LoadMedia() != 0 || deck_.FileName.empty()) return;
  Sounds.Stop();
  replaces_ = unsaved == Unsaved::Goes;
  OpenLoaded();
}

void RecorderPanel::SavePressed() {
  const std::int32_t mode = deck_.PlayerMode();
  if (mode != DeckMode::Stopped && mode != PlayerModes::Recording && mode != DeckMode::Paused) return;
  deck_.Save();
  if (deck_.StatusOfMedia() == MediaStatus::Saved && !deck_.HasFile() && !deck_.RecordFileName.empty())
    Name.Show(deck_.RecordFileName);
}

void RecorderPanel::ClosePressed() {
  const Unsaved unsaved = AskAboutUnsaved();
  if (unsaved == Unsaved::Stays) return;
  if (unsaved == Unsaved::Goes) deck_.Discard();
  ShowTracks(false);
  if (deck_.CloseFile() != 0) {
    Error.Show("Unable to Close " + deck_.RecordFileName + kAnotherApplication);
    return;
  }
  samples_ = 0;
  plays_ = false;
  Tracks.Clear();
  if (!deck_.RecordFileName.empty()) Name.Show(deck_.RecordFileName);
  Name.Reset();
}

void RecorderPanel::Rewind() {
  Tracks.Select(0);
  deck_.NumSamples = 0;
}

// A loop goes on in the next block; what ends has been posted.
void RecorderPanel::WavFile_PlayEnd() {
  if (!plays_) return;
  if (deck_.Looping && !deck_.PlaybackFault()) {
    Rewind();
    deck_.Play();
    return;
  }
  if (inClick_) {
    endWaits_ = true;
    return;
  }
  if (deck_.PlaybackFault()) Error.Show(deck_.PlaybackFault()->Text);
  cmdWavCtls_Click(WavCtl::Stop);
  Rewind();
}

void RecorderPanel::WavFile_CatalogueLoaded() {
  const RecordingFormat& format = deck_.Playing();
  Tracks.Fill(deck_.Log(), format);
  std::vector<int> marks;
  for (const LogRecord& record : deck_.Log()) {
    const std::int64_t frames = (record.Start - format.DataAt()) / format.FrameBytes();
    marks.push_back(static_cast<int>(frames * 10 / format.Rate));
  }
  sldRecorderSeek.Marks = std::move(marks);
}

void RecorderPanel::WavFile_DiskRead(std::int64_t position) {
  Tracks.SelectRecord(FindRecord(deck_.Log(), position - 1));
}

void RecorderPanel::tmrRecorderWrite_Timer() {
  if (inWrite_) return;
  const ScopedFlag writing(inWrite_);
  tmrRecorderWrite.SetEnabled(false);
  tmrRecorderWrite.SetInterval(0);
  if (!deck_.BufferFull() || deck_.IsPaused()) return;
  const std::int16_t result = deck_.WriteToDisk();
  if (result == 0) writeFails_ = false;
  if (result <= 0 || std::exchange(writeFails_, true)) return;
  Error.Show((deck_.LastFault() ? deck_.LastFault()->Text : "The disk doesn't take the recording") +
             "\nThe recording goes on");
}

void RecorderPanel::tmrPlaybackRead_Timer() {
  if (inRead_) return;
  const ScopedFlag reading(inRead_);
  tmrPlaybackRead.SetEnabled(false);
  tmrPlaybackRead.SetInterval(0);
  deck_.ReadFromDisk();
}

void RecorderPanel::Seek() {
  const RecordingFormat format = deck_.Playing();
  const std::int64_t frame = std::int64_t{sldRecorderSeek.Value()} * format.Rate / 10;
  deck_.NumSamples = 0;
  deck_.SeekTo(deck_.FirstPosition() + frame * format.FrameBytes());
  ShowPlace();
}

}  // namespace quorl
