// The dialog that edits a preset (frmEditUserPreset).
#pragma once

#include "desktop/window/FormWindow.h"

namespace quorl {

// It keeps everything else waiting.
class PresetWindow : public FormWindow {
 public:
  PresetWindow(const ControlRegistry& registry, Binder::Logger log);

 private:
  void Build();
};

}  // namespace quorl
