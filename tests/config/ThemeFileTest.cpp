#include "config/ThemeFile.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "platform/virtual/VirtualFiles.h"

namespace quorl {
namespace {

constexpr char kTheme[] = "/themes/mine.thm";

ThemeColours Numbered() {
  ThemeColours colours;
  for (std::size_t i = 0; i < kSwatchCount; ++i)
    colours[static_cast<Swatch>(i)] = static_cast<Colour>(0x10203 * i);
  return colours;
}

std::string ThemeOf(const std::string& keys) {
  return "[active]\r\nNAME=Sepia\r\n[Other]\r\nshpSDRLabelColour=9\r\n[sepia]\r\n" + keys;
}

TEST(ThemeFile, WhatIsWrittenIsReadUnderFifteenKeys) {
  VirtualFiles files;
  files.Put(kTheme, "; mine\r\n[Active]\r\nName=Old\r\n[Old]\r\nshpSDRLabelColour=9\r\n");
  const ThemeColours colours = Numbered();
  ASSERT_FALSE(SaveTheme(files, kTheme, colours));
  Failure failure;
  const std::string text = files.Read(kTheme, failure).value();
  EXPECT_EQ(text.substr(0, text.find("shpSDRFrameFocusColour")),
            "; mine\r\n[Active]\r\nName=SDRColours\r\n[Old]\r\nshpSDRLabelColour=9\r\n[SDRColours]\r\n"
            "shpSDRBackGroundColour=0\r\n");
  EXPECT_NE(text.find("\r\nshpScopeYTextColour=924714\r\n"), std::string::npos);
  const ThemeContent read = ReadTheme(text, {});
  EXPECT_TRUE(read.HasActive);
  EXPECT_TRUE(read.Colours.SameTheme(colours));
  EXPECT_TRUE(read.Missing.empty() && read.Unfit.empty());
  EXPECT_EQ(ThemeFault(read, kTheme), "");
  EXPECT_EQ(read.Colours[Swatch::ControlNormal], colours[Swatch::NormalScrollLabel]) << "no key of its own";
  EXPECT_EQ(read.Colours[Swatch::ControlFocused], colours[Swatch::FocusScrollLabel]);
}

TEST(ThemeFile, WhatIsMissingOrNoColourStaysAndIsNamed) {
  const ThemeColours before = Numbered();
  const ThemeContent read =
      ReadTheme(ThemeOf("SHPSDRLABELCOLOUR= 255 \r\nshpSDRTuningColour=red\r\nshpScopeY1Colour=16777216\r\n"
                        "shpScopeY2Colour=-1\r\nshpScopeXTextColour=\r\nshpScopeBackColour=16777215\r\n"),
                before);
  ThemeColours expected = before;
  expected[Swatch::Label] = 255;
  expected[Swatch::ScopeBack] = 0xFFFFFF;
  EXPECT_TRUE(read.Colours.SameTheme(expected));
  EXPECT_EQ(read.Unfit, (std::vector<std::string>{"shpSDRTuningColour", "shpScopeY1Colour",
                                                  "shpScopeY2Colour", "shpScopeXTextColour"}));
  EXPECT_EQ(read.Missing.size(), 9U);
  const std::string fault = ThemeFault(read, kTheme);
  for (const char* part : {kTheme, "shpSDRTuningColour", "shpScopeXTextColour", "shpScopeYTextColour"})
    EXPECT_NE(fault.find(part), std::string::npos) << part;
  EXPECT_EQ(fault.find("shpSDRLabelColour"), std::string::npos);
}

TEST(ThemeFile, WithoutTheNameOfItsSectionItChangesNothing) {
  const ThemeColours before = Numbered();
  for (const char* text :
       {"", "[SDRColours]\r\nshpSDRLabelColour=255\r\n", "[Active]\r\nName=\r\n", "\0\xff[["}) {
    const ThemeContent read = ReadTheme(text, before);
    EXPECT_FALSE(read.HasActive) << text;
    EXPECT_EQ(read.Colours, before) << text;
    EXPECT_NE(ThemeFault(read, kTheme).find(kTheme), std::string::npos);
  }
  EXPECT_EQ(ReadTheme("[Active]\r\nName=Nowhere\r\n", before).Colours, before);
}

TEST(ThemeFile, NightIsWhatTheRadioComesWith) {
  std::ifstream file(QUORL_SOURCE_DIR "/data/themes/Night.thm", std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  ThemeColours panel;
  TakePanelColours(ColourSchemes(), panel);
  const ThemeContent night = ReadTheme(text.str(), {});
  EXPECT_EQ(ThemeFault(night, "Night"), "");
  for (std::size_t i = 0; i < kFirstScopeSwatch; ++i)
    EXPECT_EQ(night.Colours[static_cast<Swatch>(i)], panel[static_cast<Swatch>(i)]) << kSwatchNames[i].Key;
}

}  // namespace
}  // namespace quorl
