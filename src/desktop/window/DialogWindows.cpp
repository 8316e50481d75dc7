#include "desktop/window/DialogWindows.h"

#include "desktop/window/CalibrateWindow.h"
#include "desktop/window/ConfigWindow.h"
#include "desktop/window/FirstStartWindow.h"
#include "desktop/window/PresetWindow.h"
#include "desktop/window/RecordErrorWindow.h"
#include "desktop/window/TimerWindow.h"

namespace quorl {

std::vector<std::unique_ptr<QWidget>> MakeDialogWindows(const ControlRegistry& registry,
                                                        const Binder::Logger& log) {
  std::vector<std::unique_ptr<QWidget>> windows;
  windows.push_back(std::make_unique<PresetWindow>(registry, log));
  windows.push_back(std::make_unique<RecordErrorWindow>(registry, log));
  windows.push_back(std::make_unique<TimerWindow>(registry, log));
  windows.push_back(std::make_unique<CalibrateWindow>(registry, log));
  windows.push_back(std::make_unique<ConfigWindow>(registry, log));
  windows.push_back(std::make_unique<FirstStartWindow>(registry, log));
  return windows;
}

}  // namespace quorl
