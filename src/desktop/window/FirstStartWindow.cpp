#include "desktop/window/FirstStartWindow.h"

#include "desktop/views/Skin.h"
#include "desktop/window/LevelRows.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr const char* kDialog = "frmFirstStart";
constexpr int kFirstStartWidth = 640, kStartPortWidth = 320, kAddressWidth = 100, kBoards = 5;

}  // namespace

FirstStartWindow::FirstStartWindow(const ControlRegistry& registry, Binder::Logger log)
    : FormWindow(registry, std::move(log), kDialog) {
  auto* rows = new QVBoxLayout(this);
  constexpr int kEdge = 3 * skin::kGrid;
  rows->setContentsMargins(kEdge, kEdge, kEdge, 2 * skin::kGrid);
  rows->setSpacing(2 * skin::kGrid);
  rows->addWidget(MakeQuestions());
  rows->addStretch(1);
  rows->addWidget(MakeFoot());
  setMinimumWidth(kFirstStartWidth);
  Begin();
}

QWidget* FirstStartWindow::MakeQuestions() {
  const auto name = [](const char* control) { return std::string(kDialog) + "." + control; };
  auto* page = new FormPage;
  auto* welcome = new QLabel("Five questions, and the radio plays");
  welcome->setFont(skin::WordFont(18));
  page->Across(welcome);
  page->Gap();
  page->Options("Board", bind_.Options(name("optBoard"), kBoards));
  page->Under(bind_.Advice(name("lblBoard"), 1));
  page->Options("Interface", bind_.Options(name("optIF"), 2));
  page->Under(bind_.Advice(name("lblIF"), 1));
  page->OneOf("Port", {bind_.Choice(name("cboComPort"), kStartPortWidth),
                       bind_.Text(name("txtPortAddress"), kAddressWidth)});
  page->Under(bind_.Advice(name("lblPort"), 1));
  AddSoundRows(bind_, *page, kDialog, "Sound input", "Sound output");
  page->End();
  return page;
}

QWidget* FirstStartWindow::MakeFoot() {
  auto* foot = new QWidget;
  auto* row = new QHBoxLayout(foot);
  row->setContentsMargins(0, skin::kGrid, 0, 0);
  row->setSpacing(4);
  const auto button = [this](const char* name) { return bind_.Button(std::string(kDialog) + "." + name); };
  Put(row, button("cmdRefresh"));
  row->addSpacing(2 * skin::kGrid);
  row->addWidget(Caption("F1 opens the guide: wires, port, level"));
  row->addStretch(1);
  Put(row, button("cmdSkip"));
  Put(row, button("cmdStart"));
  return foot;
}

}  // namespace quorl
