#include "desktop/window/ConfigWindow.h"

#include <QGridLayout>

#include "desktop/views/Skin.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kConfigWidth = 660, kPages = 9;
constexpr QWidget* (*kMakers[kPages])(Binder&) = {MakeReceiverPage, MakeInterfacePage, MakeSoundPage,
                                                  MakeTuningPage,   MakeDisplayPage,   MakeDecoderPage,
                                                  MakeColoursPage,  MakeAboutPage,     MakeRemotePage};
// The tabs as they are read: what belongs to the radio, then the program.
constexpr int kReading[kPages] = {0, 1, 2, 3, 4, 5, 8, 6, 7};

}  // namespace

ConfigWindow::ConfigWindow(const ControlRegistry& registry, Binder::Logger log)
    : FormWindow(registry, std::move(log), "frmConfig") {
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(2 * skin::kGrid, 2 * skin::kGrid, 2 * skin::kGrid, 2 * skin::kGrid);
  rows->setSpacing(skin::kGrid);
  rows->addWidget(MakeTabs());
  rows->addWidget(MakePages(), 1);
  rows->addWidget(MakeFoot());
  setMinimumWidth(kConfigWidth);
  Begin();
}

QWidget* ConfigWindow::MakeTabs() {
  auto* tabs = new QWidget;
  auto* row = new QHBoxLayout(tabs);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(4);
  std::vector<FaceView*> views;
  for (const int page : kReading) {
    if (FaceView* view = bind_.Option(IndexedName("frmConfig.TabStrip1", page))) views.push_back(view);
  }
  for (FaceView* view : views) view->SetGroup(views);
  Put(row, views);
  return tabs;
}

// All in one place, of which one is seen: the window keeps its size.
QWidget* ConfigWindow::MakePages() {
  auto* pages = new QWidget;
  auto* place = new QGridLayout(pages);
  place->setContentsMargins(0, 0, 0, 0);
  for (int page = 0; page < kPages; ++page) {
    CardView* card = bind_.Card(IndexedName("frmConfig.frConfigs", page), {}, CardView::Title::None);
    QSizePolicy policy = card->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    card->setSizePolicy(policy);
    card->AddRow(1)->addWidget(kMakers[page](bind_));
    place->addWidget(card, 0, 0);
  }
  return pages;
}

QWidget* ConfigWindow::MakeFoot() {
  auto* foot = new QWidget;
  auto* row = new QHBoxLayout(foot);
  row->setContentsMargins(0, skin::kGrid, 0, 0);
  row->setSpacing(4);
  if (AdviceView* message = bind_.Advice("frmConfig.lblConfigMessage", 2)) {
    message->SetCentred();
    row->addWidget(message, 1);
  }
  for (const char* name : {"frmConfig.cmdOK", "frmConfig.cmdApply", "frmConfig.cmdCancel"})
    Put(row, bind_.Button(name));
  return foot;
}

}  // namespace quorl
