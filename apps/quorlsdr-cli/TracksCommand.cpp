// quorlsdr-cli tracks: the tracks of a recording, listed and made into files of their own.
#include <cstdio>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "Commands.h"
#include "Fault.h"
#include "InterruptWatcher.h"
#include "platform/CalendarDays.h"
#include "platform/linux/media/SndfileSoundFiles.h"
#include "platform/linux/system/LinuxFiles.h"
#include "recorder/files/TrackExport.h"

namespace quorl::cli {
namespace {

struct TracksOptions {
  std::string File;
  bool Json = false;
  std::string Export;  // folder
  bool Flac = false;
};

nlohmann::ordered_json Row(const Track& track, int number) {
  return {{"track", number},
          {"khz", track.Freq / 10000.0},
          {"date", DateText(track.When)},
          {"start_seconds", track.StartSeconds},
          {"seconds", track.Seconds}};
}

void PrintTracks(const std::vector<Track>& tracks, bool asJson) {
  nlohmann::ordered_json rows = nlohmann::ordered_json::array();
  int number = 0;
  for (const Track& track : tracks) {
    ++number;
    if (asJson) {
      rows.push_back(Row(track, number));
    } else {
      std::printf("%5d %12.4f kHz  %s  %8s  %8s\n", number, track.Freq / 10000.0,
                  DateText(track.When).c_str(), HoursText(track.StartSeconds).c_str(),
                  HoursText(track.Seconds).c_str());
    }
  }
  if (asJson) {
    std::cout << rows.dump(2) << "\n";
  } else if (tracks.empty()) {
    std::cout << "No Track Information Found\n";
  }
}

int List(const TracksOptions& options) {
  const LinuxFiles files;
  Failure failure;
  const auto file = files.Open(options.File, OpenMode::Read, failure);
  if (failure) return Stop(failure, ExitCode::Refused);
  const RecordingRead read = ReadRecording(*file);
  if (read.Fault) return Stop(read.Fault, ExitCode::Refused);
  PrintTracks(read.Own ? TracksOf(*read.Own) : std::vector<Track>(), options.Json);
  return ExitCode::Success;
}

void PrintWritten(const std::vector<std::string>& paths, bool asJson) {
  if (asJson) {
    std::cout << nlohmann::ordered_json(paths).dump(2) << "\n";
  } else {
    for (const std::string& path : paths) std::cout << path << "\n";
  }
}

int Export(const TracksOptions& options) {
  LinuxFiles files;
  const SndfileSoundFiles media(files);
  const InterruptWatcher interrupts(files);
  TrackExport tracks(
      files, media,
      {options.File, options.Export, options.Flac ? SoundFileKind::Flac : SoundFileKind::Wav, {}});
  if (const Failure failure = tracks.Step()) return Stop(failure, ExitCode::Refused);
  Failure failure;
  bool stopped = false;
  while (!tracks.IsDone() && !failure && !stopped) {
    failure = tracks.Step();
    stopped = interrupts.TakePending();
  }
  tracks.Discard();
  PrintWritten(tracks.Written(), options.Json);
  if (failure) return StopAtWork(failure);
  if (tracks.IsDone()) return ExitCode::Success;
  PrintFault(options.Export + ": interrupted; the tracks that are named are complete");
  return ExitCode::Failed;
}

}  // namespace

void AddTracksCommand(CLI::App& app, int& exitCode) {
  CLI::App* command = app.add_subcommand("tracks", "List the tracks of a recording, or export them");
  auto options = std::make_shared<TracksOptions>();
  command->add_option("FILE", options->File, "a recording (.wav)")->required();
  command->add_flag("--json", options->Json, "as JSON");
  CLI::Option* folder =
      command->add_option("--export", options->Export,
                          "folder for one file a track, named by date and kHz, tagged; prints their names");
  command->add_flag("--flac", options->Flac, "FLAC files instead of WAV")->needs(folder);
  command->callback(
      [options, folder, &exitCode] { exitCode = folder->count() == 0 ? List(*options) : Export(*options); });
}

}  // namespace quorl::cli
