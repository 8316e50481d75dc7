#include "desktop/window/PresetWindow.h"

#include "desktop/views/Skin.h"
#include "desktop/window/FormPage.h"
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
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(2 * skin::kGrid, 2 * skin::kGrid, 2 * skin::kGrid, 2 * skin::kGrid);
  rows->setSpacing(skin::kGrid);
  auto* page = new FormPage;
  const auto text = [this](const char* name, int width) {
    return bind_.Text(std::string("frmEditUserPreset.") + name, width);
  };
  page->Row("Preset No.", {bind_.Word("frmEditUserPreset.lblPresetIndex", "00")});
  page->Row("Description", {text("txtPresetValues(0)", kTextWidth)});
  page->Row("Frequency", {text("txtPresetValues(1)", kDateWidth)});
  page->Row("Date and time",
            {text("txtPresetValues(2)", kDateWidth), text("txtPresetValues(3)", kTimeWidth)});
  page->Options("Demodulation", bind_.Options("frmEditUserPreset.optDemodulationValue", 4));
  page->Options("Filtering", bind_.Options("frmEditUserPreset.optFilteringValues", 5));
  page->Row("IF Frequency", {bind_.Toggle("frmEditUserPreset.chkPresetTuneImage")});
  rows->addWidget(page);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  Put(buttons, bind_.Button("frmEditUserPreset.cmdSave"));
  Put(buttons, bind_.Button("frmEditUserPreset.cmdCancel"));
  rows->addLayout(buttons);
}

}  // namespace quorl
