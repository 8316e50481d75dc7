// The text file that says what is on the air: an INI file of one [band] and any number of [station NAME].
//
//   ; a comment, as is a line that begins with #
//   [band]
//   seed = 7                 any whole number; another seed is another evening
//   noise_dbm_hz = -152      noise of the antenna in 1 Hz
//   spark_dbm = -45          peak of man-made clicks; left out: none
//
//   [station Radio Horizon]
//   frequency_khz = 7205     carrier, or the zero of a sideband station's audio
//   mode = am                am usb lsb cw fm carrier pips drops data multicarrier buzz
//   level_dbm = -60          S9 is -73
//   fading_db = 15           depth of slow fading; fading_s its period
//   programme = melody 20, speech horizon, pause 1, tone 440 2
//   text = CQ CQ DE QX2LAB   what a cw station sends, at wpm, with pause_s after it
//
// Keys that a mode doesn't use are allowed. `kStationKeys` in the source holds all keys with their ranges.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/Error.h"

namespace quorl {

enum class StationMode { Am, Usb, Lsb, Cw, Fm, Carrier, Pips, Drops, Data, Multicarrier, Buzz };

enum class ProgrammeItemKind { Speech, Melody, Tone, Pause };

struct ProgrammeItem {
  ProgrammeItemKind Kind = ProgrammeItemKind::Pause;
  std::string Clip;      // of Speech
  double Hz = 0.0;       // of Tone
  double Seconds = 0.0;  // of all but Speech
};

struct StationDefinition {
  std::string Name;
  int Line = 0;           // of the section's head
  int ProgrammeLine = 0;  // 0 where there is none
  double FrequencyKhz = 0.0;
  StationMode Mode = StationMode::Carrier;
  double LevelDbm = -73.0;
  double FadingDb = 0.0;
  double FadingSeconds = 12.0;
  std::vector<ProgrammeItem> Programme;
  double CycleSeconds = 0.0;   // the programme is filled up with silence to this length
  double OffsetSeconds = 0.0;  // how far into the programme the station is at time 0
  std::string Text;
  double WordsPerMinute = 20.0;
  double PauseSeconds = 3.0;
  double DepthPercent = 80.0;   // of am
  double DeviationHz = 3000.0;  // of fm
  double ToneHz = 1000.0;       // of pips and data
};

struct BandDefinition {
  double Seed = 1.0;
  double NoiseDbmHz = -152.0;
  std::optional<double> SparkDbm;
  std::vector<StationDefinition> Stations;
};

// Reads the whole text into `band`. The first fault ends it with one line that names `fileName`, the line,
// what is wrong there and what to write; `band` is untouched then.
Failure ParseStations(std::string_view text, const std::string& fileName, BandDefinition& band);

}  // namespace quorl
