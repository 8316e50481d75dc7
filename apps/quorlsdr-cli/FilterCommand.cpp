// quorlsdr-cli filter: the frequency response of a designed filter as a table.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <memory>
#include <numbers>
#include <string_view>
#include <vector>

#include "Commands.h"
#include "Fault.h"
#include "OptionText.h"
#include "dsp/filters/clsFFTFilter.h"
#include "dsp/kernel/KernelSettings.h"
#include "recorder/files/StreamIo.h"
#include "state/PublicConstants.h"

namespace quorl::cli {
namespace {

constexpr std::array<std::string_view, 3> WindowNames = {"none", "hamming",
                                                         "blackman"};  // in WindowType's order
constexpr Range DesignRange = {0, FSampling / 2};
constexpr double LeastMagnitude = 1e-15;  // -300 dB stand for nothing at all

struct FilterOptions {
  int Low = 0;
  int High = 0;
  bool Reject = false;
  bool Quadrature = false;
  bool NoNormalise = false;
  int WindowType = 2;
};

void Design(const FilterOptions& options, clsFFTFilter& filter) {
  filter.SegmentSize = SegmentSize;
  filter.FSampling = FSampling;
  filter.WindowType = options.WindowType;
  filter.init(BlockPoints);
  filter.FLow = options.Low;
  filter.FHigh = options.High;
  filter.BandReject = options.Reject;
  filter.QPhase = options.Quadrature;
  filter.NormaliseGain = !options.NoNormalise;
  filter.MakeFilter();
}

int Run(const FilterOptions& options) {
  KernelSettings settings;
  clsFFTFilter filter(settings);
  Design(options, filter);
  std::vector<float> re(SegmentSize), im(SegmentSize);
  filter.GetFilterFCoeffs_S(re.data(), im.data());

  errno = 0;
  std::cout << "hz,db,degrees\n";
  for (std::size_t bin = 0; bin <= SegmentSize / 2; ++bin) {
    const double magnitude = std::max<double>(std::hypot(re[bin], im[bin]), LeastMagnitude);
    const double degrees = std::atan2(im[bin], re[bin]) * 180.0 / std::numbers::pi;
    std::array<char, 64> line;
    std::snprintf(line.data(), line.size(), "%.5f,%.3f,%.3f\n", static_cast<double>(bin) * filter.HzPerBin,
                  20.0 * std::log10(magnitude), degrees);
    std::cout << line.data();
  }
  std::cout.flush();
  if (std::cout) return ExitCode::Success;
  PrintFault(IoError("standard output", "can't be written").Text);
  return ExitCode::Failed;
}

}  // namespace

void AddFilterCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<FilterOptions>();
  CLI::App* command = app.add_subcommand("filter", "Design a filter; its response as CSV: hz,db,degrees");
  const auto addEdge = [command](const std::string& name, const std::string& help, int& edge) {
    command
        ->add_option_function<std::string>(
            name, [name, &edge](const std::string& text) { edge = ParseWhole(name, text, DesignRange); },
            help)
        ->type_name("0..24000")
        ->required();
  };
  addEdge("--low", "lower edge in Hz", options->Low);
  addEdge("--high", "upper edge in Hz", options->High);
  command->add_flag("--reject", options->Reject, "band stop instead of band pass");
  command->add_flag("--quadrature", options->Quadrature, "the band pass 90 degrees apart");
  command
      ->add_option_function<std::string>(
          "--window",
          [options](const std::string& text) {
            options->WindowType = ParseChoice("--window", text, WindowNames);
          },
          "window of the design, default blackman")
      ->type_name(JoinNames(WindowNames));
  command->add_flag("--no-normalise", options->NoNormalise, "leave the gain as the design gives it");
  command->callback([options, &exitCode] {
    if (options->Low >= options->High) Refuse("--low", "the band is empty; --low must lie below --high");
    if (options->Reject && (options->Quadrature || options->NoNormalise)) {
      Refuse("--reject",
             "a band stop has one phase and a gain of one; leave --quadrature and --no-normalise out");
    }
    exitCode = Run(*options);
  });
}

}  // namespace quorl::cli
