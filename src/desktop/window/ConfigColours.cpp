#include "desktop/window/ConfigColours.h"

#include <QGridLayout>

#include "config/ThemeColours.h"
#include "desktop/views/Skin.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kThemeWidth = 200;

std::string Named(const char* control) {
  return std::string("frmConfig.") + control;
}

}  // namespace

ConfigColours::ConfigColours(Binder& bind) : bind_(bind) {
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(2 * skin::kGrid);
  auto* head = new QHBoxLayout;
  head->setSpacing(skin::kGrid);
  head->addWidget(Caption("Theme"));
  Put(head, bind_.Choice(Named("cboTheme"), kThemeWidth));
  Put(head, bind_.Button(Named("cmdSDRColoursLoad")));
  Put(head, bind_.Button(Named("cmdSDRColoursSave")));
  head->addStretch(1);
  Put(head, bind_.Button(Named("cmdSDRPreviewColours")));
  rows->addLayout(head);
  auto* columns = new QHBoxLayout;
  columns->setSpacing(3 * skin::kGrid);
  columns->addWidget(MakeSwatches(0, kFirstScopeSwatch, "Panel", "cmdSDRControlDefaults"), 1, Qt::AlignTop);
  columns->addWidget(MakeSwatches(kFirstScopeSwatch, kSwatchCount, "Scope", "cmdScopeDefaults"), 1,
                     Qt::AlignTop);
  rows->addLayout(columns);
  rows->addStretch(1);
}

// A patch and the button that changes it, one under the other; the way back to the defaults beside the title.
QWidget* ConfigColours::MakeSwatches(std::size_t first, std::size_t end, const QString& title,
                                     const char* defaults) {
  auto* column = new QWidget;
  auto* grid = new QGridLayout(column);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(skin::kGrid);
  grid->setVerticalSpacing(4);
  grid->setColumnStretch(1, 1);
  QLabel* words = Caption(title.toUpper());
  words->setFont(skin::TitleFont());
  grid->addWidget(words, 0, 0);
  if (FaceView* button = Small(bind_.Button(Named(defaults)))) grid->addWidget(button, 0, 1, Qt::AlignRight);
  for (std::size_t i = first; i < end; ++i) {
    const int row = static_cast<int>(i - first) + 1;
    if (SwatchView* swatch = bind_.Swatch(Named(kSwatchNames[i].Key))) grid->addWidget(swatch, row, 0);
    if (FaceView* button = bind_.Button(Named(kSwatchNames[i].Button))) grid->addWidget(button, row, 1);
  }
  return column;
}

}  // namespace quorl
