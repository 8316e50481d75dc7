#include "config/SettingsStore.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "support/Text.h"

namespace quorl {
namespace {

constexpr int kNotLoaded = -1;
constexpr std::size_t kMostQuoted = 80;  // characters of a broken line in the log
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

constexpr bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

// What would be lost or misread if it stood for itself at this place of a line.
bool NeedsEscape(char c, bool atEnd, std::string_view special) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F || (atEnd && IsBlank(c)) ||
         special.find(c) != std::string_view::npos;
}

// `special` lists the characters that mean something where `text` stands.
std::string Escape(std::string_view text, std::string_view special) {
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string escaped;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\\') {
      escaped += "\\\\";
    } else if (c == '\n') {
      escaped += "\\n";
    } else if (c == '\r') {
      escaped += "\\r";
    } else if (NeedsEscape(c, i == 0 || i + 1 == text.size(), special)) {
      escaped += {'\\', 'x', kHex[byte / 16], kHex[byte % 16]};
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::optional<std::string> Unescape(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      plain += text[i];
      continue;
    }
    const char kind = ++i < text.size() ? text[i] : '\0';
    unsigned byte = 0;
    if (kind == '\\') {
      plain += '\\';
    } else if (kind == 'n') {
      plain += '\n';
    } else if (kind == 'r') {
      plain += '\r';
    } else if (kind == 'x' && text.size() - i > 2 &&
               std::from_chars(text.data() + i + 1, text.data() + i + 3, byte, 16).ptr ==
                   text.data() + i + 3) {
      plain += static_cast<char>(byte);
      i += 2;
    } else {
      return {};
    }
  }
  return plain;
}

}  // namespace

SettingsStore::SettingsStore(Files& files, std::string path, InstanceLock* lock, LogSink log)
    : files_(&files),
      path_(std::move(path)),
      lock_(lock),
      log_(std::move(log)),
      refusal_(Error{kNotLoaded, path_ + ": the settings have not been read yet"}) {}

void SettingsStore::Log(const std::string& line) const {
  if (log_) {
    log_(line);
  }
}

Failure SettingsStore::Load() {
  if (!files_) {
    return {};
  }
  refusal_ = lock_ ? lock_->Acquire(path_) : Failure{};
  if (files_->Exists(path_)) {
    Failure failure;
    if (const auto content = files_->Read(path_, failure)) {
      Parse(*content);
    } else if (!refusal_) {
      refusal_ = std::move(failure);
    }
  }
  return refusal_;
}

Failure SettingsStore::Save() {
  if (!files_ || !changed_) {
    return {};
  }
  if (refusal_) {
    return refusal_;
  }
  if (const auto slash = path_.rfind('/'); slash != std::string::npos && slash > 0) {
    if (auto failure = files_->MakeDirectory(path_.substr(0, slash))) {
      return failure;
    }
  }
  auto failure = files_->Replace(path_, Serialise());
  changed_ = failure.has_value();
  return failure;
}

const std::string* SettingsStore::Find(std::string_view section, std::string_view key) const {
  for (const Section& each : sections_) {
    if (!EqualsNoCase(each.Name, section)) {
      continue;
    }
    for (const Line& line : each.Lines) {
      if (!line.Verbatim && EqualsNoCase(line.Key, key)) {
        return &line.Value;
      }
    }
  }
  return nullptr;
}

std::string SettingsStore::GetSetting(std::string_view section, std::string_view key,
                                      std::string_view otherwise) const {
  const std::string* value = Find(section, key);
  return value ? *value : std::string(otherwise);
}

void SettingsStore::SaveSetting(std::string_view section, std::string_view key, std::string_view value) {
  const std::string* present = Find(section, key);
  if (present && *present == value) {
    return;
  }
  Put(SectionNamed(section), key, value);
  changed_ = true;
}

SettingsStore::Section& SettingsStore::SectionNamed(std::string_view name) {
  const auto found = std::find_if(sections_.begin(), sections_.end(),
                                  [name](const Section& each) { return EqualsNoCase(each.Name, name); });
  return found != sections_.end() ? *found : sections_.emplace_back(Section{std::string(name), {}});
}

void SettingsStore::Put(Section& section, std::string_view key, std::string_view value) {
  for (Line& line : section.Lines) {
    if (!line.Verbatim && EqualsNoCase(line.Key, key)) {
      line.Value = value;
      return;
    }
  }
  // New keys go before the empty lines that part the section from the next one.
  auto end = section.Lines.end();
  while (end != section.Lines.begin() && std::prev(end)->Verbatim && std::prev(end)->Value.empty()) {
    --end;
  }
  section.Lines.insert(end, Line{std::string(key), std::string(value), false});
}

void SettingsStore::Read(std::string_view section, std::string_view key, std::int32_t& value) const {
  if (const auto* text = Find(section, key)) {
    value = ParseInt32(*text).value_or(value);
  }
}

void SettingsStore::Read(std::string_view section, std::string_view key, double& value) const {
  if (const auto* text = Find(section, key)) {
    value = ParseDouble(*text).value_or(value);
  }
}

void SettingsStore::Read(std::string_view section, std::string_view key, float& value) const {
  const auto* text = Find(section, key);
  const auto number = text ? ParseDouble(*text) : std::nullopt;
  if (number && std::abs(*number) <= std::numeric_limits<float>::max()) {
    value = static_cast<float>(*number);
  }
}

void SettingsStore::Read(std::string_view section, std::string_view key, bool& value) const {
  if (const auto* text = Find(section, key)) {
    value = ParseFlag(*text).value_or(value);
  }
}

void SettingsStore::Read(std::string_view section, std::string_view key, std::string& value) const {
  if (const auto* text = Find(section, key)) {
    value = *text;
  }
}

void SettingsStore::ReadColour(std::string_view section, std::string_view key, std::uint32_t& value) const {
  std::int32_t number = -1;
  Read(section, key, number);
  if (number >= 0 && number <= 0xFFFFFF) {
    value = static_cast<std::uint32_t>(number);
  }
}

std::string SettingsStore::Serialise() const {
  std::string text;
  const auto add = [&text](const Line& line) {
    text += line.Verbatim ? line.Value : Escape(line.Key, "=[#;") + '=' + Escape(line.Value, "");
    text += '\n';
  };
  std::for_each(preamble_.begin(), preamble_.end(), add);
  for (const Section& section : sections_) {
    text += '[' + Escape(section.Name, "]") + "]\n";
    std::for_each(section.Lines.begin(), section.Lines.end(), add);
  }
  return text;
}

void SettingsStore::Parse(std::string_view text) {
  preamble_.clear();
  sections_.clear();
  changed_ = false;
  if (text.starts_with(kByteOrderMark)) {
    text.remove_prefix(kByteOrderMark.size());
  }
  Section* section = nullptr;
  for (int number = 1; !text.empty(); ++number) {
    const auto end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) {
      line.remove_suffix(1);
    }
    line = Trim(line);
    if (!ParseLine(line, section)) {
      Log(path_ + ", line " + std::to_string(number) + " is left out, it isn't a setting: \"" +
          Escape(line.substr(0, kMostQuoted), "") + "\"");
    }
  }
}

bool SettingsStore::ParseLine(std::string_view line, Section*& section) {
  if (line.empty() || line.front() == '#' || line.front() == ';') {
    auto& lines = sections_.empty() ? preamble_ : sections_.back().Lines;
    lines.push_back({"", std::string(line), true});
    return true;
  }
  if (line.front() == '[') {
    const auto name = line.ends_with(']') ? Unescape(Trim(line.substr(1, line.size() - 2))) : std::nullopt;
    section = name ? &SectionNamed(*name) : nullptr;  // keys under a broken name belong to no section
    return name.has_value();
  }
  const auto equals = line.find('=');
  if (!section || equals == std::string_view::npos) {
    return false;
  }
  const auto key = Unescape(Trim(line.substr(0, equals)));
  const auto value = Unescape(Trim(line.substr(equals + 1)));
  if (!key || !value) {
    return false;
  }
  Put(*section, *key, *value);
  return true;
}

}  // namespace quorl
