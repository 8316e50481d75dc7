#include "desktop/window/GuideBrowser.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextList>
#include <QTextTable>
#include <algorithm>
#include <array>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kMargin = 24, kWordPixels = 14, kCodePixels = 13, kCellPadding = 6, kLineHeight = 130;
constexpr std::array<int, 4> kHeadingPixels{26, 19, 16, 14};

QString Missing(const QString& path) {
  return QString(
             "The guide has no page at %1. It is installed beside the band plans and themes of the program; "
             "the variable QUORLSDR_DATA names another folder for all of them.")
      .arg(path);
}

bool IsCode(const QTextBlock& block) {
  return block.isValid() && block.blockFormat().hasProperty(QTextFormat::BlockCodeFence);
}

bool HoldsPicture(const QTextBlock& block) {
  for (auto each = block.begin(); !each.atEnd(); ++each) {
    if (each.fragment().charFormat().isImageFormat()) return true;
  }
  return false;
}

QTextTable* TableAt(const QTextBlock& block) {
  return QTextCursor(block).currentTable();
}

}  // namespace

QString HeadingAnchor(const QString& heading) {
  QString anchor;
  for (const QChar sign : heading.toLower()) {
    if (sign.isLetterOrNumber() || sign == '-' || sign == '_') anchor += sign;
    if (sign == ' ') anchor += '-';
  }
  return anchor;
}

GuideBrowser::GuideBrowser(QString folder, QWidget* parent)
    : QTextBrowser(parent), folder_(std::move(folder)) {
  setObjectName("txtGuide");
  setAccessibleName("Page of the guide");
  setFrameShape(QFrame::NoFrame);
  setOpenExternalLinks(true);
  setUndoRedoEnabled(false);
  // A page is read and copied by keys, too.
  setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
  document()->setDocumentMargin(kMargin);
  document()->setDefaultFont(skin::WordFont(kWordPixels));
  connect(this, &QTextBrowser::sourceChanged, this, [this](const QUrl& url) { OnSource(url); });
}

void GuideBrowser::Open(const QString& page) {
  const QStringList parts = page.split('#');
  QUrl url = QUrl::fromLocalFile(folder_ + "/" + parts.first());
  if (parts.size() > 1) url.setFragment(parts.last());
  setSource(url, QTextDocument::MarkdownResource);
}

QString GuideBrowser::Page() const {
  return source().fileName();
}

// The page's headings have no anchors, so that what the link names is looked for once the page is there.
void GuideBrowser::doSetSource(const QUrl& url, QTextDocument::ResourceType type) {
  QTextBrowser::doSetSource(url, type);
  ScrollTo(url.fragment());
}

void GuideBrowser::OnSource(const QUrl& url) {
  Dress();
  OnPage(url.fileName());
}

QVariant GuideBrowser::loadResource(int type, const QUrl& url) {
  if (type == QTextDocument::ImageResource) return Fitted(url);
  if (type != QTextDocument::MarkdownResource) return {};
  QFile file(url.toLocalFile());
  return file.open(QIODevice::ReadOnly) ? file.readAll() : Missing(file.fileName()).toUtf8();
}

void GuideBrowser::ScrollTo(const QString& anchor) {
  if (anchor.isEmpty()) return;
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    if (block.blockFormat().headingLevel() == 0 || HeadingAnchor(block.text()) != anchor) continue;
    // A screen reader goes on from the cursor.
    setTextCursor(QTextCursor(block));
    verticalScrollBar()->setValue(int(document()->documentLayout()->blockBoundingRect(block).top()));
    return;
  }
}

bool GuideBrowser::Find(const QString& text, bool backward) {
  const auto flags = backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
  if (find(text, flags)) return true;
  const QTextCursor before = textCursor();
  moveCursor(backward ? QTextCursor::End : QTextCursor::Start);
  if (find(text, flags)) return true;
  setTextCursor(before);
  return false;
}

// The page as the panel would write it: its fonts, its inks, and room around what stands by itself.
void GuideBrowser::Dress() {
  shares_.clear();
  QTextCursor all(document());
  all.beginEditBlock();
  DressTables();
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    DressWords(block);
    DressBlock(block);
  }
  all.endEditBlock();
  FitPictures();
}

void GuideBrowser::DressBlock(const QTextBlock& block) {
  const skin::Tones tones(palette());
  QTextCursor cursor(block);
  QTextBlockFormat format = block.blockFormat();
  // A picture's line would leave a third of the picture free below it.
  if (!IsCode(block) && !HoldsPicture(block))
    format.setLineHeight(kLineHeight, QTextBlockFormat::ProportionalHeight);
  if (const int level = format.headingLevel(); level > 0) {
    format.setTopMargin(level == 1 ? 0 : 1.2 * kMargin);
    format.setBottomMargin(skin::kGrid);
    QTextCharFormat words = block.begin().fragment().charFormat();
    const auto size = std::min(static_cast<std::size_t>(level), kHeadingPixels.size()) - 1;
    words.setFont(skin::WordFont(kHeadingPixels[size], true));
    words.clearProperty(QTextFormat::FontSizeAdjustment);  // it would count from the text's size
    words.setForeground(level == 1 ? tones.Ink() : palette().color(QPalette::Link));
    cursor.select(QTextCursor::BlockUnderCursor);
    cursor.setCharFormat(words);
  } else if (IsCode(block)) {
    format.setBackground(tones.Unlit());
    format.setTopMargin(IsCode(block.previous()) ? 0 : skin::kGrid);
    format.setBottomMargin(IsCode(block.next()) ? 0 : skin::kGrid);
    format.setLeftMargin(skin::kGrid);
    format.setNonBreakableLines(false);
    format.setTextIndent(skin::kGrid);
  } else if (TableAt(block)) {
    format.setTopMargin(0);
    format.setBottomMargin(0);
  } else if (!block.textList()) {
    format.setTopMargin(skin::kGrid);
    format.setBottomMargin(skin::kGrid);
  }
  QTextCursor(block).setBlockFormat(format);
}

void GuideBrowser::DressWords(const QTextBlock& block) {
  const skin::Tones tones(palette());
  struct Piece {
    int From, To;
    QTextCharFormat Format;
  };
  QList<Piece> pieces;
  for (auto each = block.begin(); !each.atEnd(); ++each) {
    const QTextFragment words = each.fragment();
    QTextCharFormat format = words.charFormat();
    if (format.isImageFormat()) {
      const QTextTable* table = TableAt(block);
      const QUrl url = document()->baseUrl().resolved(QUrl(format.toImageFormat().name()));
      shares_[url] = table ? table->columns() : 1;
      continue;
    }
    if (IsCode(block) || format.fontFixedPitch()) {
      format.setFont(skin::NumberFont(kCodePixels));
      format.setBackground(tones.Unlit());
    } else if (format.isAnchor()) {
      format.setForeground(palette().color(QPalette::Link));
    }
    pieces.append({words.position(), words.position() + words.length(), format});
  }
  for (const Piece& piece : pieces) {
    QTextCursor cursor(document());
    cursor.setPosition(piece.From);
    cursor.setPosition(piece.To, QTextCursor::KeepAnchor);
    cursor.setCharFormat(piece.Format);
  }
}

void GuideBrowser::DressTables() {
  const skin::Tones tones(palette());
  for (QTextFrame* frame : document()->rootFrame()->childFrames()) {
    auto* table = qobject_cast<QTextTable*>(frame);
    if (!table) continue;
    QTextTableFormat format = table->format();
    format.setBorderCollapse(true);
    format.setBorder(1);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setBorderBrush(tones.CardLine());
    format.setCellSpacing(0);
    format.setCellPadding(kCellPadding);
    format.setTopMargin(skin::kGrid);
    format.setBottomMargin(skin::kGrid);
    table->setFormat(format);
  }
}

int GuideBrowser::Room() const {
  return std::max(viewport()->width() - 2 * kMargin, 64);
}

// Qt's own scaling of a picture in a page is the coarse one. The smooth one gives a picture with a palette,
// scaled to less than half, a palette again, into which it is dithered.
QImage GuideBrowser::Fitted(const QUrl& url) const {
  const QImage picture = QImage(url.toLocalFile()).convertToFormat(QImage::Format_ARGB32_Premultiplied);
  const int share = shares_.value(url, 1);
  const int room = Room() / share - (share > 1 ? 2 * kCellPadding + 2 : 0);
  if (picture.width() <= room) return picture;
  const double ratio = devicePixelRatioF();
  const int pixels = std::min(static_cast<int>(room * ratio), picture.width());
  QImage fitted = picture.scaledToWidth(pixels, Qt::SmoothTransformation);
  fitted.setDevicePixelRatio(static_cast<double>(pixels) / room);
  return fitted;
}

void GuideBrowser::FitPictures() {
  room_ = Room();
  for (const QUrl& url : shares_.keys())
    document()->addResource(QTextDocument::ImageResource, url, Fitted(url));
  document()->markContentsDirty(0, document()->characterCount());
}

void GuideBrowser::resizeEvent(QResizeEvent* event) {
  QTextBrowser::resizeEvent(event);
  if (Room() != room_) FitPictures();
}

void GuideBrowser::changeEvent(QEvent* event) {
  QTextBrowser::changeEvent(event);
  if (event->type() != QEvent::PaletteChange || source().isEmpty()) return;
  const int place = verticalScrollBar()->value();
  reload();
  verticalScrollBar()->setValue(place);
}

}  // namespace quorl
