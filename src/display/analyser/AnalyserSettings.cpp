#include "display/analyser/AnalyserSettings.h"

#include <algorithm>
#include <string>

#include "config/SettingsTable.h"

namespace quorl {

namespace {

constexpr char kSection[] = "SpectrumAnalyser";

struct Flag {
  const char* Key;
  bool AnalyserSettings::*Field;
};
constexpr Flag kFlags[] = {
    {"Active", &AnalyserSettings::Active},
    {"SmoothSpectrum", &AnalyserSettings::SmoothSpectrum},
    {"ShowNotch", &AnalyserSettings::ShowNotch},
    {"ShowFilter", &AnalyserSettings::ShowFilter},
    {"AutoGain", &AnalyserSettings::AutoGain},
    {"ReverseSpectrum", &AnalyserSettings::ReverseSpectrum},
    {"HideFreqToolTip", &AnalyserSettings::HideFreqToolTip},
};

struct StoredColour {
  const char* Key;
  Colour AnalyserSettings::*Field;
};
constexpr StoredColour kColours[] = {
    {"ControlColourNormal", &AnalyserSettings::ControlColourNormal},
    {"ControlColourFocused", &AnalyserSettings::ControlColourFocused},
    {"Y1BaseColour", &AnalyserSettings::Y1BaseColour},
    {"Y2BaseColour", &AnalyserSettings::Y2BaseColour},
    {"NotchFilterColour", &AnalyserSettings::NotchFilterColour},
    {"FilterCurveColour", &AnalyserSettings::FilterCurveColour},
    {"ScopeBackColour", &AnalyserSettings::ScopeBackColour},
    {"GraticuleColour", &AnalyserSettings::GraticuleColour},
    {"XTextColour", &AnalyserSettings::XTextColour},
    {"YTextColour", &AnalyserSettings::YTextColour},
};

void AddMode(SettingsTable& table, const std::string& prefix, ModeSettings& mode) {
  const auto addChannel = [&](const char* name, ChannelSettings& channel) {
    table.Add(prefix + name + "Enabled", channel.Enabled);
    table.Add(prefix + name + "Gain", channel.Gain);
    table.Add(prefix + name + "Shift", channel.Shift);
    table.Add(prefix + name + "TriggerOn", channel.Trig);
  };
  addChannel("Chn1.", mode.Chn1);
  addChannel("Chn2.", mode.Chn2);
  table.Add(prefix + "FastMode", mode.FastMode);
  table.Add(prefix + "LogMode", mode.LogMode);
}

void AddModes(SettingsTable& table, std::array<ModeSettings, ScopeMode::Count>& modes) {
  for (std::size_t mode = 0; mode < modes.size(); ++mode)
    AddMode(table, ".Mode." + std::to_string(mode) + ".", modes[mode]);
}

void AddShared(SettingsTable& table, AnalyserSettings& settings) {
  for (const Flag& flag : kFlags) table.Add(flag.Key, settings.*flag.Field);
  table.Add("Mode", settings.Mode);
  table.Add("SpectrumSmooth", settings.SpectrumSmooth);
  table.Add("DefaultSmoothCount", settings.DefaultSmoothCount);
  for (const StoredColour& colour : kColours) table.AddColour(colour.Key, settings.*colour.Field);
}

void Limit(ChannelSettings& channel) {
  channel.Gain = std::clamp(channel.Gain, 0.0F, AnalyserSettings::kMostGain);
  channel.Shift = std::clamp(channel.Shift, -AnalyserSettings::kMostShift, AnalyserSettings::kMostShift);
}

}  // namespace

void AnalyserSettings::Read(const SettingsStore& store) {
  SettingsTable shared(kSection);
  AddShared(shared, *this);
  shared.Read(store);
  for (ModeSettings& mode : Modes) {
    SettingsTable bare(kSection);
    AddMode(bare, "", mode);
    bare.Read(store);
  }
  SettingsTable own(kSection);
  AddModes(own, Modes);
  own.Read(store);

  Mode = std::clamp(Mode, 0, ScopeMode::Count - 1);
  SpectrumSmooth = std::clamp<std::int32_t>(SpectrumSmooth, 1, kMostSmooth);
  DefaultSmoothCount = std::clamp<std::int32_t>(DefaultSmoothCount, 1, kMostSmooth);
  for (ModeSettings& mode : Modes) {
    Limit(mode.Chn1);
    Limit(mode.Chn2);
  }
}

void AnalyserSettings::Write(SettingsStore& store) const {
  AnalyserSettings copy = *this;
  SettingsTable table(kSection);
  AddShared(table, copy);
  AddModes(table, copy.Modes);
  ModeSettings& inForce = copy.Modes[static_cast<std::size_t>(copy.Mode)];
  AddMode(table, "", inForce);
  table.AddWritten("SpectrumWidth", copy.SpectrumWidth);
  table.AddWritten("TriggerChn", inForce.TriggerChn);
  table.Write(store);
}

}  // namespace quorl
