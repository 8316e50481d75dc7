#include "display/canvas/RasterCanvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "display/canvas/PictureText.h"

namespace quorl::test {
namespace {

constexpr Ink kWhite{0xFFFFFF}, kHalf{0xFFFFFF, 0.5F};

TEST(RasterCanvasTest, TextStandsWhereItIsTold) {
  RasterCanvas canvas = PixelCanvas(17, 11);
  canvas.Text({0.0F, 0.0F}, "Ag1", kWhite);
  EXPECT_EQ(PictureText(canvas),
            "                 \n"
            " ###          #  \n"
            "#   #        ##  \n"
            "#   #  ####   #  \n"
            "##### #   #   #  \n"
            "#   # #   #   #  \n"
            "#   # #   #   #  \n"
            "#   #  ####  ### \n"
            "          #      \n"
            "       ###       \n"
            "                 \n");
  EXPECT_EQ(canvas.TextWidth("Ag1"), 17);
  EXPECT_EQ(canvas.TextWidth(""), 0);

  const std::string whole = PictureText(canvas);
  for (const TextLevel level : {TextLevel::Below, TextLevel::Above, TextLevel::Middle}) {
    for (const TextSide side : {TextSide::Right, TextSide::Left, TextSide::Centre}) {
      RasterCanvas other = PixelCanvas(17, 11);
      other.Text({side == TextSide::Right  ? 0.0F
                  : side == TextSide::Left ? 17.0F
                                           : 8.4F,
                  level == TextLevel::Below   ? 0.0F
                  : level == TextLevel::Above ? 11.0F
                                              : 5.4F},
                 "Ag1", kWhite, side, level);
      EXPECT_EQ(PictureText(other), whole);
    }
  }
}

TEST(RasterCanvasTest, AtRatioTwoTextIsTwiceAsLargeAndLinesAreAsThin) {
  RasterCanvas canvas = PixelCanvas(6, 5, 2);
  canvas.Text({0.0F, -1.0F}, "-", kWhite);
  canvas.Line({5.5F, 0.0F}, {5.5F, 5.0F}, kWhite);
  EXPECT_EQ(PictureText(canvas),
            "           #\n"
            "           #\n"
            "           #\n"
            "           #\n"
            "           #\n"
            "           #\n"
            "########   #\n"
            "########   #\n"
            "           #\n"
            "           #\n");
}

TEST(RasterCanvasTest, LinesAreSharpUprightAndSmoothAslant) {
  RasterCanvas canvas = PixelCanvas(12, 8);
  canvas.SetScale({0.0, 8.0, 12.0, -8.0});  // Y grows upwards
  canvas.Line({0.0F, 0.0F}, {12.0F, 0.0F}, kWhite);
  canvas.Line({12.0F, 0.0F}, {12.0F, 8.0F}, kWhite);
  canvas.Line({0.0F, 3.5F}, {10.0F, 6.5F}, kWhite);
  EXPECT_EQ(PictureText(canvas),
            "           #\n"
            "       .:+ #\n"
            "    .+#+:. #\n"
            ".:+#+.     #\n"
            "+:.        #\n"
            "           #\n"
            "           #\n"
            "############\n");
}

TEST(RasterCanvasTest, PolylineIsOfOneStrengthAlongItsJoints) {
  RasterCanvas canvas = PixelCanvas(9, 3);
  const std::vector<CanvasPoint> points{{0.0F, 1.5F}, {2.5F, 1.5F}, {3.0F, 1.5F}, {6.2F, 1.5F}, {9.0F, 1.5F}};
  canvas.Polyline(points, kHalf);
  EXPECT_EQ(PictureText(canvas), "         \n:::::::::\n         \n");
}

TEST(RasterCanvasTest, FillsGoColumnByColumnDownToTheBase) {
  RasterCanvas canvas = PixelCanvas(10, 6);
  canvas.SetScale({0.0, 6.0, 10.0, -6.0});
  const std::vector<CanvasPoint> points{{1.0F, 1.0F}, {3.0F, 5.0F}, {3.2F, 1.0F}, {8.0F, 1.0F}};
  canvas.FillUnder(points, 0.0F, kHalf);
  EXPECT_EQ(PictureText(canvas),
            "          \n"
            "  ::      \n"
            "  ::      \n"
            " :::      \n"
            " :::      \n"
            " :::::::  \n");
}

TEST(RasterCanvasTest, RectanglesAndPicturesEndAtTheEdge) {
  RasterCanvas canvas = PixelCanvas(6, 4);
  canvas.Rectangle({4.0F, 2.0F}, {60.0F, -3.0F}, kHalf);
  canvas.Rectangle({1.0F, 3.4F}, {1.1F, 3.4F}, kWhite);  // narrower than a pixel
  canvas.Rectangle({-9.0F, 0.0F}, {-1.0F, 4.0F}, kWhite);
  const std::vector<std::uint32_t> picture{0xFFFFFFFF, 0xFF808080, 0xFFFFFFFF, 0xFF808080};
  canvas.Image(-1, 3, 2, 2, picture.data());
  EXPECT_EQ(PictureText(canvas), "    ::\n    ::\n      \n:#    \n");
  canvas.Clear(0x0000FF);
  EXPECT_EQ(canvas.At(5, 3), 0xFFFF0000);  // red is in the low byte of a colour, in the high one of a pixel
}

TEST(RasterCanvasTest, WhatLiesFarOutsideOrNowhereDoesNoHarm) {
  constexpr float kInfinite = std::numeric_limits<float>::infinity(), kNone = std::nanf(""), kFar = 3e9F;
  RasterCanvas canvas = PixelCanvas(5, 3);
  const std::vector<CanvasPoint> points{{-kFar, 1.5F}, {kFar, 1.5F}, {kNone, 0.0F}, {2.0F, kInfinite}};
  canvas.Polyline(points, kWhite);
  EXPECT_EQ(PictureText(canvas), "     \n#####\n     \n");
  canvas.FillUnder(points, kNone, kWhite);
  canvas.Line({kNone, 0.0F}, {kFar, kFar}, kWhite);
  canvas.Text({kInfinite, kNone}, "x", kWhite);
  canvas.Text({-kFar, 0.0F}, "x", kWhite);
  canvas.Rectangle({-kFar, -kFar}, {kFar, 0.0F}, kWhite);
  EXPECT_EQ(PictureText(canvas).substr(6), "#####\n     \n");
}

}  // namespace
}  // namespace quorl::test
