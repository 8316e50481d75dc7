#include "OptionText.h"

#include <CLI/CLI.hpp>
#include <charconv>

namespace quorl::cli {

int ParseWhole(const std::string& option, const std::string& text, Range range) {
  int value = 0;
  const char* begin = text.data() + (text.size() > 1 && text[0] == '+' && text[1] != '-' ? 1 : 0);
  const auto [end, error] = std::from_chars(begin, text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < range.Low || value > range.High) {
    Refuse(option, "'" + text + "' doesn't fit; a whole number from " + std::to_string(range.Low) + " to " +
                       std::to_string(range.High) + " is needed");
  }
  return value;
}

int ParseChoice(const std::string& option, const std::string& text, std::span<const std::string_view> names) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (names[i] == text) return static_cast<int>(i);
  }
  Refuse(option, "'" + text + "' is unknown; one of " + JoinNames(names) + " is needed");
}

std::vector<std::string> SplitAtColons(const std::string& text) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == ':') {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

std::string JoinNames(std::span<const std::string_view> names) {
  std::string joined;
  for (const std::string_view name : names) {
    if (!joined.empty()) joined += '|';
    joined += name;
  }
  return joined;
}

void Refuse(const std::string& option, const std::string& why) {
  throw CLI::ValidationError(option, why);
}

}  // namespace quorl::cli
