// quorlsdr-cli receive: a recording in, audio out.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

#include "Commands.h"
#include "Fault.h"
#include "InterruptWatcher.h"
#include "OfflineReceiver.h"
#include "OptionText.h"
#include "Progress.h"
#include "ReceiveOptions.h"
#include "platform/linux/system/LinuxFiles.h"
#include "recorder/RawStream.h"
#include "recorder/WavReader.h"
#include "recorder/WavWriter.h"
#include "shared/JsonReport.h"

namespace quorl::cli {
namespace {

constexpr int BlockFrames = SamplesPerEvent;

struct Output {
  std::unique_ptr<SampleWriter> Writer;
  std::string Temporary;  // what an interruption has to remove
};

std::unique_ptr<SampleReader> OpenInput(const Files& files, const ReceiveOptions& options, Failure& failure) {
  if (options.Input == "-") return std::make_unique<RawReader>(std::cin, "standard input", options.Channels);
  return WavReader::Open(files, options.Input, WavNeeds{FSampling, 2}, failure);
}

Output OpenOutput(Files& files, const ReceiveOptions& options, Failure& failure) {
  if (options.Output == "-") return {std::make_unique<RawWriter>(std::cout, "standard output"), {}};
  auto file = WavWriter::Create(files, options.Output, 1, FSampling, failure);
  if (failure) return {};
  std::string temporary = file->Temporary();
  return {std::move(file), std::move(temporary)};
}

// Carries everything from reader to writer; returns the frames that went through.
std::int64_t Carry(SampleReader& reader, SampleWriter& writer, OfflineReceiver& reception, Failure& failure) {
  std::array<std::int16_t, 2 * BlockFrames> interleaved;
  std::array<std::int16_t, BlockFrames> left, right{};
  Progress progress(reader.Frames());
  std::int64_t done = 0;
  for (int got = BlockFrames; got == BlockFrames;) {
    got = reader.Read(interleaved.data(), BlockFrames, failure);
    if (failure || got == 0) break;
    const int channels = reader.Channels();
    for (int i = 0; i < got; ++i) {
      const auto frame = static_cast<std::size_t>(i);
      left[frame] = interleaved[frame * static_cast<std::size_t>(channels)];
      if (channels == 2) right[frame] = interleaved[2 * frame + 1];
    }
    std::fill(left.begin() + got, left.end(), std::int16_t{0});
    std::fill(right.begin() + got, right.end(), std::int16_t{0});
    reception.Process(left.data(), right.data());
    failure = writer.Write(left.data(), got);
    if (failure) break;
    done += got;
    progress.Update(done);
  }
  return done;
}

void PrintReport(const ReceptionReport& report, std::int64_t frames, double elapsedSeconds) {
  const double seconds = static_cast<double>(frames) / FSampling;
  JsonReport()
      .Add("blocks", report.Blocks)
      .Add("seconds", seconds, 3)
      .Add("signal_level", report.SignalLevel, 3)
      .Add("agc_gain", report.AGCGain, 6)
      .Add("peak_in", report.PeakIn)
      .Add("peak_out", report.PeakOut)
      .Add("us_per_block_mean", report.BlockMeanMicroseconds, 2)
      .Add("us_per_block_max", report.BlockMaxMicroseconds, 2)
      .Add("times_real_time", elapsedSeconds > 0.0 ? seconds / elapsedSeconds : 0.0, 1)
      .Print();
}

int Stop(const Failure& failure, int exitCode) {
  PrintFault(failure->Text);
  return exitCode;
}

int Run(const ReceiveOptions& options) {
  const auto begin = std::chrono::steady_clock::now();
  Failure failure;
  LinuxFiles files;
  const auto reader = OpenInput(files, options, failure);
  if (failure) return Stop(failure, ExitCode::Refused);
  if (options.SDRModelNo == SDRModel::IQXtalRX && reader->Channels() != 2) {
    const std::string name = options.Input == "-" ? "standard input" : options.Input;
    return Stop(Error{SampleFault::Format, name + ": has 1 channel; model iq needs I and Q in 2 channels"},
                ExitCode::Refused);
  }
  InterruptWatcher watcher(files);
  const Output output = OpenOutput(files, options, failure);
  if (failure) return Stop(failure, ExitCode::Refused);

  watcher.Start(output.Temporary, options.Output);
  OfflineReceiver reception(options);
  const std::int64_t frames = Carry(*reader, *output.Writer, reception, failure);
  // Faults of the data have numbers below 0, those of the system above.
  if (failure) return Stop(failure, failure->Code < 0 ? ExitCode::Refused : ExitCode::Failed);
  failure = output.Writer->Commit();
  if (failure) return Stop(failure, ExitCode::Failed);
  if (options.Report) {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
    PrintReport(reception.Report(), frames, elapsed.count());
  }
  return ExitCode::Success;
}

}  // namespace

void AddReceiveCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<ReceiveOptions>();
  CLI::App* command = app.add_subcommand("receive", "Demodulate a recording");
  AddReceiveOptions(*command, *options);
  command->callback([command, options, &exitCode] {
    if (command->count("--channels") > 0 && options->Input != "-") {
      Refuse("--channels", "a WAV file tells its channels itself; INPUT - is needed");
    }
    exitCode = Run(*options);
  });
}

}  // namespace quorl::cli
