// Which value lives under which key of the settings: rows that each panel and engine hands in for its own.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "config/SettingsStore.h"

namespace quorl {

inline constexpr char kMainSection[] = "frmMain";

// Values are whole numbers of 32 bits, float, double, bool or text. Rows are read and written in the order in
// which they were added; what they refer to is used as long as the table is.
class SettingsTable {
 public:
  explicit SettingsTable(std::string section = kMainSection) : section_(std::move(section)) {}

  // Read and written. A missing or unfit text leaves the variable as it was.
  template <typename T>
  void Add(const std::string& key, T& variable) {
    rows_.push_back({key, [&variable] { return Text(variable); },
                     [&variable](const SettingsStore& store, const std::string& section,
                                 const std::string& name) { store.Read(section, name, variable); }});
  }
  // A colour of 24 bits, blue in the high byte.
  void AddColour(const std::string& key, std::uint32_t& colour);
  // A value that a control or an object holds: asked for when the settings are written, handed over when they
  // are read and the stored text fits.
  template <typename T>
  void Add(const std::string& key, std::function<T()> get, std::function<void(T)> set) {
    rows_.push_back({key, [get] { return Text(get()); },
                     [set](const SettingsStore& store, const std::string& section, const std::string& name) {
                       T value{};
                       if (store.Read(section, name, value)) set(value);
                     }});
  }
  // Only written, for who reads the file: the value returns by another way, such as the memories.
  template <typename T>
  void AddWritten(const std::string& key, const T& variable) {
    rows_.push_back({key, [&variable] { return Text(variable); }, {}});
  }
  template <typename T>
  void AddWritten(const std::string& key, std::function<T()> get) {
    rows_.push_back({key, [get] { return Text(get()); }, {}});
  }

  // Only read, for what nobody changes but by hand.
  template <typename T>
  void AddRead(const std::string& key, std::function<void(T)> set) {
    Add<T>(key, {}, std::move(set));
    rows_.back().Text = {};
  }

  void Read(const SettingsStore& store) const;
  void Write(SettingsStore& store) const;

 private:
  struct Row {
    std::string Key;
    std::function<std::string()> Text;
    std::function<void(const SettingsStore& store, const std::string& section, const std::string& key)> Read;
  };

  static std::string Text(std::int32_t value);
  static std::string Text(double value);
  static std::string Text(bool value);
  static std::string Text(const std::string& value) { return value; }

  std::string section_;
  std::vector<Row> rows_;
};

}  // namespace quorl
