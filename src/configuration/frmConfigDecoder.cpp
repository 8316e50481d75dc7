// The page of the decoder for digital radio.
#include <algorithm>
#include <filesystem>

#include "configuration/frmConfig.h"
#include "interaction/PanelColours.h"

namespace quorl {
namespace {

constexpr const char* kUsualDevice = "The usual one";
constexpr const char* kNotThere = "  (not there)";
constexpr const char* kUsualFolder = "/usr/bin";
constexpr int kFocusedWindow = 3;

}  // namespace

void frmConfig::AddDecoderFields() {
  modDream& dream = links_.Dream;
  fields_.Add(DRM.chkDreamRunOnDRM, [&dream] { return dream.RunDreamOnDRM; });
  fields_.Add(DRM.chkMuteAFOnDRM, [this] { return links_.Panel.Rx.MuteAFOnDRM; });
  fields_.Add(DRM.chkCloseSoundCardOnDRM, [this] { return links_.Decoder.CloseSoundcardOnDRM; });
  fields_.Add(DRM.chkDreamCloseOnExit, [&dream] { return dream.DreamCloseOnExit; });
  fields_.Add(DRM.chkDreamCloseOnModeChange, [&dream] { return dream.DreamCloseOnModeChange; });
  fields_.Add(DRM.optDreamWindow, [&dream] {
    const std::int32_t style = dream.DreamWindowStyle;
    return style < 0 || style > kFocusedWindow ? kFocusedWindow : style;
  });
  fields_.Add(DRM.txtPathToDream, [&dream] { return dream.PathToDream; });
  fields_.Add(DRM.txtDreamProgArgs, [&dream] { return dream.DreamProgArgs; });
  fields_.Add(DRM.cboDRMPlayDevices, [this] { return DecoderDevicePlace(); });
  DRM.optDreamWindow.Click = [this](int index) { PaintButtons(DRM.optDreamWindow, index); };
  DRM.cmdFindDREAM.Click = [this] { cmdFindDREAM_Click(); };
  DRM.cmdDreamDefault.Click = [this] { cmdDreamDefault_Click(); };
}

// A device that is away keeps its place, so that Apply doesn't forget it.
void frmConfig::ListDecoderDevices(const std::vector<std::string>& names) {
  std::vector<std::string> items{kUsualDevice};
  items.insert(items.end(), names.begin(), names.end());
  const std::string& own = links_.Decoder.PlaybackDevice;
  decoderDevices_ = items;
  decoderDevices_.front().clear();
  if (std::find(decoderDevices_.begin(), decoderDevices_.end(), own) == decoderDevices_.end()) {
    decoderDevices_.push_back(own);
    items.push_back(own + kNotThere);
  }
  DRM.cboDRMPlayDevices.SetItems(std::move(items));
}

int frmConfig::DecoderDevicePlace() const {
  const auto place = std::find(decoderDevices_.begin(), decoderDevices_.end(), links_.Decoder.PlaybackDevice);
  return place == decoderDevices_.end() ? -1 : static_cast<int>(place - decoderDevices_.begin());
}

// Programs have no ending of their own here, and many lie in one folder.
void frmConfig::cmdFindDREAM_Click() {
  const std::filesystem::path present = DRM.txtPathToDream.Value();
  const bool named = present.has_parent_path();
  FileRequest request{.Title = "Select DREAM executable",
                      .Filter = "Executables (*.exe)|*.exe|All files (*)|*",
                      .Directory = named ? present.parent_path().string() : kUsualFolder,
                      .FileName = named ? present.filename().string() : "dream.exe"};
  if (const auto chosen = links_.Boxes.AskOpenFile(request)) DRM.txtPathToDream.SetValue(*chosen);
}

void frmConfig::cmdDreamDefault_Click() {
  for (CheckBox* box : {&DRM.chkDreamRunOnDRM, &DRM.chkMuteAFOnDRM, &DRM.chkCloseSoundCardOnDRM,
                        &DRM.chkDreamCloseOnModeChange})
    box->SetValue(false);
  DRM.chkDreamCloseOnExit.SetValue(true);
  DRM.optDreamWindow.Press(1);
}

void frmConfig::ApplyDecoder() {
  modDream& dream = links_.Dream;
  dream.RunDreamOnDRM = DRM.chkDreamRunOnDRM.Value();
  links_.Panel.Rx.SetMuteAFOnDRM(DRM.chkMuteAFOnDRM.Value());
  links_.Decoder.CloseSoundcardOnDRM = DRM.chkCloseSoundCardOnDRM.Value();
  dream.DreamCloseOnExit = DRM.chkDreamCloseOnExit.Value();
  dream.DreamCloseOnModeChange = DRM.chkDreamCloseOnModeChange.Value();
  if (fields_.IsTouched(&DRM.optDreamWindow)) dream.DreamWindowStyle = DRM.optDreamWindow.Pressed();
  dream.PathToDream = DRM.txtPathToDream.Value();
  dream.DreamProgArgs = DRM.txtDreamProgArgs.Value();
  const int place = DRM.cboDRMPlayDevices.ListIndex();
  if (place >= 0) links_.Decoder.PlaybackDevice = decoderDevices_[static_cast<std::size_t>(place)];
}

}  // namespace quorl
