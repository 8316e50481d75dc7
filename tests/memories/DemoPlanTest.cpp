// The plan of the demo and the stations of its simulated band: neither knows one that the other doesn't.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>
#include <string>

#include "memories/modBandPlan.h"
#include "sim/StationsFile.h"

namespace quorl {
namespace {

constexpr double kNear = 2.0;  // kHz: a sideband's or a Morse signal's dial stands beside it

std::string Content(const std::string& path) {
  std::ifstream file(QUORL_SOURCE_DIR "/data/" + path, std::ios::binary);
  std::stringstream content;
  content << file.rdbuf();
  return content.str();
}

std::string FirstWord(const std::string& text) {
  return text.substr(0, text.find_first_of(" ,"));
}

TEST(DemoPlan, EachStationHasItsPresetAndEachPresetItsStation) {
  BandDefinition band;
  ASSERT_FALSE(ParseStations(Content("demo/stations.ini"), "stations.ini", band));
  BandPlan plan;
  CreateBandPlanRecords(plan, "");
  clsINIFile file;
  file.init(Content("bandplans/Demo.bpl"));
  ReadBandPlan(file, plan, [] {});

  const auto fits = [](const StationDefinition& station, const Preset& preset) {
    return std::abs(station.FrequencyKhz - preset.Settings.FreqCurrent / 1000.0) <= kNear &&
           FirstWord(station.Name) == FirstWord(preset.Description);
  };
  std::vector<const Preset*> presets;
  for (const SubBand& each : plan.SubBands) {
    for (const Preset& preset : each.Presets) {
      if (preset.Settings.FreqCurrent > 0) presets.push_back(&preset);
    }
  }
  ASSERT_GT(presets.size(), 30U);
  for (const Preset* preset : presets) {
    EXPECT_TRUE(std::any_of(band.Stations.begin(), band.Stations.end(),
                            [&](const StationDefinition& station) { return fits(station, *preset); }))
        << preset->Description;
  }
  for (const StationDefinition& station : band.Stations) {
    EXPECT_TRUE(std::any_of(presets.begin(), presets.end(), [&](const Preset* preset) {
      return fits(station, *preset);
    })) << station.Name;
  }
}

}  // namespace
}  // namespace quorl
