#include "sim/SimulatedBand.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "sim/ProgrammeFactory.h"
#include "sim/Wideband.h"
#include "support/Decibels.h"

namespace quorl {
namespace {

constexpr double kHalfPassbandHz = 13500.0;  // beyond it a board's filter leaves nothing
constexpr double kInaudibleDbm = -165.0;

double AmplitudeOf(double dbm) {
  return Ratio(dbm);
}

// Adds the station's chunk from sample `from` on, turned by `phase` there and `step` more with every sample.
void AddTurned(const Station& station, int from, double phase, double step, float gain, float mirror,
               float* i, float* q) {
  constexpr int kPhasors = 4;  // side by side, as each waits for its own last turn
  std::array<double, kPhasors> re, im;
  for (int k = 0; k < kPhasors; ++k) {
    re[static_cast<std::size_t>(k)] = std::cos(phase + k * step);
    im[static_cast<std::size_t>(k)] = std::sin(phase + k * step);
  }
  const double turnRe = std::cos(kPhasors * step), turnIm = std::sin(kPhasors * step);
  const float* stationI = station.I();
  const float* stationQ = station.Q();
  for (int n = from; n < kChunkFrames; n += kPhasors) {
    const int count = std::min(kPhasors, kChunkFrames - n);
    for (int k = 0; k < count; ++k) {
      const auto c = static_cast<float>(re[static_cast<std::size_t>(k)]);
      const auto s = static_cast<float>(im[static_cast<std::size_t>(k)]);
      i[n + k] += gain * (stationI[n + k] * c - stationQ[n + k] * s);
      q[n + k] += mirror * (stationI[n + k] * s + stationQ[n + k] * c);
    }
    for (std::size_t k = 0; k < kPhasors; ++k) {
      const double next = re[k] * turnRe - im[k] * turnIm;
      im[k] = re[k] * turnIm + im[k] * turnRe;
      re[k] = next;
    }
  }
}

}  // namespace

SimulatedBand::SimulatedBand(const BandDefinition& definition)
    : seed_(HashOf(static_cast<std::uint64_t>(definition.Seed), 0)),
      noiseAmplitude_(
          static_cast<float>(AmplitudeOf(definition.NoiseDbmHz + 10.0 * std::log10(kOutputRate)))) {
  if (!definition.SparkDbm) return;
  const StationSettings settings = {.LevelDbm = *definition.SparkDbm, .Seed = seed_};
  sparks_ = std::make_unique<Station>(settings, std::make_unique<SparkProgramme>(seed_ + 1));
}

std::unique_ptr<SimulatedBand> SimulatedBand::Build(const BandDefinition& definition,
                                                    const std::string& fileName, const SpeechClips& clips,
                                                    Failure& failure) {
  std::unique_ptr<SimulatedBand> band(new SimulatedBand(definition));
  for (const StationDefinition& each : definition.Stations) {
    // From the name, so that a station keeps its tune when others come and go in the file.
    const std::uint64_t seed = HashOf(band->seed_, HashOfText(each.Name));
    auto programme = MakeProgramme(each, fileName, clips, seed, failure);
    if (!programme) return nullptr;
    const StationSettings settings = {each.FrequencyKhz * 1000.0, each.LevelDbm, each.FadingDb,
                                      each.FadingSeconds, seed};
    band->stations_.push_back(std::make_unique<Station>(settings, std::move(programme)));
  }
  return band;
}

void SimulatedBand::AddStations(std::int64_t chunk, int from, const Window& window, float* i, float* q) {
  const double gainDb = 20.0 * std::log10(window.Gain);
  const float gain = static_cast<float>(window.Gain);
  const float mirror = window.Inverted ? -gain : gain;
  for (const auto& station : stations_) {
    const double hz = station->FrequencyHz() - window.CentreHz;
    if (std::abs(hz) > kHalfPassbandHz + station->HalfWidthHz()) continue;
    if (station->LevelDbm() + gainDb < kInaudibleDbm) continue;
    station->Prepare(chunk);
    // From the absolute time, so that the phase depends on nothing that went before.
    const double turns = std::fmod(hz * static_cast<double>(chunk) / kChunksPerSecond, 1.0) +
                         hz * from / kOutputRate + window.PhaseCycles;
    const double phase = 2.0 * std::numbers::pi * std::fmod(turns, 1.0);
    const double step = 2.0 * std::numbers::pi * hz / kOutputRate;
    AddTurned(*station, from, phase, step, gain, mirror, i, q);
  }
}

void SimulatedBand::AddSparks(std::int64_t chunk, int from, float gain, float* i, float* q) {
  if (!sparks_) return;
  sparks_->Prepare(chunk);
  for (int n = from; n < kChunkFrames; ++n) {
    i[n] += gain * sparks_->I()[n];
    q[n] += gain * sparks_->Q()[n];
  }
}

void SimulatedBand::AddNoise(std::int64_t chunk, int from, float* i, float* q) {
  std::array<float, kChunkFrames> noiseI, noiseQ;
  RenderNoise(seed_, chunk, {noiseI.data(), noiseQ.data(), kChunkFrames});
  for (int n = from; n < kChunkFrames; ++n) {
    i[n] += noiseAmplitude_ * noiseI[static_cast<std::size_t>(n)];
    q[n] += noiseAmplitude_ * noiseQ[static_cast<std::size_t>(n)];
  }
}

std::unique_ptr<SimulatedBand> LoadBand(const Files& files, const std::string& directory, Failure& failure) {
  const std::string stationsPath = directory + "/stations.ini";
  const std::optional<std::string> text = files.Read(stationsPath, failure);
  if (!text) return nullptr;
  BandDefinition definition;
  failure = ParseStations(*text, stationsPath, definition);
  if (failure) return nullptr;

  SpeechClips clips;
  constexpr std::string_view kSuffix = ".wav";
  const std::string speechPath = directory + "/speech";
  for (const std::string& name : files.List(speechPath, std::string(kSuffix))) {
    const std::string path = speechPath + "/" + name;
    const auto file = files.Open(path, OpenMode::Read, failure);
    if (!file) return nullptr;
    std::vector<float> samples;
    failure = DecodeSpeech(*file, samples);
    if (failure) return nullptr;
    clips[name.substr(0, name.size() - kSuffix.size())] = std::make_shared<SpeechClip>(std::move(samples));
  }
  return SimulatedBand::Build(definition, stationsPath, clips, failure);
}

}  // namespace quorl
