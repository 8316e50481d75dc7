#include "config/SettingsTable.h"

#include "support/Text.h"

namespace quorl {

std::string SettingsTable::Text(std::int32_t value) {
  return NumberText(value);
}

std::string SettingsTable::Text(double value) {
  return NumberText(value);
}

std::string SettingsTable::Text(bool value) {
  return FlagText(value);
}

void SettingsTable::AddColour(const std::string& key, std::uint32_t& colour) {
  rows_.push_back({key, [&colour] { return std::to_string(colour); },
                   [&colour](const SettingsStore& store, const std::string& section,
                             const std::string& name) { store.ReadColour(section, name, colour); }});
}

void SettingsTable::Read(const SettingsStore& store) const {
  for (const Row& row : rows_) {
    if (row.Read) row.Read(store, section_, row.Key);
  }
}

void SettingsTable::Write(SettingsStore& store) const {
  for (const Row& row : rows_) {
    if (row.Text) store.SaveSetting(section_, row.Key, row.Text());
  }
}

}  // namespace quorl
