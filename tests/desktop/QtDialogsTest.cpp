// The boxes of the desktop, answered by a hand that comes when one is open.
#include "desktop/qt/QtDialogs.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QColorDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QTimer>
#include <fstream>
#include <functional>

#include "DesktopTest.h"

namespace quorl {
namespace {

using namespace std::chrono_literals;

class QtDialogsTest : public DesktopTest {
 protected:
  // Does `what` with the next box of that kind that stands open.
  template <class Box>
  void OnNext(std::function<void(Box&)> what) {
    hand_.disconnect();
    QObject::connect(&hand_, &QTimer::timeout, [this, what] {
      auto* box = qobject_cast<Box*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      hand_.stop();
      what(*box);
    });
    hand_.start(5ms);
  }
  MessageAnswer Answered(const MessageRequest& request, QMessageBox::StandardButton button) {
    OnNext<QMessageBox>([button](QMessageBox& box) {
      if (button == QMessageBox::NoButton) return box.reject();
      box.button(button)->click();
    });
    return boxes.ShowMessage(request);
  }

  QtDialogs boxes;

 private:
  QTimer hand_;
};

TEST_F(QtDialogsTest, EachButtonIsItsAnswerAndClosingChangesNothing) {
  const struct {
    MessageButtons Buttons;
    QMessageBox::StandardButton Pressed;
    MessageAnswer Answer;
  } cases[] = {
      {MessageButtons::Ok, QMessageBox::Ok, MessageAnswer::Ok},
      {MessageButtons::Ok, QMessageBox::NoButton, MessageAnswer::Ok},
      {MessageButtons::OkCancel, QMessageBox::Ok, MessageAnswer::Ok},
      {MessageButtons::OkCancel, QMessageBox::Cancel, MessageAnswer::Cancel},
      {MessageButtons::OkCancel, QMessageBox::NoButton, MessageAnswer::Cancel},
      {MessageButtons::YesNo, QMessageBox::Yes, MessageAnswer::Yes},
      {MessageButtons::YesNo, QMessageBox::NoButton, MessageAnswer::No},
      {MessageButtons::YesNoCancel, QMessageBox::No, MessageAnswer::No},
      {MessageButtons::YesNoCancel, QMessageBox::NoButton, MessageAnswer::Cancel},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(&each - cases);
    EXPECT_EQ(Answered({.Text = "Text", .Title = "Title", .Buttons = each.Buttons}, each.Pressed),
              each.Answer);
  }
}

TEST_F(QtDialogsTest, WordsStandAsTheyAreUnderTheSignOfTheirKind) {
  const std::pair<MessageIcon, QMessageBox::Icon> icons[] = {
      {MessageIcon::None, QMessageBox::NoIcon},
      {MessageIcon::Information, QMessageBox::Information},
      {MessageIcon::Question, QMessageBox::Question},
      {MessageIcon::Warning, QMessageBox::Warning},
      {MessageIcon::Critical, QMessageBox::Critical}};
  for (const auto& [kind, sign] : icons) {
    OnNext<QMessageBox>([sign = sign](QMessageBox& box) {
      EXPECT_EQ(box.text(), "a < b\nB&W");
      EXPECT_EQ(box.textFormat(), Qt::PlainText);
      EXPECT_EQ(box.icon(), sign);
      box.reject();
    });
    boxes.ShowMessage({.Text = "a < b\nB&W", .Title = "Title", .Icon = kind});
  }
}

TEST_F(QtDialogsTest, ANoticeHoldsNobodyUp) {
  QWidget panel;
  boxes.SetWindow(&panel);
  boxes.ShowNotice({.Text = "gone", .Title = "Title"});
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  const auto notices = panel.findChildren<QMessageBox*>();
  ASSERT_EQ(notices.size(), 1);
  EXPECT_EQ(notices[0]->text(), "gone");
  EXPECT_TRUE(notices[0]->isVisible());
}

TEST_F(QtDialogsTest, ATextIsTakenOrLeft) {
  OnNext<QInputDialog>([](QInputDialog& box) {
    EXPECT_EQ(box.textValue(), "40m");
    box.setTextValue("41 m");
    box.accept();
  });
  EXPECT_EQ(boxes.AskText("Title", "Name", "40m"), "41 m");
  OnNext<QInputDialog>([](QInputDialog& box) { box.reject(); });
  EXPECT_EQ(boxes.AskText("Title", "Name", "40m"), std::nullopt);
}

TEST_F(QtDialogsTest, AChooserBeginsWhereTheLastOneEnded) {
  const QString there = QString::fromStdString(testing::TempDir());
  const std::string path = testing::TempDir() + "chosen.wav";
  std::ofstream(path) << "sound";
  OnNext<QFileDialog>([&](QFileDialog& box) {
    box.selectFile(QString::fromStdString(path));
    static_cast<QDialog&>(box).accept();
  });
  EXPECT_EQ(boxes.AskOpenFile({"Title", "Sound|*.wav", testing::TempDir(), ""}), path);
  OnNext<QFileDialog>([&](QFileDialog& box) {
    EXPECT_EQ(box.directory(), QDir(there));
    // Whoever asked for the name asks about what has it already.
    EXPECT_TRUE(box.testOption(QFileDialog::DontConfirmOverwrite));
    static_cast<QDialog&>(box).accept();
  });
  EXPECT_EQ(boxes.AskSaveFile({"Title", "Sound|*.wav", "", "chosen.wav"}), path);
  OnNext<QFileDialog>([](QFileDialog& box) { box.reject(); });
  EXPECT_EQ(boxes.AskSaveFile({}), std::nullopt);
}

TEST_F(QtDialogsTest, AColourIsANumberWithBlueOnTopAndOwnOnesAreKept) {
  CustomColours own{};
  own[3] = 0x030201;
  OnNext<QColorDialog>([](QColorDialog& box) {
    EXPECT_EQ(box.currentColor(), QColor(0x11, 0x22, 0x33));
    EXPECT_EQ(QColorDialog::customColor(3), QColor(1, 2, 3));
    QColorDialog::setCustomColor(5, QColor(4, 5, 6));
    box.setCurrentColor(QColor(0xAA, 0xBB, 0xCC));
    box.accept();
  });
  EXPECT_EQ(boxes.AskColour(0x332211, own), 0xCCBBAAU);
  EXPECT_EQ(own[5], 0x060504U);
  OnNext<QColorDialog>([](QColorDialog& box) { box.reject(); });
  EXPECT_EQ(boxes.AskColour(0, own), std::nullopt);
}

TEST_F(QtDialogsTest, FiltersAreTranslated) {
  EXPECT_EQ(QtFilterOf("SDR Colour Themes (*.thm)|*.thm"), "SDR Colour Themes (*.thm)");
  EXPECT_EQ(QtFilterOf("Sound|*.wav;*.raw|All files|*"), "Sound (*.wav *.raw);;All files (*)");
  EXPECT_EQ(QtFilterOf(""), "");
}

}  // namespace
}  // namespace quorl
