// What F1 shows: the keys and the gestures of the wheel and the mouse.
#pragma once

#include <QDialog>

namespace quorl {

class HelpPanel : public QDialog {
 public:
  // Opens beside what is there, or comes to the front where it is open already.
  static void ShowOver(QWidget* window);

 private:
  explicit HelpPanel(QWidget* window);
};

}  // namespace quorl
