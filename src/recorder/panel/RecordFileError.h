// What has gone wrong with a file of the recorder, told without keeping anybody from the panel.
#pragma once

#include <string>

#include "controls/Controls.h"

namespace quorl {

class RecordFileError {
 public:
  explicit RecordFileError(ControlRegistry& registry);

  Frame frmRecordFileError;
  Label txtMessage;
  CommandButton OKButton;

  // Takes the place of what was told before.
  void Show(const std::string& text);
};

}  // namespace quorl
