#include "recorder/panel/NameBox.h"

#include <algorithm>
#include <utility>

#include "support/ScopedFlag.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr const char* kFirstName = "quorlsdr.wav";
constexpr const char* kToolTip = "Filename for recording";

}  // namespace

NameBox::NameBox(ControlRegistry& registry, clsWavFile& deck, Dialogs& boxes)
    : txtRecordFileName(registry, "txtRecordFileName"),
      cmdBrowseWavFile(registry, "cmdBrowseWavFile"),
      deck_(deck),
      boxes_(boxes) {
  txtRecordFileName.SetValue(kFirstName);
  txtRecordFileName.ToolTip = txtRecordFileName.AccessibleName = kToolTip;
  txtRecordFileName.Change = [this] { typed_ = !showing_; };
  txtRecordFileName.LostFocus = [this] { Take(); };
  cmdBrowseWavFile.Caption = "Browse";
  cmdBrowseWavFile.ToolTip = "Where the recording is to be saved";
  cmdBrowseWavFile.AccessibleName = "Browse for the recording's name";
  cmdBrowseWavFile.Click = [this] { cmdBrowseWavFile_Click(); };
}

void NameBox::Take() {
  if (!std::exchange(typed_, false)) return;
  const std::string text(Trim(txtRecordFileName.Value()));
  if (text.empty()) return Reset();
  const std::string directory = text.starts_with('/') ? "" : Directory();
  TakePath(directory.empty() ? text : directory + "/" + text);
}

std::string NameBox::Directory() const {
  const std::size_t slash = deck_.RecordFileName.rfind('/');
  if (slash != std::string::npos) return deck_.RecordFileName.substr(0, slash);
  return deck_.LastDirectory.empty() ? deck_.DefaultDirectory : deck_.LastDirectory;
}

void NameBox::TakePath(const std::string& path) {
  deck_.RecordFileName = EndsWithNoCase(path, ".wav") ? path : path + ".wav";
  Show(deck_.RecordFileName);
}

void NameBox::Show(const std::string& path) {
  const ScopedFlag showing(showing_);
  txtRecordFileName.SetValue(FileNameOf(path));
  txtRecordFileName.ToolTip = path.empty() ? kToolTip : path;
  typed_ = false;
}

void NameBox::Reset() {
  deck_.RecordFileName.clear();
  txtRecordFileName.ToolTip = kToolTip;
}

void NameBox::SetEnabled(bool enabled) {
  txtRecordFileName.Enabled = cmdBrowseWavFile.Enabled = enabled;
}

void NameBox::cmdBrowseWavFile_Click() {
  Take();
  const auto chosen = boxes_.AskSaveFile({.Title = "Select Recording Filename",
                                          .Filter = "Sound Files (*.wav)|*.wav",
                                          .Directory = Directory(),
                                          .FileName = kFirstName});
  if (chosen && !chosen->empty()) TakePath(*chosen);
}

}  // namespace quorl
