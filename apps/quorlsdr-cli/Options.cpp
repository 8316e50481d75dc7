#include "Options.h"

#include <optional>

#include "support/Text.h"

namespace quorl::cli {

CLI::Option* AddText(CLI::App& command, const std::string& name, const std::string& shape,
                     const std::string& help, std::function<void(const std::string&)> take) {
  return command.add_option_function<std::string>(name, std::move(take), help)->type_name(shape);
}

CLI::Option* AddWhole(CLI::App& command, const std::string& name, Range range, const std::string& help,
                      std::function<void(int)> take) {
  const std::string shape = std::to_string(range.Low) + ".." + std::to_string(range.High);
  return AddText(command, name, shape, help, [name, range, take = std::move(take)](const std::string& text) {
    take(ParseWhole(name, text, range));
  });
}

CLI::Option* AddNumber(CLI::App& command, const std::string& name, const std::string& shape, double low,
                       double high, const std::string& help, std::function<void(double)> take) {
  return AddText(command, name, shape, help, [=, take = std::move(take)](const std::string& text) {
    const std::optional<double> value = ParseDouble(text);
    if (!value || *value < low || *value > high) {
      Refuse(name, "'" + text + "' doesn't fit; a number from " + NumberText(low) + " to " +
                       NumberText(high) + " is needed");
    }
    take(*value);
  });
}

CLI::Option* AddChoice(CLI::App& command, const std::string& name, std::span<const std::string_view> names,
                       const std::string& help, std::int32_t& value) {
  return AddText(command, name, JoinNames(names), help,
                 [name, names, &value](const std::string& text) { value = ParseChoice(name, text, names); });
}

}  // namespace quorl::cli
