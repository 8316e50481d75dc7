#include "config/SettingsStore.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/files/GrowingFile.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr int kNotLoaded = -1, kNoSettingsFile = -2;
constexpr std::size_t kMostQuoted = 80;  // characters of a broken line in the log

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
  if (log_) log_(line);
}

Failure SettingsStore::Load() {
  if (!files_) return {};
  refusal_ = lock_ ? lock_->Acquire(path_) : Failure{};
  if (lock_ && lock_->IsHeld()) RemoveLeftovers(*files_, path_);
  if (files_->Exists(path_)) {
    Failure failure = ReadFile();
    if (failure && !refusal_) refusal_ = std::move(failure);
  }
  return refusal_;
}

Failure SettingsStore::ReadFile() {
  // A pipe or a terminal would keep the program waiting.
  if (files_->Kind(path_) != FileKind::Regular) {
    return Error{kNoSettingsFile,
                 "Can't read " + path_ + ": it is no ordinary file. Name another settings file."};
  }
  Failure failure;
  if (const auto content = files_->Read(path_, failure)) Parse(*content);
  return failure;
}

Failure SettingsStore::Save() {
  if (!files_ || !IsChanged()) return {};
  if (refusal_) return refusal_;
  if (auto failure = MakeFolder()) return failure;
  auto failure = files_->Replace(path_, Serialise());
  if (!failure) saved_ = version_;
  return failure;
}

Failure SettingsStore::MakeFolder() {
  const std::string file = files_->Resolve(path_);
  const auto slash = file.rfind('/');
  return slash == std::string::npos || slash == 0 ? Failure() : files_->MakeDirectory(file.substr(0, slash));
}

void SettingsStore::SaveBeside(PostedFiles& files, std::function<void(const Failure&)> done) {
  if (!files_ || !IsChanged() || saving_) return;
  const Failure refused = refusal_ ? refusal_ : MakeFolder();
  if (refused) return done(refused);
  saving_ = true;
  files.Replace(path_, Serialise(),
                [this, version = version_, done = std::move(done)](const Failure& failure) {
                  saving_ = false;
                  if (!failure) saved_ = std::max(saved_, version);
                  done(failure);
                });
}

const std::string* SettingsStore::Find(std::string_view section, std::string_view key) const {
  for (const Section& each : sections_) {
    if (each.Unreadable || !EqualsNoCase(each.Name, section)) continue;
    for (const Line& line : each.Lines) {
      if (!line.Verbatim && EqualsNoCase(line.Key, key)) return &line.Value;
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
  if (present && *present == value) return;
  Put(SectionNamed(section), key, value);
  ++version_;
}

bool SettingsStore::HasSection(std::string_view section) const {
  return std::any_of(sections_.begin(), sections_.end(), [section](const Section& each) {
    return !each.Unreadable && EqualsNoCase(each.Name, section);
  });
}

SettingsStore::Section& SettingsStore::SectionNamed(std::string_view name) {
  const auto found = std::find_if(sections_.begin(), sections_.end(), [name](const Section& each) {
    return !each.Unreadable && EqualsNoCase(each.Name, name);
  });
  return found != sections_.end() ? *found : sections_.emplace_back(Section{std::string(name), {}, false});
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
  while (end != section.Lines.begin() && std::prev(end)->Verbatim && Trim(std::prev(end)->Value).empty()) {
    --end;
  }
  section.Lines.insert(end, Line{std::string(key), std::string(value), false});
}

template <typename T, typename Parser>
bool SettingsStore::ReadAs(std::string_view section, std::string_view key, T& value, Parser parse) const {
  const std::string* text = Find(section, key);
  const std::optional<T> read = text ? parse(*text) : std::nullopt;
  if (read) value = *read;
  return read.has_value();
}

bool SettingsStore::Read(std::string_view section, std::string_view key, std::int32_t& value) const {
  return ReadAs(section, key, value, ParseInt32);
}

bool SettingsStore::Read(std::string_view section, std::string_view key, double& value) const {
  return ReadAs(section, key, value, ParseDouble);
}

bool SettingsStore::Read(std::string_view section, std::string_view key, float& value) const {
  return ReadAs(section, key, value, [](std::string_view text) -> std::optional<float> {
    const auto number = ParseDouble(text);
    if (!number || std::abs(*number) > std::numeric_limits<float>::max()) return std::nullopt;
    return static_cast<float>(*number);
  });
}

bool SettingsStore::Read(std::string_view section, std::string_view key, bool& value) const {
  return ReadAs(section, key, value, ParseFlag);
}

bool SettingsStore::Read(std::string_view section, std::string_view key, std::string& value) const {
  return ReadAs(section, key, value, [](std::string_view text) { return std::optional(std::string(text)); });
}

bool SettingsStore::ReadColour(std::string_view section, std::string_view key, std::uint32_t& value) const {
  return ReadAs(section, key, value, [](std::string_view text) -> std::optional<std::uint32_t> {
    const auto number = ParseInt32(text);
    if (!number || *number < 0 || *number > 0xFFFFFF) return std::nullopt;
    return static_cast<std::uint32_t>(*number);
  });
}

std::string SettingsStore::Serialise() const {
  std::string text;
  const auto add = [&text](const Line& line) {
    text += line.Verbatim ? line.Value : Escape(line.Key, "=[#;") + '=' + Escape(line.Value, "");
    text += '\n';
  };
  std::for_each(preamble_.begin(), preamble_.end(), add);
  for (const Section& section : sections_) {
    text += section.Unreadable ? section.Name : '[' + Escape(section.Name, "]") + ']';
    text += '\n';
    std::for_each(section.Lines.begin(), section.Lines.end(), add);
  }
  return text;
}

void SettingsStore::Parse(std::string_view text) {
  preamble_.clear();
  sections_.clear();
  saved_ = version_;
  Section* section = nullptr;
  IniReader lines(text);
  while (const auto line = lines.Next()) {
    if (TakeLine(*line, section)) continue;
    Log(path_ + ", line " + std::to_string(line->Number) +
        " isn't a setting and stays in the file as it stands: \"" +
        Escape(line->Text.substr(0, kMostQuoted), "") + "\"");
  }
}

bool SettingsStore::TakeLine(const IniLine& line, Section*& section) {
  const auto name = Unescape(line.Name), value = Unescape(line.Value);
  if (line.Kind == IniKind::Section && name) {
    section = &SectionNamed(*name);
    return true;
  }
  if (line.Kind == IniKind::Entry && section && !section->Unreadable && name && value) {
    Put(*section, *name, *value);
    return true;
  }
  if (line.Kind == IniKind::Section || Trim(line.Text).starts_with('[')) {
    // The keys below it are nobody's; they stay with it.
    section = &sections_.emplace_back(Section{std::string(line.Text), {}, true});
  } else {
    (section ? section->Lines : preamble_).push_back({"", std::string(line.Text), true});
  }
  return line.Kind == IniKind::Empty || line.Kind == IniKind::Comment;
}

}  // namespace quorl
