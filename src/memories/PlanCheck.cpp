#include "memories/PlanCheck.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <span>

#include "memories/PlanFormat.h"
#include "memories/TuningBlock.h"
#include "memories/modBandPlan.h"
#include "support/IniReader.h"
#include "support/Text.h"
#include "support/TextEncoding.h"

namespace quorl {
namespace {

constexpr std::array<const char*, 7> kMainKeys = {"Index",  "Name",          "Caption",    "Description",
                                                  "Active", "ActiveSubBand", "NumSubBands"};
constexpr std::array<const char*, 8> kSubBandKeys = {"Index",      "Name",         "Caption", "Description",
                                                     "NumPresets", "ActivePreset", "FreqMin", "FreqMax"};
constexpr std::array<const char*, 6> kPresetKeys = {"Index",       "Name",   "Caption",
                                                    "Description", "Active", "When"};
// A plan that is made for any board leaves these two out.
constexpr std::array<const char*, 2> kLeftOut = {"LowSideLO", "OutputAttenuation"};

enum class Kind { Unknown, Main, SubBand, Preset };

struct Entry {
  int Line;
  std::string Key, Value;
};

struct Section {
  int Line = 0;
  std::string Name;
  Kind What = Kind::Unknown;
  std::int32_t Band = -1, Place = -1;
  std::vector<Entry> Entries;

  const Entry* Find(std::string_view key) const {
    const auto found = std::find_if(Entries.begin(), Entries.end(),
                                    [key](const Entry& entry) { return EqualsNoCase(entry.Key, key); });
    return found == Entries.end() ? nullptr : &*found;
  }
};

bool Holds(std::span<const char* const> keys, std::string_view key) {
  return std::any_of(keys.begin(), keys.end(), [key](const char* each) { return EqualsNoCase(each, key); });
}

// Plain decimals with no leading zeros.
std::optional<std::int32_t> Place(std::string_view text, std::int32_t most) {
  const auto number = ParseInt32(text);
  if (!number || *number < 0 || *number > most || NumberText(*number) != text) return {};
  return number;
}

void Name(Section& section) {
  const std::string_view name = section.Name;
  const auto dot = name.rfind('.');
  if (EqualsNoCase(name, "MainBand")) {
    section.What = Kind::Main;
  } else if (EqualsNoCase(name.substr(0, 8), "SubBand.")) {
    const auto band = Place(name.substr(8), kSubBandButtons);
    if (!band) return;
    section.What = Kind::SubBand;
    section.Band = *band;
  } else if (EqualsNoCase(name.substr(0, 7), "Preset.") && dot > 6 && dot != std::string_view::npos) {
    const auto band = Place(name.substr(7, dot - 7), kSubBandButtons);
    const auto place = Place(name.substr(dot + 1), kPresetButtons);
    if (!band || !place) return;
    section.What = Kind::Preset;
    section.Band = *band;
    section.Place = *place;
  }
}

std::string Kilohertz(std::int32_t hertz) {
  return NumberText(hertz / 1000.0) + " kHz";
}

class Check {
 public:
  Check(std::string_view content, const std::function<std::string(std::int32_t)>& modeName)
      : modeName_(modeName) {
    CheckFormat(content);
    const std::string mended = MendedFormat(content);
    const std::string text = IsUtf8(mended) ? mended : FromWindows1252(mended);
    Split(text);
    file_.init(text);
    plan_.Name = plan_.Caption = plan_.Description = "plan";
    CreateBandPlanRecords(plan_, "");
    ReadBandPlan(file_, plan_, [] {});
  }

  std::vector<PlanFinding> Run() {
    if (sections_.empty()) Warn(0, "holds no section: a load finds nothing in it");
    for (const Section& section : sections_) CheckSection(section);
    std::stable_sort(findings_.begin(), findings_.end(),
                     [](const PlanFinding& a, const PlanFinding& b) { return a.Line < b.Line; });
    return std::move(findings_);
  }

 private:
  void Say(int line, std::string text) { findings_.push_back({line, false, std::move(text)}); }
  void Warn(int line, std::string text) { findings_.push_back({line, true, std::move(text)}); }

  void CheckFormat(std::string_view content) {
    const PlanFormat format = FormatOf(content);
    if (format.ByteOrderMark) Warn(1, "a byte order mark hides the first section");
    const auto lineAt = [content](std::size_t at) {
      return int(std::count(content.begin(), content.begin() + std::ptrdiff_t(at), '\n')) + 1;
    };
    for (auto at = content.find('\n'); format.OtherLineEnds; at = content.find('\n', at + 1)) {
      if (at != 0 && content[at - 1] == '\r') continue;
      Warn(lineAt(at), "ends in a line feed alone: it and the next one are read as one line");
      break;
    }
    if (format.UnfinishedLine) Warn(lineAt(content.size()), "the last line has no end, and is not read");
  }

  void Split(std::string_view text) {
    IniReader reader(text);
    while (const auto line = reader.Next()) {
      if (line->Text.starts_with('[') && line->Kind == IniKind::Section) {
        Section section;
        section.Line = line->Number;
        section.Name = line->Name;
        Name(section);
        const auto before = std::find_if(sections_.begin(), sections_.end(), [&section](const Section& each) {
          return EqualsNoCase(each.Name, section.Name);
        });
        if (before != sections_.end()) {
          Warn(section.Line, "section " + section.Name + " stands at line " + NumberText(before->Line) +
                                 " already: this one is not read");
          section.What = Kind::Unknown;
        } else if (section.What == Kind::Unknown) {
          Warn(section.Line, "unknown section " + section.Name + ": nothing reads it");
        }
        sections_.push_back(section);
      } else if (!sections_.empty() && line->Kind == IniKind::Entry) {
        sections_.back().Entries.push_back({line->Number, std::string(line->Name), std::string(line->Value)});
      }
    }
  }

  void CheckSection(const Section& section) {
    if (section.What == Kind::Unknown) return;
    CheckKeys(section);
    if (section.What == Kind::Main) CheckMain(section);
    if (section.What == Kind::SubBand) CheckSubBand(section);
    if (section.What == Kind::Preset) CheckPreset(section);
  }

  void CheckKeys(const Section& section) {
    const std::span<const char* const> keys =
        section.What == Kind::Main      ? std::span<const char* const>(kMainKeys)
        : section.What == Kind::SubBand ? std::span<const char* const>(kSubBandKeys)
                                        : std::span<const char* const>(kPresetKeys);
    for (const Entry& entry : section.Entries) {
      const bool known = Holds(keys, entry.Key) || (section.What != Kind::Main && IsTuningKey(entry.Key));
      if (!known) Warn(entry.Line, "unknown key " + entry.Key);
      if (section.Find(entry.Key) != &entry)
        Warn(entry.Line, "key " + entry.Key + " stands there already: this one is not read");
    }
  }

  void CheckWhole(const Section& section, const char* key, std::int32_t least, std::int32_t most) {
    const Entry* entry = section.Find(key);
    if (!entry) return;
    const auto number = ParseInt32(entry->Value);
    if (!number) {
      Warn(entry->Line, std::string(key) + " is no number and passed over: " + entry->Value);
    } else if (*number < least || *number > most) {
      Warn(entry->Line, std::string(key) + " goes from " + NumberText(least) + " to " + NumberText(most) +
                            ": " + entry->Value);
    }
  }

  void CheckHertz(const Section& section, const char* key) {
    const Entry* entry = section.Find(key);
    if (entry && !ParseHertz(entry->Value)) {
      Warn(entry->Line, std::string(key) + " is no frequency in hertz and passed over: " + entry->Value);
    }
  }

  void CheckCaption(const Section& section, std::size_t most) {
    const Entry* entry = section.Find("Caption");
    if (!entry) return;
    const std::string_view cut = FirstCharacters(entry->Value, most);
    if (cut.size() < entry->Value.size())
      Warn(entry->Line, "the caption is cut to \"" + std::string(cut) + "\"");
  }

  void CheckMain(const Section& section) {
    CheckWhole(section, "ActiveSubBand", 0, kSubBandButtons - 1);
    CheckWhole(section, "NumSubBands", 0, kSubBandButtons);
    Say(section.Line, "plan \"" + plan_.Caption + "\", sub-bands 0 to " + NumberText(plan_.NumSubBands));
  }

  void CheckBlock(const Section& section) {
    TuningSettings block;
    const std::string ended = LoadTuningSettings(file_, section.Name, block);
    if (const Entry* entry = section.Find(ended); !ended.empty() && entry) {
      Warn(entry->Line, ended + " is no number: the keys read after it keep their first values");
    }
    std::string missing;
    for (const std::string& key : TuningKeys()) {
      if (!Holds(kLeftOut, key) && !section.Find(key)) missing += (missing.empty() ? "" : ", ") + key;
    }
    if (!missing.empty()) Warn(section.Line, section.Name + " lacks " + missing);
  }

  void CheckSubBand(const Section& section) {
    if (section.Band > plan_.NumSubBands)
      return Warn(section.Line, section.Name + " is not read: NumSubBands ends before it");
    CheckCaption(section, 6);
    CheckWhole(section, "ActivePreset", kNotSet, kPresetButtons - 1);
    CheckHertz(section, "FreqMin");
    CheckHertz(section, "FreqMax");
    const SubBand& band = plan_.SubBands[std::size_t(section.Band)];
    if (!band.Used) return Say(section.Line, section.Name + " is not used");
    if (!section.Find("ActivePreset")) Warn(section.Line, section.Name + " lacks ActivePreset");
    if (band.FreqMin > band.FreqMax) Warn(section.Line, section.Name + ": FreqMin lies above FreqMax");
    const std::int32_t dial = band.Settings.FreqCurrent;
    if (dial > 0 && band.FreqMin >= 0 && (dial < band.FreqMin || dial > band.FreqMax)) {
      Warn(section.Line, section.Name + ": its frequency lies outside of it");
    }
    CheckBlock(section);
    Say(section.Line, section.Name + " \"" + band.Caption + "\", " + Kilohertz(band.FreqMin) + " to " +
                          Kilohertz(band.FreqMax) + ", " + band.Description);
  }

  void CheckPreset(const Section& section) {
    const SubBand& band = plan_.SubBands[std::size_t(section.Band)];
    if (section.Band > plan_.NumSubBands || !band.Used) {
      return Warn(section.Line, section.Name + " is not read: its sub-band is not used");
    }
    if (section.Place == kPresetButtons) Warn(section.Line, section.Name + " is read, but has no button");
    CheckCaption(section, 7);
    CheckBlock(section);
    const Preset& preset = band.Presets[std::size_t(section.Place)];
    const std::int32_t hertz = preset.Settings.FreqCurrent;
    if (hertz < 1) return Say(section.Line, section.Name + " has no frequency");
    if (band.FreqMin >= 0 && (hertz < band.FreqMin || hertz > band.FreqMax)) {
      Warn(section.Line, section.Name + " lies outside of its sub-band");
    }
    Say(section.Line, section.Name + " \"" + preset.Caption + "\", " + Kilohertz(hertz) + ", " +
                          modeName_(preset.Settings.DemodMode) + ", " + preset.Description);
  }

  const std::function<std::string(std::int32_t)>& modeName_;
  std::vector<Section> sections_;
  clsINIFile file_;
  BandPlan plan_;
  std::vector<PlanFinding> findings_;
};

}  // namespace

std::vector<PlanFinding> CheckPlan(std::string_view content,
                                   const std::function<std::string(std::int32_t)>& modeName) {
  return Check(content, modeName).Run();
}

}  // namespace quorl
