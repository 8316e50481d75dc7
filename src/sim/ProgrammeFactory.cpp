#include "sim/ProgrammeFactory.h"

#include <algorithm>
#include <cmath>

#include "sim/Keyed.h"
#include "sim/Melody.h"
#include "sim/Modulators.h"
#include "sim/Wideband.h"

namespace quorl {
namespace {

constexpr int kFadeChunks = 40;
constexpr std::int64_t kLongestFmCycle = 60 * kChunksPerSecond;

std::int64_t ChunksOf(double seconds) {
  return std::max<std::int64_t>(1, std::llround(seconds * kChunksPerSecond));
}

std::string Where(const std::string& fileName, const StationDefinition& station) {
  return fileName + ", line " + std::to_string(station.ProgrammeLine) + ": ";
}

std::shared_ptr<Playlist> MakePlaylist(const StationDefinition& station, const std::string& fileName,
                                       const SpeechClips& clips, std::uint64_t seed, Failure& failure) {
  auto playlist = std::make_shared<Playlist>();
  for (const ProgrammeItem& item : station.Programme) {
    switch (item.Kind) {
      case ProgrammeItemKind::Speech: {
        const auto clip = clips.find(item.Clip);
        if (clip == clips.end()) {
          std::string known;
          for (const auto& [name, unused] : clips) known += (known.empty() ? "" : ", ") + name;
          failure =
              Error{2, Where(fileName, station) + "there is no speech clip \"" + item.Clip +
                           "\"; write one of " + (known.empty() ? "the clips in its folder speech" : known)};
          return nullptr;
        }
        playlist->Add(clip->second, std::max<std::int64_t>(1, clip->second->Chunks()), true, 0);
        break;
      }
      case ProgrammeItemKind::Melody:
        playlist->Add(std::make_shared<Melody>(seed), ChunksOf(item.Seconds), false, kFadeChunks);
        break;
      case ProgrammeItemKind::Tone:
        playlist->Add(std::make_shared<ToneAudio>(item.Hz), ChunksOf(item.Seconds), false, 1);
        break;
      case ProgrammeItemKind::Pause:
        playlist->Add(nullptr, ChunksOf(item.Seconds), false, 0);
        break;
    }
  }
  const std::int64_t missing =
      std::llround(station.CycleSeconds * kChunksPerSecond) - playlist->CycleChunks();
  if (missing > 0) playlist->Add(nullptr, missing, false, 0);
  playlist->SetOffset(std::llround(station.OffsetSeconds * kChunksPerSecond));
  return playlist;
}

}  // namespace

std::unique_ptr<Programme> MakeProgramme(const StationDefinition& station, const std::string& fileName,
                                         const SpeechClips& clips, std::uint64_t seed, Failure& failure) {
  const auto playlist = MakePlaylist(station, fileName, clips, seed, failure);
  if (!playlist) return nullptr;
  switch (station.Mode) {
    case StationMode::Am:
      return std::make_unique<AmProgramme>(playlist, station.DepthPercent / 100.0);
    case StationMode::Usb:
    case StationMode::Lsb:
      return std::make_unique<SsbProgramme>(playlist, station.Mode == StationMode::Usb);
    case StationMode::Cw:
      return std::make_unique<MorseProgramme>(station.Text, station.WordsPerMinute, station.PauseSeconds);
    case StationMode::Fm:
      if (playlist->CycleChunks() > kLongestFmCycle) {
        failure = Error{3, Where(fileName, station) +
                               "the programme of an fm station lasts longer than 60 s; "
                               "shorten its items or cycle_s"};
        return nullptr;
      }
      return std::make_unique<FmProgramme>(*playlist, playlist->CycleChunks(), station.DeviationHz);
    case StationMode::Carrier:
      return std::make_unique<CarrierProgramme>();
    case StationMode::Pips:
      return std::make_unique<PipProgramme>(playlist, TimeSignalSettings{.ToneHz = station.ToneHz});
    case StationMode::Drops:
      return std::make_unique<CarrierDropProgramme>(seed);
    case StationMode::Data:
      return std::make_unique<DataProgramme>(seed, station.ToneHz);
    case StationMode::Multicarrier:
      return std::make_unique<MulticarrierProgramme>(seed);
    case StationMode::Buzz:
      return std::make_unique<BuzzProgramme>(seed);
  }
  return nullptr;
}

}  // namespace quorl
