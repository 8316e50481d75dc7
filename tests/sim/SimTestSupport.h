// Bands, oscillators and measurements for the tests of the simulated antenna.
#pragma once

#include <gtest/gtest.h>

#include <complex>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/virtual/VirtualFiles.h"
#include "signals/Measures.h"
#include "sim/SimulatedBand.h"
#include "sim/SimulatedBoard.h"

namespace quorl {

// The project's demo folder, copied into memory as "demo".
inline VirtualFiles DemoFiles() {
  VirtualFiles files;
  const std::filesystem::path root = std::filesystem::path(QUORL_SOURCE_DIR) / "data" / "demo";
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    if (!entry.is_regular_file()) continue;
    std::ifstream in(entry.path(), std::ios::binary);
    files.Put("demo/" + entry.path().lexically_relative(root).generic_string(),
              std::string(std::istreambuf_iterator<char>(in), {}));
  }
  return files;
}

inline std::unique_ptr<SimulatedBand> DemoBand() {
  Failure failure;
  auto band = LoadBand(DemoFiles(), "demo", failure);
  EXPECT_TRUE(band) << (failure ? failure->Text : "");
  return band;
}

// A band of the given stations, without speech, and next to no noise.
inline std::unique_ptr<SimulatedBand> BandOf(const std::string& stations,
                                             const std::string& head = "noise_dbm_hz = -200\n") {
  BandDefinition definition;
  Failure failure = ParseStations("[band]\n" + head + stations, "test", definition);
  EXPECT_FALSE(failure) << failure->Text;
  auto band = SimulatedBand::Build(definition, "test", {}, failure);
  EXPECT_TRUE(band) << (failure ? failure->Text : "");
  return band;
}

// The same with the demo's speech clips.
inline std::unique_ptr<SimulatedBand> SpeakingBandOf(const std::string& stations) {
  VirtualFiles files = DemoFiles();
  files.Put("demo/stations.ini", "[band]\nnoise_dbm_hz = -200\n" + stations);
  Failure failure;
  auto band = LoadBand(files, "demo", failure);
  EXPECT_TRUE(band) << (failure ? failure->Text : "");
  return band;
}

inline std::string StationText(const std::string& khz, const std::string& mode,
                               const std::string& more = "") {
  return "[station " + khz + " " + mode + "]\nfrequency_khz = " + khz + "\nmode = " + mode +
         "\nlevel_dbm = -60\n" + more + "\n";
}

// An oscillator that is set by hand.
class HandTunedChip final : public SimulatedChip {
 public:
  std::optional<double> Hz;
  void SetPin(ChipPin, bool) override {}
  std::optional<double> OutputHz() const override { return Hz; }
  std::uint32_t TuningWord() const override { return 0; }
  void SetClockError(double) override {}
};

struct StereoSamples {
  std::vector<double> Left, Right;
};

inline StereoSamples RenderFrames(SampleSource& source, int frames, int block = 2048) {
  StereoSamples result;
  std::vector<std::int16_t> buffer(2 * static_cast<std::size_t>(block));
  for (int done = 0; done < frames; done += block) {
    const int count = std::min(block, frames - done);
    source.Render(buffer.data(), count);
    for (int n = 0; n < count; ++n) {
      result.Left.push_back(buffer[2 * static_cast<std::size_t>(n)]);
      result.Right.push_back(buffer[2 * static_cast<std::size_t>(n) + 1]);
    }
  }
  return result;
}

using test::Decibels;
using test::RootMeanSquare;

// Amplitude of e^{j 2 pi hz t} in left + j x right over the second half of the samples, the first half being
// the start-up. With `right` empty a real line of amplitude A reads A.
inline double LineAt(const std::vector<double>& left, const std::vector<double>& right, double hz) {
  const auto secondHalf = [](const std::vector<double>& samples) {
    return std::span<const double>(samples).subspan(samples.size() / 2);
  };
  const std::complex<double> i = test::PhasorAt(secondHalf(left), hz, test::Window::Blackman);
  if (right.empty()) return std::abs(i);
  const std::complex<double> q = test::PhasorAt(secondHalf(right), hz, test::Window::Blackman);
  return std::abs(i + std::complex<double>(0.0, 1.0) * q) / 2.0;
}

}  // namespace quorl
