// Playing: a file's header and tracks, and its samples on their way to the pump.
#include <algorithm>

#include "recorder/clsWavFile.h"
#include "support/ScopedFlag.h"

namespace quorl {
namespace {

constexpr char kOpenFilter[] =
    "Sound Files (*.wav)|*.wav|Other sound files "
    "(*.flac;*.aiff;*.aif;*.ogg;*.oga;*.opus;*.mp3;*.au;*.w64;*.rf64)|"
    "*.flac;*.aiff;*.aif;*.ogg;*.oga;*.opus;*.mp3;*.au;*.w64;*.rf64";
constexpr std::int32_t kSecondsAhead = 4;

struct Found {
  std::shared_ptr<OpenFile> File;
  RecordingRead Read;
};

}  // namespace

std::int16_t clsWavFile::LoadMedia() {
  const std::optional<std::string> chosen =
      machine_.Boxes.AskOpenFile({.Title = "Select Filename",
                                  .Filter = kOpenFilter,
                                  .Directory = LastDirectory.empty() ? DefaultDirectory : LastDirectory,
                                  .FileName = "*.wav"});
  if (!chosen || chosen->empty()) return DeckCode::Cancelled;
  TakeName(*chosen);
  return 0;
}

void clsWavFile::TakeName(const std::string& path) {
  FileName = path;
  const std::size_t slash = path.rfind('/');
  FileShortName = slash == std::string::npos ? path : path.substr(slash + 1);
  if (slash != std::string::npos) LastDirectory = path.substr(0, std::max<std::size_t>(slash, 1));
}

// The file that is open goes only when the new one has turned out to be a recording.
std::int16_t clsWavFile::OpenFile() {
  if (busy_) return DeckCode::Busy;
  const ScopedFlag busy(busy_);
  Found found = calls_.Await<Found>(machine_.Queue, [&files = machine_.Storage, path = FileName] {
    Found opened;
    opened.File = files.Open(path, OpenMode::Read, opened.Read.Fault);
    if (opened.File) opened.Read = ReadRecording(*opened.File);
    return opened;
  });
  if (found.Read.Fault) return Told(found.Read.Fault);
  if (!found.Read.Own) {
    fault_ = {};
    return DeckCode::NotOurs;
  }
  CloseWhatIsOpen();
  TakeFile(std::move(found.File), std::move(*found.Read.Own));
  return Told({});
}

void clsWavFile::TakeFile(std::shared_ptr<quorl::OpenFile> file, Recording recording) {
  playing_ = recording.Format;
  isIF_ = playing_.IF.has_value();
  isClosed_ = false;
  playbackFault_ = {};
  NumSamples = SamplesQueued = TotSamplesOut = RecordingOffsetInBytes = 0;
  FileSize = recording.FileBytes;
  log_ = std::move(recording.Log);
  NumberOfTracks = static_cast<std::int32_t>(log_.size());
  behindSamples_ = playing_.DataAt() + recording.DataBytes;
  const std::int64_t end = MuteTrailer || isIF_ ? behindSamples_ : recording.FileBytes;
  const std::int32_t half = PlayBlockSizeInSamples / RateFactor();
  playback_.Open(std::move(file), playing_.DataAt(), end, half,
                 std::int64_t{kSecondsAhead} * playing_.Rate * playing_.FrameBytes(),
                 [this] { MoreIsThere(); });
  CatalogueLoaded(NumberOfTracks);
}

std::int16_t clsWavFile::OpenPlayback() {
  if (isPlaying_) return 0;
  const std::int16_t result = OpenFile();
  isPlaying_ = result == 0;
  return result;
}

std::int16_t clsWavFile::Play() {
  if (playerMode_ == kPlaying) return DeckCode::PlaysAlready;
  if (!HasFile()) return DeckCode::NothingToClose;
  if (playerMode_ == kPaused && modeBeforePause_ == kPlaying) {
    Pause();
    return 0;
  }
  isPaused_ = false;
  playbackFault_ = {};
  TotSamplesOut = 0;
  playback_.Start(playing_.DataAt());
  playerMode_ = kPlaying;
  return 0;
}

void clsWavFile::PlayFrom(std::int32_t record) {
  if (record < 0 || record >= static_cast<std::int32_t>(log_.size())) return;
  SeekTo(log_[static_cast<std::size_t>(record)].Start + 1);
}

// To the frame that holds the position; what lies outside the samples is no place to go to.
void clsWavFile::SeekTo(std::int64_t position) {
  if (playerMode_ != kPlaying || position < FirstPosition() || position >= BehindSamples()) return;
  RecordingOffsetInBytes = position - (position - FirstPosition()) % playing_.FrameBytes();
}

std::int64_t clsWavFile::FirstPosition() const {
  return playing_.DataAt() + 1;
}

std::int64_t clsWavFile::BehindSamples() const {
  return behindSamples_ + 1;
}

std::int64_t clsWavFile::PlayPosition() const {
  return RecordingOffsetInBytes != 0 ? RecordingOffsetInBytes : std::min(playback_.At(), behindSamples_) + 1;
}

void clsWavFile::ReadFromDisk() {
  if (playerMode_ == kPlaying && HasFile()) playback_.Follow();
}

void clsWavFile::MoreIsThere() {
  if (!playback_.Fault()) {
    playback_.Load();
    return;
  }
  playbackFault_ = playback_.Fault();
  const bool played = playerMode_ == kPlaying || playerMode_ == kPaused;
  playback_.Close();
  playerMode_ = kStopped;
  isPaused_ = false;
  if (played) playEnd_->Raise();
}

const std::int16_t* clsWavFile::NextSamples(std::int32_t count) {
  if (playerMode_ != kPlaying || !HasFile()) return nullptr;
  if (RecordingOffsetInBytes != 0) {
    playback_.Start(RecordingOffsetInBytes - 1);
    RecordingOffsetInBytes = TotSamplesOut = 0;
    ReadNextBlockFromDisk();
  }
  return playback_.Next(count);
}

void clsWavFile::Advance(std::int32_t count) {
  const std::int32_t frames = count / playing_.Channels;
  TotSamplesOut += frames;
  if (TotSamplesOut % (std::int64_t{frames} * kProgressBlocks) != 0) SamplesPlayed(0, TotSamplesOut);
  switch (playback_.Advance(count)) {
    case PlaybackQueue::Place::WithinHalf:
      break;
    case PlaybackQueue::Place::AtEnd:
      EndPlayback();
      break;
    case PlaybackQueue::Place::BehindHalf:
      diskRead_->Raise();
      ReadNextBlockFromDisk();
      break;
  }
}

// A loop goes on in the very next block; what stops takes its time.
void clsWavFile::EndPlayback() {
  playback_.Start(playing_.DataAt());
  playerMode_ = kStopped;
  diskRead_->Raise();
  if (Looping) {
    PlayEnd();
    ReadNextBlockFromDisk();
  } else {
    playEnd_->Raise();
  }
}

void clsWavFile::GetNextSamples(std::int16_t* block, std::int32_t n) {
  std::fill_n(block, n, std::int16_t{0});
  const std::int32_t factor = RateFactor(), count = n / factor;
  const std::int16_t* samples = NextSamples(count);
  if (samples == nullptr) return;
  for (std::int32_t k = 0; k < count; ++k, block += factor) *block = samples[k];
  Advance(count);
}

const std::int16_t* clsWavFile::GetNextIF(std::int16_t* left, std::int32_t n) {
  std::fill_n(left, n, std::int16_t{0});
  std::fill_n(right_.begin(), n, std::int16_t{0});
  const std::int32_t channels = playing_.Channels;
  const std::int16_t* samples = NextSamples(n * channels);
  if (samples == nullptr) return right_.data();
  for (std::int32_t k = 0; k < n; ++k, samples += channels) {
    left[k] = samples[0];
    right_[static_cast<std::size_t>(k)] = samples[channels - 1];
  }
  Advance(n * channels);
  return right_.data();
}

void clsWavFile::StopPlayer() {
  playerMode_ = kStopped;
}

void clsWavFile::StopPlayBack() {
  playerMode_ = kStopped;
  if (isPlaying_) isPaused_ = isPlaying_ = false;
}

void clsWavFile::Unload() {
  playback_.Close();
  playing_ = {};
  behindSamples_ = playing_.DataAt();
  log_.clear();
  NumberOfTracks = 0;
  NumSamples = FileSize = SamplesQueued = TotSamplesOut = RecordingOffsetInBytes = 0;
  isClosed_ = true;
  isRecording_ = isPaused_ = isPlaying_ = isIF_ = false;
}

std::int16_t clsWavFile::ClosePlayback() {
  if (!isPlaying_) return DeckCode::NothingToClose;
  Unload();
  return 0;
}

std::int16_t clsWavFile::CloseWhatIsOpen() {
  const std::int16_t result = writer_.IsOpen() ? CloseRecordingNow() : std::int16_t{0};
  if (result == 0) Unload();
  if (result == 0) playerMode_ = kIdle;
  return result;
}

std::int16_t clsWavFile::CloseFile() {
  if (busy_) return DeckCode::Busy;
  const ScopedFlag busy(busy_);
  return CloseWhatIsOpen();
}

}  // namespace quorl
