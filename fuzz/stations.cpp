// Any text at all as a stations file: a band within its limits, or one line that tells what to write.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Demand.h"
#include "sim/StationsFile.h"

using quorl::fuzz::Demand;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  quorl::BandDefinition band;
  if (const quorl::Failure failure = quorl::ParseStations(text, "stations.ini", band)) {
    quorl::fuzz::DemandOneLine(failure);
    Demand(band.Stations.empty());
    return 0;
  }
  for (const quorl::StationDefinition& station : band.Stations) {
    Demand(station.FrequencyKhz >= 1.0 && station.FrequencyKhz <= 200000.0);
    Demand(station.LevelDbm >= -160.0 && station.LevelDbm <= 0.0);
    for (const quorl::ProgrammeItem& item : station.Programme) {
      const bool speaks = item.Kind == quorl::ProgrammeItemKind::Speech;
      Demand(speaks ? !item.Clip.empty() : item.Seconds >= 0.01 && item.Seconds <= 600.0);
    }
  }
  return 0;
}
