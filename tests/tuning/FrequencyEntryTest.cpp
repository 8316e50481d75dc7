// Frequencies typed outright.
#include "tuning/FrequencyEntry.h"

#include <gtest/gtest.h>

#include "controls/ControlRegistry.h"
#include "tuning/FrequencyText.h"
#include "tuning/TuningChain.h"
#include "tuning/TuningRig.h"

namespace quorl {
namespace {

TEST(FrequencyText, UnitsAsPeopleWriteThem) {
  struct Row {
    const char* Text;
    double Hertz;
  };
  for (const Row& row :
       {Row{"7205", 7205e3}, Row{" 7205.5 ", 7205.5e3}, Row{"7.205M", 7.205e6}, Row{"7.205 MHz", 7.205e6},
        Row{"7205000Hz", 7205e3}, Row{"7205 k", 7205e3}, Row{"7205KHZ", 7205e3}, Row{"0", 0.0}}) {
    const auto hertz = ParseFrequency(row.Text);
    ASSERT_TRUE(hertz) << row.Text;
    EXPECT_NEAR(*hertz, row.Hertz, 1e-3) << row.Text;
  }
  for (const char* text :
       {"", "M", "Hz", "7,205", "-7205", "7205G", "72 05", "7.2.5", "nan", "inf", "seven"}) {
    EXPECT_FALSE(ParseFrequency(text)) << text;
  }
}

struct FrequencyEntryTest : testing::Test, TuningRig {
  FrequencyEntryTest() {
    Settings.SaveSetting("DDSAD9951", "ClkIn", "360096000");
    chain.CreateVFO(0, InterfaceType::Parallel);
    entry.SetTuner(&chain.Tune());
  }
  void Type(const std::string& text) {
    for (const char key : text) {
      if (!entry.IsOpen()) {
        ASSERT_TRUE(entry.Open({key, {}}));
      } else {
        entry.TypeKey({key, {}});
      }
    }
  }
  std::int32_t Tuned() { return chain.Tune().Wanted(); }

  ControlRegistry registry;
  TuningChain chain{{Serial, Printer, Queue, Boxes, Settings}, [](const std::string&) {}};
  FrequencyEntry entry{registry};
};

TEST_F(FrequencyEntryTest, ADigitOpensEnterTunesEscapeLeaves) {
  EXPECT_FALSE(entry.IsOpen());
  for (const Key& key :
       {Key{'M', {}}, Key{Key::Up, {}}, Key{'7', {.Ctrl = true}}, Key{'7', {.Shift = true}}}) {
    EXPECT_FALSE(entry.Open(key));
  }
  Type("9415");
  entry.TypeKey({Key::Backspace, {}});
  Type("0");
  entry.TypeKey({Key::Enter, {}});
  EXPECT_EQ(Tuned(), 94100000);
  EXPECT_FALSE(entry.IsOpen());
  Type("5");
  EXPECT_EQ(entry.txtFrequency.Value(), "5");  // nothing of the last one
  entry.TypeKey({Key::Escape, {}});
  EXPECT_FALSE(entry.IsOpen());
  Type("7");
  entry.txtFrequency.UserSet("7.205M");  // as a field with the keyboard does
  entry.txtFrequency.KeyDown({Key::Enter, {}});
  EXPECT_EQ(Tuned(), 72050000);
  Type("7");
  entry.txtFrequency.LostFocus();
  EXPECT_FALSE(entry.IsOpen());
  EXPECT_EQ(Tuned(), 72050000);
}

TEST_F(FrequencyEntryTest, WhatCannotBeTunedStaysInRedWithItsReason) {
  const std::int32_t before = Tuned();
  Type("7M7");
  entry.TypeKey({Key::Enter, {}});
  EXPECT_TRUE(entry.IsOpen());
  EXPECT_EQ(entry.txtFrequency.ForeColour(), 0x0000FFU);
  EXPECT_NE(entry.txtFrequency.ToolTip().find("no frequency"), std::string::npos);
  entry.TypeKey({Key::Backspace, {}});
  EXPECT_EQ(entry.txtFrequency.ForeColour(), kNoColour);
  entry.txtFrequency.UserSet("999M");
  entry.TypeKey({Key::Enter, {}});
  EXPECT_EQ(entry.txtFrequency.ForeColour(), 0x0000FFU);
  EXPECT_NE(entry.txtFrequency.ToolTip().find("as far as DDS clock and IF go"), std::string::npos);
  EXPECT_EQ(Tuned(), before);
  entry.txtFrequency.UserSet("1e9");
  entry.TypeKey({Key::Enter, {}});
  EXPECT_TRUE(entry.IsOpen());
  entry.SetTuner(nullptr);
  EXPECT_FALSE(entry.IsOpen());
  EXPECT_FALSE(entry.Open({'7', {}}));
}

}  // namespace
}  // namespace quorl
