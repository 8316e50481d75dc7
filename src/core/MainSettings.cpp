#include "core/MainSettings.h"

#include <type_traits>

#include "support/Text.h"

namespace quorl {

void ReadSetting(const SettingsStore& store, const StoredSetting& setting) {
  std::visit(
      [&](auto* variable) {
        if constexpr (std::is_same_v<decltype(variable), Colour*>) {
          store.ReadColour(kMainSection, setting.Key, *variable);
        } else {
          store.Read(kMainSection, setting.Key, *variable);
        }
      },
      setting.Variable);
}

void WriteSetting(SettingsStore& store, const StoredSetting& setting) {
  const std::string text = std::visit(
      [](const auto* variable) -> std::string {
        using T = std::remove_cvref_t<decltype(*variable)>;
        if constexpr (std::is_same_v<T, bool>) return FlagText(*variable);
        if constexpr (std::is_same_v<T, std::string>) return *variable;
        if constexpr (std::is_same_v<T, std::int32_t>) return NumberText(*variable);
        if constexpr (std::is_same_v<T, float>) return NumberText(static_cast<double>(*variable));
        if constexpr (std::is_same_v<T, Colour>) return std::to_string(*variable);
      },
      setting.Variable);
  store.SaveSetting(kMainSection, setting.Key, text);
}

}  // namespace quorl
