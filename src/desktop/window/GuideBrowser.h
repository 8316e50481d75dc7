// Shows a page of the listener's guide: Markdown, in the colours and fonts of the panel.
#pragma once

#include <QHash>
#include <QImage>
#include <QTextBrowser>
#include <functional>

namespace quorl {

// The name that links use for a heading: small letters, signs left out, hyphens for blanks.
QString HeadingAnchor(const QString& heading);

// Pages lie in one folder and link to each other by their file names. Pictures are as wide as the window at
// most. A page or a guide that is missing leaves one sentence in its place.
class GuideBrowser : public QTextBrowser {
 public:
  GuideBrowser(QString folder, QWidget* parent);

  // The page in view, without its folder; a new page is told before it is painted.
  std::function<void(const QString& page)> OnPage = [](const QString&) {};
  // "scope.md", or "scope.md#the-pointer" for the heading "The pointer".
  void Open(const QString& page);
  QString Page() const;
  // Selects the next place with that text, in any case, after the last one (before it), and around the
  // page's end. False where the page doesn't have it.
  bool Find(const QString& text, bool backward);

 protected:
  void doSetSource(const QUrl& url, QTextDocument::ResourceType type) override;
  QVariant loadResource(int type, const QUrl& url) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void OnSource(const QUrl& url);
  void Dress();
  void DressBlock(const QTextBlock& block);
  void DressWords(const QTextBlock& block);
  void DressTables();
  void FitPictures();
  void ScrollTo(const QString& anchor);
  QImage Fitted(const QUrl& url) const;
  int Room() const;

  QString folder_;
  QHash<QUrl, int> shares_;  // of the page's pictures that stand in tables: how many share the width
  int room_ = 0;             // that the pictures were made for
};

}  // namespace quorl
