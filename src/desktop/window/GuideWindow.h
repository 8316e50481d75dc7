// The window of the listener's guide: contents, page, the way back, and a field that finds words.
#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QListWidget;

namespace quorl {

class GuideBrowser;

class GuideWindow : public QWidget {
 public:
  // `folder` holds index.md, whose links to pages are the contents.
  explicit GuideWindow(const QString& folder);

  // Shows the page, "scope.md" or "scope.md#the-pointer", and comes to the front.
  void Open(const QString& page);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QWidget* MakeBar();
  void FillContents(const QString& folder);
  void ShowPlace(const QString& page);
  void FindNext(bool backward);

  GuideBrowser* page_;
  QListWidget* contents_;
  QLineEdit* find_ = nullptr;
  QLabel* found_ = nullptr;
};

}  // namespace quorl
