#include "desktop/views/View.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QShortcut>
#include <array>
#include <utility>

#include "desktop/views/RefreshClock.h"

namespace quorl {

namespace {

constexpr int kWheelNotch = 120;  // eighths of a degree, times 8

constexpr std::array<std::pair<int, int>, 15> kKeyCodes{{{Qt::Key_Escape, Key::Escape},
                                                         {Qt::Key_Space, Key::Space},
                                                         {Qt::Key_Left, Key::Left},
                                                         {Qt::Key_Up, Key::Up},
                                                         {Qt::Key_Right, Key::Right},
                                                         {Qt::Key_Down, Key::Down},
                                                         {Qt::Key_Return, 13},
                                                         {Qt::Key_Enter, 13},
                                                         {Qt::Key_Backspace, 8},
                                                         {Qt::Key_PageUp, 33},
                                                         {Qt::Key_PageDown, 34},
                                                         {Qt::Key_End, 35},
                                                         {Qt::Key_Home, 36},
                                                         {Qt::Key_Insert, 45},
                                                         {Qt::Key_Delete, 46}}};

MouseButton ButtonOf(Qt::MouseButton button) {
  return button == Qt::RightButton    ? MouseButton::Right
         : button == Qt::MiddleButton ? MouseButton::Middle
                                      : MouseButton::Left;
}

}  // namespace

int KeyCodeOf(int qtKey) {
  if ((qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)) return qtKey;
  for (const auto& [qt, code] : kKeyCodes) {
    if (qt == qtKey) return code;
  }
  return 0;
}

Modifiers ModifiersOf(Qt::KeyboardModifiers modifiers) {
  return {modifiers.testFlag(Qt::ShiftModifier), modifiers.testFlag(Qt::ControlModifier),
          modifiers.testFlag(Qt::AltModifier)};
}

View::View(RefreshClock& clock, Control& control, QWidget* parent)
    : QWidget(parent), clock_(clock), control_(control) {
  setMouseTracking(true);
  setObjectName(QString::fromStdString(control.Name()));
  SetSizes(QSizePolicy::Preferred, QSizePolicy::Preferred);
  Watch(control);
  MarkDirty();
}

View::~View() {
  clock_.Forget(*this);
  for (Control* control : watched_) control->OnChanged = nullptr;
}

void View::SetSizes(QSizePolicy::Policy across, QSizePolicy::Policy down, bool keepsPlace) {
  QSizePolicy policy(across, down);
  policy.setRetainSizeWhenHidden(keepsPlace);
  setSizePolicy(policy);
}

void View::Watch(Control& control) {
  control.OnChanged = [this] { MarkDirty(); };
  watched_.push_back(&control);
}

void View::MarkDirty() {
  clock_.MarkDirty(*this);
}

void View::TakeOver() {
  // A region that the window itself has hidden stays so.
  if (control_.Visible() != visible_) setVisible(visible_ = control_.Visible());
  setEnabled(control_.Enabled());
  const QString tip = QString::fromStdString(control_.ToolTip());
  if (tip != toolTip()) setToolTip(tip);
  TakeOverMnemonic();
  if (const QSize hint = sizeHint(); hint != hint_) {
    hint_ = hint;
    updateGeometry();
  }
  Speak();
  update();
}

void View::TakeOverMnemonic() {
  const QString caption = Caption();
  if (caption == mnemonicOf_) return;
  mnemonicOf_ = caption;
  delete mnemonic_;
  mnemonic_ = nullptr;
  const QKeySequence keys = QKeySequence::mnemonic(caption);
  if (keys.isEmpty()) return;
  mnemonic_ = new QShortcut(keys, this);
  QObject::connect(mnemonic_, &QShortcut::activated, this, [this] {
    setFocus(Qt::ShortcutFocusReason);
    Press();
  });
}

void View::Speak() {
  if (!QAccessible::isActive() || !hasFocus()) return;
  const QString value = SpokenValue();
  if (value == spoken_) return;
  spoken_ = value;
  QAccessibleValueChangeEvent event(this, value);
  QAccessible::updateAccessibility(&event);
}

QString View::SpokenName() const {
  const std::string& own = control_.AccessibleName();
  if (!own.empty()) return QString::fromStdString(own);
  const QString caption = Caption().remove('&').simplified();
  if (!caption.isEmpty()) return caption;
  const std::string& tip = control_.ToolTip();
  return QString::fromStdString(tip.empty() ? control_.Name() : tip);
}

QString View::SpokenValue() const {
  return QString::fromStdString(control_.Text());
}

void View::Press() {
  control_.UserClick();
}

void View::Step(int steps) {
  for (int i = 0; i < std::abs(steps); ++i) {
    const int code = steps > 0 ? Key::Up : Key::Down;
    if (control_.Wheel) {
      if (control_.Enabled()) control_.Wheel(steps > 0 ? 1 : -1, {});
    } else if (control_.KeyDown) {
      control_.KeyDown(Key{code, {}});
      Raise(control_.KeyUp, Key{code, {}});
    } else {
      OnKey(code, {});
    }
  }
}

bool View::event(QEvent* event) {
  // A panel that handles arrows or space itself comes before any shortcut.
  if (event->type() == QEvent::ShortcutOverride && control_.KeyDown) {
    auto& key = static_cast<QKeyEvent&>(*event);
    if (KeyCodeOf(key.key()) != 0 && !key.modifiers().testFlag(Qt::AltModifier)) {
      event->accept();
      return true;
    }
  }
  if (event->type() == QEvent::ContextMenu &&
      static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Keyboard) {
    OnMenuKey();
    return true;
  }
  return QWidget::event(event);
}

void View::OnMenuKey() {
  Raise(control_.MouseDown, MouseButton::Right);
  Raise(control_.MouseUp, MouseButton::Right);
}

void View::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    pressed_ = true;
    if ((focusPolicy() & Qt::ClickFocus) != 0) setFocus(Qt::MouseFocusReason);
    update();
  }
  Raise(control_.MouseDown, ButtonOf(event->button()));
}

void View::mouseMoveEvent(QMouseEvent*) {
  Raise(control_.MouseMove);
}

void View::mouseReleaseEvent(QMouseEvent* event) {
  Raise(control_.MouseUp, ButtonOf(event->button()));
  if (event->button() != Qt::LeftButton || !pressed_) return;
  pressed_ = false;
  update();
  if (rect().contains(event->position().toPoint())) OnClick();
}

void View::mouseDoubleClickEvent(QMouseEvent* event) {
  if (control_.DblClick && event->button() == Qt::LeftButton) {
    control_.DblClick();
  } else {
    mousePressEvent(event);
  }
}

void View::wheelEvent(QWheelEvent* event) {
  // With Alt held, some platforms turn the wheel's other axis.
  const QPoint angle = event->angleDelta();
  wheelRest_ += angle.y() != 0 ? angle.y() : angle.x();
  const int notches = wheelRest_ / kWheelNotch;
  const Modifiers with = ModifiersOf(event->modifiers());
  if (control_.Wheel) {
    if (notches != 0) control_.Wheel(notches, with);
  } else if (notches != 0 && !OnWheel(notches, with)) {
    wheelRest_ = 0;
    event->ignore();
    return;
  }
  wheelRest_ -= notches * kWheelNotch;
  event->accept();
}

void View::keyPressEvent(QKeyEvent* event) {
  const int code = KeyCodeOf(event->key());
  const Modifiers with = ModifiersOf(event->modifiers());
  // They tune, wherever the pointer is.
  const bool tunes = code == Key::PageUp || code == Key::PageDown;
  if (code != 0 && !tunes && control_.KeyDown) {
    control_.KeyDown(Key{code, with});
  } else if (code == 0 || tunes || !OnKey(code, with)) {
    event->ignore();
  }
}

void View::keyReleaseEvent(QKeyEvent* event) {
  const int code = KeyCodeOf(event->key());
  if (code == 0 || !control_.KeyUp) {
    event->ignore();
  } else if (!event->isAutoRepeat()) {
    control_.KeyUp(Key{code, ModifiersOf(event->modifiers())});
  }
}

void View::enterEvent(QEnterEvent*) {
  hovered_ = true;
  TakeKeysOnHover();
  Raise(control_.MouseMove);
  update();
}

void View::leaveEvent(QEvent*) {
  hovered_ = false;
  update();
}

void View::TakeKeysOnHover() {
  if (!control_.KeyDown || focusPolicy() == Qt::NoFocus || !isEnabled()) return;
  if (qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr) return;
  if (QApplication::activePopupWidget() == nullptr) setFocus(Qt::MouseFocusReason);
}

void View::focusInEvent(QFocusEvent* event) {
  const bool byKeyboard = event->reason() == Qt::TabFocusReason ||
                          event->reason() == Qt::BacktabFocusReason ||
                          event->reason() == Qt::ShortcutFocusReason;
  if (control_.GotFocus) {
    control_.GotFocus();
  } else if (byKeyboard) {
    // The keyboard comes to a value as the pointer does.
    Raise(control_.MouseMove);
  }
  update();
}

void View::focusOutEvent(QFocusEvent*) {
  pressed_ = false;
  Raise(control_.LostFocus);
  update();
}

}  // namespace quorl
