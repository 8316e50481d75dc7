#include "desktop/window/CalibrateWindow.h"

#include <QGridLayout>

#include "desktop/views/Skin.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kWidth = 460, kFrequencyWidth = 140, kClockPixels = 12;

}  // namespace

CalibrateWindow::CalibrateWindow(const ControlRegistry& registry, Binder::Logger log)
    : FormWindow(registry, std::move(log), "frmCalibrate") {
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(2 * skin::kGrid, 2 * skin::kGrid, 2 * skin::kGrid, 2 * skin::kGrid);
  rows->setSpacing(skin::kGrid);
  if (LabelView* note = bind_.Word("frmCalibrate.lblNote")) {
    note->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    rows->addWidget(note);
  }
  rows->addWidget(MakeFigures());
  rows->addWidget(MakeFoot());
  rows->addStretch(1);
  setMinimumWidth(kWidth);
  Begin();
}

QWidget* CalibrateWindow::MakeFigures() {
  auto* figures = new QWidget;
  auto* grid = new QGridLayout(figures);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(2 * skin::kGrid);
  grid->setVerticalSpacing(skin::kGrid);
  grid->setColumnStretch(1, 1);
  int row = 0;
  const auto put = [&](const char* name, QWidget* view) {
    grid->addWidget(Caption(name), row, 0);
    grid->addWidget(view, row++, 1);
  };
  const auto figure = [&](const char* name) { return bind_.Reading(name, {}); };
  put("Beat", RowOf({bind_.Reading("frmCalibrate.lblBeat", "-2 000.0 Hz"),
                     bind_.Button("frmCalibrate.cmdZeroBeat")}));
  put("Carrier", RowOf({figure("frmCalibrate.lblCarrier")}));
  put("Current Tuned Freq", RowOf({figure("frmCalibrate.lblCurrentTunedFreq"), Caption("Hz")}));
  put("Official Freq", RowOf({bind_.Text("frmCalibrate.txtOfficialFreq", kFrequencyWidth), Caption("Hz")}));
  put("DDS CLKIN (Current)", RowOf({figure("frmCalibrate.lblDDSClkInCurrent"), Caption("Hz")}));
  if (LabelView* clock = bind_.Reading("frmCalibrate.lblDDSClkinNew", {}, kClockPixels)) {
    clock->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    put("DDS CLKIN (New)", clock);
  }
  return figures;
}

QWidget* CalibrateWindow::MakeFoot() {
  auto* foot = new QWidget;
  auto* row = new QHBoxLayout(foot);
  row->setContentsMargins(0, skin::kGrid, 0, 0);
  row->setSpacing(4);
  Put(row, bind_.Button("frmCalibrate.cmdTry"));
  row->addStretch(1);
  for (const char* name : {"frmCalibrate.cmdApply", "frmCalibrate.cmdCancel"}) Put(row, bind_.Button(name));
  return foot;
}

}  // namespace quorl
