#include "config/SettingsTable.h"

#include <gtest/gtest.h>

namespace quorl {
namespace {

TEST(SettingsTable, RowsComeBackAndUnfitTextsLeaveTheValue) {
  std::int32_t whole = 7;
  float number = 0.25F;
  bool flag = true;
  std::string name = "Line In";
  std::uint32_t colour = 0xFFFF00;
  std::int32_t held = 3, heard = 0;
  SettingsTable table("panel");
  table.Add("Whole", whole);
  table.Add("Number", number);
  table.Add("Flag", flag);
  table.Add("Name", name);
  table.AddColour("Colour", colour);
  table.Add<std::int32_t>(
      "Held", [&] { return held; }, [&](std::int32_t value) { heard = value; });
  table.AddWritten("Told", whole);
  SettingsStore store;
  table.Write(store);
  EXPECT_EQ(store.GetSetting("panel", "Number", ""), "0.25");
  EXPECT_EQ(store.GetSetting("panel", "Flag", ""), "True");
  EXPECT_EQ(store.GetSetting("panel", "Colour", ""), "16776960");

  whole = 1;
  number = 0.0F;
  flag = false;
  name.clear();
  colour = 0;
  store.SaveSetting("panel", "Told", "99");
  store.SaveSetting("panel", "Flag", "perhaps");
  table.Read(store);
  EXPECT_EQ(whole, 7);  // what is only written is not read
  EXPECT_EQ(number, 0.25F);
  EXPECT_FALSE(flag);
  EXPECT_EQ(name, "Line In");
  EXPECT_EQ(colour, 0xFFFF00U);
  EXPECT_EQ(heard, 3);
}

TEST(SettingsTable, WhatIsMissingOrUnfitIsHandedToNobody) {
  std::vector<std::string> heard;
  SettingsTable table("panel");
  table.Add<std::int32_t>(
      "Whole", [] { return 3; }, [&](std::int32_t) { heard.push_back("whole"); });
  table.Add<bool>(
      "Flag", [] { return true; }, [&](bool) { heard.push_back("flag"); });
  table.Add<double>(
      "Number", [] { return 0.5; }, [&](double) { heard.push_back("number"); });
  table.Add<std::string>(
      "Name", [] { return std::string(); }, [&](const std::string&) { heard.push_back("name"); });
  SettingsStore store;
  table.Read(store);
  EXPECT_TRUE(heard.empty());
  for (const char* key : {"Whole", "Flag", "Number"}) store.SaveSetting("panel", key, "perhaps");
  table.Read(store);
  EXPECT_TRUE(heard.empty());
  for (const char* key : {"Whole", "Flag", "Number", "Name"}) store.SaveSetting("panel", key, "0");
  table.Read(store);
  EXPECT_EQ(heard, (std::vector<std::string>{"whole", "flag", "number", "name"}));
}

}  // namespace
}  // namespace quorl
