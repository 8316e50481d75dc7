#include "support/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "support/CheckedMath.h"

namespace quorl {
namespace {

constexpr char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

bool EqualsNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Lower(x) == Lower(y); });
}

bool EndsWithNoCase(std::string_view text, std::string_view suffix) {
  return text.size() >= suffix.size() && EqualsNoCase(text.substr(text.size() - suffix.size()), suffix);
}

std::string ToLower(std::string_view text) {
  std::string lower{text};
  std::transform(lower.begin(), lower.end(), lower.begin(), Lower);
  return lower;
}

std::string_view Trim(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::optional<double> ParseDouble(std::string_view text) {
  text = Trim(text);
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value)) {
    return {};
  }
  return value;
}

std::optional<double> ParseTyped(std::string_view text) {
  std::string solid{text};
  std::erase_if(solid, [](char c) { return c == ' ' || c == '\t'; });
  return ParseDouble(solid);
}

std::optional<std::int32_t> ParseInt32(std::string_view text) {
  const auto value = ParseDouble(text);
  return value ? ToInt32(*value) : std::nullopt;
}

std::optional<bool> ParseFlag(std::string_view text) {
  const auto word = Trim(text);
  if (EqualsNoCase(word, "True")) return true;
  if (EqualsNoCase(word, "False")) return false;
  const auto number = ParseDouble(word);
  return number ? std::optional{*number != 0} : std::nullopt;
}

std::string NumberText(double value) {
  std::array<char, 400> text;  // the smallest double has some 330 places
  const auto [end, error] =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  return error == std::errc{} ? std::string(text.data(), end) : std::string("0");
}

std::string NumberText(std::int32_t value) {
  return std::to_string(value);
}

std::string FlagText(bool value) {
  return value ? "True" : "False";
}

std::string FileNameOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

}  // namespace quorl
