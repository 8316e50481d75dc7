#include "support/NumberPicture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace quorl {
namespace {

struct Case {
  double Value;
  const char* Picture;
  const char* Text;
};

void Check(std::initializer_list<Case> cases) {
  for (const Case& each : cases) {
    EXPECT_EQ(FormatPicture(each.Value, each.Picture), each.Text) << each.Value << " in " << each.Picture;
  }
}

TEST(Picture, MandatoryPlacesPadAndLongNumbersGrow) {
  Check({{70500000, "000000000", "070500000"},
         {2147483647, "000000000", "2147483647"},
         {0, "#0", "0"},
         {7, "#0", "7"},
         {1234, "#0", "1234"},
         {0, "#", ""},
         {9, "#", "9"},
         {5, "+#", "+5"},
         {0.25, "0.0", "0.3"},
         {5, "#.##", "5."},
         {5.25, "#.##", "5.25"},
         {0.5, "#.0", ".5"}});
}

TEST(Picture, LiteralsStandWhereTheyAre) {
  Check({{45705000, "#0 000 000 Hz", "45 705 000 Hz"},
         {123456789, "#0 000 000", "123 456 789"},
         {5, "#0 000 000 Hz", "0 000 005 Hz"},
         {2, "0.0 kHz", "2.0 kHz"},
         {-3.25, "#0.0 dB", "-3.3 dB"},
         {0.756, "#0%", "76%"}});
}

TEST(Picture, CommaGroupsByThree) {
  Check({{1234567, "#,##0 Hz", "1,234,567 Hz"},
         {999, "#,##0", "999"},
         {0, "#,##0", "0"},
         {0, "#,###", ""},
         {1000, "#,###0 Hz", "1,000 Hz"},
         {50, "#,###0 Hz", "50 Hz"},
         {32767, "##,##0  ", "32,767  "},
         {-1234.5, "###,##0 dB", "-1,235 dB"},
         {42.66667, "#,##0.000 ms", "42.667 ms"},
         {12, "0,000", "0,012"}});
}

TEST(Picture, HalvesGoAwayFromZeroInTheDecimalNumber) {
  Check({{0.5, "#0", "1"},
         {1.5, "#0", "2"},
         {2.5, "#0", "3"},
         {-2.5, "#0", "-3"},
         {2.675, "#0.00", "2.68"},  // 2.67499999999999982 in binary
         {1.005, "#0.00", "1.01"},
         {999.9995, "#,##0.000 ms", "1,000.000 ms"},
         {0.0004, "#0.00", "0.00"},
         {-0.001, "#0.00 dB", "0.00 dB"},
         {1e-300, "#0.0", "0.0"},
         {9.9999, "#0.0", "10.0"}});
}

TEST(Picture, WhatIsNoNumberSaysSo) {
  const double infinity = std::numeric_limits<double>::infinity();
  Check({{std::nan(""), "#0", "NaN"}, {infinity, "#0", "Inf"}, {-infinity, "#0.0 dB", "-Inf"}});
}

}  // namespace
}  // namespace quorl
