#include "desktop/views/ViewAccess.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "desktop/views/View.h"

namespace quorl {

namespace {

// Name, role, value and state of a view; pressing it, and stepping or setting its value.
class ViewAccess : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit ViewAccess(View& view) : QAccessibleWidget(&view, view.Role()), view_(view) {}

  QString text(QAccessible::Text kind) const override {
    switch (kind) {
      case QAccessible::Name:
        return view_.SpokenName();
      case QAccessible::Value:
        return view_.SpokenValue();
      case QAccessible::Description:
      case QAccessible::Help:
        return QString::fromStdString(view_.Shown().ToolTip());
      default:
        return QAccessibleWidget::text(kind);
    }
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = view_.Role() == QAccessible::CheckBox || view_.Role() == QAccessible::RadioButton;
    state.checked = view_.IsChecked();
    state.pressed = state.checked;
    return state;
  }

  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (!view_.isEnabled()) return names;
    if (IsTurned()) names << increaseAction() << decreaseAction();
    names << pressAction();
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
    return QAccessibleWidget::interface_cast(type);
  }

  QVariant currentValue() const override { return Range().Value; }
  void setCurrentValue(const QVariant& value) override { view_.SetSpoken(value.toDouble()); }
  QVariant minimumValue() const override { return Range().Minimum; }
  QVariant maximumValue() const override { return Range().Maximum; }
  QVariant minimumStepSize() const override { return 0; }

 private:
  View::Range Range() const { return view_.SpokenRange().value_or(View::Range{}); }
  bool IsTurned() const {
    const QAccessible::Role role = view_.Role();
    return role == QAccessible::SpinBox || role == QAccessible::Slider || role == QAccessible::Dial;
  }

  View& view_;
};

QAccessibleInterface* MakeViewAccess(const QString&, QObject* object) {
  auto* view = dynamic_cast<View*>(object);
  return view ? new ViewAccess(*view) : nullptr;
}

}  // namespace

void InstallViewAccess() {
  QAccessible::installFactory(MakeViewAccess);
}

}  // namespace quorl
