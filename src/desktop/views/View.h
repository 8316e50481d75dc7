// What all views have in common: a widget that shows one control and brings it the user's gestures.
#pragma once

#include <QAccessible>
#include <QWidget>
#include <optional>
#include <vector>

#include "controls/Control.h"
#include "desktop/views/Skin.h"

class QShortcut;

namespace quorl {

class RefreshClock;

// The number by which panels know a key, 0 where they know none.
int KeyCodeOf(int qtKey);
Modifiers ModifiersOf(Qt::KeyboardModifiers modifiers);
// The key of Qt that has this number, 0 where there is none.
int QtKeyOf(int code);
// A gesture at `place` of the widget, in its pixels.
MouseEvent MouseEventAt(const QWidget& widget, const QPointF& place, MouseButton button,
                        Qt::KeyboardModifiers with);
// The button that is held while the pointer moves.
MouseButton HeldButton(Qt::MouseButtons buttons);

// A view decides nothing. A gesture goes to the control and nowhere else; what the control then holds is
// taken over with the refresh clock's next tick. Control and clock outlive the view.
class View : public QWidget {
 public:
  View(RefreshClock& clock, Control& control, QWidget* parent = nullptr);
  ~View() override;

  Control& Shown() const { return control_; }
  // Takes over what the control holds now.
  virtual void TakeOver();

  // What a screen reader is told.
  virtual QAccessible::Role Role() const { return QAccessible::StaticText; }
  virtual QString SpokenName() const;
  virtual QString SpokenValue() const;
  struct Range {
    double Value = 0, Minimum = 0, Maximum = 0;
  };
  // Whether it is a value that is turned.
  bool IsTurned() const;
  // For values with ends.
  virtual std::optional<Range> SpokenRange() const { return {}; }
  virtual bool IsChecked() const { return false; }
  // What a screen reader's user can do.
  virtual bool CanPress() const { return false; }
  virtual void Press();
  virtual void Step(int steps);
  virtual void SetSpoken(double value);
  virtual bool TakesKeys() const { return focusPolicy() != Qt::NoFocus; }
  // Whether its value is read as a text.
  virtual bool IsText() const { return !control_.AccessibleText().empty(); }
  // The part that has the keyboard while this view has it; null where that is the view itself.
  virtual View* FocusedPart() const { return nullptr; }

  bool IsPrompt() const { return prompt_; }
  bool IsRead() const { return read_; }

 protected:
  // Text with its '&'; empty where the control has none.
  virtual QString Caption() const { return {}; }
  // What a key does that the panel doesn't handle itself; false lets the parent have it.
  virtual bool OnKey(int, Modifiers) { return false; }
  // What the wheel does where the panel doesn't handle it.
  virtual bool OnWheel(int notches, Modifiers with) { return control_.UserTurn(notches, with); }
  // The control has changed; what can be seen of that is to be painted.
  virtual void ShowChange() { update(); }
  // A left press and release inside.
  virtual void OnClick(const MouseEvent&) { Press(); }
  // The keyboard's way to what the right button does.
  virtual void OnMenuKey();

  RefreshClock& Clock() const { return clock_; }
  skin::Tones Tones() const { return skin::Tones(palette()); }
  // The theme has changed: what is kept of its colours is to be made anew.
  virtual void TakeTones() {}
  // A hidden view keeps its place, unless that is what the panel gains by hiding it.
  void SetSizes(QSizePolicy::Policy across, QSizePolicy::Policy down, bool keepsPlace = true);
  // This view is to be marked when `control`, another one, changes. It outlives the view.
  void Watch(Control& control);
  void MarkDirty();
  // Tells the control where it is seen.
  void TellPlace();
  // Disabled, or without effect at present.
  bool LooksOff() const { return !isEnabled() || control_.Faded(); }
  bool IsPressed() const { return pressed_; }
  // It answers the hand: what changes shows before the next refresh of all.
  void SetPrompt() { prompt_ = true; }
  // It shows figures that an eye reads: a few times a second is enough.
  void SetRead() { read_ = true; }
  bool IsHovered() const { return hovered_; }

  bool event(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  friend class RefreshClock;
  void TakeKeysOnHover();
  void TakeOverMnemonic();
  void Speak();

  RefreshClock& clock_;
  Control& control_;
  std::vector<Listening> listening_;
  QShortcut* mnemonic_ = nullptr;
  QString mnemonicOf_, spoken_;
  bool spokenChecked_ = false;
  QSize hint_;
  int wheelRest_ = 0;
  bool dirty_ = false, prompt_ = false, read_ = false, pressed_ = false, hovered_ = false, visible_ = true;
};

}  // namespace quorl
