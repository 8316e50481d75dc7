#include "sim/StationsFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "support/IniReader.h"
#include "support/Text.h"

namespace quorl {
namespace {

struct NumberKey {
  std::string_view Key;
  double StationDefinition::*Member;
  double Least, Most;
};
constexpr std::array kStationKeys = std::to_array<NumberKey>({
    {"frequency_khz", &StationDefinition::FrequencyKhz, 1.0, 200000.0},
    {"level_dbm", &StationDefinition::LevelDbm, -160.0, 0.0},
    {"fading_db", &StationDefinition::FadingDb, 0.0, 60.0},
    {"fading_s", &StationDefinition::FadingSeconds, 0.2, 3600.0},
    {"cycle_s", &StationDefinition::CycleSeconds, 0.0, 600.0},
    {"offset_s", &StationDefinition::OffsetSeconds, 0.0, 600.0},
    {"wpm", &StationDefinition::WordsPerMinute, 5.0, 60.0},
    {"pause_s", &StationDefinition::PauseSeconds, 0.0, 600.0},
    {"depth_percent", &StationDefinition::DepthPercent, 0.0, 100.0},
    {"deviation_hz", &StationDefinition::DeviationHz, 100.0, 5000.0},
    {"tone_hz", &StationDefinition::ToneHz, 100.0, 3400.0},
});

struct ModeName {
  std::string_view Name;
  StationMode Mode;
};
constexpr std::array kModes = std::to_array<ModeName>({
    {"am", StationMode::Am},
    {"usb", StationMode::Usb},
    {"lsb", StationMode::Lsb},
    {"cw", StationMode::Cw},
    {"fm", StationMode::Fm},
    {"carrier", StationMode::Carrier},
    {"pips", StationMode::Pips},
    {"drops", StationMode::Drops},
    {"data", StationMode::Data},
    {"multicarrier", StationMode::Multicarrier},
    {"buzz", StationMode::Buzz},
});

constexpr double kLongestItem = 600.0;  // seconds
constexpr std::size_t kMostStations = 1000;

// The first word of `text`, which is shortened by it.
std::string_view NextWord(std::string_view& text) {
  text = Trim(text);
  const std::string_view word = text.substr(0, text.find_first_of(" \t"));
  text = Trim(text.substr(word.size()));
  return word;
}

std::optional<double> Number(std::string_view text) {
  double value = 0.0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (fault != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) return {};
  return value;
}

std::string Shown(double value) {
  std::array<char, 32> buffer{};
  const auto [end, fault] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), fault == std::errc() ? end : buffer.data()};
}

// A quoted piece of the file for a message: short and printable.
std::string Quoted(std::string_view text) {
  std::string shown(text.substr(0, 40));
  std::replace_if(
      shown.begin(), shown.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, '?');
  return "\"" + shown + (text.size() > 40 ? "...\"" : "\"");
}

class Parser {
 public:
  Parser(const std::string& fileName, BandDefinition& band) : fileName_(fileName), band_(band) {}

  Failure Parse(std::string_view text) {
    IniReader lines(text);
    while (const auto line = lines.Next()) {
      line_ = line->Number;
      if (Failure failure = TakeLine(*line)) return failure;
    }
    return CloseSection();
  }

 private:
  enum class Section { None, Band, Station };

  Failure Fault(int line, const std::string& what) const {
    return Error{1, fileName_ + ", line " + std::to_string(line) + ": " + what};
  }
  Failure Fault(const std::string& what) const { return Fault(line_, what); }

  Failure TakeLine(const IniLine& line) {
    const std::string quoted = Quoted(Trim(line.Text));
    switch (line.Kind) {
      case IniKind::Empty:
      case IniKind::Comment:
        return {};
      case IniKind::Section:
        return OpenSection(line.Name, quoted);
      case IniKind::Entry:
        return TakeEntry(line, quoted);
      case IniKind::Broken:
        break;
    }
    return Fault(quoted +
                 " is neither a [section] nor a key = value; write one of these, or put ; before it");
  }

  Failure TakeEntry(const IniLine& line, const std::string& quoted) {
    switch (section_) {
      case Section::Band:
        return TakeBandKey(line.Name, line.Value);
      case Section::Station:
        return TakeStationKey(line.Name, line.Value);
      case Section::None:
        break;
    }
    return Fault(quoted + " stands before the first section; put a line [band] or [station NAME] above it");
  }

  Failure OpenSection(std::string_view name, const std::string& quoted) {
    if (Failure failure = CloseSection()) return failure;
    constexpr std::string_view kStation = "station ";
    if (name == "band") {
      section_ = Section::Band;
      return {};
    }
    if (!name.starts_with(kStation))
      return Fault(quoted + " is no section of this file; write [band] or [station NAME]");
    if (band_.Stations.size() >= kMostStations)
      return Fault("more than " + std::to_string(kMostStations) + " stations; remove some");
    section_ = Section::Station;
    band_.Stations.emplace_back();
    band_.Stations.back().Name = Trim(name.substr(kStation.size()));
    band_.Stations.back().Line = line_;
    modeSeen_ = false;
    return {};
  }

  Failure CloseSection() {
    if (section_ != Section::Station) return {};
    const StationDefinition& station = band_.Stations.back();
    const std::string name = "station " + Quoted(station.Name);
    if (station.FrequencyKhz == 0.0)
      return Fault(station.Line, name + " has no frequency; add a line such as frequency_khz = 7050");
    if (!modeSeen_) return Fault(station.Line, name + " has no mode; add a line such as mode = am");
    const bool voice = station.Mode == StationMode::Am || station.Mode == StationMode::Usb ||
                       station.Mode == StationMode::Lsb || station.Mode == StationMode::Fm;
    if (voice && station.Programme.empty())
      return Fault(station.Line, name + " has nothing to send; add a line such as programme = melody 20");
    if (station.Mode == StationMode::Cw && station.Text.empty())
      return Fault(station.Line, name + " has no text; add a line such as text = CQ CQ");
    return {};
  }

  Failure TakeNumber(std::string_view key, std::string_view value, double least, double most,
                     double& target) {
    const std::optional<double> number = Number(value);
    if (!number || *number < least || *number > most) {
      return Fault(std::string(key) + " is " + Quoted(value) + "; write a number from " + Shown(least) +
                   " to " + Shown(most));
    }
    target = *number;
    return {};
  }

  Failure TakeBandKey(std::string_view key, std::string_view value) {
    if (key == "seed") return TakeNumber(key, value, 0.0, 4294967295.0, band_.Seed);
    if (key == "noise_dbm_hz") return TakeNumber(key, value, -200.0, -80.0, band_.NoiseDbmHz);
    if (key == "spark_dbm") return TakeNumber(key, value, -160.0, 0.0, band_.SparkDbm.emplace(0.0));
    return Fault(Quoted(key) + " is no key of [band]; there are seed, noise_dbm_hz and spark_dbm");
  }

  Failure TakeStationKey(std::string_view key, std::string_view value) {
    StationDefinition& station = band_.Stations.back();
    for (const NumberKey& each : kStationKeys) {
      if (each.Key == key) return TakeNumber(key, value, each.Least, each.Most, station.*each.Member);
    }
    if (key == "mode") return TakeMode(value, station);
    if (key == "programme") return TakeProgramme(value, station);
    if (key == "text") {
      station.Text = value;
      return {};
    }
    std::string known = "mode, programme, text";
    for (const NumberKey& each : kStationKeys) known.append(", ").append(each.Key);
    return Fault(Quoted(key) + " is no key of a station; there are " + known);
  }

  Failure TakeMode(std::string_view value, StationDefinition& station) {
    std::string known;
    for (const ModeName& each : kModes) {
      if (each.Name == value) {
        station.Mode = each.Mode;
        modeSeen_ = true;
        return {};
      }
      known.append(known.empty() ? "" : ", ").append(each.Name);
    }
    return Fault("mode is " + Quoted(value) + "; write one of " + known);
  }

  Failure TakeProgramme(std::string_view value, StationDefinition& station) {
    station.Programme.clear();
    station.ProgrammeLine = line_;
    while (!value.empty()) {
      const std::size_t comma = std::min(value.find(','), value.size());
      if (Failure failure = TakeItem(Trim(value.substr(0, comma)), station)) return failure;
      value.remove_prefix(std::min(comma + 1, value.size()));
    }
    return {};
  }

  Failure TakeItem(std::string_view text, StationDefinition& station) {
    std::string_view rest = text;
    const std::string_view kind = NextWord(rest);
    ProgrammeItem item;
    bool good = false;
    if (kind == "speech") {
      item.Kind = ProgrammeItemKind::Speech;
      item.Clip = NextWord(rest);
      good = !item.Clip.empty();
    } else {
      item.Kind = kind == "melody" ? ProgrammeItemKind::Melody
                  : kind == "tone" ? ProgrammeItemKind::Tone
                                   : ProgrammeItemKind::Pause;
      const bool tone = item.Kind == ProgrammeItemKind::Tone;
      item.Hz = tone ? Number(NextWord(rest)).value_or(-1.0) : 1000.0;
      item.Seconds = Number(NextWord(rest)).value_or(0.0);
      good = (tone || kind == "melody" || kind == "pause") && item.Hz >= 20.0 && item.Hz <= 3400.0 &&
             item.Seconds >= 0.01 && item.Seconds <= kLongestItem;
    }
    if (!good || !rest.empty()) {
      return Fault(
          "programme has " + Quoted(text) +
          "; write speech CLIP, melody SECONDS, tone HZ SECONDS or pause SECONDS, with 20 to 3400 Hz and "
          "0.01 to 600 seconds");
    }
    station.Programme.push_back(std::move(item));
    return {};
  }

  const std::string& fileName_;
  BandDefinition& band_;
  Section section_ = Section::None;
  int line_ = 0;
  bool modeSeen_ = false;
};

}  // namespace

Failure ParseStations(std::string_view text, const std::string& fileName, BandDefinition& band) {
  BandDefinition fresh;
  if (Failure failure = Parser(fileName, fresh).Parse(text)) return failure;
  band = std::move(fresh);
  return {};
}

}  // namespace quorl
