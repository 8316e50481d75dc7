#include "diagnostics/LogPanel.h"

namespace quorl {

LogPanel::LogPanel(ControlRegistry& registry, LogBook& log)
    : frmLog(registry, "frmLog"), lstLog(registry, "lstLog") {
  frmLog.Caption = "Log";
  frmLog.Visible = false;
  lstLog.SetItems({log.Lines().begin(), log.Lines().end()});
  lstLog.SetListIndex(log.SelectedLine());
  following_ = log.OnLine.Listen([this](const std::string& line) {
    if (lstLog.Items().size() >= LogBook::kMostLines) lstLog.RemoveItem(0);
    lstLog.AddItem(line);
    lstLog.SetListIndex(static_cast<int>(lstLog.Items().size()) - 1);
  });
}

}  // namespace quorl
