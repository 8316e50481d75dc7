// All that is on the air at one antenna: stations, man-made noise, the noise floor.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "sim/SpeechClip.h"
#include "sim/Station.h"
#include "sim/StationsFile.h"
#include "support/Error.h"

namespace quorl {

using SpeechClips = std::map<std::string, std::shared_ptr<const SpeechClip>>;

class SimulatedBand {
 public:
  // A stretch of the spectrum, brought down so that `CentreHz` comes to 0 Hz; inverted: what lies above it
  // comes out below 0. `PhaseCycles` turns it all, `Gain` (amplitude) scales it.
  struct Window {
    double CentreHz = 0.0;
    bool Inverted = false;
    double PhaseCycles = 0.0;
    double Gain = 1.0;
  };

  // Empty with `failure` set where `definition` names a clip that `clips` doesn't hold; `fileName` is for the
  // message.
  static std::unique_ptr<SimulatedBand> Build(const BandDefinition& definition, const std::string& fileName,
                                              const SpeechClips& clips, Failure& failure);

  // Adds samples `from` to kChunkFrames - 1 of `chunk` at 48000 Hz to `i` and `q`, which hold the whole
  // chunk. Amplitude 1 is 0 dBm. Stations more than some 12 kHz off the centre cost nothing.
  void AddStations(std::int64_t chunk, int from, const Window& window, float* i, float* q);
  // The same for man-made clicks, which are everywhere alike; `gain` as in Window.
  void AddSparks(std::int64_t chunk, int from, float gain, float* i, float* q);
  // The same for the noise floor, which is there with the oscillator silent too.
  void AddNoise(std::int64_t chunk, int from, float* i, float* q);

 private:
  explicit SimulatedBand(const BandDefinition& definition);

  std::vector<std::unique_ptr<Station>> stations_;
  std::unique_ptr<Station> sparks_;
  std::uint64_t seed_;
  float noiseAmplitude_;
};

// Reads DIRECTORY/stations.ini and the clips DIRECTORY/speech/*.wav. Null with one line in `failure` where
// a file is missing or broken.
std::unique_ptr<SimulatedBand> LoadBand(const Files& files, const std::string& directory, Failure& failure);

}  // namespace quorl
