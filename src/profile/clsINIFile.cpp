#include "profile/clsINIFile.h"

#include "support/Text.h"
#include "support/TextEncoding.h"

namespace quorl {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

// What stands behind "=" where a line that began with the key would have it.
std::optional<std::string_view> ValueBehind(std::string_view line, std::size_t keyLength) {
  const std::string_view rest = Trim(line.substr(keyLength));
  if (!rest.starts_with('=')) return {};
  return Trim(rest.substr(1));
}

}  // namespace

void clsINIFile::init(std::string content) {
  content_ = IsUtf8(content) ? std::move(content) : FromWindows1252(content);
  lower_ = ToLower(content_);
  lines_.clear();
  sections_.clear();
  lastSection_.clear();
  lastLines_ = {0, 0};
  const std::string_view text = content_, lower = lower_;
  for (std::size_t begin = 0, end = 0; end != std::string_view::npos; begin = end + kLineEnd.size()) {
    end = text.find(kLineEnd, begin);
    if (end == std::string_view::npos) break;  // an unfinished line is not searched
    if (text[begin] == '[') sections_.push_back(lines_.size());
    lines_.push_back({text.substr(begin, end - begin), lower.substr(begin, end - begin)});
  }
}

clsINIFile::Range clsINIFile::SectionLines(std::string_view section) const {
  const std::string wanted = '[' + ToLower(section) + ']';
  if (wanted == lastSection_) return lastLines_;
  lastSection_ = wanted;
  lastLines_ = {0, 0};
  for (std::size_t i = 0; i < sections_.size(); ++i) {
    if (lines_[sections_[i]].Lower.find(wanted) == std::string_view::npos) continue;
    lastLines_ = {sections_[i] + 1, i + 1 < sections_.size() ? sections_[i + 1] : lines_.size()};
    break;
  }
  return lastLines_;
}

const clsINIFile::Line* clsINIFile::Find(std::string_view section, std::string_view key) const {
  const auto [begin, end] = SectionLines(section);
  const std::string wanted = ToLower(key);
  for (std::size_t i = begin; i < end; ++i) {
    const bool holds = lines_[i].Lower.find(wanted) != std::string_view::npos;
    if (holds && ValueBehind(lines_[i].Text, key.size())) return &lines_[i];
  }
  return nullptr;
}

std::string clsINIFile::GetItem(std::string_view section, std::string_view key,
                                std::string_view otherwise) const {
  const Line* line = Find(section, key);
  return std::string(line ? *ValueBehind(line->Text, key.size()) : otherwise);
}

}  // namespace quorl
