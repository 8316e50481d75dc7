#include "display/waterfall/Waterfall.h"

#include <gtest/gtest.h>

#include <vector>

#include "display/canvas/RasterCanvas.h"

namespace quorl::test {
namespace {

constexpr std::int64_t kBlock = 42667;
constexpr std::int64_t kNoon = 1704110400LL * 1000000;  // 2024-01-01 12:00:00 UTC
constexpr double kHertz = 23.4375;
constexpr int kWidth = 256, kHeight = 40;
constexpr std::uint32_t kQuiet = 0xFF000000, kLoud = 0xFFFFFFFF;

// A waterfall on a small canvas, white for full scale and black from -40 dB on.
class WaterfallTest : public testing::Test {
 protected:
  WaterfallTest() {
    options_.On = true;
    options_.Colours = Palette::Grey;
    options_.Floor = -40;
    picture_.SetOptions(options_);
  }

  static FrequencyScale Scale(std::int32_t offset, int start = 0, int stop = 1024) {
    return {kHertz, offset, start, stop, true};
  }

  // A block with a tone of `level` times full scale in element `element` of the transform.
  void Add(int element, std::int32_t offset = 7000000, bool ascending = true, float level = 1.0F,
           std::size_t bins = 1024) {
    std::vector<float> magnitudes(bins, 0.0F);
    magnitudes[static_cast<std::size_t>(element)] = level * 32768.0F * static_cast<float>(bins);
    SpectrumLine line{magnitudes, Scale(offset, 0, static_cast<int>(bins)), ascending};
    picture_.Add(line, time_);
    time_ += kBlock;
  }

  void Draw(const FrequencyScale& scale) { picture_.Draw(canvas_, scale); }
  // The loudest column of a row of pixels, -1 where all are quiet.
  int Loudest(int y) const {
    int column = -1;
    std::uint32_t most = kQuiet;
    for (int x = 0; x < canvas_.DeviceWidth(); ++x) {
      if (canvas_.At(x, y) > most) most = canvas_.At(column = x, y);
    }
    return column;
  }
  const WaterfallHistory& History() const { return picture_.History(); }

  WaterfallOptions options_;
  Waterfall picture_;
  RasterCanvas canvas_{kWidth, kHeight};
  std::int64_t time_ = kNoon;
};

TEST_F(WaterfallTest, AStationsTrackStaysUnderItsPlaceWhenOneTunes) {
  // A station on 7.012 MHz, 512 bins above the band's lower edge; then the band moves up by 64 bins, later
  // down again by 160: the station's bin moves the other way, its place in the picture doesn't.
  for (const int up : {0, 0, 64, 64, -96}) {
    Add(512 - up, 7000000 + static_cast<int>(up * kHertz));
    Draw(Scale(7000000 + static_cast<int>(up * kHertz)));
  }
  for (int row = 0; row < 5; ++row) EXPECT_EQ(Loudest(row), (512 + 96) / 4) << row;
  // Zoomed to 64 bins about the station it is as wide as a bin, with its middle in the middle.
  Draw(Scale(7000000, 512 - 32, 512 + 32));
  for (int row = 0; row < 5; ++row) {
    EXPECT_EQ(canvas_.At(128 - 3, row), kQuiet);
    EXPECT_EQ(canvas_.At(128 - 2, row), kLoud);
    EXPECT_EQ(canvas_.At(128 + 1, row), kLoud);
    EXPECT_EQ(canvas_.At(128 + 2, row), kQuiet);
  }
}

TEST_F(WaterfallTest, MirroredLineStandsAtItsFrequency) {
  Add(300, 7000000, false);
  Draw(Scale(7000000, 0, 256));
  EXPECT_EQ(Loudest(0), -1);
  Draw(Scale(7000000, 1024 - 300 - 128, 1024 - 300 + 128));  // a bin a column
  EXPECT_EQ(Loudest(0), 127);
  EXPECT_EQ(canvas_.At(128, 0), kQuiet);
  // The lowest place would be the element beyond the last, for which the last stands.
  Add(1023, 7000000, false);
  Draw(Scale(7000000, 0, 128));  // two columns a bin, and only half of the first one is seen
  for (int x = 0; x < 3; ++x) EXPECT_EQ(canvas_.At(x, 0), kLoud) << x;
  EXPECT_EQ(canvas_.At(3, 0), kQuiet);
}

TEST_F(WaterfallTest, LevelsAreHalfDecibelsBelowAFullScaleSineOnOneSideOrTwo) {
  const std::vector<std::pair<float, int>> levels{{1.0F, 0},  {2.0F, 0},    {0.5F, 12},
                                                  {0.1F, 40}, {1e-5F, 200}, {0.0F, 255}};
  for (const std::size_t bins : {1024U, 2048U}) {
    for (const auto& [level, expected] : levels) {
      Add(100, 7000000, true, level, bins);
      const WaterfallHistory::Line line = History().At(History().End() - 1);
      ASSERT_EQ(line.Levels.size(), bins);
      EXPECT_EQ(line.Levels[100], expected) << level;
      EXPECT_EQ(line.Levels[101], 255);
    }
  }
  // 2048 bins on 256 columns: the loudest of eight is seen.
  Add(1603, 6988000, true, 1.0F, 2048);
  Draw({kHertz, 6988000, 0, 2048, true});
  EXPECT_EQ(Loudest(0), 1603 / 8);
}

TEST_F(WaterfallTest, ALineHoldsTheHighestOfItsBlocks) {
  options_.BlocksPerLine = 4;
  picture_.SetOptions(options_);
  Add(100, 7000000, true, 0.5F);
  Add(200);
  Add(100);
  EXPECT_EQ(History().Count(), 0);
  // Tuned up by ten bins in the middle of the line, what there is moves along.
  Add(390, 7000000 + 234);
  ASSERT_EQ(History().Count(), 1);
  const WaterfallHistory::Line line = History().At(0);
  EXPECT_EQ(line.Lowest, 7000234.0);
  EXPECT_EQ(line.Time, time_ - kBlock);
  for (const std::size_t bin : {90U, 190U, 390U}) EXPECT_EQ(line.Levels[bin], 0) << bin;
  for (const std::size_t bin : {100U, 200U, 380U}) EXPECT_EQ(line.Levels[bin], 255) << bin;
}

TEST_F(WaterfallTest, TenMinutesAreKeptAndTheOldestMakeRoom) {
  for (std::int64_t block = 0; block < WaterfallHistory::kLines + 100; ++block)
    Add(static_cast<int>(block % 1024));
  EXPECT_EQ(History().Count(), WaterfallHistory::kLines);
  EXPECT_EQ(History().Oldest(), 100);
  for (const std::int64_t number : {100LL, 7000LL, 14162LL}) {
    const WaterfallHistory::Line line = History().At(number);
    EXPECT_EQ(line.Levels[static_cast<std::size_t>(number % 1024)], 0) << number;
    EXPECT_EQ(line.Time, kNoon + number * kBlock);
  }
  // Lines of twice as many bins take the place of the oldest, two each, until only they are left.
  for (int block = 0; block < 1000; ++block) Add(block, 7000000, true, 1.0F, 2048);
  EXPECT_EQ(History().Count(), WaterfallHistory::kLines - 1000);
  EXPECT_EQ(History().At(History().Oldest()).Levels.size(), 1024U);
  for (int block = 0; block < 7031; ++block) Add(block % 2048, 7000000, true, 1.0F, 2048);
  EXPECT_EQ(History().Count(), 7031);
  for (std::int64_t number = History().Oldest(), block = 0; number < History().End(); ++number, ++block) {
    ASSERT_EQ(History().At(number).Levels[static_cast<std::size_t>(block % 2048)], 0) << block;
  }
}

TEST_F(WaterfallTest, OnlyWhatComesIntoSightIsComputed) {
  WaterfallPainter painter;
  WaterfallView view{Scale(7000000), 0, -40, Palette::Grey, 2, kWidth, kHeight};
  for (int block = 0; block < 60; ++block) Add(4 * block);
  const auto expectAll = [&](std::int64_t top) {
    painter.Paint(canvas_);
    for (int y = 0; y < kHeight; ++y) EXPECT_EQ(Loudest(y), top - y / 2) << y;
  };
  painter.Prepare(History(), view, 30);
  EXPECT_EQ(painter.Computed(), 20);
  expectAll(30);
  for (const auto& [top, computed] : {std::pair{31, 1}, {31, 0}, {48, 17}, {40, 8}, {59, 19}, {25, 20}}) {
    painter.Prepare(History(), view, top);
    EXPECT_EQ(painter.Computed(), computed) << top;
    expectAll(top);
  }
  view.Floor = -80;
  painter.Prepare(History(), view, 25);
  EXPECT_EQ(painter.Computed(), 20);
}

TEST_F(WaterfallTest, AFrozenTimeShowsAsAGap) {
  for (int block = 0; block < 3; ++block) Add(512);
  const std::int64_t frozen = time_;
  time_ += 300 * 1000000LL;
  for (int block = 0; block < 2; ++block) Add(512);
  EXPECT_EQ(History().Count(), 3 + WaterfallHistory::kMostGapLines + 2);
  Draw(Scale(7000000));
  EXPECT_EQ(Loudest(1), 128);
  EXPECT_EQ(Loudest(2 + WaterfallHistory::kMostGapLines), 128);
  for (int row = 2; row < 2 + WaterfallHistory::kMostGapLines; ++row) {
    bool hatched = false;
    for (int x = 0; x < kWidth; ++x) {
      EXPECT_TRUE(canvas_.At(x, row) == WaterfallPainter::kGround ||
                  canvas_.At(x, row) == WaterfallPainter::kHatch);
      hatched |= canvas_.At(x, row) == WaterfallPainter::kHatch;
    }
    EXPECT_TRUE(hatched) << row;
  }
  const std::optional<std::int64_t> inside = picture_.TimeAt(8.0 / kHeight);
  ASSERT_TRUE(inside);
  EXPECT_GT(*inside, frozen);
  EXPECT_LT(*inside, frozen + 300 * 1000000LL);
  EXPECT_FALSE(picture_.LevelAt(8.0 / kHeight, 7012000.0));
}

TEST_F(WaterfallTest, ScrolledBackThePictureStandsStill) {
  for (int block = 0; block < 100; ++block) Add(4 * block);
  Draw(Scale(7000000));
  EXPECT_EQ(picture_.Rows(), kHeight);
  picture_.ScrollBack(25);
  for (int block = 100; block < 110; ++block) Add(4 * block);
  Draw(Scale(7000000));
  EXPECT_EQ(Loudest(0), 74);
  EXPECT_EQ(picture_.LinesBack(), 35);
  EXPECT_EQ(picture_.TimeAt(0.0), kNoon + 74 * kBlock);
  EXPECT_EQ(picture_.TimeAt(1.0), kNoon + 35 * kBlock);
  EXPECT_FALSE(picture_.TimeAt(1.2));
  EXPECT_EQ(picture_.LevelAt(0.0, 7000000 + 4 * 74 * kHertz), 0.0F);
  // As far as there are lines, and no further; then all the way to the present, which it follows again.
  picture_.ScrollBack(1000);
  Draw(Scale(7000000));
  EXPECT_EQ(Loudest(kHeight - 1), 0);
  picture_.ScrollBack(-1000);
  Add(4 * 110);
  Draw(Scale(7000000));
  EXPECT_EQ(Loudest(0), 110);
}

TEST_F(WaterfallTest, MarksAreAlignedToTheClockAndTravelWithTheirLines) {
  canvas_ = RasterCanvas(kWidth, 400);
  time_ = kNoon + 7 * 1000000;
  options_.MarkSeconds = 15;
  picture_.SetOptions(options_);
  // Where the tick of the mark stands: only marks are white at the left edge.
  const auto tick = [&](int from) {
    for (int y = from; y < 400; ++y) {
      if (canvas_.At(0, y) == kLoud) return y;
    }
    return -1;
  };
  for (int block = 0; block < 189; ++block) Add(512);  // the last comes 15 s into the minute
  Draw(Scale(7000000));
  EXPECT_EQ(tick(0), 0);
  for (int block = 0; block < 40; ++block) Add(512);
  Draw(Scale(7000000));
  EXPECT_EQ(tick(0), 40);
  EXPECT_EQ(tick(41), -1);
  EXPECT_EQ(UtcText(*picture_.TimeAt(40.5 / 400)), "12:00:15");
  // The text is white, its plate dark, also where the whole picture is as bright as can be.
  options_.Top = options_.Floor = -300;
  picture_.SetOptions(options_);
  Draw(Scale(7000000));
  int white = 0;
  for (int x = 9; x < 50; ++x) {
    white += canvas_.At(x, 40) == kLoud;
    EXPECT_TRUE(canvas_.At(x, 40) == kLoud || (canvas_.At(x, 40) & 0xFF) < 0x60);
  }
  EXPECT_GT(white, 3);
}

TEST_F(WaterfallTest, SwitchedOffItRemembersAndPaintsNothing) {
  Waterfall off;
  const std::vector<float> magnitudes(1024, 1e6F);
  off.Add({magnitudes, Scale(0), true}, kNoon);
  EXPECT_FALSE(off.History().IsStarted());
  EXPECT_EQ(off.History().Count(), 0);
  canvas_.Clear(0x123456);
  off.Draw(canvas_, Scale(0));
  EXPECT_EQ(canvas_.At(0, 0), 0xFF563412);
}

TEST(PaletteTest, RunsFromQuietToLoudThroughItsKnownColours) {
  struct Anchor {
    Palette Colours;
    double Place;
    std::uint32_t Pixel;
  };
  const std::vector<Anchor> anchors{{Palette::Viridis, 0.0, 0x440154},  {Palette::Viridis, 0.25, 0x3B528B},
                                    {Palette::Viridis, 0.5, 0x21918C},  {Palette::Viridis, 0.75, 0x5EC962},
                                    {Palette::Viridis, 1.0, 0xFDE725},  {Palette::Inferno, 0.0, 0x000004},
                                    {Palette::Inferno, 0.25, 0x57106E}, {Palette::Inferno, 0.5, 0xBC3754},
                                    {Palette::Inferno, 0.75, 0xF98E09}, {Palette::Inferno, 1.0, 0xFCFFA4},
                                    {Palette::Grey, 0.5, 0x808080}};
  for (const Anchor& anchor : anchors) {
    const std::uint32_t pixel = PaletteColour(anchor.Colours, anchor.Place);
    for (const int shift : {0, 8, 16}) {
      EXPECT_NEAR(static_cast<int>(pixel >> shift & 0xFF), static_cast<int>(anchor.Pixel >> shift & 0xFF), 6)
          << std::hex << pixel << " for " << anchor.Pixel;
    }
  }
  EXPECT_EQ(PaletteColour(Palette::Grey, 7.0), kLoud);
  EXPECT_EQ(PaletteColour(Palette::Grey, -7.0), kQuiet);
}

}  // namespace
}  // namespace quorl::test
