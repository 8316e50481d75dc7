#include "desktop/views/View.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QShortcut>
#include <algorithm>
#include <array>
#include <utility>

#include "controls/Controls.h"
#include "desktop/views/RefreshClock.h"

namespace quorl {

namespace {

constexpr int kWheelNotch = 120;  // eighths of a degree, times 8

constexpr std::array<std::pair<int, int>, 16> kKeyCodes{{{Qt::Key_Control, Key::Control},
                                                         {Qt::Key_Escape, Key::Escape},
                                                         {Qt::Key_Space, Key::Space},
                                                         {Qt::Key_Left, Key::Left},
                                                         {Qt::Key_Up, Key::Up},
                                                         {Qt::Key_Right, Key::Right},
                                                         {Qt::Key_Down, Key::Down},
                                                         {Qt::Key_Return, Key::Enter},
                                                         {Qt::Key_Enter, Key::Enter},
                                                         {Qt::Key_Backspace, Key::Backspace},
                                                         {Qt::Key_PageUp, Key::PageUp},
                                                         {Qt::Key_PageDown, Key::PageDown},
                                                         {Qt::Key_End, Key::End},
                                                         {Qt::Key_Home, Key::Home},
                                                         {Qt::Key_Insert, Key::Insert},
                                                         {Qt::Key_Delete, Key::Delete}}};

MouseButton ButtonOf(Qt::MouseButton button) {
  return button == Qt::RightButton    ? MouseButton::Right
         : button == Qt::MiddleButton ? MouseButton::Middle
                                      : MouseButton::Left;
}

MouseEvent PressAt(const QWidget& widget, const QMouseEvent& event) {
  return MouseEventAt(widget, event.position(), ButtonOf(event.button()), event.modifiers());
}

// The card around a view; of a card itself, what holds it.
const QWidget* FrameAround(const View& view) {
  for (const QWidget* around = view.parentWidget(); around; around = around->parentWidget()) {
    const auto* outer = dynamic_cast<const View*>(around);
    if (outer && dynamic_cast<const Frame*>(&outer->Shown())) return outer;
  }
  return view.parentWidget();
}

}  // namespace

int KeyCodeOf(int qtKey) {
  if ((qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)) return qtKey;
  for (const auto& [qt, code] : kKeyCodes) {
    if (qt == qtKey) return code;
  }
  return 0;
}

int QtKeyOf(int code) {
  for (const auto& [qt, own] : kKeyCodes) {
    if (own == code) return qt;
  }
  return KeyCodeOf(code) == code ? code : 0;
}

MouseEvent MouseEventAt(const QWidget& widget, const QPointF& place, MouseButton button,
                        Qt::KeyboardModifiers with) {
  return {place.x() / std::max(1, widget.width()), place.y() / std::max(1, widget.height()), button,
          ModifiersOf(with)};
}

MouseButton HeldButton(Qt::MouseButtons buttons) {
  return buttons.testFlag(Qt::LeftButton)     ? MouseButton::Left
         : buttons.testFlag(Qt::RightButton)  ? MouseButton::Right
         : buttons.testFlag(Qt::MiddleButton) ? MouseButton::Middle
                                              : MouseButton::None;
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
  control_.LeavePlace(this);
}

void View::SetSizes(QSizePolicy::Policy across, QSizePolicy::Policy down, bool keepsPlace) {
  QSizePolicy policy(across, down);
  policy.setRetainSizeWhenHidden(keepsPlace);
  setSizePolicy(policy);
}

void View::Watch(Control& control) {
  listening_.push_back(control.OnChanged.Listen([this] { MarkDirty(); }));
}

void View::MarkDirty() {
  clock_.MarkDirty(*this);
}

void View::TakeOver() {
  // A region that the window itself has hidden stays so.
  if (control_.Visible() != visible_) setVisible(visible_ = control_.Visible());
  setEnabled(control_.Enabled());
  const std::string& fault = control_.Fault();
  const QString tip = QString::fromStdString(fault.empty() ? control_.ToolTip() : fault);
  if (tip != toolTip()) setToolTip(tip);
  TakeOverMnemonic();
  if (const QSize hint = sizeHint(); hint != hint_) {
    hint_ = hint;
    updateGeometry();
  }
  Speak();
  ShowChange();
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

bool View::IsTurned() const {
  const QAccessible::Role role = Role();
  return role == QAccessible::SpinBox || role == QAccessible::Slider || role == QAccessible::Dial;
}

// What is only read, such as a level, changes too often to be told each time.
void View::Speak() {
  if (!QAccessible::isActive()) return;
  if (const QString value = SpokenValue(); value != spoken_ && (IsTurned() || hasFocus())) {
    spoken_ = value;
    const auto range = SpokenRange();
    QAccessibleValueChangeEvent event(this, range ? QVariant(range->Value) : QVariant(value));
    QAccessible::updateAccessibility(&event);
  }
  if (const bool checked = IsChecked(); checked != spokenChecked_) {
    spokenChecked_ = checked;
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
  }
}

QString View::SpokenName() const {
  const std::string& own = control_.AccessibleName();
  if (!own.empty()) return QString::fromStdString(own);
  QString caption = Caption().remove('&').simplified();
  if (!caption.isEmpty()) return caption;
  const std::string& tip = control_.ToolTip();
  return QString::fromStdString(tip.empty() ? control_.Name() : tip);
}

QString View::SpokenValue() const {
  const std::string& said = control_.AccessibleText();
  return QString::fromStdString(said.empty() ? control_.Text() : said);
}

void View::Press() {
  control_.UserClick();
}

void View::SetSpoken(double value) {
  control_.UserSet(QString::number(value, 'f', 3).toStdString());
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
  const MouseEvent press{.Button = MouseButton::Right};
  control_.MouseDown(press);
  control_.MouseUp(press);
}

void View::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    pressed_ = true;
    if ((focusPolicy() & Qt::ClickFocus) != 0) setFocus(Qt::MouseFocusReason);
    update();
  }
  control_.MouseDown(PressAt(*this, *event));
}

void View::mouseMoveEvent(QMouseEvent* event) {
  control_.MouseMove(
      MouseEventAt(*this, event->position(), HeldButton(event->buttons()), event->modifiers()));
}

void View::mouseReleaseEvent(QMouseEvent* event) {
  const MouseEvent at = PressAt(*this, *event);
  control_.MouseUp(at);
  if (event->button() != Qt::LeftButton || !pressed_) return;
  pressed_ = false;
  update();
  if (rect().contains(event->position().toPoint())) OnClick(at);
}

void View::mouseDoubleClickEvent(QMouseEvent* event) {
  const bool left = event->button() == Qt::LeftButton;
  if (left) control_.DblClick(PressAt(*this, *event));
  if (!left || !control_.DblClick) mousePressEvent(event);
}

void View::wheelEvent(QWheelEvent* event) {
  // With Alt held, some platforms turn the wheel's other axis.
  const QPoint angle = event->angleDelta();
  wheelRest_ += angle.y() != 0 ? angle.y() : angle.x();
  const int notches = wheelRest_ / kWheelNotch;
  const MouseEvent at =
      MouseEventAt(*this, event->position(), HeldButton(event->buttons()), event->modifiers());
  if (notches != 0) control_.Wheel(notches, at);
  if (!control_.Wheel && notches != 0 && !OnWheel(notches, at.With)) {
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
  if (code != 0 && !tunes) control_.KeyDown(Key{code, with});
  if (code == 0 || tunes || (!control_.KeyDown && !OnKey(code, with))) event->ignore();
}

void View::keyReleaseEvent(QKeyEvent* event) {
  const int code = KeyCodeOf(event->key());
  if (code != 0 && !event->isAutoRepeat()) control_.KeyUp(Key{code, ModifiersOf(event->modifiers())});
  if (code == 0 || !control_.KeyUp) event->ignore();
}

void View::enterEvent(QEnterEvent* event) {
  hovered_ = true;
  TakeKeysOnHover();
  control_.MouseMove(
      MouseEventAt(*this, event->position(), HeldButton(event->buttons()), event->modifiers()));
  update();
}

void View::leaveEvent(QEvent*) {
  hovered_ = false;
  update();
}

void View::TellPlace() {
  const QWidget* frame = FrameAround(*this);
  const QPoint corner = frame ? mapTo(frame, QPoint(0, 0)) : QPoint(0, 0);
  control_.SetPlace({corner.x(), corner.y(), width(), height()}, this);
}

void View::moveEvent(QMoveEvent*) {
  TellPlace();
  // What lies in it has moved in the frame, too.
  for (QWidget* inner : findChildren<QWidget*>()) {
    if (auto* view = dynamic_cast<View*>(inner)) view->TellPlace();
  }
}

void View::resizeEvent(QResizeEvent*) {
  TellPlace();
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
    control_.MouseMove({});
  }
  update();
}

void View::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) TakeTones();
  QWidget::changeEvent(event);
}

void View::focusOutEvent(QFocusEvent*) {
  pressed_ = false;
  Raise(control_.LostFocus);
  update();
}

}  // namespace quorl
