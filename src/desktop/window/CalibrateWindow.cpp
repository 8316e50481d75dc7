#include "desktop/window/CalibrateWindow.h"

#include "desktop/views/Skin.h"
#include "desktop/window/FormPage.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kCalibrationWidth = 460, kFrequencyWidth = 140, kClockPixels = 12;

}  // namespace

CalibrateWindow::CalibrateWindow(const ControlRegistry& registry, Binder::Logger log)
    : FormWindow(registry, std::move(log), "frmCalibrate") {
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(2 * skin::kGrid, 2 * skin::kGrid, 2 * skin::kGrid, 2 * skin::kGrid);
  rows->setSpacing(skin::kGrid);
  Put(rows, AsRoomAllows(bind_.Word("frmCalibrate.lblNote")));
  rows->addWidget(MakeFigures());
  rows->addWidget(MakeFoot());
  rows->addStretch(1);
  setMinimumWidth(kCalibrationWidth);
  Begin();
}

QWidget* CalibrateWindow::MakeFigures() {
  auto* page = new FormPage;
  const auto figure = [this](const char* name) { return bind_.Reading(name, {}); };
  page->Row("Beat",
            {bind_.Reading("frmCalibrate.lblBeat", "-2 000.0 Hz"), bind_.Button("frmCalibrate.cmdZeroBeat")});
  page->Row("Carrier", {figure("frmCalibrate.lblCarrier")});
  page->Row("Current Tuned Freq", {figure("frmCalibrate.lblCurrentTunedFreq")}, "Hz");
  page->Row("Official Freq", {bind_.Text("frmCalibrate.txtOfficialFreq", kFrequencyWidth)}, "Hz");
  page->Row("DDS CLKIN (Current)", {figure("frmCalibrate.lblDDSClkInCurrent")}, "Hz");
  page->Row("DDS CLKIN (New)", {bind_.Reading("frmCalibrate.lblDDSClkinNew", {}, kClockPixels)});
  return page;
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
