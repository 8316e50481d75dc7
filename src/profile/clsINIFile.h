// A text of sections and keys, read whole and asked key by key: band plans and themes.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quorl {

// The rules that plans have always been read by:
//
// - Lines end in carriage return and line feed. What stands behind the last end is not searched.
// - A section's line begins with "[" in its first column. The first one that holds "[name]", in any case,
//   is the section; it ends at the next such line.
// - The first line of it counts that holds the key anywhere, in any case, and has "=" (blanks around it
//   allowed) where a line that began with the key would have it. So "Active" passes over "ActiveSubBand=".
//
// Bytes that are no UTF-8 are taken as Windows-1252; all texts come back as UTF-8.
class clsINIFile {
 public:
  // Takes a file's content in place of the one before.
  void init(std::string content);
  // The value, trimmed, or `otherwise` where there is none.
  std::string GetItem(std::string_view section, std::string_view key, std::string_view otherwise) const;
  std::string LoadItem(std::string_view section, std::string_view key, std::string_view otherwise) const {
    return GetItem(section, key, otherwise);
  }
  bool HasItem(std::string_view section, std::string_view key) const { return Find(section, key) != nullptr; }

 private:
  struct Line {
    std::string_view Text;
    std::string_view Lower;  // the same in small letters
  };
  using Range = std::pair<std::size_t, std::size_t>;  // lines, the second one behind the last

  Range SectionLines(std::string_view section) const;
  const Line* Find(std::string_view section, std::string_view key) const;

  std::string content_, lower_;
  std::vector<Line> lines_;
  std::vector<std::size_t> sections_;  // lines
  // Keys are asked for section by section: the last one is kept.
  mutable std::string lastSection_;
  mutable Range lastLines_{0, 0};
};

}  // namespace quorl
