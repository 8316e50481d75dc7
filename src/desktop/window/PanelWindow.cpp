#include "desktop/window/PanelWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLayout>
#include <QLineEdit>
#include <QPainter>
#include <QWindow>
#include <algorithm>

#include "desktop/views/FocusRing.h"
#include "desktop/views/Skin.h"
#include "desktop/window/PanelParts.h"

namespace quorl {

namespace {

constexpr int kLeastWidth = 1024, kLeastHeight = 700;
constexpr int kFirstWidth = 1280, kFirstHeight = 800;
constexpr int kMostHeight = 16777215;
constexpr int kCompactHeight = kTopHeight + kStripHeight + 3 * skin::kGrid;
// The right column takes a share of the width, so that its sliders gain from a large window.
constexpr int kLeastColumn = 312, kMostColumn = 480, kColumnShare = 4;
constexpr int kDisplaySizes = 4;

}  // namespace

PanelWindow::PanelWindow(const ControlRegistry& registry, Events events)
    : events_(std::move(events)),
      bind_(registry, clock_, [this](const std::string& line) { Raise(events_.Log, line); }),
      registry_(registry),
      form_(registry.Find("frmMain")),
      body_(new QWidget(this)),
      ring_(new FocusRing(this)) {
  setWindowTitle("QUORLSDR");
  setObjectName("frmMain");
  setMouseTracking(true);
  Build();
  clock_.AfterFlush = [this] { FollowControls(); };
  resize(kFirstWidth, kFirstHeight);
  SetDisplaySize(size_);
  qApp->installEventFilter(this);
}

PanelWindow::~PanelWindow() {
  clock_.AfterFlush = nullptr;
  // Views let go of clock and binder, which end before this object's children otherwise would.
  qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
}

void PanelWindow::Build() {
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(0, 0, 0, 0);
  outer->addWidget(body_);
  body_->setMouseTracking(true);
  auto* rows = new QVBoxLayout(body_);
  rows->setContentsMargins(skin::kGrid, skin::kGrid, skin::kGrid, skin::kGrid);
  rows->setSpacing(skin::kGrid);
  auto* top = new QHBoxLayout;
  top->setSpacing(skin::kGrid);
  top->addWidget(MakeTuningCard(bind_), 1);
  top->addWidget(receiver_ = MakeReceiverCard(bind_));
  rows->addLayout(top);
  QWidget* strip = MakeListeningStrip(bind_);
  strip->setFixedHeight(kStripHeight);
  rows->addWidget(strip);

  auto* lower = new QHBoxLayout;
  lower->setSpacing(skin::kGrid);
  auto* left = new QVBoxLayout;
  left->setSpacing(skin::kGrid);
  left->addWidget(scope_ = MakeScopeCard(bind_), 1);
  lower->addLayout(left, 1);
  // The keyboard's order is that of the making: the column comes before what is set once.
  lower->addWidget(column_ = MakeControlColumn(bind_));
  left->addWidget(lists_ = MakeLists());
  left->addWidget(recorder_ = MakeRecorderCard(bind_));
  left->addWidget(setup_ = MakeSetupStrip(bind_));
  rows->addLayout(lower, 1);
}

// The memories, or the tracks in their place.
QWidget* PanelWindow::MakeLists() {
  auto* lists = new QWidget;
  lists->setMouseTracking(true);
  auto* rows = new QVBoxLayout(lists);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(MakeMemoriesCard(bind_));
  rows->addWidget(MakeTracksCard(bind_));
  return lists;
}

void PanelWindow::SetDisplaySize(DisplaySize size) {
  const bool compact = size == DisplaySize::Compact, wasCompact = size_ == DisplaySize::Compact;
  if (compact && !wasCompact) heightBefore_ = height();
  size_ = size;
  ShowRegion(*scope_, !compact);
  ShowRegion(*lists_, !compact);
  ShowRegion(*recorder_, !compact);
  ShowRegion(*column_, size == DisplaySize::Standard || size == DisplaySize::Full);
  ShowRegion(*setup_, size == DisplaySize::Extended || size == DisplaySize::Full);
  setMinimumSize(kLeastWidth, compact ? kCompactHeight : kLeastHeight);
  setMaximumHeight(compact ? kCompactHeight : kMostHeight);
  if (compact) resize(width(), kCompactHeight);
  if (wasCompact && !compact && heightBefore_ > 0) resize(width(), heightBefore_);
  body_->layout()->activate();
}

void PanelWindow::ShowRegion(QWidget& region, bool shown) {
  // What is about to be hidden would hand the keyboard to any neighbour.
  const QWidget* focused = focusWidget();
  if (!focused || (!shown && region.isAncestorOf(focused))) setFocus(Qt::OtherFocusReason);
  region.setVisible(shown);
}

void PanelWindow::FollowControls() {
  for (int i = 0; i < kDisplaySizes; ++i) {
    const auto* option = dynamic_cast<OptionButton*>(registry_.Find(IndexedName("optDisplaySize", i)));
    if (option && option->Value() && i != static_cast<int>(size_))
      SetDisplaySize(static_cast<DisplaySize>(i));
  }
  if (const std::string title = form_ ? form_->Text() : std::string(); !title.empty()) {
    setWindowTitle(QString::fromStdString(title));
  }
}

void PanelWindow::UpdateAwake() {
  const QWindow* handle = windowHandle();
  const bool seen = isVisible() && !isMinimized() && handle && handle->isExposed();
  if (seen == clock_.IsAwake()) return;
  clock_.SetAwake(seen);
  if (events_.Seen) events_.Seen(seen);
}

// Mute works wherever the keyboard is, but for where one types.
bool PanelWindow::TakePanelKey(const QObject* receiver, const QKeyEvent& key) {
  const auto* widget = qobject_cast<const QWidget*>(receiver);
  if (key.key() != Qt::Key_M || key.modifiers() != Qt::NoModifier || !widget || widget->window() != this)
    return false;
  if (qobject_cast<const QLineEdit*>(widget) || !form_ || !form_->KeyDown) return false;
  if (!key.isAutoRepeat()) form_->KeyDown(Key{Qt::Key_M, {}});
  return true;
}

void PanelWindow::ShowMnemonics(bool show) {
  if (property("showMnemonics").toBool() == show) return;
  setProperty("showMnemonics", show);
  for (QWidget* widget : findChildren<QWidget*>()) {
    if (dynamic_cast<FaceView*>(widget)) widget->update();
  }
}

void PanelWindow::ShowCaption(bool shown) {
  if (shown != windowFlags().testFlag(Qt::FramelessWindowHint)) return;
  const QPoint corner = frameGeometry().topLeft();
  const bool visible = isVisible();
  setWindowFlag(Qt::FramelessWindowHint, !shown);
  move(corner);
  setVisible(visible);  // new flags hide a window
}

void PanelWindow::GiveFocus(const std::string& control) {
  auto* view = findChild<QWidget*>(QString::fromStdString(control));
  // A ring that the keyboard has brought stays with the keyboard's own moves.
  const bool byKeyboard = ring_->Surrounded() != nullptr;
  if (view && !view->hasFocus()) view->setFocus(byKeyboard ? Qt::TabFocusReason : Qt::MouseFocusReason);
}

bool PanelWindow::FocusByKeyboard(const std::string& control) {
  auto* widget = findChild<QWidget*>(QString::fromStdString(control));
  if (widget && widget->focusProxy()) widget = widget->focusProxy();
  const auto* view = dynamic_cast<View*>(widget);
  if (!view || !view->TakesKeys() || !view->isVisibleTo(this) || !view->isEnabled()) return false;
  widget->setFocus(Qt::TabFocusReason);
  return focusWidget() == widget;
}

void PanelWindow::PressKey(const Key& key, bool down) {
  QWidget* target = QApplication::activePopupWidget();
  if (!target) target = focusWidget() ? focusWidget() : this;
  Qt::KeyboardModifiers with;
  with.setFlag(Qt::ShiftModifier, key.With.Shift);
  with.setFlag(Qt::ControlModifier, key.With.Ctrl);
  with.setFlag(Qt::AltModifier, key.With.Alt);
  QString text;
  if (const QChar sign(key.Code); sign.isLetterOrNumber()) text = key.With.Shift ? sign : sign.toLower();
  QKeyEvent event(down ? QEvent::KeyPress : QEvent::KeyRelease, QtKeyOf(key.Code), with, text);
  QApplication::sendEvent(target, &event);
}

bool PanelWindow::IsShown(const std::string& control) const {
  const auto* view = findChild<QWidget*>(QString::fromStdString(control));
  return view && view->isVisibleTo(this);
}

void PanelWindow::closeEvent(QCloseEvent* event) {
  if (events_.Closing && !events_.Closing()) event->ignore();
}

void PanelWindow::keyPressEvent(QKeyEvent* event) {
  const int code = KeyCodeOf(event->key());
  if (form_ && form_->KeyDown && code != 0) {
    form_->KeyDown(Key{code, ModifiersOf(event->modifiers())});
  } else {
    QWidget::keyPressEvent(event);
  }
}

void PanelWindow::keyReleaseEvent(QKeyEvent* event) {
  const int code = KeyCodeOf(event->key());
  if (form_ && form_->KeyUp && code != 0 && !event->isAutoRepeat()) {
    form_->KeyUp(Key{code, ModifiersOf(event->modifiers())});
  }
}

void PanelWindow::mouseMoveEvent(QMouseEvent* event) {
  if (!form_) return;
  form_->MouseMove(MouseEventAt(*this, event->position(), HeldButton(event->buttons()), event->modifiers()));
}

void PanelWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  const int column = std::clamp(width() / kColumnShare, kLeastColumn, kMostColumn);
  column_->setFixedWidth(column);
  receiver_->setFixedWidth(column);
  if (!isVisible() || isMaximized() || isFullScreen()) return;
  const bool compact = size_ == DisplaySize::Compact;
  if (events_.Sized) events_.Sized(width(), compact ? heightBefore_ : height());
}

void PanelWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::WindowStateChange) UpdateAwake();
  QWidget::changeEvent(event);
}

void PanelWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  clock_.Flush();
  UpdateAwake();
}

void PanelWindow::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  UpdateAwake();
}

void PanelWindow::paintEvent(QPaintEvent* event) {
  QPainter(this).fillRect(event->rect(), skin::Tones(palette()).Ground());
}

bool PanelWindow::eventFilter(QObject* object, QEvent* event) {
  const QEvent::Type type = event->type();
  if (type == QEvent::Expose && object == windowHandle()) {
    UpdateAwake();
  } else if (type == QEvent::KeyPress || type == QEvent::KeyRelease) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Alt) ShowMnemonics(type == QEvent::KeyPress);
    return type == QEvent::KeyPress && TakePanelKey(object, *key);
  } else if (type == QEvent::WindowDeactivate && object == this) {
    ShowMnemonics(false);
  }
  return false;
}

}  // namespace quorl
