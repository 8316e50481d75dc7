#include "recorder/panel/RecordFileError.h"

namespace quorl {

RecordFileError::RecordFileError(ControlRegistry& registry)
    : frmRecordFileError(registry, "frmRecordFileError"),
      txtMessage(registry, "txtMessage"),
      OKButton(registry, "OKButton") {
  frmRecordFileError.Caption = "Recording File Error";
  frmRecordFileError.Visible = false;
  OKButton.Caption = "OK";
  OKButton.Click = [this] { frmRecordFileError.Visible = false; };
  frmRecordFileError.KeyDown = [this](const Key& key) {
    if (key.Code == Key::Enter || key.Code == Key::Escape) OKButton.UserClick();
  };
}

void RecordFileError::Show(const std::string& text) {
  txtMessage.Caption = text;
  frmRecordFileError.Visible = true;
}

}  // namespace quorl
