// The listener's guide in its window.
#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QWindow>

#include "WindowRig.h"
#include "desktop/views/Skin.h"
#include "desktop/window/Application.h"
#include "desktop/window/GuideBrowser.h"
#include "desktop/window/GuideDesk.h"
#include "desktop/window/GuideWindow.h"

namespace quorl {
namespace {

// A guide of three pages, with a picture that is wider than any window.
class GuidePages {
 public:
  GuidePages() {
    Write("index.md", "# Guide\n\n- [First](first.md): of two\n- [Second](second.md)\n");
    QString first = "# First\n\nSee [the end](#the-end-isnt-far) or [two](second.md#below).\n\n";
    for (int line = 0; line < 200; ++line) first += "Words, and words.\n\n";
    Write("first.md",
          first + "## The end isn't far\n\nA needle, and [on](second.md#below).\n\n![wide](wide.png)\n");
    Write("second.md",
          "# Second\n\n| a | b |\n|---|---|\n| ![half](wide.png) | `code` |\n\n## Below\n\nText\n");
    MakePicture().save(Folder.filePath("wide.png"));
  }

  static constexpr QRgb kGround = qRgb(17, 24, 28);

  QTemporaryDir Folder;

 private:
  // Of few colours, as those of the guide are: a plain half above a motley one.
  static QImage MakePicture() {
    QImage wide(1600, 400, QImage::Format_Indexed8);
    wide.setColorCount(256);
    for (int i = 1; i < 256; ++i) wide.setColor(i, qRgb(i, i * 53 % 256, i * 101 % 256));
    wide.setColor(0, kGround);
    wide.fill(0U);
    for (int y = 200; y < 400; ++y) {
      for (int x = 0; x < 1600; ++x) wide.setPixel(x, y, static_cast<unsigned>(x * y % 256));
    }
    return wide;
  }

  void Write(const QString& name, const QString& text) const {
    QFile file(Folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
      throw std::runtime_error("no folder");
  }
};

class GuideWindowTest : public DesktopTest {
 protected:
  GuideBrowser& Browser(QWidget& shown) {
    return *static_cast<GuideBrowser*>(shown.findChild<QTextBrowser*>());
  }
  // The block at the top of what is seen.
  static QString Top(GuideBrowser& browser) {
    return browser.cursorForPosition(QPoint(40, 30)).block().text();
  }
  static QImage Picture(GuideBrowser& browser) {
    const QUrl url = browser.document()->baseUrl().resolved(QUrl("wide.png"));
    return browser.document()->resource(QTextDocument::ImageResource, url).value<QImage>();
  }
  static int PictureWidth(GuideBrowser& browser) {
    const QImage picture = Picture(browser);
    return static_cast<int>(picture.width() / picture.devicePixelRatio());
  }

  GuidePages pages;
  GuideWindow guide{pages.Folder.path()};
};

TEST_F(GuideWindowTest, LinksLeadToHeadingsAndTheWayBackToThePlaceTheyWereReadAt) {
  guide.Open("first.md");
  Settle();
  GuideBrowser& browser = Browser(guide);
  EXPECT_EQ(Top(browser), "First");
  QTest::keyClick(&browser, Qt::Key_Tab);
  QTest::keyClick(&browser, Qt::Key_Return);
  EXPECT_EQ(browser.Page(), "first.md");
  EXPECT_GT(browser.verticalScrollBar()->value(), 1000) << "the heading, which has no anchor, is in view";
  for (int link = 0; link < 3; ++link) QTest::keyClick(&browser, Qt::Key_Tab);
  const int left = browser.verticalScrollBar()->value();
  EXPECT_GT(left, 1000);
  QTest::keyClick(&browser, Qt::Key_Return);
  EXPECT_EQ(browser.Page(), "second.md");
  QTest::keyClick(&guide, Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(browser.Page(), "first.md");
  EXPECT_EQ(browser.verticalScrollBar()->value(), left);
  QTest::keyClick(&guide, Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(browser.Page(), "second.md");
  EXPECT_EQ(HeadingAnchor("What Apply does, in its order"), "what-apply-does-in-its-order");
}

TEST_F(GuideWindowTest, TheContentsFollowThePageAndLeadToIt) {
  auto* contents = guide.findChild<QListWidget*>();
  QStringList titles;
  for (int row = 0; row < contents->count(); ++row) titles << contents->item(row)->text();
  EXPECT_EQ(titles, QStringList({"Guide", "First", "Second"}));
  guide.Open("second.md");
  EXPECT_EQ(contents->currentRow(), 2);
  contents->setFocus();
  QTest::keyClick(contents, Qt::Key_Up);
  EXPECT_EQ(Browser(guide).Page(), "first.md");
  EXPECT_EQ(contents->currentRow(), 1);
}

TEST_F(GuideWindowTest, FindGoesRoundThePageAndSaysWhatIsNotThere) {
  guide.Open("first.md");
  auto* field = guide.findChild<QLineEdit*>();
  QTest::keyClick(&guide, Qt::Key_F, Qt::ControlModifier);
  field->setFocus();
  QTest::keyClicks(field, "NEEDLE");
  QTest::keyClick(field, Qt::Key_Return);
  GuideBrowser& browser = Browser(guide);
  EXPECT_EQ(browser.textCursor().selectedText(), "needle");
  const int place = browser.textCursor().position();
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(browser.textCursor().position(), place) << "it stands there once";
  field->setText("camel");
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(field->accessibleDescription(), "Not on this page");
  EXPECT_EQ(browser.textCursor().position(), place);
}

TEST_F(GuideWindowTest, PicturesAreAsWideAsTheirPlace) {
  guide.Open("first.md");
  Settle();
  GuideBrowser& browser = Browser(guide);
  const int whole = PictureWidth(browser);
  EXPECT_LE(whole, browser.viewport()->width());
  EXPECT_GT(whole, browser.viewport()->width() * 3 / 4);
  EXPECT_EQ(browser.horizontalScrollBar()->maximum(), 0);
  guide.resize(guide.width() + 200, guide.height());
  Settle();
  EXPECT_NEAR(PictureWidth(browser), whole + 200, 10);
  guide.Open("second.md");
  Settle();
  EXPECT_LT(PictureWidth(browser), browser.viewport()->width() / 2) << "one of two columns";
  const QImage narrow = Picture(browser);
  for (int x = 0; x < narrow.width(); ++x)
    EXPECT_EQ(narrow.pixel(x, narrow.height() / 4), GuidePages::kGround)
        << "a plain ground stays plain, at " << x;
}

TEST_F(GuideWindowTest, ThePageTakesTheColoursOfTheTheme) {
  guide.Open("second.md");
  const auto ink = [&] {
    for (QTextBlock block = Browser(guide).document()->begin(); block.isValid(); block = block.next()) {
      if (block.text() == "Below") return block.begin().fragment().charFormat().foreground().color();
    }
    return QColor();
  };
  ColourSchemes light;
  light.SDRBackgroundColour = 0xF0F0F0;
  ApplyColours(light);
  Settle();
  EXPECT_EQ(ink(), QApplication::palette().color(QPalette::Link));
  EXPECT_GE(skin::Contrast(ink(), Browser(guide).palette().color(QPalette::Base)), skin::kTitleContrast);
  ApplyColours(ColourSchemes());
  Settle();
  EXPECT_EQ(ink(), QApplication::palette().color(QPalette::Link));
}

TEST_F(GuideWindowTest, WhatIsMissingIsToldInOneSentence) {
  guide.Open("third.md");
  EXPECT_TRUE(Browser(guide).toPlainText().contains("no page at " + pages.Folder.filePath("third.md")));
  GuideWindow none("/nowhere");
  none.Open("index.md");
  EXPECT_TRUE(Browser(none).toPlainText().contains("/nowhere/index.md"));
}

TEST_F(GuideWindowTest, TheKeyboardAndAScreenReaderReachAllOfIt) {
  guide.Open("first.md");
  QTest::keyClick(&guide, Qt::Key_Left, Qt::AltModifier);
  for (QWidget* widget : guide.findChildren<QWidget*>()) {
    if (!(widget->focusPolicy() & Qt::TabFocus) || !widget->isVisibleTo(&guide)) continue;
    EXPECT_NE(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name), "")
        << widget->metaObject()->className();
  }
  QAccessibleInterface& page = *QAccessible::queryAccessibleInterface(&Browser(guide));
  ASSERT_NE(page.textInterface(), nullptr);
  EXPECT_GT(page.textInterface()->characterCount(), 1000);
  EXPECT_EQ(guide.focusWidget(), &Browser(guide));
  QTest::keyClick(&guide, Qt::Key_Escape);
  EXPECT_FALSE(guide.isVisible());
}

class GuideDeskTest : public WindowRig {
 protected:
  static QWidget* Guide() {
    for (QWidget* top : QApplication::topLevelWidgets()) {
      if (top->objectName() == "frmGuide") return top;
    }
    return nullptr;
  }
};

TEST_F(GuideDeskTest, F1OpensThePageForWhatOneLooksAt) {
  GuideDesk desk("/nowhere");
  window.show();
  QTest::keyClick(&window, Qt::Key_F1);
  const QWidget* guide = Guide();
  ASSERT_NE(guide, nullptr);
  EXPECT_TRUE(guide->isVisible());
  EXPECT_EQ(GuideDesk::PageFor(&window, &window), "keys.md");
  EXPECT_EQ(GuideDesk::PageFor(&window, window.findChild<QWidget*>("picScope")), "scope.md#the-pointer");
  EXPECT_EQ(GuideDesk::PageFor(&window, nullptr), "keys.md");
  QWidget config;
  config.setObjectName("frmConfig");
  EXPECT_EQ(GuideDesk::PageFor(&config, &window), "configuration.md");
}

TEST_F(GuideDeskTest, ItCanBeReadBesideADialogThatShutsOutOtherWindows) {
  const GuidePages pages;
  GuideDesk desk(pages.Folder.path());
  window.show();
  QWidget dialog(&window, Qt::Dialog);
  dialog.setWindowModality(Qt::ApplicationModal);
  dialog.show();
  desk.Open("first.md");
  Settle();
  QWidget* guide = Guide();
  ASSERT_NE(guide, nullptr);
  const QScrollBar& bar = *guide->findChild<QTextBrowser*>()->verticalScrollBar();
  QTest::keyClick(guide->windowHandle(), Qt::Key_PageDown);
  const int beside = bar.value();
  EXPECT_GT(beside, 0);
  dialog.close();
  Settle();
  QTest::keyClick(guide->windowHandle(), Qt::Key_PageDown);
  EXPECT_GT(bar.value(), beside) << "it stays when the dialog goes";
}

}  // namespace
}  // namespace quorl
