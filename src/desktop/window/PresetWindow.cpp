#include "desktop/window/PresetWindow.h"

#include <QGridLayout>

#include "desktop/views/Skin.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kTextWidth = 260, kDateWidth = 120, kTimeWidth = 100;

}  // namespace

PresetWindow::PresetWindow(const ControlRegistry& registry, Binder::Logger log)
    : FormWindow(registry, std::move(log), "frmEditUserPreset") {
  setWindowModality(Qt::ApplicationModal);
  Build();
  Begin();
}

void PresetWindow::Build() {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(2 * skin::kGrid, 2 * skin::kGrid, 2 * skin::kGrid, 2 * skin::kGrid);
  grid->setSpacing(skin::kGrid);
  int row = 0;
  const auto put = [&](const char* name, QWidget* view) {
    if (!view) return;
    grid->addWidget(Caption(name), row, 0);
    grid->addWidget(view, row++, 1);
  };
  put("Preset No.", bind_.Word("frmEditUserPreset.lblPresetIndex", "00"));
  put("Description", bind_.Text("frmEditUserPreset.txtPresetValues(0)", kTextWidth));
  put("Frequency", bind_.Text("frmEditUserPreset.txtPresetValues(1)", kDateWidth));
  put("Date and time", RowOf({bind_.Text("frmEditUserPreset.txtPresetValues(2)", kDateWidth),
                              bind_.Text("frmEditUserPreset.txtPresetValues(3)", kTimeWidth)}));
  put("Demodulation", OptionRow("frmEditUserPreset.optDemodulationValue", 4));
  put("Filtering", OptionRow("frmEditUserPreset.optFilteringValues", 5));
  put("IF Frequency", RowOf({bind_.Toggle("frmEditUserPreset.chkPresetTuneImage")}));
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  Put(buttons, bind_.Button("frmEditUserPreset.cmdSave"));
  Put(buttons, bind_.Button("frmEditUserPreset.cmdCancel"));
  grid->addLayout(buttons, row, 0, 1, 2);
}

}  // namespace quorl
