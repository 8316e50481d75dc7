// Any text at all as a settings file: what is saved after a change reads back the same, and no line is lost.
#include <cstddef>
#include <cstdint>
#include <string>

#include "Demand.h"
#include "config/SettingsStore.h"
#include "support/IniReader.h"

using quorl::fuzz::Demand;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  quorl::SettingsStore store, again;
  store.Parse(text);
  store.SaveSetting("VFO", "TunedFrequency", "72050000");
  const std::string saved = store.Serialise();
  quorl::IniReader lines(text);
  while (const auto line = lines.Next()) {
    if (line->Kind == quorl::IniKind::Broken) Demand(saved.find(line->Text) != std::string::npos);
  }
  again.Parse(saved);
  Demand(again.GetSetting("vfo", "tunedfrequency", "") == "72050000");
  Demand(again.Serialise() == saved);
  double number = 0.25;
  again.Read("VFO", "WaitTime", number);
  std::int32_t whole = 0;
  again.Read("DDSSerialIF", "PortNo", whole);
  return 0;
}
