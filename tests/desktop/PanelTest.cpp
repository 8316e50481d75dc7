// The window and the radio hold the same controls.
#include <map>
#include <set>

#include "DesktopTest.h"
#include "desktop/views/View.h"
#include "desktop/window/DialogWindows.h"
#include "desktop/window/PanelWindow.h"
#include "desktop/window/SidePanels.h"

namespace quorl {
namespace {

// Controls that have no view of their own, and why; of an array all, unless one is named.
const std::map<std::string, std::string> kWithoutView = {
    {"frmMain", "the window itself"},
    {"frmLog", "the log's window itself"},
    {"frDispMode", "the buttons of the sizes stand on the receiver's card"},
    {"frmEditUserPreset", "the dialog's window itself"},
    {"frmTimer", "the timer's window itself"},
    {"frmCalibrate", "the calibration's window itself"},
    {"frmConfig", "the configuration's window itself"},
    {"frmFirstStart", "the first start's window itself"},
    {"frmRecordFileError", "the message's window itself"},
    {"frmPresetDesc", "the hint beside a memory's button, which its text draws"},
    {"lblCaption", "the heading of that hint"},
    {"lstSubBandSelect", "the same choice as the field beside it"},
    {"mnuUserPresets", "opens at the pointer when it is asked for"},
    {"picSubBands", "the ground of the sub-bands' buttons"},
    {"lbl7SegTop", "the frequency's view draws it, and it takes no gestures"},
    {"lblScopeCtl(5)", "the button before the number says it"},
    {"lblStats(6)", "an empty place"},
    {"lblStats(7)", "an empty place"},
    {"lblStats(8)", "an empty place"},
    {"lblStats(9)", "of a thread that nothing measures yet"},
    {"lblStats(10)", "of a thread that nothing measures yet"},
    {"lblStats(11)", "of a thread that nothing measures yet"},
    {"lblStatsVal(6)", "an empty place"},
    {"lblStatsVal(7)", "an empty place"},
    {"lblStatsVal(8)", "an empty place"},
    {"mnuExportTracks", "opens at the pointer when it is asked for"},
    {"mnuScope", "opens at the pointer when it is asked for"},
    {"mnuWaterfall", "opens at the pointer when it is asked for"},
    {"lblStatsVal(9)", "of a thread that nothing measures yet"},
    {"lblStatsVal(10)", "of a thread that nothing measures yet"},
    {"lblStatsVal(11)", "of a thread that nothing measures yet"},
    {"mnuVFOControlSub", "opens at the pointer when it is asked for"},
    {"mnuVFOStepSub", "opens at the pointer when it is asked for"},
    {"shpSMeterGrid", "one step of the bar that the meter's view draws"},
};

std::set<const Control*> ShownBy(const std::vector<const QWidget*>& windows) {
  std::set<const Control*> shown;
  for (const QWidget* window : windows) {
    for (const QWidget* widget : window->findChildren<QWidget*>()) {
      if (const auto* view = dynamic_cast<const View*>(widget)) shown.insert(&view->Shown());
    }
  }
  return shown;
}

TEST_F(DesktopTest, EveryViewHasItsControlAndEveryControlItsView) {
  RealPanel panel;
  const auto missing = [](const std::string& line) { ADD_FAILURE() << line; };
  PanelWindow window(panel.Registry(), {.Log = missing});
  LogWindow log(panel.Registry(), missing);
  const auto dialogs = MakeDialogWindows(panel.Registry(), missing);
  std::vector<const QWidget*> windows{&window, &log};
  for (const auto& dialog : dialogs) windows.push_back(dialog.get());
  const std::set<const Control*> shown = ShownBy(windows);
  std::set<std::string> met;
  for (const Control* control : panel.Registry().All()) {
    const std::string& name = control->Name();
    const std::string key = kWithoutView.contains(name) ? name : name.substr(0, name.find('('));
    const bool excused = kWithoutView.contains(key);
    if (excused) met.insert(key);
    EXPECT_NE(shown.contains(control), excused)
        << name << (excused ? " has a view by now" : " can't be seen");
  }
  EXPECT_EQ(met.size(), kWithoutView.size()) << "a control of the list is gone";
}

}  // namespace
}  // namespace quorl
