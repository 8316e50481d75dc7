// The deck: records what is heard with a log of the tuning, and plays it back.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "config/SettingsTable.h"
#include "platform/Clock.h"
#include "platform/Dialogs.h"
#include "platform/EventQueue.h"
#include "platform/files/FileInstanceLock.h"
#include "platform/files/PostedFiles.h"
#include "receiver/BlockRecorder.h"
#include "recorder/PlaybackQueue.h"
#include "recorder/RecordQueue.h"
#include "recorder/RecordingWriter.h"
#include "recorder/files/RecordingHeader.h"

namespace quorl {

// What methods return beside 0 for success and the system's positive error numbers.
struct DeckCode {
  static constexpr std::int16_t WriteIsRunning = -32767;  // four halves wait for the disk already
  static constexpr std::int16_t Busy = -32766;            // another call still waits for the disk
  static constexpr std::int16_t NothingToClose = -32765;
  static constexpr std::int16_t WriteWithoutRecording = -32764;
  static constexpr std::int16_t WriteWhilePaused = -32763;
  static constexpr std::int16_t NoFullHalf = -32762;
  static constexpr std::int16_t AddWithoutRecording = -32761;
  static constexpr std::int16_t WrongPlayerMode = -32760;
  static constexpr std::int16_t NotOurs =
      -32759;  // OpenFile: no recording of this program's; LastFault is empty
  static constexpr std::int16_t Cancelled = -32758;  // LoadMedia: no file was chosen
  static constexpr std::int16_t PlaysAlready = 1;
};

// Values of StatusOfMedia.
struct MediaStatus {
  static constexpr std::int32_t None = 0, Unsaved = 3, Saved = 4;
};

struct WavFileMachine {
  Files& Storage;
  FileWorker& Worker;
  EventQueue& Queue;
  Dialogs& Boxes;
  const Clock& Time;
};

// A recording grows in a temporary file; Save gives it a name. What can take the disk's time is done beside
// the queue's thread: OpenRecording, CloseRecording, Save, OpenFile and CloseFile deliver other events of the
// queue while they wait, and a second call of them meanwhile does nothing. The calls of the block pump
// (AddSamples, GetNextSamples and their IF twins) neither wait nor allocate.
//
// Positions count the bytes of a file from 1, but those of the log from 0.
class clsWavFile final : public BlockRecorder {
 public:
  // `folder` holds the temporary file. Everything handed in outlives the deck.
  clsWavFile(const WavFileMachine& machine, const std::string& folder);
  ~clsWavFile() override;

  // What is tuned, dHz; asked for as a recording begins.
  std::function<std::int32_t()> TunedFrequency = [] { return 0; };
  // Board and side of an IF recording that begins.
  std::function<IFOrigin()> Origin = [] { return IFOrigin{}; };

  // Events.
  std::function<void()> ReadNextBlockFromDisk = [] {};  // from the pump
  std::function<void()> WriteNextBlockToDisk = [] {};   // from the pump
  // From the pump where `Looping`, otherwise posted. PlaybackFault tells why where it wasn't the end.
  std::function<void()> PlayEnd = [] {};
  std::function<void(std::int32_t tracks)> CatalogueLoaded = [](std::int32_t) {};
  std::function<void(std::int64_t position)> DiskWrite = [](std::int64_t) {};  // a half has been written
  std::function<void(std::int64_t position)> DiskRead = [](std::int64_t) {
  };  // posted: a half has been played
  std::function<void(std::int32_t level, std::int64_t samples)> SamplesPlayed = [](std::int32_t,
                                                                                   std::int64_t) {};
  // Ours: a finished part of a long recording, by its number from 1; bytes copied by a save onto another
  // disk.
  std::function<void(std::int32_t part)> PartFinished = [](std::int32_t) {};
  std::function<void(double share)> SaveProgress = [](double) {};
  // A line for the log panel.
  std::function<void(const std::string&)> Report = [](const std::string&) {};

  // Settings. They take effect as the next recording or file is opened.
  std::int32_t RecBlockSizeInSamples = 131072;
  std::int32_t PlayBlockSizeInSamples = 32768;
  std::int32_t SamplingRate = 48000;
  std::int32_t BitsPerSample = 16;
  std::int32_t NumChannels = 1;
  std::string RecordFileName;  // with its directory; empty: Save asks
  std::string LastDirectory;
  bool KeepTail = false;  // also writes the unfinished half at the end
  bool RecordIF = false;  // the next recording takes the captured blocks
  // 1, 2, 4, 8, 16: as it was set; while a file is open, that of the file.
  std::int32_t Decimator() const { return HasFile() ? RateFactor() : decimator_; }
  void SetDecimator(std::int32_t decimator);
  std::int32_t WavSamplingRate() const { return SamplingRate / Decimator(); }
  // A file never grows beyond this many bytes, trailer included; a recording goes on in a next one.
  std::int64_t MostFileBytes = 2147483647;
  // Where files are sought first, while the user hasn't been anywhere.
  std::string DefaultDirectory;

  // State.
  std::string FileName, FileShortName;  // what OpenFile opens
  bool Looping = false;
  bool MuteTrailer = false;  // playing ends with the samples, not with the file
  std::int64_t NumSamples = 0, TotSamplesOut = 0, SamplesQueued = 0, FileSize = 0;
  std::int64_t RecordingOffsetInBytes = 0;  // a jump to come, 0 for none
  std::int32_t NumberOfTracks = 0;
  bool BufferFull() const { return queue_.IsFull(); }
  bool IsRecording() const { return isRecording_; }
  bool IsClosed() const { return isClosed_; }
  bool IsPaused() const { return isPaused_; }
  std::int32_t StatusOfMedia() const { return statusOfMedia_; }
  std::string TempFileName() const { return names_.Current(); }
  const std::vector<LogRecord>& Log() const { return log_; }
  // When the recording that isn't saved began, and on which frequency; no frequency where that isn't known.
  const LogRecord& Beginning() const { return beginning_; }
  // Of the file that is open for playing.
  const RecordingFormat& Playing() const { return playing_; }
  bool HasFile() const { return playback_.IsOpen(); }                 // a file is open for playing
  std::int64_t PlayPosition() const;                                  // of the next sample to be played
  std::int64_t FirstPosition() const;                                 // of the first sample
  std::int64_t BehindSamples() const;                                 // of the byte behind the last sample
  std::int64_t HalvesFilled() const { return queue_.FillingHalf(); }  // of the recording under way
  // Files that a save would name.
  std::int32_t PartsToSave() const;
  const Failure& LastFault() const { return fault_; }  // words for the last result that wasn't 0
  const Failure& PlaybackFault() const { return playbackFault_; }
  // A recording has begun and not been stopped; it may pause.
  bool IsUnderWay() const { return isRecording_ && (playerMode_ == kRecording || playerMode_ == kPaused); }
  // One of the methods that wait is under way.
  bool IsBusy() const { return busy_; }
  // Something is recorded and not saved.
  bool IsUnsaved() const { return isRecording_ || statusOfMedia_ == MediaStatus::Unsaved; }

  // Recording.
  std::int16_t OpenRecording();
  std::int16_t WriteToDisk();
  void NewLogRecord(std::int32_t freq);
  void StopRecording();
  void Pause();
  std::int16_t CloseRecording();
  void Save();
  // Save to `target` (and its numbered parts) without a question; 0 for success.
  std::int16_t SaveAs(const std::string& target);
  std::int16_t UpdateWavHeader();
  // A stamp of the moment, each character followed by a zero byte, in front of what `buffer` holds.
  void UnPackLogRecord(std::string& buffer) const;
  // The recording that isn't saved goes, with all its parts; a file that is open for playing stays.
  void Discard();
  // A recording that was found unsaved lies in the temporary files: Save takes it. False where another
  // program has it.
  bool Adopt();
  // Keeps other programs from recording in the folder, and lets them again unless something of ours is there.
  // `leftBehind`: an unsaved recording of before lies there, which the next one will replace.
  bool HoldFolder() { return !busy_ && Lock(); }
  void LeaveFolder(bool leftBehind);
  bool IsLeftBehind() const { return leftBehind_; }

  // Playing.
  std::int16_t LoadMedia();                // asks for a file
  void TakeName(const std::string& path);  // the file that OpenFile is to open
  std::int16_t OpenFile();
  std::int16_t OpenPlayback();
  std::int16_t Play();
  void PlayFrom(std::int32_t record);
  void SeekTo(std::int64_t position);
  void ReadFromDisk();
  void StopPlayer();
  void StopPlayBack();
  std::int16_t ClosePlayback();
  std::int16_t CloseFile();

  // At the program's end: a recording is finished and offered at the next start.
  void Finish();
  void AddSettings(SettingsTable& table);

  // For the pump.
  bool IsPlaying() const override { return isPlaying_; }
  std::int32_t PlayerMode() const override { return playerMode_; }
  bool IsIF() const override { return isIF_; }
  void GetNextSamples(std::int16_t* block, std::int32_t n) override;
  const std::int16_t* GetNextIF(std::int16_t* left, std::int32_t n) override;
  std::int16_t AddSamples(const std::int16_t* block, std::int32_t n) override;
  std::int16_t AddIF(const std::int16_t* left, const std::int16_t* right, std::int32_t n) override;

 private:
  static constexpr std::int32_t kProgressBlocks = 16;  // from one report of the position to the next
  static constexpr std::int32_t kIdle = 0, kRecording = 1, kPlaying = 2, kPaused = 3, kStopped = 4;

  std::int16_t Told(Failure failure);
  std::int16_t CloseWhatIsOpen();
  std::int16_t CloseRecordingNow();
  bool CloseForSaving();
  LogRecord ReadBeginning();
  std::int16_t SaveParts(const std::string& target);
  Failure MoveTo(const std::string& from, const std::string& to);
  Failure CopyTo(const std::string& from, const std::string& to);
  std::string AskTarget();
  bool MayReplace(const std::vector<std::string>& names);
  void Forget();
  bool Lock();
  Failure RemoveOld();
  void TellUnfit(const std::string& key, std::int32_t stored, std::int32_t taken) const;
  void Added(bool full, std::int32_t frames);
  void HandOver();
  void AwaitRoom();
  void FollowJournal();
  void FollowHalf(std::int64_t half, const std::int16_t* samples, std::int32_t count);
  std::vector<std::int16_t> Thinned(const std::int16_t* samples, std::int32_t count) const;
  void TakeFile(std::shared_ptr<quorl::OpenFile> file, Recording recording);
  void Unload();
  const std::int16_t* NextSamples(std::int32_t count);
  void Advance(std::int32_t count);
  void EndPlayback();
  void MoreIsThere();
  std::int32_t RateFactor() const { return SamplingRate / playing_.Rate; }

  WavFileMachine machine_;
  RecordingParts names_;
  FileCalls calls_;
  std::vector<LogRecord> log_;
  LogRecord beginning_;
  RecordQueue queue_;
  RecordingWriter writer_;
  PlaybackQueue playback_;
  std::unique_ptr<FileInstanceLock> lock_;
  std::unique_ptr<QueueTimer> tmrJournal_;
  std::unique_ptr<QueueSignal> diskRead_, playEnd_;
  std::vector<std::int16_t> right_;
  RecordingFormat playing_;
  std::int64_t behindSamples_ = 0;
  Failure fault_, playbackFault_;
  std::int32_t decimator_ = 1, playerMode_ = kIdle, modeBeforePause_ = kIdle,
               statusOfMedia_ = MediaStatus::None;
  std::int32_t unsavedParts_ = 0;  // finished ones, beside the temporary file
  std::int32_t savedParts_ = 0;    // of these, that have got their name already
  std::int32_t lastTunedFrequency_ = 0;
  std::int64_t nextHalf_ = 0, followedHalf_ = 0;
  std::int32_t followed_ = 0;
  bool isRecording_ = false, isClosed_ = true, isPaused_ = false, isPlaying_ = false, isIF_ = false,
       busy_ = false, leftBehind_ = false;
};

}  // namespace quorl
