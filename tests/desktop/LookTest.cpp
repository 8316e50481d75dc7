// What the eye gets: contrast of words, faces of what is switched off, the scale of the meter.
#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <array>

#include "DesktopTest.h"
#include "desktop/views/Binder.h"
#include "desktop/views/Skin.h"

namespace quorl {
namespace {

class LookTest : public DesktopTest {
 protected:
  // The view alone on a card, four times as large, so that letters have pixels of full ink.
  static QImage PictureOf(View& view) {
    constexpr int kScale = 4;
    view.TakeOver();
    view.resize(view.sizeHint());
    QImage image(view.size() * kScale, QImage::Format_RGB32);
    image.setDevicePixelRatio(kScale);
    image.fill(skin::Tones(view.palette()).Card());
    view.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
  }
  // How far the letters of that picture stand out from what they stand on.
  static double ContrastOfLetters(const QImage& image) {
    const QColor ground = image.pixelColor(image.width() / 2, 12);
    double most = 1;
    for (int y = image.height() / 4; y < image.height() * 3 / 4; ++y) {
      for (int x = 24; x < image.width() - 24; ++x) {
        most = std::max(most, skin::Contrast(image.pixelColor(x, y), ground));
      }
    }
    return most;
  }

  RealPanel panel;
  RefreshClock clock;
  Binder bind{panel.Registry(), clock, [](const std::string& line) { ADD_FAILURE() << line; }};
};

TEST_F(LookTest, ContrastCountsFromOneToTwentyOne) {
  EXPECT_NEAR(skin::Contrast(Qt::white, Qt::black), 21, 0.01);
  EXPECT_DOUBLE_EQ(skin::Contrast(QColor(0x12, 0x34, 0x56), QColor(0x12, 0x34, 0x56)), 1);
  EXPECT_NEAR(skin::Contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
}

TEST_F(LookTest, WordsThatAreSwitchedOffCanStillBeReadAndDoNotShine) {
  panel.SwitchOn({"chkNotchOn"});
  for (const Colour hue : {0xFFFF00U, 0xC0C000U, 0x00FF00U, 0x00C000U, 0x0000FFU, 0x0000C0U, 0x303030U}) {
    for (const bool pressed : {false, true}) {
      auto& box = panel.Get<CheckBox>("chkNotchAuto");
      box.SetValue(pressed);
      box.BackColour = hue;
      box.Faded = false;
      const std::unique_ptr<FaceView> view(bind.Toggle("chkNotchAuto"));
      const QColor lit = PictureOf(*view).pixelColor(40, 16);
      for (const bool disabled : {false, true}) {
        box.Faded = !disabled;
        box.Enabled = !disabled;
        const QImage off = PictureOf(*view);
        EXPECT_GE(ContrastOfLetters(off), skin::kOffContrast) << std::hex << hue << pressed << disabled;
        const bool shines = pressed && hue != 0x303030U;
        EXPECT_TRUE(!shines || off.pixelColor(40, 16).value() < lit.value() / 2) << std::hex << hue;
      }
      box.Enabled = true;
    }
  }
  for (const char* name : {"lblNotchC", "lblNotchCDesc", "lblBFO"}) {
    auto& label = panel.Get<Label>(name);
    label.ForeColour = name == std::string("lblBFO") ? 0x0000FFU : kNoColour;
    label.Caption = std::string("88888");
    label.Enabled = false;
    const std::unique_ptr<LabelView> word(bind.Word(name));
    EXPECT_GE(ContrastOfLetters(PictureOf(*word)), skin::kOffContrast) << name;
  }
}

TEST_F(LookTest, RedIsKeptForTheChosenDigitAndForFaults) {
  const auto redPixels = [](const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) count += skin::IsAlarm(image.pixelColor(x, y)) ? 1 : 0;
    }
    return count;
  };
  for (const char* name : {"lblBFO", "lblTuningRate", "lblNotchC"}) {
    panel.Get<Label>(name).ForeColour = 0x0000FFU;
    const std::unique_ptr<LabelView> value(bind.Value(name, "-00000"));
    EXPECT_EQ(redPixels(PictureOf(*value)), 0) << name;
  }
  panel.Get<Label>("lblStatsVal(0)").ForeColour = 0x0000FFU;
  panel.Get<Label>("lblStatsVal(0)").Caption = std::string("31,119   0 dB");
  const std::unique_ptr<LabelView> overload(bind.Reading("lblStatsVal(0)", "00,000"));
  EXPECT_GT(redPixels(PictureOf(*overload)), 100);
  panel.Press("optPwr", 1);
  const std::vector<FaceView*> power = bind.Options("optPwr", 3);
  for (const std::unique_ptr<FaceView> view(power[1]); const Colour off : {0x0000FFU, 0x0000C0U}) {
    panel.At("optPwr(1)").BackColour = off;
    EXPECT_EQ(redPixels(PictureOf(*view)), 0);
  }
  delete power[0];
  delete power[2];
  panel.ShowSignal(28);
  const std::unique_ptr<SMeterView> meter(bind.SMeter("picSmeter", "shpSMeterGrid", 28, "lblSMeter"));
  EXPECT_EQ(redPixels(PictureOf(*meter)), 0);
}

TEST_F(LookTest, NumbersThatAreNotLaidOutLookAsIfTheyWere) {
  for (const QString text : {"16,384  -6 dB", "S9 +36 dB", "18:42:07", "\u65E5 0"}) {
    const QFont font = skin::NumberFont(15);
    const QFontMetricsF metrics(font);
    const DrawnNumber number(15);
    EXPECT_NEAR(number.Width(text), metrics.horizontalAdvance('0') * double(text.size()), 0.5);
    std::array<QImage, 2> images;
    for (QImage& image : images) {
      image = QImage(600, 80, QImage::Format_RGB32);
      image.setDevicePixelRatio(4);
      image.fill(Qt::black);
    }
    QPainter laidOut(&images[0]), drawn(&images[1]);
    laidOut.setFont(font);
    laidOut.setPen(Qt::white);
    drawn.setPen(Qt::white);
    laidOut.drawText(QRectF(2, 0, 148, 20), Qt::AlignLeft | Qt::AlignVCenter, text);
    number.Draw(drawn, 2, 20, text);
    int differing = 0, lit = 0;
    for (int y = 0; y < 80; ++y) {
      for (int x = 0; x < 600; ++x) {
        lit += qGray(images[0].pixel(x, y)) > 128 ? 1 : 0;
        differing += std::abs(qGray(images[0].pixel(x, y)) - qGray(images[1].pixel(x, y))) > 64 ? 1 : 0;
      }
    }
    EXPECT_GT(lit, 300) << text.toStdString();
    EXPECT_LT(differing, lit / 20) << text.toStdString();
  }
}

TEST_F(LookTest, TitlesCanBeReadInAnyColourOfTheFrame) {
  for (const Colour ink : {0x8A7F6BU, 0x303030U, 0x0000C0U, 0xFF0000U}) {
    panel.Get<Frame>("frNotch").ForeColour = ink;
    const std::unique_ptr<CardView> card(bind.Card("frNotch", ""));
    card->TakeOver();
    card->resize(200, 60);
    QImage image(200 * 4, 60 * 4, QImage::Format_RGB32);
    image.setDevicePixelRatio(4);
    card->render(&image, {}, {}, QWidget::DrawChildren);
    EXPECT_GE(ContrastOfLetters(image), skin::kTitleContrast) << std::hex << ink;
  }
}

TEST_F(LookTest, TheMarksOfTheMeterKeepApartAtAnyWidth) {
  constexpr int kMarks[] = {1, 3, 5, 7, 9, 12, 15, 19, 22, 25};
  for (const int i : kMarks) {
    panel.Get<Picture>(IndexedName("shpSMeterGrid", i)).Caption =
        i <= 9 ? std::to_string(i) : "+" + std::to_string(i * 6 / 20 * 20 - 60);
  }
  const std::unique_ptr<SMeterView> meter(bind.SMeter("picSmeter", "shpSMeterGrid", 28, "lblSMeter"));
  for (const int width : {meter->minimumSizeHint().width(), 240, 440}) {
    meter->resize(width, 60);
    const auto marks = meter->Marks();
    EXPECT_GE(marks.size(), width == 440 ? std::size(kMarks) : 5U);
    EXPECT_TRUE(std::any_of(marks.begin(), marks.end(), [](const auto& mark) { return mark.Element == 9; }));
    for (const auto& a : marks) {
      for (const auto& b : marks) {
        EXPECT_TRUE(a.Element == b.Element || !a.Place.intersects(b.Place)) << width;
      }
    }
  }
}

// Task lists take the size they need; the desktop entry's name lets them find the rest.
TEST_F(LookTest, WindowsHaveTheIconInEverySize) {
  const QIcon icon = QApplication::windowIcon();
  for (const int size : {16, 24, 32, 48, 64, 128}) {
    const QImage image = icon.pixmap(QSize(size, size), 1.0).toImage();
    ASSERT_EQ(image.size(), QSize(size, size));
    EXPECT_LT(image.pixelColor(0, 0).alpha(), 255) << size;  // round corners
    EXPECT_GT(image.pixelColor(size / 2, size * 3 / 4).green(), 200) << size;
  }
  EXPECT_TRUE(QFile::exists(
      QString(QUORL_SOURCE_DIR "/packaging/%1.desktop").arg(QGuiApplication::desktopFileName())));
}

}  // namespace
}  // namespace quorl
