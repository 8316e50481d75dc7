// What the receiver keeps in the settings.
#include "receiver/Receiver.h"

namespace quorl {

namespace {

void AddIFFilterSettings(SettingsTable& table, PublicVars& vars) {
  for (std::int32_t mode = 0; mode < DemodMode::Count; ++mode) {
    for (std::int32_t filter = 0; filter < IFFilterMode::Count; ++filter) {
      const FilterSettingsRecord& record =
          vars.IFFilterSettings[static_cast<std::size_t>(filter)][static_cast<std::size_t>(mode)];
      const std::string key =
          "IFFilterSettings(" + std::to_string(mode) + ").FilterSettings(" + std::to_string(filter) + ").";
      table.AddWritten(key + "CurrentHi", record.CurrentHi);
      table.AddWritten(key + "CurrentLo", record.CurrentLo);
    }
  }
}

}  // namespace

void Receiver::AddSettings(SettingsTable& table, SettingsTable& early) {
  early.Add("SDRModelNo", Vars.SDRModelNo);
  table.Add("CurrentMainBandIndex", Vars.CurrentMainBandIndex);
  table.Add("UseSPL", Settings.UseSPL);
  table.Add("DRM.MuteAFOnDRM", MuteAFOnDRM);
  table.AddWritten("AGCON", Vars.AGCON);
  table.AddWritten("AGCMode", Vars.AGCMode);
  table.AddWritten("OutputAttenuation", Vars.OutputAttenuation);
  table.AddWritten("CurrentFilterMode", Vars.CurrentFilterMode);
  table.AddWritten("CurrentDemodMode", Vars.CurrentDemodMode);
  table.AddWritten("MusicMode", Vars.MusicMode);
  table.AddWritten("AGCDelayTime", Vars.AGCDelayTime);
  table.AddWritten("AGCSmoothTime", Vars.AGCSmoothTime);
  table.AddWritten("FilterHi", Vars.FilterHi);
  table.AddWritten("FilterLo", Vars.FilterLo);
  table.AddWritten("NotchType", Vars.NotchType);
  table.AddWritten("NotchMode", Vars.NotchMode);
  table.AddWritten("NotchActive", Vars.NotchActive);
  table.AddWritten("NotchMirror", Vars.NotchMirror);
  table.AddWritten("NBOn", Vars.NBOn);
  table.AddWritten("IFFilterActive", Vars.IFFilterActive);
  table.AddWritten("CurrentIFFilterMode", Vars.CurrentIFFilterMode);
  AddIFFilterSettings(table, Vars);
}

}  // namespace quorl
