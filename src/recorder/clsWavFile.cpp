// Recording: from the pump into the queue, from there to the disk.
#include "recorder/clsWavFile.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "platform/CalendarDays.h"
#include "state/PublicConstants.h"
#include "support/ScopedFlag.h"

namespace quorl {
namespace {

constexpr std::chrono::milliseconds kJournalInterval{50};
constexpr std::int32_t kLeastChange = 999;  // dHz: smaller steps of the tuning leave no trace

}  // namespace

clsWavFile::clsWavFile(const WavFileMachine& machine, const std::string& folder)
    : machine_(machine),
      names_(folder),
      calls_(machine.Worker),
      writer_(machine.Storage, machine.Worker, machine.Queue, log_, names_),
      playback_(machine.Worker),
      tmrJournal_(machine.Queue.CreateTimer([this] { FollowJournal(); })),
      diskRead_(machine.Queue.CreateSignal([this] { DiskRead(PlayPosition()); })),
      playEnd_(machine.Queue.CreateSignal([this] { PlayEnd(); })),
      right_(static_cast<std::size_t>(SamplesPerEvent)) {
  writer_.OnWritten = [this] {
    FileSize = writer_.FileBytes();
    NumSamples = writer_.PartFrames();
    TotSamplesOut = writer_.Frames();
    DiskWrite(FileSize + 1);
    if (queue_.IsFull() && isRecording_ && !isPaused_) WriteNextBlockToDisk();
  };
  writer_.OnPart = [this](std::int32_t part) {
    unsavedParts_ = part;
    PartFinished(part);
  };
  writer_.OnJournalFault = [this](const Error& fault) {
    Report("The recording can't be kept safe against a crash: " + fault.Text);
  };
}

clsWavFile::~clsWavFile() = default;

std::int16_t clsWavFile::Told(Failure failure) {
  fault_ = std::move(failure);
  return static_cast<std::int16_t>(fault_ ? fault_->Code : 0);
}

void clsWavFile::SetDecimator(std::int32_t decimator) {
  const std::array<std::int32_t, 5> all{1, 2, 4, 8, 16};
  if (std::find(all.begin(), all.end(), decimator) != all.end()) decimator_ = decimator;
}

// Another program that records in the same folder holds the lock.
bool clsWavFile::Lock() {
  if (lock_) return true;
  auto lock = std::make_unique<FileInstanceLock>(machine_.Storage);
  fault_ =
      calls_.Await<Failure>(machine_.Queue, [&lock, path = TempFileName()] { return lock->Acquire(path); });
  if (!fault_) lock_ = std::move(lock);
  return lock_ != nullptr;
}

// All that a recording of before has left under the temporary names.
Failure clsWavFile::RemoveOld() {
  return calls_.Await<Failure>(
      machine_.Queue, [&files = machine_.Storage, names = names_] { return names.RemoveAll(files); });
}

std::int16_t clsWavFile::OpenRecording() {
  if (isRecording_) return 0;
  if (busy_) return DeckCode::Busy;
  const ScopedFlag busy(busy_);
  CloseWhatIsOpen();
  if (!Lock()) return Told(fault_);
  NumSamples = FileSize = SamplesQueued = TotSamplesOut = 0;
  lastTunedFrequency_ = 0;
  beginning_ = {};
  SamplesPlayed(0, 0);

  RecordingFormat format{SamplingRate / decimator_, NumChannels, BitsPerSample, {}};
  if (RecordIF) format = {SamplingRate, 1, 16, Origin()};
  if (format.IF && format.IF->Model == SDRModel::IQXtalRX) format.Channels = 2;
  queue_.Open(RecBlockSizeInSamples);
  const std::int32_t factor = SamplingRate / format.Rate, half = RecBlockSizeInSamples / factor;
  const std::int64_t mostQueued = (std::int64_t{1} << 31) - RecBlockSizeInSamples;
  Failure failure = RemoveOld();
  if (!failure) failure = writer_.Open(format, {half, MostFileBytes, mostQueued / factor / format.Channels});
  if (failure) {
    queue_.Close();
    Forget();
    return Told(failure);
  }
  FileSize = format.DataAt();
  unsavedParts_ = savedParts_ = 0;
  nextHalf_ = followedHalf_ = followed_ = 0;
  leftBehind_ = false;
  isRecording_ = true;
  isIF_ = RecordIF;
  isClosed_ = isPaused_ = false;
  statusOfMedia_ = MediaStatus::Unsaved;
  playerMode_ = kRecording;
  tmrJournal_->Start(kJournalInterval);
  NewLogRecord(TunedFrequency());
  return Told({});
}

std::int16_t clsWavFile::AddSamples(const std::int16_t* block, std::int32_t n) {
  if (!isRecording_) return DeckCode::AddWithoutRecording;
  if (playerMode_ != kRecording) return DeckCode::WrongPlayerMode;
  Added(queue_.Add(block, n), n);
  return 0;
}

std::int16_t clsWavFile::AddIF(const std::int16_t* left, const std::int16_t* right, std::int32_t n) {
  if (!isRecording_) return DeckCode::AddWithoutRecording;
  if (playerMode_ != kRecording) return DeckCode::WrongPlayerMode;
  Added(writer_.Format().Channels == 2 ? queue_.AddFrames(left, right, n) : queue_.Add(left, n), n);
  return 0;
}

void clsWavFile::Added(bool full, std::int32_t frames) {
  SamplesQueued += frames;
  const std::int64_t atRate = SamplesQueued * writer_.Format().Rate / SamplingRate;
  if (SamplesQueued % (std::int64_t{frames} * kProgressBlocks) != 0) SamplesPlayed(0, atRate);
  if (full) WriteNextBlockToDisk();
}

std::int16_t clsWavFile::WriteToDisk() {
  if (!writer_.IsOpen()) return DeckCode::WriteWithoutRecording;
  if (isPaused_) return DeckCode::WriteWhilePaused;
  if (!writer_.HasRoom()) return DeckCode::WriteIsRunning;
  if (!queue_.IsFull()) return DeckCode::NoFullHalf;
  HandOver();
  return Told(writer_.TakeFault());
}

// A half that was still waiting when the next one filled has been overwritten.
void clsWavFile::HandOver() {
  FollowJournal();
  const std::int64_t ready = queue_.ReadyHalf();
  for (; nextHalf_ < ready; ++nextHalf_) writer_.Lose(nextHalf_);
  std::vector<std::int16_t> samples = Thinned(queue_.Ready(), queue_.HalfSamples());
  queue_.Release();
  nextHalf_ = ready + 1;
  writer_.Write(ready, std::move(samples));
}

std::vector<std::int16_t> clsWavFile::Thinned(const std::int16_t* samples, std::int32_t count) const {
  const std::int32_t factor = SamplingRate / writer_.Format().Rate;
  std::vector<std::int16_t> thinned(static_cast<std::size_t>(count / factor));
  for (std::size_t k = 0; k < thinned.size(); ++k) thinned[k] = samples[k * static_cast<std::size_t>(factor)];
  return thinned;
}

// Behind the pump: what has come since the last time.
void clsWavFile::FollowJournal() {
  if (!writer_.IsOpen()) return;
  if (queue_.IsFull()) FollowHalf(queue_.ReadyHalf(), queue_.Ready(), queue_.HalfSamples());
  FollowHalf(queue_.FillingHalf(), queue_.Filling(), queue_.Fill());
}

void clsWavFile::FollowHalf(std::int64_t half, const std::int16_t* samples, std::int32_t count) {
  if (half < followedHalf_) return;
  if (half > followedHalf_) followed_ = 0;
  followedHalf_ = half;
  if (count <= followed_) return;
  const std::vector<std::int16_t> more = Thinned(samples + followed_, count - followed_);
  const std::int32_t factor = SamplingRate / writer_.Format().Rate;
  writer_.Follow(half, followed_ / factor, more.data(), static_cast<std::int32_t>(more.size()));
  followed_ = count;
}

void clsWavFile::NewLogRecord(std::int32_t freq) {
  if (!isRecording_ || std::abs(std::int64_t{freq} - lastTunedFrequency_) <= kLeastChange) return;
  const RecordingFormat& format = writer_.Format();
  writer_.NoteTuning(freq, DaysOf(machine_.Time.Now()),
                     SamplesQueued * format.Rate / SamplingRate * format.Channels);
  lastTunedFrequency_ = freq;
  if (beginning_.Freq == 0) beginning_ = log_.back();
}

void clsWavFile::StopRecording() {
  playerMode_ = kStopped;
  if (isRecording_) isPaused_ = isRecording_ = false;
}

void clsWavFile::Pause() {
  isPaused_ = playerMode_ != kPaused;
  if (isPaused_) {
    modeBeforePause_ = playerMode_;
    playerMode_ = kPaused;
    return;
  }
  playerMode_ = modeBeforePause_;
  if (isRecording_ && queue_.IsFull()) WriteNextBlockToDisk();
}

void clsWavFile::AwaitRoom() {
  while (!writer_.HasRoom()) machine_.Queue.Wait(RecordingWriter::kDiskWait);
}

std::int16_t clsWavFile::UpdateWavHeader() {
  return Told(writer_.Finish());
}

// Where log or header can't be written the recording stays open, so that the next try may succeed.
std::int16_t clsWavFile::CloseRecordingNow() {
  if (!writer_.IsOpen()) return DeckCode::NothingToClose;
  if (playerMode_ == kRecording || playerMode_ == kPaused) playerMode_ = kStopped;
  isPaused_ = false;
  AwaitRoom();
  if (queue_.IsFull()) HandOver();
  AwaitRoom();
  if (KeepTail && queue_.Fill() > 0) {
    FollowJournal();
    writer_.Write(queue_.FillingHalf(), Thinned(queue_.Filling(), queue_.Fill()));
  }
  queue_.Close();
  if (const std::int16_t result = UpdateWavHeader()) return result;
  tmrJournal_->Stop();
  log_.clear();
  TotSamplesOut = FileSize = SamplesQueued = NumSamples = 0;
  isClosed_ = true;
  isRecording_ = isPaused_ = isIF_ = false;
  return 0;
}

std::int16_t clsWavFile::CloseRecording() {
  if (busy_) return DeckCode::Busy;
  const ScopedFlag busy(busy_);
  return CloseRecordingNow();
}

// What lies behind a recording's name goes with it when nobody wants it any more.
void clsWavFile::Forget() {
  statusOfMedia_ = MediaStatus::None;
  unsavedParts_ = savedParts_ = 0;
  lock_.reset();
}

void clsWavFile::Discard() {
  if (busy_ || !IsUnsaved()) return;
  const ScopedFlag busy(busy_);
  if (!HasFile()) {
    tmrJournal_->Stop();
    queue_.Close();
    writer_.Abandon();
    log_.clear();
    TotSamplesOut = FileSize = SamplesQueued = NumSamples = 0;
    isClosed_ = true;
    isRecording_ = isPaused_ = isIF_ = false;
    playerMode_ = kIdle;
  }
  RemoveOld();
  Forget();
}

void clsWavFile::Finish() {
  while (busy_) machine_.Queue.Wait(RecordingWriter::kDiskWait);
  if (writer_.IsOpen()) CloseRecording();
  Unload();
}

void clsWavFile::UnPackLogRecord(std::string& buffer) const {
  const LocalTime now = machine_.Time.Now();
  std::array<char, 96> text{};
  std::snprintf(text.data(), text.size(),
                "QUORL\x04"
                "D=%d-%02d-%02d\x04T=%d:%d:%d\x04",
                now.Year, now.Month, now.Day, now.Hour, now.Minute, now.Second);
  std::string wide;
  for (const char* each = text.data(); *each != '\0'; ++each) wide += {*each, '\0'};
  buffer.replace(0, std::min(buffer.size(), wide.size()), wide);
}

void clsWavFile::TellUnfit(const std::string& key, std::int32_t stored, std::int32_t taken) const {
  Report("Setting \"" + key + "\" of the recorder is " + std::to_string(stored) +
         ", which can't be: " + std::to_string(taken) + " is taken");
}

void clsWavFile::AddSettings(SettingsTable& table) {
  const auto add = [this, &table](const char* key, std::int32_t& value, auto fits) {
    table.Add<std::int32_t>(
        key, [&value] { return value; },
        [this, key, &value, fits](std::int32_t stored) {
          fits(stored) ? void(value = stored) : TellUnfit(key, stored, value);
        });
  };
  add("RecBlockSizeInSamples", RecBlockSizeInSamples,
      [](std::int32_t v) { return v >= 32768 && v <= 1048576 && v % 32768 == 0; });
  add("Decimator", decimator_,
      [](std::int32_t v) { return v == 1 || v == 2 || v == 4 || v == 8 || v == 16; });
  table.AddWritten<std::int32_t>("WavSamplingRate", [this] { return SamplingRate / decimator_; });
  add("SamplingRate", SamplingRate, [](std::int32_t v) { return v == 48000; });
  add("BitsPerSample", BitsPerSample, [](std::int32_t v) { return v == 8 || v == 16; });
  table.AddRead<std::int32_t>("NumChannels", [this](std::int32_t stored) {
    if (stored != NumChannels) TellUnfit("NumChannels", stored, NumChannels);
  });
  // Where a disk takes no longer files. Two halves of I and Q fit into one, with their log.
  table.AddRead<std::int32_t>("MostFileBytes", [this](std::int32_t stored) {
    const auto least = std::int64_t{10} * RecBlockSizeInSamples;
    if (stored < least)
      TellUnfit("MostFileBytes", stored, static_cast<std::int32_t>(MostFileBytes));
    else
      MostFileBytes = stored;
  });
  table.Add("LastDirectory", LastDirectory);
  table.AddWritten("RecordFileName", RecordFileName);
}

}  // namespace quorl
