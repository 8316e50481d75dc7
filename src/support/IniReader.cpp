#include "support/IniReader.h"

#include <algorithm>

#include "support/Text.h"

namespace quorl {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

void Understand(std::string_view trimmed, IniLine& line) {
  if (trimmed.empty()) return;
  const auto equals = trimmed.find('=');
  if (trimmed.front() == '#' || trimmed.front() == ';') {
    line.Kind = IniKind::Comment;
  } else if (trimmed.front() == '[') {
    line.Kind = trimmed.back() == ']' ? IniKind::Section : IniKind::Broken;
    line.Name = Trim(trimmed.substr(1, trimmed.size() - 2));
  } else if (equals == std::string_view::npos) {
    line.Kind = IniKind::Broken;
  } else {
    line.Kind = IniKind::Entry;
    line.Name = Trim(trimmed.substr(0, equals));
    line.Value = Trim(trimmed.substr(equals + 1));
  }
}

}  // namespace

IniReader::IniReader(std::string_view text) : rest_(text) {
  while (rest_.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
}

std::optional<IniLine> IniReader::Next() {
  if (rest_.empty()) return {};
  IniLine line;
  line.Number = ++number_;
  const auto end = std::min(rest_.find('\n'), rest_.size());
  line.Text = rest_.substr(0, end);
  rest_.remove_prefix(std::min(end + 1, rest_.size()));
  while (line.Text.ends_with('\r')) line.Text.remove_suffix(1);
  Understand(Trim(line.Text), line);
  return line;
}

}  // namespace quorl
