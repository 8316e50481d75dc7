#include "desktop/window/PresetWindow.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QKeyEvent>

#include "desktop/views/Skin.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kTextWidth = 260, kDateWidth = 120, kTimeWidth = 100;

QWidget* RowOf(const std::vector<QWidget*>& views) {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  for (QWidget* view : views) Put(layout, view);
  layout->addStretch(1);
  return row;
}

}  // namespace

PresetWindow::PresetWindow(const ControlRegistry& registry, Binder::Logger log)
    : QWidget(nullptr, Qt::Dialog),
      bind_(registry, clock_, std::move(log)),
      form_(bind_.Find<Frame>("frmEditUserPreset")),
      cancel_(bind_.Find<CommandButton>("cmdCancel")) {
  setObjectName("frmEditUserPreset");
  setWindowModality(Qt::ApplicationModal);
  QPalette dark = palette();
  dark.setColor(QPalette::Window, QColor(skin::kCard));
  setPalette(dark);
  setAutoFillBackground(true);
  Build();
  if (!form_) return;
  following_ = form_->OnChanged.Listen([this] { Follow(); });
  Follow();
}

PresetWindow::~PresetWindow() {
  following_.reset();
  qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
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
  const auto options = [this](const char* name, int count) {
    std::vector<QWidget*> views;
    for (FaceView* view : bind_.Options(name, count)) views.push_back(view);
    return RowOf(views);
  };
  put("Preset No.", bind_.Word("lblPresetIndex", "00"));
  put("Description", bind_.Text("txtPresetValues(0)", kTextWidth));
  put("Frequency", bind_.Text("txtPresetValues(1)", kDateWidth));
  put("Date and time",
      RowOf({bind_.Text("txtPresetValues(2)", kDateWidth), bind_.Text("txtPresetValues(3)", kTimeWidth)}));
  put("Demodulation", options("optDemodulationValue", 4));
  put("Filtering", options("optFilteringValues", 5));
  put("IF Frequency", RowOf({bind_.Toggle("chkPresetTuneImage")}));
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  Put(buttons, bind_.Button("cmdSave"));
  Put(buttons, bind_.Button("cmdCancel"));
  grid->addLayout(buttons, row, 0, 1, 2);
}

void PresetWindow::Follow() {
  setWindowTitle(QString::fromStdString(form_->Caption()));
  const bool shown = form_->Visible();
  clock_.Flush();
  clock_.SetAwake(shown);
  if (shown == isVisible()) return;
  setVisible(shown);
  if (shown) activateWindow();
}

void PresetWindow::closeEvent(QCloseEvent* event) {
  if (!cancel_) return;
  event->ignore();
  cancel_->UserClick();
}

void PresetWindow::keyPressEvent(QKeyEvent* event) {
  const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!form_ || (!enters && event->key() != Qt::Key_Escape)) return QWidget::keyPressEvent(event);
  form_->KeyDown(Key{enters ? Key::Enter : Key::Escape, {}});
}

}  // namespace quorl
