// A recording gets its name.
#include <algorithm>
#include <system_error>

#include "platform/files/GrowingFile.h"
#include "recorder/clsWavFile.h"
#include "support/Product.h"
#include "support/ScopedFlag.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr char kSaveFilter[] = "Sound Files (*.wav)|*.wav";
constexpr std::string_view kEnding = ".wav";
constexpr std::int64_t kCopyPiece = std::int64_t{1} << 20;
constexpr int kOtherFileSystem = static_cast<int>(std::errc::cross_device_link);

std::string WithEnding(const std::string& name) {
  return EndsWithNoCase(name, kEnding) ? name : name + std::string(kEnding);
}

std::string DirectoryOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "" : path.substr(0, std::max<std::size_t>(slash, 1));
}

}  // namespace

std::int32_t clsWavFile::PartsToSave() const {
  return static_cast<std::int32_t>(names_.Existing(machine_.Storage).size());
}

std::string clsWavFile::AskTarget() {
  if (!RecordFileName.empty()) return WithEnding(RecordFileName);
  const std::optional<std::string> chosen =
      machine_.Boxes.AskSaveFile({.Title = "Select Filename to Save Recording",
                                  .Filter = kSaveFilter,
                                  .Directory = LastDirectory,
                                  .FileName = "untitled.wav"});
  return chosen && !chosen->empty() ? WithEnding(*chosen) : "";
}

// Asks about all that would be replaced at once; a place that takes no file is told before anything goes.
bool clsWavFile::MayReplace(const std::vector<std::string>& names) {
  std::string existing, refused;
  for (const std::string& name : names) {
    if (machine_.Storage.Exists(name)) existing += name + "\n";
  }
  if (!existing.empty()) {
    const MessageAnswer answer =
        machine_.Boxes.ShowMessage({.Text = existing + " Exists - Do you want to overwrite it ?",
                                    .Title = kProductName,
                                    .Icon = MessageIcon::Question,
                                    .Buttons = MessageButtons::YesNo});
    if (answer != MessageAnswer::Yes) return false;
  }
  for (const std::string& name : names) {
    const Failure fault = calls_.Await<Failure>(machine_.Queue, [&files = machine_.Storage, name] {
      Failure failure;
      GrowingFile::Create(files, name, failure);
      return failure;
    });
    if (!fault) continue;
    fault_ = fault;
    const std::string text = machine_.Storage.Exists(name)
                                 ? "Unable to overwrite " + name + "\n Try a different filename"
                                 : "Problem creating " + name + "\nSystem Reported Error Code " +
                                       std::to_string(fault->Code) + "\n" + fault->Text;
    machine_.Boxes.ShowMessage({.Text = text, .Title = kProductName, .Icon = MessageIcon::Warning});
    return false;
  }
  return true;
}

// Onto another disk, piece by piece; the target appears whole.
Failure clsWavFile::CopyTo(const std::string& from, const std::string& to) {
  struct Copying {
    std::unique_ptr<quorl::OpenFile> From;
    std::unique_ptr<GrowingFile> To;
    std::string Piece;
    std::int64_t At = 0;
  };
  const auto copying = std::make_shared<Copying>();
  Files& files = machine_.Storage;
  Failure failure = calls_.Await<Failure>(machine_.Queue, [&files, copying, from, to] {
    Failure fault;
    copying->From = files.Open(from, OpenMode::Read, fault);
    if (!fault) copying->To = GrowingFile::Create(files, to, fault);
    return fault;
  });
  if (failure) return failure;
  const std::int64_t all = copying->From->Size().value_or(0);
  while (!failure && copying->At < all) {
    failure = calls_.Await<Failure>(machine_.Queue, [copying, all] {
      Failure fault;
      copying->Piece.resize(static_cast<std::size_t>(std::min(kCopyPiece, all - copying->At)));
      const std::int64_t got = copying->From->ReadAt(copying->At, copying->Piece.data(),
                                                     static_cast<std::int64_t>(copying->Piece.size()), fault);
      copying->At += got;
      return fault ? fault : copying->To->Append(copying->Piece.data(), got);
    });
    SaveProgress(static_cast<double>(copying->At) / static_cast<double>(all));
  }
  if (failure) return failure;
  return calls_.Await<Failure>(machine_.Queue, [&files, copying, from] {
    Failure fault = copying->To->Commit();
    copying->From.reset();
    return fault ? fault : files.Remove(from);
  });
}

Failure clsWavFile::MoveTo(const std::string& from, const std::string& to) {
  const Failure failure = calls_.Await<Failure>(
      machine_.Queue, [&files = machine_.Storage, from, to] { return files.Rename(from, to); });
  return failure && failure->Code == kOtherFileSystem ? CopyTo(from, to) : failure;
}

// Parts that have got their names keep them where a later one can't be moved; the rest waits for the next
// try.
std::int16_t clsWavFile::SaveParts(const std::string& target) {
  for (const std::string& each : names_.Existing(machine_.Storage)) {
    const std::string name = PartName(target, savedParts_ + 1);
    if (const Failure failure = MoveTo(each, name)) {
      machine_.Boxes.ShowMessage({.Text = "Problem creating " + name + "\nSystem Reported Error Code " +
                                          std::to_string(failure->Code) + "\n" + failure->Text,
                                  .Title = kProductName,
                                  .Icon = MessageIcon::Warning});
      return Told(failure);
    }
    ++savedParts_;
  }
  LastDirectory = DirectoryOf(target);
  RecordFileName = target;
  Forget();
  statusOfMedia_ = MediaStatus::Saved;
  return Told({});
}

// Before a name is asked for, the recording stands whole in the temporary file.
bool clsWavFile::CloseForSaving() {
  if (LastDirectory.empty()) LastDirectory = DefaultDirectory;
  if (statusOfMedia_ != MediaStatus::Unsaved) return false;
  const std::int16_t closed = CloseRecordingNow();
  if (closed != 0 && closed != DeckCode::NothingToClose) {
    machine_.Boxes.ShowMessage({.Text = "Unable to close temporary file " + TempFileName() +
                                        "\n Please report this problem to QUORL",
                                .Title = kProductName,
                                .Icon = MessageIcon::Warning});
    return false;
  }
  playerMode_ = kStopped;
  return true;
}

void clsWavFile::Save() {
  if (busy_) return;
  const ScopedFlag busy(busy_);
  if (!CloseForSaving()) return;
  const std::string target = AskTarget();
  if (target.empty()) return;
  std::vector<std::string> names;
  const std::size_t parts = names_.Existing(machine_.Storage).size();
  for (std::size_t i = 0; i < parts; ++i) {
    names.push_back(PartName(target, savedParts_ + 1 + static_cast<std::int32_t>(i)));
  }
  if (MayReplace(names)) SaveParts(target);
}

std::int16_t clsWavFile::SaveAs(const std::string& target) {
  if (busy_) return DeckCode::Busy;
  const ScopedFlag busy(busy_);
  if (!CloseForSaving())
    return Told(Error{DeckCode::NothingToClose, target + ": there is no recording to be saved"});
  return SaveParts(WithEnding(target));
}

void clsWavFile::LeaveFolder(bool leftBehind) {
  leftBehind_ = leftBehind;
  if (!IsUnsaved()) lock_.reset();
}

// Out of the first file that has no name yet.
LogRecord clsWavFile::ReadBeginning() {
  return calls_.Await<LogRecord>(machine_.Queue, [&files = machine_.Storage, names = names_]() -> LogRecord {
    const std::vector<std::string> all = names.Existing(files);
    Failure failure;
    const auto file = all.empty() ? nullptr : files.Open(all.front(), OpenMode::Read, failure);
    const RecordingRead read = file ? ReadRecording(*file) : RecordingRead{};
    return read.Own && !read.Own->Log.empty() ? read.Own->Log.front() : LogRecord{};
  });
}

bool clsWavFile::Adopt() {
  if (busy_ || isRecording_) return false;
  const ScopedFlag busy(busy_);
  if (!Lock()) return false;
  leftBehind_ = false;
  beginning_ = ReadBeginning();
  statusOfMedia_ = MediaStatus::Unsaved;
  playerMode_ = kStopped;
  return true;
}

}  // namespace quorl
