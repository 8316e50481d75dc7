// quorlsdr-cli spectrum: the mean spectrum of a recording as a table and as a picture.
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Commands.h"
#include "Fault.h"
#include "InterruptWatcher.h"
#include "OfflineReceiver.h"
#include "Options.h"
#include "OutputFile.h"
#include "Progress.h"
#include "ReceiveOptions.h"
#include "RecordingBlocks.h"
#include "SpectrumMeter.h"
#include "SpectrumPicture.h"
#include "platform/linux/system/LinuxFiles.h"
#include "shared/PngImage.h"
#include "support/Text.h"

namespace quorl::cli {
namespace {

constexpr std::array<std::string_view, 4> kSourceNames{"if", "pre", "post", "af"};          // SpectrumSource
constexpr std::array<std::string_view, 3> kWindowNames{"none", "hann", "blackman-harris"};  // SpectrumWindow
constexpr double kLongest = 1e6, kShortest = 0.043;  // seconds; a block is the least
constexpr Range kCentreRange{0, 2000000000};
// Blocks that the filters and the AGC get to settle before the stretch that is measured.
constexpr std::int64_t kSettleBlocks = 48;

struct SpectrumOptions {
  ReceiveOptions Reception;
  SpectrumSettings Spectrum;
  std::int32_t Window = static_cast<std::int32_t>(SpectrumWindow::BlackmanHarris);
  double From = 0.0;
  std::optional<double> Seconds;
  std::string Csv, Png;
};

// The stretch of the recording, in frames.
struct Stretch {
  std::int64_t Begin, End;  // to be measured; End is far beyond where all of the rest is
  std::int64_t Skipped;     // before the first block, which comes early enough to settle
};

Stretch StretchOf(const SpectrumOptions& options) {
  const std::int64_t begin = std::llround(options.From * FSampling);
  const double seconds = options.Seconds.value_or(kLongest);
  const std::int64_t early = std::min(begin / SamplesPerEvent, kSettleBlocks) * SamplesPerEvent;
  return {begin, begin + std::llround(seconds * FSampling), begin - early};
}

// Frames that went through the receiver.
std::int64_t MeasureStretch(RecordingBlocks& blocks, const Stretch& stretch, OfflineReceiver& reception,
                            SpectrumMeter& meter, Failure& failure) {
  std::int64_t at = 0;
  while (at < stretch.Skipped) {
    const auto frames = static_cast<int>(std::min<std::int64_t>(stretch.Skipped - at, SamplesPerEvent));
    if (blocks.Next(failure, frames) < frames) return 0;
    at += frames;
  }
  Progress progress(blocks.Frames());
  std::int64_t done = 0;
  // Only whole blocks tell a level: silence after the end is none of the recording.
  while (at + SamplesPerEvent <= stretch.End && blocks.Next(failure) == SamplesPerEvent) {
    reception.Process(blocks.Left(), blocks.Right());
    if (at >= stretch.Begin) meter.Take();
    at += SamplesPerEvent;
    done += SamplesPerEvent;
    progress.Update(at);
  }
  return done;
}

std::string Table(const SpectrumMeter& meter) {
  std::string table = "hz,db\n";
  for (const SpectrumMeter::Point& point : meter.Mean()) {
    std::array<char, 64> line{};
    std::snprintf(line.data(), line.size(), "%.4f,%.2f\n", point.Hertz, static_cast<double>(point.Decibels));
    table += line.data();
  }
  return table;
}

std::string Title(const RecordingBlocks& blocks, const SpectrumOptions& options, const SpectrumMeter& meter) {
  const std::string& name = blocks.Name();
  std::array<char, 96> rest{};
  std::snprintf(rest.data(), rest.size(), "   source %s, window %s   %.1f s from %.1f s: mean and peaks",
                kSourceNames[static_cast<std::size_t>(options.Spectrum.Source)].data(),
                kWindowNames[static_cast<std::size_t>(options.Window)].data(),
                static_cast<double>(meter.Blocks()) * static_cast<double>(BlockSeconds), options.From);
  return FileNameOf(name) + rest.data();
}

Failure TooShort(const RecordingBlocks& blocks) {
  return Error{SampleFault::TruncatedData,
               blocks.Name() + ": holds no whole block of " + std::to_string(SamplesPerEvent) +
                   " frames where --from and --seconds want it; a longer recording is needed"};
}

// What is written, and where it goes.
class Outputs {
 public:
  Failure Open(Files& files, const SpectrumOptions& options) {
    Failure failure;
    name_ = !options.Png.empty() ? options.Png : options.Csv.empty() ? "standard output" : options.Csv;
    const bool table = !options.Csv.empty() || options.Png.empty();
    if (table) csv_ = OutputFile::Create(files, options.Csv.empty() ? "-" : options.Csv, failure);
    if (!failure && !options.Png.empty()) png_ = OutputFile::Create(files, options.Png, failure);
    return failure;
  }
  std::vector<std::string> Temporaries() const {
    std::vector<std::string> names;
    for (const auto* output : {csv_.get(), png_.get()}) {
      if (output != nullptr) names.push_back(output->Temporary());
    }
    return names;
  }
  const std::string& Name() const { return name_; }
  bool HasPicture() const { return png_ != nullptr; }

  // Both stand before the first takes its target's place.
  Failure Write(const std::string& table, const std::string& picture) {
    Failure failure;
    if (png_) failure = png_->Write(picture);
    if (!failure && csv_) failure = csv_->Write(table);
    if (!failure && png_) failure = png_->Commit();
    if (!failure && csv_) failure = csv_->Commit();
    return failure;
  }

 private:
  std::string name_;  // of one of them, for messages
  std::unique_ptr<OutputFile> csv_, png_;
};

int Run(SpectrumOptions options) {
  const auto begin = std::chrono::steady_clock::now();
  Failure failure;
  LinuxFiles files;
  const auto blocks = RecordingBlocks::Open(files, options.Reception, failure);
  if (failure) return Stop(failure, ExitCode::Refused);
  InterruptWatcher watcher(files);
  Outputs outputs;
  failure = outputs.Open(files, options);
  if (failure) return Stop(failure, ExitCode::Refused);
  watcher.Start(outputs.Temporaries(), outputs.Name());

  OfflineReceiver reception(options.Reception);
  SpectrumMeter meter(reception.Radio(), options.Spectrum);
  const std::int64_t frames = MeasureStretch(*blocks, StretchOf(options), reception, meter, failure);
  if (failure) return StopAtWork(failure);
  if (meter.Blocks() == 0) return Stop(TooShort(*blocks), ExitCode::Refused);
  std::string picture;
  if (outputs.HasPicture()) {
    const RasterCanvas canvas = DrawSpectrum(meter, Title(*blocks, options, meter), options.From);
    picture = EncodePng(canvas.Pixels(), canvas.DeviceWidth(), canvas.DeviceHeight(), failure);
  }
  if (!failure) failure = outputs.Write(Table(meter), picture);
  if (failure) return Stop(failure, ExitCode::Failed);
  if (options.Reception.Report) {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
    PrintReport(reception.Report(), frames, elapsed.count());
  }
  return ExitCode::Success;
}

// What only shows once all options are known.
void Check(const CLI::App& command, const SpectrumOptions& options) {
  RefuseChannelsOfFile(command, options.Reception);
  const bool sideband =
      options.Reception.DemodMode == DemodMode::USB || options.Reception.DemodMode == DemodMode::LSB;
  const std::int32_t source = options.Spectrum.Source;
  if (options.Spectrum.Centre &&
      (source == SpectrumSource::AFOut || (source == SpectrumSource::PostDemod && sideband)))
    Refuse("--centre", "audio has no place on the air; --source if or pre is needed");
  if (options.Csv == "-" && options.Png == "-")
    Refuse("--png", "standard output is taken by --csv; a file is needed");
}

}  // namespace

void AddSpectrumCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<SpectrumOptions>();
  CLI::App* command =
      app.add_subcommand("spectrum", "Mean spectrum of a recording as CSV: hz,db; as a picture");
  AddInputOptions(*command, options->Reception);
  AddReceptionOptions(*command, options->Reception);
  AddNumber(*command, "--from", "S", 0.0, kLongest, "seconds to leave out at the begin, default 0",
            [options](double value) { options->From = value; });
  AddNumber(*command, "--seconds", "S", kShortest, kLongest,
            "seconds to measure, in whole blocks; default all",
            [options](double value) { options->Seconds = value; });
  AddChoice(*command, "--source", kSourceNames,
            "point of the chain: the input, before and after the demodulator, the audio; default if",
            options->Spectrum.Source);
  AddChoice(*command, "--window", kWindowNames, "window of the transform, default blackman-harris",
            options->Window);
  AddWhole(*command, "--centre", kCentreRange,
           "Hz on the air of the middle of the recorded band; default is the recording's own scale",
           [options](int value) { options->Spectrum.Centre = value; });
  command
      ->add_option("--csv", options->Csv,
                   "file for the table; - is standard output, as is no --csv and no --png")
      ->type_name("FILE");
  command
      ->add_option("--png", options->Png,
                   "file for a picture of the spectrum over the waterfall; - is standard output")
      ->type_name("FILE");
  command->callback([command, options, &exitCode] {
    options->Spectrum.Window = static_cast<SpectrumWindow>(options->Window);
    Check(*command, *options);
    exitCode = Run(*options);
  });
}

}  // namespace quorl::cli
