// F1 in any window of the program: the guide, at the page for what one looks at.
#pragma once

#include <QObject>
#include <memory>

namespace quorl {

class GuideWindow;

// Listens to the keys of the application that stands, which outlives it.
class GuideDesk : public QObject {
 public:
  // `folder` holds the pages. The window is made when it is first wanted.
  explicit GuideDesk(QString folder);
  ~GuideDesk() override;

  // Opens the guide there, or brings it to the front.
  void Open(const QString& page);
  // A dialog has a page; a card of the panel that the pointer rests on, too. All else is the page of keys.
  static QString PageFor(const QWidget* window, const QWidget* pointed);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void StandByDialog();

  QString folder_;
  std::unique_ptr<GuideWindow> window_;
};

}  // namespace quorl
