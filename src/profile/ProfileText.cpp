#include "profile/ProfileText.h"

#include <algorithm>

#include "support/Text.h"
#include "support/TextEncoding.h"

namespace quorl {

ProfileText::Line ProfileText::Entry(std::string_view text) {
  Line line{std::string(text), {}, {}};
  const auto equals = text.find('=');
  if (equals == std::string_view::npos || Trim(text).starts_with(';')) return line;
  line.Key = ToLower(Trim(text.substr(0, equals)));
  line.Value = Trim(text.substr(equals + 1));
  return line;
}

ProfileText::ProfileText(std::string_view content) : sections_(1), utf8_(IsUtf8(content)) {
  const std::string converted = utf8_ ? std::string() : FromWindows1252(content);
  std::string_view rest = utf8_ ? content : std::string_view(converted);
  while (!rest.empty()) {
    const auto end = std::min(rest.find('\n'), rest.size());
    std::string_view text = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (text.ends_with('\r')) text.remove_suffix(1);
    const std::string_view trimmed = Trim(text);
    const auto close = trimmed.find(']');
    if (trimmed.starts_with('[') && close != std::string_view::npos) {
      places_.emplace(ToLower(trimmed.substr(1, close - 1)), sections_.size());
      sections_.push_back({std::string(text), {}});
    } else {
      sections_.back().Lines.push_back(Entry(text));
    }
  }
}

const std::string* ProfileText::Find(std::string_view section, std::string_view key) const {
  const auto place = places_.find(ToLower(section));
  if (place == places_.end()) return nullptr;
  const std::string wanted = ToLower(key);
  for (const Line& line : sections_[place->second].Lines) {
    if (line.Key == wanted) return &line.Value;
  }
  return nullptr;
}

void ProfileText::Put(std::string_view section, std::string_view key, std::string value) {
  std::replace_if(
      value.begin(), value.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  value = Trim(value);
  const auto [place, isNew] = places_.emplace(ToLower(section), sections_.size());
  if (isNew) sections_.push_back({'[' + std::string(section) + ']', {}});
  std::vector<Line>& lines = sections_[place->second].Lines;
  const std::string wanted = ToLower(key);
  const auto found =
      std::find_if(lines.begin(), lines.end(), [&wanted](const Line& line) { return line.Key == wanted; });
  if (found != lines.end() && found->Value == value) return;
  if (found != lines.end()) {
    found->Text.replace(found->Text.find('=') + 1, std::string::npos, value);
    found->Value = value;
    return;
  }
  // Before the empty lines that part the section from the next one.
  auto end = lines.end();
  while (end != lines.begin() && Trim(std::prev(end)->Text).empty()) --end;
  lines.insert(end, {std::string(key) + '=' + value, wanted, value});
}

std::string ProfileText::Text() const {
  std::string text;
  for (const Section& section : sections_) {
    if (&section != &sections_.front()) text += section.Header + "\r\n";
    for (const Line& line : section.Lines) text += line.Text + "\r\n";
  }
  return utf8_ ? text : ToWindows1252(text).value_or(text);
}

}  // namespace quorl
