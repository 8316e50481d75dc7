#include "desktop/window/TimerWindow.h"

#include "desktop/views/Skin.h"
#include "desktop/window/FormPage.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kTimerWidth = 620, kListHeight = 132, kListPixels = 11, kInList = 10;
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
  setMinimumWidth(kTimerWidth);
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
  auto* page = new FormPage;
  page->Row("Programme", {bind_.Toggle("chkTimerOn")});
  page->Row("Date",
            {bind_.Text("txtTimerDate", kDateWidth), Caption("from"), bind_.Text("txtTimerStart", kTimeWidth),
             Caption("to"), bind_.Text("txtTimerEnd", kTimeWidth)});
  page->Options("Repeat", bind_.Options("optTimerRepeat", 3));
  page->Options("Records", bind_.Options("optTimerTarget", 2));
  page->Row("Preset", {bind_.Choice("cboTimerPlan", kPlanWidth), bind_.Choice("cboTimerSubBand", kBandWidth),
                       bind_.Choice("cboTimerPreset", kPresetWidth)});
  page->Row("Frequency",
            {bind_.Text("txtTimerFreq", kDateWidth), Caption("kHz"), bind_.Button("cmdTimerTuned")});
  page->Options("Mode", bind_.Options("optTimerMode", 6));
  page->Options("Filter", bind_.Options("optTimerFilter", 5));
  page->Options("Rate", bind_.Options("optTimerRate", 6));
  return page;
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
