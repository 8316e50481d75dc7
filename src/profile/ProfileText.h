// A text of sections and keys that is changed key by key and otherwise left as it is.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quorl {

// Sections and keys are the same in any case; of a section or key that stands twice the first one counts. A
// key that is there gets its value in place, a new one goes to the end of its section, a new section to the
// end of the text. Every line ends in carriage return and line feed. A text that was Windows-1252 stays so,
// unless it takes a character that has no place there; then all of it becomes UTF-8.
class ProfileText {
 public:
  explicit ProfileText(std::string_view content = {});

  // Names and values as UTF-8; a line break in a value becomes a blank.
  void Put(std::string_view section, std::string_view key, std::string value);
  // Null where there is none; as long as nothing is put.
  const std::string* Find(std::string_view section, std::string_view key) const;
  std::string Text() const;

 private:
  struct Line {
    std::string Text;  // as it stands
    std::string Key;   // in small letters; empty where the line is no entry
    std::string Value;
  };
  struct Section {
    std::string Header;
    std::vector<Line> Lines;
  };

  static Line Entry(std::string_view text);

  std::vector<Section> sections_;                        // the first one is what stands before any section
  std::unordered_map<std::string, std::size_t> places_;  // of sections, by names in small letters
  bool utf8_ = true;
};

}  // namespace quorl
