#include "desktop/window/RecordErrorWindow.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QVBoxLayout>

#include "desktop/views/Skin.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

RecordErrorWindow::RecordErrorWindow(const ControlRegistry& registry, Binder::Logger log)
    : QWidget(nullptr, Qt::Dialog),
      bind_(registry, clock_, std::move(log)),
      form_(bind_.Find<Frame>("frmRecordFileError")) {
  constexpr int kWidth = 420;
  setObjectName("frmRecordFileError");
  setBackgroundRole(QPalette::AlternateBase);
  setAutoFillBackground(true);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(2 * skin::kGrid, 2 * skin::kGrid, 2 * skin::kGrid, 2 * skin::kGrid);
  rows->setSpacing(2 * skin::kGrid);
  MessageView* message = bind_.Message("txtMessage", kWidth);
  Put(rows, message);
  auto* foot = new QHBoxLayout;
  foot->addStretch(1);
  Put(foot, bind_.Button("OKButton"));
  rows->addLayout(foot);
  if (!form_ || !message) return;
  following_ = form_->OnChanged.Listen([this] { Follow(); });
  reading_ = message->Shown().OnChanged.Listen([this] { Follow(); });
  Follow();
}

RecordErrorWindow::~RecordErrorWindow() {
  following_.reset();
  reading_.reset();
  qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
}

void RecordErrorWindow::Follow() {
  setWindowTitle(QString::fromStdString(form_->Caption()));
  const bool shown = form_->Visible();
  clock_.Flush();
  clock_.SetAwake(shown);
  if (shown) adjustSize();
  if (shown != isVisible()) setVisible(shown);
}

void RecordErrorWindow::closeEvent(QCloseEvent* event) {
  if (!form_) return;
  event->ignore();
  form_->Visible = false;
}

void RecordErrorWindow::keyPressEvent(QKeyEvent* event) {
  const int code = KeyCodeOf(event->key());
  if (form_ && (code == Key::Enter || code == Key::Escape)) return form_->KeyDown(Key{code, {}});
  QWidget::keyPressEvent(event);
}

}  // namespace quorl
