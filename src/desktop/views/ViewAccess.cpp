#include "desktop/views/ViewAccess.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLabel>

#include "desktop/views/FrequencyView.h"
#include "desktop/views/ReadText.h"
#include "desktop/views/View.h"

namespace quorl {

namespace {

// Name, role, value, text and state of a view; pressing it, and stepping or setting its value.
class ViewAccess : public QAccessibleWidget, public QAccessibleValueInterface, public ReadText {
 public:
  explicit ViewAccess(View& view) : QAccessibleWidget(&view, view.Role()), view_(view) {}

  using ReadText::text;
  QString text(QAccessible::Text kind) const override {
    switch (kind) {
      case QAccessible::Name:
        return view_.SpokenName();
      case QAccessible::Value:
        return view_.SpokenValue();
      case QAccessible::Description:
      case QAccessible::Help:
        return QString::fromStdString(view_.Shown().Fault().empty() ? view_.Shown().ToolTip()
                                                                    : view_.Shown().Fault());
      default:
        return QAccessibleWidget::text(kind);
    }
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = view_.Role() == QAccessible::CheckBox || view_.Role() == QAccessible::RadioButton;
    state.checked = view_.IsChecked();
    state.pressed = state.checked;
    state.focusable = view_.TakesKeys() && view_.isEnabled();
    if (view_.FocusedPart()) state.focused = false;
    if (const auto* digit = dynamic_cast<const DigitView*>(&view_)) {
      state.focusable = true;
      state.focused = digit->HasKeyboard();
    }
    return state;
  }

  QAccessibleInterface* focusChild() const override {
    View* part = view_.hasFocus() ? view_.FocusedPart() : nullptr;
    return part ? QAccessible::queryAccessibleInterface(part) : QAccessibleWidget::focusChild();
  }

  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (!view_.isEnabled()) return names;
    if (view_.IsTurned()) names << increaseAction() << decreaseAction();
    if (view_.CanPress()) names << pressAction();
    return names;
  }

  void doAction(const QString& name) override {
    if (name == increaseAction()) {
      view_.Step(1);
    } else if (name == decreaseAction()) {
      view_.Step(-1);
    } else if (name == pressAction() || name == toggleAction()) {
      view_.Press();
    } else {
      QAccessibleWidget::doAction(name);
    }
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface && view_.SpokenRange()) {
      return static_cast<QAccessibleValueInterface*>(this);
    }
    if (type == QAccessible::TextInterface && view_.IsText()) return static_cast<ReadText*>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  QVariant currentValue() const override { return Range().Value; }
  void setCurrentValue(const QVariant& value) override { view_.SetSpoken(value.toDouble()); }
  QVariant minimumValue() const override { return Range().Minimum; }
  QVariant maximumValue() const override { return Range().Maximum; }
  QVariant minimumStepSize() const override { return 0; }

  QString WholeText() const override { return view_.SpokenValue(); }
  QRect characterRect(int) const override { return rect(); }

 private:
  View::Range Range() const { return view_.SpokenRange().value_or(View::Range{}); }

  View& view_;
};

// A word that stands beside something, for those who read the panel word by word.
class CaptionAccess : public QAccessibleWidget, public ReadText {
 public:
  explicit CaptionAccess(QLabel& label)
      : QAccessibleWidget(&label, QAccessible::StaticText, label.text()), label_(label) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::TextInterface ? static_cast<ReadText*>(this)
                                              : QAccessibleWidget::interface_cast(type);
  }
  QString WholeText() const override { return label_.text(); }
  QRect characterRect(int) const override { return rect(); }

 private:
  QLabel& label_;
};

// A window that is a plain widget, which Qt takes for a part of one. It can be brought to the front.
class WindowAccess : public QAccessibleWidget {
 public:
  explicit WindowAccess(QWidget& window) : QAccessibleWidget(&window, QAccessible::Window) {}

  QStringList actionNames() const override { return {setFocusAction()}; }
};

QAccessibleInterface* MakeViewAccess(const QString&, QObject* object) {
  if (auto* view = dynamic_cast<View*>(object)) return new ViewAccess(*view);
  if (auto* label = qobject_cast<QLabel*>(object)) return new CaptionAccess(*label);
  auto* widget = qobject_cast<QWidget*>(object);
  const bool isPlainWindow = widget && widget->windowType() == Qt::Window && !widget->inherits("QDialog") &&
                             !widget->inherits("QMainWindow");
  return isPlainWindow ? new WindowAccess(*widget) : nullptr;
}

}  // namespace

void InstallViewAccess() {
  QAccessible::installFactory(MakeViewAccess);
}

}  // namespace quorl
