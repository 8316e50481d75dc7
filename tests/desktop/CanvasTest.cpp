// The surface that the scope is drawn on, pixel by pixel.
#include <QColor>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "DesktopTest.h"
#include "desktop/views/QtCanvas.h"
#include "desktop/views/Skin.h"

namespace quorl {
namespace {

constexpr Colour kGreen = 0x00FF00, kWhite = 0xFFFFFF;

class CanvasTest : public DesktopTest, public testing::WithParamInterface<double> {
 protected:
  // 100 x 50 pixels; X 0 to 10, Y 20 at the top and -30 at the bottom.
  CanvasTest() {
    canvas.Resize({100, 50}, GetParam());
    canvas.SetScale({0, 20, 10, -50});
    canvas.Clear(0);
  }
  int Device(double pixels) const { return static_cast<int>(std::lround(pixels * GetParam())); }
  // The corners of all that differs from the ground.
  QRect Drawn() {
    const QImage image = canvas.Pixels();
    QRect all;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        if (image.pixel(x, y) != skin::kScopeGround) all |= QRect(x, y, 1, 1);
      }
    }
    return all;
  }

  QtCanvas canvas;
};

TEST_P(CanvasTest, LevelAndUprightLinesAreOneRowOfPixelsAtTheEdgesToo) {
  const QSize size = canvas.Pixels().size();
  canvas.Line({0, 0}, {10, 0}, {kWhite});
  EXPECT_EQ(Drawn(), QRect(0, Device(20), size.width(), 1));
  canvas.Clear(0);
  canvas.Line({10, 20}, {10, -30}, {kWhite, 0.5F});
  EXPECT_EQ(Drawn(), QRect(size.width() - 1, 0, 1, size.height()));
  const int half = canvas.Pixels().pixelColor(size.width() - 1, 3).green();
  EXPECT_NEAR(half, (255 + 0x0B) / 2, 2);
  canvas.Clear(0);
  canvas.Line({11, 20}, {11, -30}, {kWhite});
  EXPECT_TRUE(Drawn().isEmpty()) << "what lies outside is not pulled in";
}

TEST_P(CanvasTest, ATraceIsOneDevicePixelWideAndBadValuesDoNoHarm) {
  std::vector<CanvasPoint> level;
  for (int i = 0; i <= 40; ++i) level.push_back({static_cast<float>(i) / 4, 5.3F});
  canvas.Polyline(level, {kWhite});
  const QImage image = canvas.Pixels();
  double ink = 0;
  for (int y = 0; y < image.height(); ++y) {
    ink += (image.pixelColor(image.width() / 2, y).green() - 0x0B) / double(255 - 0x0B);
  }
  EXPECT_NEAR(ink, 1.0, 0.1);
  EXPECT_NEAR(Drawn().center().y(), Device(14.7), 1);

  constexpr float kNone = std::numeric_limits<float>::quiet_NaN(),
                  kEver = std::numeric_limits<float>::infinity();
  const std::vector<CanvasPoint> bad{{0, kNone}, {2, kEver}, {4, -kEver}, {6, 3e38F}, {kNone, 0}, {10, 0}};
  canvas.Polyline(bad, {kWhite});
  canvas.FillUnder(bad, kNone, {kWhite});
  canvas.Rectangle({-kEver, kNone}, {kEver, 0}, {kWhite});
  canvas.Polyline({}, {kWhite});
  canvas.FillUnder({}, 0, {kWhite});
}

TEST_P(CanvasTest, AFillReachesFromTheTraceToItsBase) {
  // More points than columns on the left, fewer on the right; a peak between two columns.
  std::vector<CanvasPoint> points;
  for (int i = 0; i <= 600; ++i) points.push_back({static_cast<float>(i) / 100, i == 301 ? 15.0F : 0.0F});
  points.push_back({10, -20});
  canvas.FillUnder(points, -30, {kWhite, 0.25F});
  const QImage image = canvas.Pixels();
  const auto filledFrom = [&image](int x) {
    int y = 0;
    while (y < image.height() && image.pixel(x, y) == skin::kScopeGround) ++y;
    return y;
  };
  EXPECT_NEAR(filledFrom(Device(10)), Device(20), 1);
  EXPECT_NEAR(filledFrom(Device(80)), Device(30), 1);
  EXPECT_LE(filledFrom(Device(30.1)), Device(8)) << "a peak narrower than a column is filled";
  const QColor mixed = image.pixelColor(Device(10), image.height() - 1);
  EXPECT_NEAR(mixed.red(), 0x08 + (255 - 0x08) / 4, 2);
  EXPECT_NEAR(mixed.green(), 0x0B + (255 - 0x0B) / 4, 2);
  EXPECT_NEAR(mixed.blue(), 0x0D + (255 - 0x0D) / 4, 2);
  canvas.Clear(0);
  canvas.FillUnder(points, -5, {kWhite});
  EXPECT_EQ(Drawn().bottom(), Device(25) - 1);
}

TEST_P(CanvasTest, TextsStandBesideTheirPointAndTakeTheWidthThatTheySay) {
  const std::string text = "7085 kHz";
  const double width = canvas.TextWidth(text), height = canvas.TextHeight();
  EXPECT_GT(width, 30);
  canvas.Text({5, -5}, text, {kWhite}, TextSide::Right, TextLevel::Below);
  const int seam = Device(TextStamps::kSeam) + 1;
  EXPECT_GE(Drawn().left(), Device(50) - seam);
  EXPECT_GE(Drawn().top(), Device(25) - seam);
  EXPECT_LE(Drawn().bottom(), Device(25 + height) + seam);
  canvas.Clear(0);
  canvas.Text({5, -5}, text, {kWhite}, TextSide::Left, TextLevel::Above);
  EXPECT_LE(Drawn().right(), Device(50) + seam);
  EXPECT_NEAR(Drawn().width(), Device(width), 4 * seam);
  EXPECT_LE(Drawn().bottom(), Device(25) + seam);
  canvas.Clear(0);
  canvas.Text({5, -5}, text, {kWhite}, TextSide::Centre, TextLevel::Middle);
  EXPECT_NEAR(Drawn().center().x(), Device(50), 2 + seam);
  EXPECT_NEAR(Drawn().center().y(), Device(25), 2 + seam);
}

TEST_P(CanvasTest, TextsCanBeReadOverTheBrightestPalette) {
  // Ground, its seam and the letters stand side by side; the letters must stand out from what they touch.
  for (const Colour ink : {0xFF7F00U, 0xFFFF00U, 0x0000C0U, 0x00FF00U, 0x202020U}) {
    for (const Colour under : {0xFFFFFFU, 0x25E7FDU, 0x000000U}) {
      canvas.Clear(0);
      canvas.Rectangle({0, 20}, {10, -30}, {under});
      const QImage before = canvas.Pixels().copy();
      canvas.Text({5, -5}, "-40 dB", {ink}, TextSide::Centre, TextLevel::Middle);
      const QImage image = canvas.Pixels();
      double most = 1;
      QColor seam = Qt::white;
      for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
          const QColor here = image.pixelColor(x, y);
          if (image.pixel(x, y) != before.pixel(x, y) && here.lightnessF() < seam.lightnessF()) seam = here;
        }
      }
      if (under == 0) seam = QColor(skin::kScopeGround);
      for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
          if (image.pixel(x, y) != before.pixel(x, y))
            most = std::max(most, skin::Contrast(image.pixelColor(x, y), seam));
        }
      }
      // Thin letters at one device pixel a pixel nowhere have their full ink.
      EXPECT_GE(most, GetParam() >= 2 ? skin::kTitleContrast : 3.0) << std::hex << ink << " on " << under;
    }
  }
}

TEST_P(CanvasTest, ImagesAreDevicePixelsAndAreCutAtTheEdges) {
  const int width = canvas.Pixels().width(), height = canvas.Pixels().height();
  std::vector<std::uint32_t> pixels(30 * 20);
  for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = 0xFF000000U | static_cast<std::uint32_t>(i * 7);
  canvas.Image(5, 3, 30, 20, pixels.data());
  const QImage image = canvas.Pixels();
  for (const int i : {0, 29, 30, 599}) {
    EXPECT_EQ(image.pixel(5 + i % 30, 3 + i / 30), pixels[static_cast<std::size_t>(i)]);
  }
  canvas.Clear(0);
  canvas.Image(-10, height - 5, 30, 20, pixels.data());
  canvas.Image(width - 4, -15, 30, 20, pixels.data());
  EXPECT_EQ(canvas.Pixels().pixel(0, height - 5), pixels[10]);
  EXPECT_EQ(canvas.Pixels().pixel(width - 1, 0), pixels[15 * 30 + 3]);
}

TEST_P(CanvasTest, AnotherSizeKeepsThePictureUntilThereIsANewOne) {
  canvas.Rectangle({0, 20}, {5, -30}, {kGreen});
  const QRgb green = canvas.Pixels().pixel(2, 2);
  canvas.Resize({200, 30}, GetParam());
  EXPECT_EQ(canvas.Width(), 200);
  EXPECT_EQ(canvas.Pixels().pixel(Device(90), Device(20)), green);
  EXPECT_EQ(canvas.Pixels().pixel(Device(110), Device(20)), skin::kScopeGround);
  canvas.Resize({0, -3}, GetParam());
  EXPECT_EQ(canvas.Height(), 1) << "there is always something to draw on";
  canvas.Line({0, 0}, {10, 0}, {kWhite});
}

INSTANTIATE_TEST_SUITE_P(Ratios, CanvasTest, testing::Values(1.0, 1.5, 2.0));

}  // namespace
}  // namespace quorl
