// A list of lines, a line of text to type, and a symbol.
#pragma once

#include "controls/Controls.h"
#include "desktop/views/View.h"

class QLineEdit;
class QListWidget;

namespace quorl {

// Shows its chosen line; new lines at the end are added without touching those that stand.
class ListView : public View {
 public:
  ListView(RefreshClock& clock, ListBox& list);

  QAccessible::Role Role() const override { return QAccessible::List; }
  void TakeOver() override;
  QListWidget& Lines() const { return *lines_; }

 private:
  ListBox& list_;
  QListWidget* lines_;
  bool takingOver_ = false;
};

class TextView : public View {
 public:
  TextView(RefreshClock& clock, TextBox& text, int width);

  QAccessible::Role Role() const override { return QAccessible::EditableText; }
  void TakeOver() override;
  QSize sizeHint() const override { return {width_, 24}; }
  QLineEdit& Line() const { return *line_; }

 protected:
  void TakeTones() override;

 private:
  TextBox& text_;
  int width_;
  QLineEdit* line_;
};

enum class Symbol { None, Lock };

// A Picture that is only there or not; it is painted as its symbol, or as its caption.
class SymbolView : public View {
 public:
  SymbolView(RefreshClock& clock, Picture& picture, Symbol symbol);

  QAccessible::Role Role() const override {
    return picture_.DblClick ? QAccessible::Button : QAccessible::Graphic;
  }
  bool CanPress() const override { return bool(picture_.DblClick); }
  void Press() override;  // what a double click does
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void OnClick(const MouseEvent& at) override { picture_.UserClick(at); }
  bool OnKey(int code, Modifiers with) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  Picture& picture_;
  Symbol symbol_;
};

}  // namespace quorl
