#include "desktop/window/FormWindow.h"

#include <QCloseEvent>
#include <QKeyEvent>

#include "desktop/views/Skin.h"

namespace quorl {

FormWindow::FormWindow(const ControlRegistry& registry, Binder::Logger log, const std::string& form)
    : QWidget(nullptr, Qt::Dialog), bind_(registry, clock_, std::move(log)), form_(bind_.Find<Frame>(form)) {
  setObjectName(QString::fromStdString(form));
  setBackgroundRole(QPalette::AlternateBase);
  setAutoFillBackground(true);
}

FormWindow::~FormWindow() {
  following_.reset();
  qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
}

void FormWindow::Begin() {
  if (!form_) return;
  following_ = form_->OnChanged.Listen([this] { Follow(); });
  Follow();
}

void FormWindow::Follow() {
  setWindowTitle(QString::fromStdString(form_->Caption()));
  const bool shown = form_->Visible();
  clock_.Flush();
  clock_.SetAwake(shown);
  if (shown == isVisible()) return;
  setVisible(shown);
  if (shown) activateWindow();
}

void FormWindow::closeEvent(QCloseEvent* event) {
  if (!form_) return;
  event->ignore();
  form_->KeyDown(Key{Key::Escape, {}});
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!form_ || (!enters && event->key() != Qt::Key_Escape)) return QWidget::keyPressEvent(event);
  form_->KeyDown(Key{enters ? Key::Enter : Key::Escape, {}});
}

}  // namespace quorl
