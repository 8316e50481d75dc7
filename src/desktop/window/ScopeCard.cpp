// The scope: its pictures over every spare pixel, a head that says what is shown, a foot with its values.
#include <QGridLayout>
#include <array>

#include "desktop/views/Skin.h"
#include "desktop/window/PanelParts.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kFootRows = 3, kFootHeight = 20, kFootSpacing = 4, kColumnGap = 12;
constexpr int kCursorPixels = 12;
const QString kScopeTitle = QStringLiteral("Scope");

LabelView* ToTheRight(LabelView* label) {
  if (label) label->SetAlignment(Qt::AlignRight);
  return label;
}

// A caption that is there while its value is.
void PutNamed(QBoxLayout* row, const QString& name, LabelView* value) {
  if (!value) return;
  value->SetName(name);
  row->addWidget(value);
}

QGridLayout* FootGrid(int rows = kFootRows) {
  auto* grid = new QGridLayout;
  grid->setVerticalSpacing(kFootSpacing);
  grid->setHorizontalSpacing(kFootSpacing);
  for (int row = 0; row < rows; ++row) grid->setRowMinimumHeight(row, kFootHeight);
  return grid;
}

void Place(QGridLayout* grid, QWidget* widget, int row, int column, int columns = 1, Qt::Alignment at = {}) {
  if (widget) grid->addWidget(widget, row, column, 1, columns, at);
}

// What is shown on the left, where it comes from on the right.
void FillScopeHead(Binder& bind, CardView* card) {
  QHBoxLayout* head = card->TitleRow();
  int at = 0;
  head->insertSpacing(at++, skin::TextWidth(skin::TitleFont(), kScopeTitle.toUpper()) + 2 * skin::kGrid);
  for (FaceView* mode : bind.Options("chkScopeMode", 3)) head->insertWidget(at++, Small(mode));
  for (FaceView* source : bind.Options("optSpectrumSource", 4)) Put(head, Small(source));
  head->addSpacing(skin::kGrid);
  Put(head, Small(bind.Toggle("chkScopeFreeze")));
  FaceView* view = Small(bind.Button("cmdScopeView"));
  Put(head, view);
  bind.PopupMenu("mnuScope", card, view);
  bind.PopupMenu("mnuWaterfall", card, view);
}

QWidget* MakePictures(Binder& bind) {
  ScopeView* spectrum = bind.Scope("picScope");
  auto* pane = new SplitPane(spectrum, bind.Splitter("sldScopeSplit"), bind.Scope("picWaterfall"));
  if (spectrum) bind.Floating("lblSpectrumFreq", spectrum);
  return pane;
}

// Both channels, one under the other.
QWidget* MakeChannels(Binder& bind) {
  CardView* card = bind.Card("frScopeYMode", "Channels", CardView::Title::Flat);
  QGridLayout* grid = FootGrid();
  card->AddRow()->addLayout(grid);
  Place(grid, ToTheRight(bind.Word("lblScopeCtl(0)")), 0, 1, 1, Qt::AlignRight);
  Place(grid, ToTheRight(bind.Word("lblScopeCtl(1)")), 0, 2, 1, Qt::AlignRight);
  Place(grid, ToTheRight(bind.Word("lblScopeCtl(4)")), 0, 3, 1, Qt::AlignRight);
  for (int channel = 1; channel <= 2; ++channel) {
    const std::string number = std::to_string(channel);
    Place(grid, Small(bind.Toggle("chkChn" + number + "On")), channel, 0);
    Place(grid, ToTheRight(bind.Value("lblScopeChn" + number + "Gain", "00.0")), channel, 1);
    Place(grid, ToTheRight(bind.Value("lblScopeChn" + number + "Shift", "-000")), channel, 2);
    Place(grid, ToTheRight(bind.Value("lblY" + number + "Bright", "000")), channel, 3);
  }
  return card;
}

// What the cursor reads, and under it how much of band or block is shown, and where.
QWidget* MakeSweep(Binder& bind) {
  CardView* card = bind.Card("frScopeSweep", "Sweep", CardView::Title::Flat);
  QGridLayout* grid = FootGrid();
  card->AddRow()->addLayout(grid);
  grid->setColumnStretch(2, 1);
  Place(grid, bind.Value("lblScopeCursor", "00 000 000 Hz  -000.0 dB  00:00:00", kCursorPixels), 0, 0, 4);
  Place(grid, bind.Word("lblScopeCtl(2)", "Timebase"), 1, 0);
  Place(grid, ToTheRight(bind.Value("lblScopeXWidth", "0,000")), 1, 1);
  Place(grid, bind.Slide("sldXWidth", 120), 1, 2);
  Place(grid, bind.Word("lblScopeCtl(3)", "ms/Div"), 1, 3);
  Place(grid, bind.Word("lblScopeCtl(7)", "Timebase"), 2, 0);
  Place(grid, ToTheRight(bind.Value("lblScopeXCentre", "0,000")), 2, 1);
  Place(grid, bind.Slide("sldXCentre", 120), 2, 2, 2);
  return card;
}

// What the traces are made of, and the scale under them.
QWidget* MakeScale(Binder& bind) {
  auto* group = new QWidget;
  group->setMouseTracking(true);
  auto* rows = new QVBoxLayout(group);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(kFootSpacing);
  std::array<QHBoxLayout*, kFootRows> row{};
  for (QHBoxLayout*& one : row) {
    one = new QHBoxLayout;
    one->setSpacing(kFootSpacing);
    rows->addLayout(one);
  }
  Put(row[0], Small(bind.Toggle("chkSmoothSpectrum")));
  Put(row[0], bind.Value("lblSpectrumSmooth", "00"));
  row[0]->addStretch(1);
  // What only one of the modes has takes the same two places.
  QGridLayout* ofMode = FootGrid(1);
  Place(ofMode, Small(bind.Toggle("chkLog")), 0, 0);
  Place(ofMode, Small(bind.Toggle("chkTrigOn(1)")), 0, 0);
  Place(ofMode, Small(bind.Toggle("chkScopeShowFilters")), 0, 1);
  Place(ofMode, Small(bind.Toggle("chkTrigOn(2)")), 0, 1);
  row[0]->addLayout(ofMode);
  PutNamed(row[1], "Top", bind.Value("lblScopeTop", "-000"));
  PutNamed(row[1], "Floor", bind.Value("lblScopeFloor", "-000"));
  row[1]->addStretch(1);
  Put(row[1], Small(bind.Toggle("chkSpectrumAutoGain")));
  Put(row[2], bind.Word("lblScopeCtl(6)", "YGain : -00 dB"));
  Put(row[2], bind.Slide("sldSpectrumGain", 80), 1);
  return group;
}

}  // namespace

QWidget* MakeScopeCard(Binder& bind) {
  CardView* card = bind.Card("frScope", kScopeTitle);
  FillScopeHead(bind, card);
  card->AddRow(1)->addWidget(MakePictures(bind), 1);
  QHBoxLayout* foot = card->AddRow();
  foot->setSpacing(kColumnGap);
  foot->addWidget(MakeChannels(bind));
  foot->addWidget(MakeSweep(bind), 1);
  foot->addWidget(MakeScale(bind));
  return card;
}

}  // namespace quorl
