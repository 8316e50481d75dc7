#include "desktop/window/GuideDesk.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QWindow>
#include <array>

#include "desktop/window/GuideWindow.h"

namespace quorl {

namespace {

struct Subject {
  const char* Name;  // of a window, or of a card on the panel
  const char* Page;
};

constexpr std::array kSubjects{
    Subject{"frmConfig", "configuration.md"},    Subject{"frmCalibrate", "calibration.md"},
    Subject{"frmFirstStart", "first-start.md"},  Subject{"frmTimer", "recording.md#timer"},
    Subject{"frmEditUserPreset", "memories.md"}, Subject{"frScope", "scope.md#the-pointer"},
    Subject{"frPresets", "memories.md"},         Subject{"frRecorder", "recording.md"},
};

const char* PageOf(const QWidget* widget) {
  for (const Subject& subject : kSubjects) {
    if (widget->objectName() == subject.Name) return subject.Page;
  }
  return nullptr;
}

}  // namespace

GuideDesk::GuideDesk(QString folder) : folder_(std::move(folder)) {
  qApp->installEventFilter(this);
}

GuideDesk::~GuideDesk() = default;

void GuideDesk::Open(const QString& page) {
  if (!window_) window_ = std::make_unique<GuideWindow>(folder_);
  StandByDialog();
  window_->Open(page);
}

// A dialog that shuts out the other windows lets in those that belong to it.
void GuideDesk::StandByDialog() {
  const QWidget* dialog = QApplication::activeModalWidget();
  static_cast<void>(window_->winId());  // makes the handle
  window_->windowHandle()->setTransientParent(dialog ? dialog->windowHandle() : nullptr);
}

QString GuideDesk::PageFor(const QWidget* window, const QWidget* pointed) {
  if (const char* page = window ? PageOf(window) : nullptr) return page;
  for (; pointed && pointed->window() == window; pointed = pointed->parentWidget()) {
    if (const char* page = PageOf(pointed)) return page;
  }
  return "keys.md";
}

bool GuideDesk::eventFilter(QObject* object, QEvent* event) {
  const auto* widget = qobject_cast<QWidget*>(object);
  if (!widget || event->type() != QEvent::KeyPress) return false;
  if (static_cast<QKeyEvent*>(event)->key() != Qt::Key_F1) return false;
  Open(PageFor(widget->window(), QApplication::widgetAt(QCursor::pos())));
  return true;
}

}  // namespace quorl
