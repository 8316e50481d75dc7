#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include "support/CheckedMath.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();

TEST(CheckedMath, ResultsThatFitAreExactAndOthersAreEmpty) {
  EXPECT_EQ(Add(kMax - 1, 1), kMax);
  EXPECT_FALSE(Add(kMax, 1));
  EXPECT_EQ(Subtract(kMin + 1, 1), kMin);
  EXPECT_FALSE(Subtract(kMin, 1));
  EXPECT_EQ(Multiply(-214748364, 10), -2147483640);
  EXPECT_FALSE(Multiply(214748365, 10));
  EXPECT_FALSE(Multiply(kMin, kMin));
  EXPECT_EQ(Absolute(-5), 5);
  EXPECT_FALSE(Absolute(kMin));
  EXPECT_FALSE(Multiply(Add(kMax, 1), 0)) << "an overflow stays one";
}

TEST(CheckedMath, DivisionGoesDown) {
  EXPECT_EQ(DivideDown(19, 10), 1);
  EXPECT_EQ(DivideDown(-19, 10), -2);
  EXPECT_EQ(DivideDown(-20, 10), -2);
  EXPECT_FALSE(DivideDown(1, 0));
  EXPECT_FALSE(DivideDown(kMin, -1));
}

TEST(CheckedMath, RealNumbersRoundHalvesToEven) {
  EXPECT_EQ(ToInt32(0.5), 0);
  EXPECT_EQ(ToInt32(1.5), 2);
  EXPECT_EQ(ToInt32(-2.5), -2);
  EXPECT_EQ(ToInt32(2147483647.4), kMax);
  EXPECT_FALSE(ToInt32(2147483647.5));
  EXPECT_EQ(ToInt32(-2147483648.5), kMin);
  EXPECT_FALSE(ToInt32(std::nan("")));
}

TEST(Text, NumbersAreReadAsAWhole) {
  EXPECT_EQ(ParseInt32(" 42 "), 42);
  EXPECT_EQ(ParseInt32("+7"), 7);
  EXPECT_EQ(ParseInt32("2.5"), 2);
  EXPECT_EQ(ParseDouble("-1.5e3"), -1500.0);
  for (const char* none : {"", "  ", "12x", "1,000", "0x10", "nan", "inf", "+-3", "1e999", "- 3"}) {
    EXPECT_FALSE(ParseDouble(none)) << none;
  }
  EXPECT_FALSE(ParseInt32("2147483648"));
  EXPECT_EQ(ParseTyped(" 50 000 000.5\t"), 50000000.5);
  EXPECT_FALSE(ParseTyped("5 x"));
  EXPECT_FALSE(ParseTyped("   "));
}

TEST(Text, BooleansAreWordsOrNumbers) {
  EXPECT_EQ(ParseFlag("True"), true);
  EXPECT_EQ(ParseFlag("FALSE"), false);
  EXPECT_EQ(ParseFlag("0"), false);
  EXPECT_EQ(ParseFlag("-1"), true);
  EXPECT_FALSE(ParseFlag("yes"));
  EXPECT_FALSE(ParseFlag(""));
}

TEST(Text, PlainDecimalTextReadsBackTheSameNumber) {
  EXPECT_EQ(NumberText(36009600.0), "36009600");
  EXPECT_EQ(NumberText(1.0 / 230400), "0.000004340277777777778");
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> exponent(-300, 300);
  for (int i = 0; i < 1000; ++i) {
    const double value = std::pow(10, exponent(random)) * (i % 2 == 0 ? 1 : -1);
    const auto text = NumberText(value);
    ASSERT_EQ(ParseDouble(text), value) << text;
    ASSERT_EQ(text.find_first_of("eE"), std::string::npos) << text;
  }
}

TEST(Text, CaseAndBlanks) {
  EXPECT_TRUE(EqualsNoCase("CLKIn", "ClkIn"));
  EXPECT_FALSE(EqualsNoCase("ClkIn", "ClkI"));
  EXPECT_TRUE(EndsWithNoCase("Europe.BPL", ".bpl"));
  EXPECT_FALSE(EndsWithNoCase("l", ".bpl"));
  EXPECT_EQ(Trim(" \t a b \t"), "a b");
  EXPECT_EQ(Trim(" \t"), "");
}

}  // namespace
}  // namespace quorl
