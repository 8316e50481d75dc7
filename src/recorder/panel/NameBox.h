// The name that a recording is to get.
#pragma once

#include <string>

#include "controls/Controls.h"
#include "platform/Dialogs.h"
#include "recorder/clsWavFile.h"

namespace quorl {

class NameBox {
 public:
  // All outlives it.
  NameBox(ControlRegistry& registry, clsWavFile& deck, Dialogs& boxes);

  TextBox txtRecordFileName;
  CommandButton cmdBrowseWavFile;

  // What has been typed becomes the recording's name: beside the one before, or where files were last saved;
  // with ".wav" behind it. An empty box lets Save ask.
  void Take();
  // Shows the last part of that path.
  void Show(const std::string& path);
  // Save asks again; the box keeps what it shows.
  void Reset();
  // Whether it can be changed at present.
  void SetEnabled(bool enabled);

 private:
  void cmdBrowseWavFile_Click();
  std::string Directory() const;
  void TakePath(const std::string& path);

  clsWavFile& deck_;
  Dialogs& boxes_;
  bool typed_ = false;  // since the name was last taken
  bool showing_ = false;
};

}  // namespace quorl
