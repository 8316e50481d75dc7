// The lines of an INI file: [sections], key = value, comments behind # or ;.
#pragma once

#include <optional>
#include <string_view>

namespace quorl {

enum class IniKind { Empty, Comment, Section, Entry, Broken };

struct IniLine {
  int Number = 0;  // from 1
  IniKind Kind = IniKind::Empty;
  std::string_view Text;   // as it stands, without its end
  std::string_view Name;   // the section's, or the key; without the blanks around
  std::string_view Value;  // of an entry, without the blanks around
};

// Line after line of a text. Ends of either kind, a byte order mark at the beginning and blanks around lines
// don't count. What sections and values mean, and which characters are written in another way, is the
// caller's.
class IniReader {
 public:
  // `text` outlives the reader and its lines.
  explicit IniReader(std::string_view text);
  // Empty behind the last line.
  std::optional<IniLine> Next();

 private:
  std::string_view rest_;
  int number_ = 0;
};

}  // namespace quorl
