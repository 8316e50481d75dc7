// A text that is read and never edited, as assistive technology asks for it.
#pragma once

#include <QAccessible>
#include <QString>
#include <algorithm>

namespace quorl {

// It has no caret, no selection and no attributes; every character is where the whole is.
class ReadText : public QAccessibleTextInterface {
 public:
  virtual QString WholeText() const = 0;

  QString text(int start, int end) const override { return WholeText().mid(start, end - start); }
  int characterCount() const override { return static_cast<int>(WholeText().size()); }
  QString attributes(int, int* start, int* end) const override {
    *start = 0;
    *end = characterCount();
    return {};
  }
  int cursorPosition() const override { return 0; }
  int offsetAtPoint(const QPoint&) const override { return -1; }
  int selectionCount() const override { return 0; }
  void selection(int, int* start, int* end) const override { *start = *end = 0; }
  void addSelection(int, int) override {}
  void removeSelection(int) override {}
  void setSelection(int, int, int) override {}
  void setCursorPosition(int) override {}
  void scrollToSubstring(int, int) override {}
};

}  // namespace quorl
