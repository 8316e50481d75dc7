#include "desktop/window/TimerWindow.h"

#include <QGridLayout>

#include "desktop/views/Skin.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kWidth = 620, kListHeight = 132, kListPixels = 11, kInList = 10;
constexpr int kDateWidth = 110, kTimeWidth = 80, kPlanWidth = 120, kBandWidth = 100, kPresetWidth = 230;

}  // namespace

TimerWindow::TimerWindow(const ControlRegistry& registry, Binder::Logger log)
    : FormWindow(registry, std::move(log), "frmTimer") {
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(2 * skin::kGrid, 2 * skin::kGrid, 2 * skin::kGrid, 2 * skin::kGrid);
  rows->setSpacing(skin::kGrid);
  rows->addWidget(MakeList());
  rows->addWidget(MakeFields());
  rows->addWidget(MakeFoot());
  rows->addStretch(1);
  setMinimumWidth(kWidth);
  Begin();
}

QWidget* TimerWindow::MakeList() {
  auto* list = new QWidget;
  auto* rows = new QVBoxLayout(list);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(2);
  auto* head = new QHBoxLayout;
  head->addSpacing(kInList);
  Put(head, bind_.Reading("lblTimerHeaders", {}, kListPixels));
  head->addStretch(1);
  rows->addLayout(head);
  if (ListView* lines = bind_.List("lstTimer")) {
    lines->setFixedHeight(kListHeight);
    rows->addWidget(lines);
  }
  return list;
}

QWidget* TimerWindow::MakeFields() {
  auto* fields = new QWidget;
  auto* grid = new QGridLayout(fields);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(2 * skin::kGrid);
  grid->setVerticalSpacing(skin::kGrid);
  grid->setColumnStretch(1, 1);
  int row = 0;
  const auto put = [&](const char* name, QWidget* view) {
    grid->addWidget(Caption(name), row, 0);
    grid->addWidget(view, row++, 1);
  };
  put("Programme", RowOf({bind_.Toggle("chkTimerOn")}));
  put("Date",
      RowOf({bind_.Text("txtTimerDate", kDateWidth), Caption("from"), bind_.Text("txtTimerStart", kTimeWidth),
             Caption("to"), bind_.Text("txtTimerEnd", kTimeWidth)}));
  put("Repeat", OptionRow("optTimerRepeat", 3));
  put("Records", OptionRow("optTimerTarget", 2));
  put("Preset", RowOf({bind_.Choice("cboTimerPlan", kPlanWidth), bind_.Choice("cboTimerSubBand", kBandWidth),
                       bind_.Choice("cboTimerPreset", kPresetWidth)}));
  put("Frequency",
      RowOf({bind_.Text("txtTimerFreq", kDateWidth), Caption("kHz"), bind_.Button("cmdTimerTuned")}));
  put("Mode", OptionRow("optTimerMode", 6));
  put("Filter", OptionRow("optTimerFilter", 5));
  put("Rate", OptionRow("optTimerRate", 6));
  return fields;
}

QWidget* TimerWindow::MakeFoot() {
  auto* foot = new QWidget;
  auto* row = new QHBoxLayout(foot);
  row->setContentsMargins(0, skin::kGrid, 0, 0);
  row->setSpacing(4);
  if (LabelView* message = bind_.Word("lblTimerMessage")) {
    message->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    row->addWidget(message, 1);
  }
  for (const char* name : {"cmdTimerSave", "cmdTimerClear", "cmdTimerClose"}) Put(row, bind_.Button(name));
  return foot;
}

}  // namespace quorl
