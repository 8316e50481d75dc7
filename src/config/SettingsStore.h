// The program's settings between two runs: named sections of keys with text values in one readable file.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"
#include "platform/InstanceLock.h"
#include "platform/files/PostedFiles.h"
#include "support/IniReader.h"

namespace quorl {

// The file:
//
//   # a comment, kept
//   [frmMain]
//   SDRModelNo=0
//   WavFile path=\x20begins with a blank
//
// UTF-8 or any other bytes; "\\" is a backslash, "\n" and "\r" are line ends, "\xHH" is any byte. Blanks
// around sections, keys and values don't count. Sections and keys are the same in any case; the first
// spelling and the order in the file stay. Of a key that stands twice in a section the last value counts.
// What nobody asks for is kept, and so is a line that can't be understood, as it stands.
//
// Everything lives in memory between Load and Save. One thread.
class SettingsStore {
 public:
  // Where lines for the program's log go.
  using LogSink = std::function<void(const std::string&)>;

  // A store of memory only: Load and Save do nothing and succeed.
  SettingsStore() = default;
  // The store of the file at `path`. `lock` may be null: then nothing keeps other programs off. All of them
  // must outlive the store.
  SettingsStore(Files& files, std::string path, InstanceLock* lock = nullptr, LogSink log = {});

  // Takes the lock, removes what killed programs have left beside the file, and reads it; a missing one is an
  // empty store. A line that can't be understood is told to the log with its number. Fails where another
  // program holds the lock (the content is there nevertheless, to read) or where the file can't be read.
  // After a failure Save refuses.
  Failure Load();
  // Writes the file where anything has changed since it was loaded or saved, and makes its directory.
  Failure Save();
  // The same beside the sound: `done` is told the outcome, from the queue of `files`; nothing is where
  // nothing has changed or such a save is out already. Whoever calls Save after it lets that one finish
  // first.
  void SaveBeside(PostedFiles& files, std::function<void(const Failure&)> done);
  bool IsChanged() const { return saved_ != version_; }
  // Sends the log's lines elsewhere from now on.
  void SetLog(LogSink log) { log_ = std::move(log); }
  const std::string& Path() const { return path_; }

  // The value, or `otherwise` where there is none.
  std::string GetSetting(std::string_view section, std::string_view key, std::string_view otherwise) const;
  void SaveSetting(std::string_view section, std::string_view key, std::string_view value);
  bool HasSection(std::string_view section) const;

  // Each leaves `value` as it was, and returns false, where the key is missing or its text isn't one of that
  // type.
  bool Read(std::string_view section, std::string_view key, std::int32_t& value) const;
  bool Read(std::string_view section, std::string_view key, double& value) const;
  bool Read(std::string_view section, std::string_view key, float& value) const;
  bool Read(std::string_view section, std::string_view key, bool& value) const;
  bool Read(std::string_view section, std::string_view key, std::string& value) const;
  // A colour as a number of 24 bits, blue in the high byte.
  bool ReadColour(std::string_view section, std::string_view key, std::uint32_t& value) const;

  // The file's text, and the store that such a text makes (line numbers of broken lines go to the log).
  std::string Serialise() const;
  void Parse(std::string_view text);

 private:
  // A key with its value, or a line that is kept as it stands in `Value`.
  struct Line {
    std::string Key, Value;
    bool Verbatim = false;
  };
  struct Section {
    std::string Name;
    std::vector<Line> Lines;
    bool Unreadable = false;  // Name is the whole line, and nothing below it is a setting
  };

  const std::string* Find(std::string_view section, std::string_view key) const;
  template <typename T, typename Parser>
  bool ReadAs(std::string_view section, std::string_view key, T& value, Parser parse) const;
  Section& SectionNamed(std::string_view name);
  static void Put(Section& section, std::string_view key, std::string_view value);
  Failure ReadFile();
  Failure MakeFolder();
  // False where the line isn't understood. `section` is the one that the next lines belong to.
  bool TakeLine(const IniLine& line, Section*& section);
  void Log(const std::string& line) const;

  Files* files_ = nullptr;
  std::string path_;
  InstanceLock* lock_ = nullptr;
  LogSink log_;
  std::vector<Line> preamble_;  // what stands before the first section
  std::vector<Section> sections_;
  std::int64_t version_ = 0, saved_ = 0;  // what is in memory, and what is in the file
  bool saving_ = false;
  Failure refusal_;
};

}  // namespace quorl
