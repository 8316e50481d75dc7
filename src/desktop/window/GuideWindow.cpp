#include "desktop/window/GuideWindow.h"

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QTextBlock>
#include <QVBoxLayout>

#include "desktop/views/Skin.h"
#include "desktop/window/GuideBrowser.h"

namespace quorl {

namespace {

constexpr int kGuideWidth = 1040, kGuideHeight = 760, kContentsWidth = 208, kFindWidth = 200;
constexpr char kIndex[] = "index.md";
constexpr int kPageRole = Qt::UserRole;

}  // namespace

GuideWindow::GuideWindow(const QString& folder)
    : page_(new GuideBrowser(folder, this)), contents_(new QListWidget(this)) {
  setWindowTitle("QUORLSDR - Guide");
  setObjectName("frmGuide");
  setBackgroundRole(QPalette::AlternateBase);
  setAutoFillBackground(true);
  contents_->setAccessibleName("Contents");
  contents_->setFixedWidth(kContentsWidth);
  contents_->setSpacing(3);
  contents_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  FillContents(folder);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(skin::kGrid, skin::kGrid, skin::kGrid, skin::kGrid);
  rows->setSpacing(skin::kGrid);
  rows->addWidget(MakeBar());
  auto* both = new QHBoxLayout;
  both->setSpacing(skin::kGrid);
  both->addWidget(contents_);
  both->addWidget(page_, 1);
  rows->addLayout(both, 1);
  resize(kGuideWidth, kGuideHeight);

  page_->OnPage = [this](const QString& page) { ShowPlace(page); };
  connect(contents_, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* item) {
    if (item && item->data(kPageRole) != page_->Page()) page_->Open(item->data(kPageRole).toString());
  });
}

QWidget* GuideWindow::MakeBar() {
  auto* bar = new QWidget(this);
  auto* row = new QHBoxLayout(bar);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(skin::kGrid);
  const auto button = [&](const QString& caption, const QKeySequence& key, auto slot, auto available) {
    auto* made = new QPushButton(caption, bar);
    made->setEnabled(false);
    made->setToolTip(key.toString(QKeySequence::NativeText));
    connect(made, &QPushButton::clicked, page_, slot);
    connect(new QShortcut(key, this), &QShortcut::activated, page_, slot);
    connect(page_, available, made, &QWidget::setEnabled);
    row->addWidget(made);
  };
  button("&Back", Qt::ALT | Qt::Key_Left, &QTextBrowser::backward, &QTextBrowser::backwardAvailable);
  button("For&ward", Qt::ALT | Qt::Key_Right, &QTextBrowser::forward, &QTextBrowser::forwardAvailable);
  row->addStretch(1);
  row->addWidget(found_ = new QLabel(bar));
  find_ = new QLineEdit(bar);
  find_->setPlaceholderText("Find in this page");
  find_->setAccessibleName("Find in this page");
  find_->setFixedWidth(kFindWidth);
  row->addWidget(find_);
  connect(find_, &QLineEdit::returnPressed, this,
          [this] { FindNext(QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier)); });
  connect(find_, &QLineEdit::textEdited, found_, &QLabel::clear);
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
    find_->setFocus(Qt::ShortcutFocusReason);
    find_->selectAll();
  });
  connect(new QShortcut(Qt::Key_F3, this), &QShortcut::activated, this, [this] { FindNext(false); });
  connect(new QShortcut(Qt::SHIFT | Qt::Key_F3, this), &QShortcut::activated, this,
          [this] { FindNext(true); });
  return bar;
}

void GuideWindow::FillContents(const QString& folder) {
  QFile file(folder + "/" + kIndex);
  QTextDocument index;
  if (file.open(QIODevice::ReadOnly)) index.setMarkdown(QString::fromUtf8(file.readAll()));
  const auto add = [this](const QString& title, const QString& page) {
    auto* item = new QListWidgetItem(title, contents_);
    item->setData(kPageRole, page);
  };
  add("Guide", kIndex);
  for (QTextBlock block = index.begin(); block.isValid(); block = block.next()) {
    for (auto each = block.begin(); !each.atEnd(); ++each) {
      const QString page = each.fragment().charFormat().anchorHref();
      if (page.endsWith(".md")) add(each.fragment().text(), page);
    }
  }
}

void GuideWindow::Open(const QString& page) {
  page_->Open(page);
  show();
  raise();
  activateWindow();
  page_->setFocus();
}

// The line of the page, whichever way led to it.
void GuideWindow::ShowPlace(const QString& page) {
  found_->clear();
  for (int row = 0; row < contents_->count(); ++row) {
    if (contents_->item(row)->data(kPageRole) == page) contents_->setCurrentRow(row);
  }
}

void GuideWindow::FindNext(bool backward) {
  if (find_->text().isEmpty()) return;
  const bool found = page_->Find(find_->text(), backward);
  found_->setText(found ? "" : "Not on this page");
  find_->setAccessibleDescription(found_->text());
}

void GuideWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) close();
}

}  // namespace quorl
