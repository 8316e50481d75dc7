// quorlsdr-cli receive: a recording in, audio out.
#include <chrono>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Commands.h"
#include "Fault.h"
#include "InterruptWatcher.h"
#include "OfflineReceiver.h"
#include "Options.h"
#include "Progress.h"
#include "ReceiveOptions.h"
#include "RecordingBlocks.h"
#include "platform/CalendarDays.h"
#include "platform/linux/system/LinuxClock.h"
#include "platform/linux/system/LinuxFiles.h"
#include "recorder/files/RawStream.h"
#include "recorder/files/WavWriter.h"
#include "support/Rounding.h"

namespace quorl::cli {
namespace {

constexpr RecordingFormat kAudio;  // of the output

struct Order {
  ReceiveOptions Reception;
  bool Log = false;
  std::optional<std::int32_t> FrequencyDhz;  // for the log of an input that has none
};

struct Output {
  std::unique_ptr<SampleWriter> Writer;
  WavWriter* Wav = nullptr;  // the same, where it is no raw stream
};

Output OpenOutput(Files& files, const ReceiveOptions& options, Failure& failure) {
  if (options.Output == "-") return {std::make_unique<RawWriter>(std::cout, "standard output"), nullptr};
  auto file = WavWriter::Create(files, options.Output, kAudio, failure);
  WavWriter* wav = file.get();
  return {std::move(file), wav};
}

// What keeps the log from being written; empty where nothing does.
std::string Misfit(const Order& order, const RecordingBlocks& blocks, const Output& output) {
  if (!order.Log) return "";
  if (output.Wav == nullptr || !output.Wav->TakesLog()) {
    return order.Reception.Output + ": a pipe carries no tuning log; --log needs a file";
  }
  const bool hasLog = blocks.Own() && !blocks.Own()->Log.empty();
  if (hasLog && order.FrequencyDhz) {
    return "--frequency: " + blocks.Name() + " brings its own tuning log; leave this out";
  }
  if (!hasLog && !order.FrequencyDhz) {
    return blocks.Name() + ": has no tuning log; --log needs --frequency KHZ then";
  }
  return "";
}

// The input's log, its places in the output; else one record of the frequency that was told.
std::vector<LogRecord> LogOf(const Order& order, const RecordingBlocks& blocks, std::int64_t frames) {
  if (!order.FrequencyDhz) return MoveLog(blocks.Own()->Log, blocks.Own()->Format, kAudio);
  const std::int64_t end = kAudio.DataAt() + frames * kAudio.FrameBytes();
  return {{DaysOf(LinuxClock().Now()), *order.FrequencyDhz, kAudio.DataAt(), end + 1}};
}

// Carries everything from the recording to the writer; returns the frames that went through.
std::int64_t Carry(RecordingBlocks& blocks, SampleWriter& writer, OfflineReceiver& reception,
                   Failure& failure) {
  Progress progress(blocks.Frames());
  std::int64_t done = 0;
  for (int got = SamplesPerEvent; got == SamplesPerEvent;) {
    got = blocks.Next(failure);
    if (failure || got == 0) break;
    reception.Process(blocks.Left(), blocks.Right());
    failure = writer.Write(blocks.Left(), got);
    if (failure) break;
    done += got;
    progress.Update(done);
  }
  return done;
}

int Run(Order order) {
  const auto begin = std::chrono::steady_clock::now();
  Failure failure;
  LinuxFiles files;
  const auto blocks = RecordingBlocks::Open(files, order.Reception, failure);
  if (failure) return Stop(failure, ExitCode::Refused);
  InterruptWatcher watcher(files);
  const Output output = OpenOutput(files, order.Reception, failure);
  if (failure) return Stop(failure, ExitCode::Refused);
  if (const std::string misfit = Misfit(order, *blocks, output); !misfit.empty()) {
    PrintFault(misfit);
    return ExitCode::Refused;
  }

  watcher.Start({output.Wav != nullptr ? output.Wav->Temporary() : ""}, order.Reception.Output);
  OfflineReceiver reception(order.Reception);
  const std::int64_t frames = Carry(*blocks, *output.Writer, reception, failure);
  if (failure) return StopAtWork(failure);
  if (order.Log) output.Wav->SetLog(LogOf(order, *blocks, frames));
  failure = output.Writer->Commit();
  if (failure) return Stop(failure, ExitCode::Failed);
  if (order.Reception.Report) {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
    PrintReport(reception.Report(), frames, elapsed.count());
  }
  return ExitCode::Success;
}

constexpr const char* kReceiveExamples = R"(Examples:
  quorlsdr-cli receive --mode am --if-filter track recording.wav audio.wav
  quorlsdr-cli receive --mode usb --log if-recording.wav audio.wav

An IF recording brings its board and its oscillator's side along, and its tuning log for --log.)";

}  // namespace

void AddReceiveCommand(CLI::App& app, int& exitCode) {
  auto order = std::make_shared<Order>();
  CLI::App* command = app.add_subcommand("receive", "Demodulate a recording");
  command->footer(kReceiveExamples);
  AddReceiveOptions(*command, order->Reception);
  command->add_flag("--log", order->Log, "put the input's tuning log behind the audio");
  AddNumber(*command, "--frequency", "KHZ", 0.0001, kHighestKhz,
            "with --log: what was tuned, for an input without a log",
            [order](double khz) { order->FrequencyDhz = RoundHalfEven(khz * 10000.0); });
  command->callback([command, order, &exitCode] {
    RefuseChannelsOfFile(*command, order->Reception);
    if (order->FrequencyDhz && !order->Log)
      Refuse("--frequency", "goes into the tuning log; --log is needed");
    exitCode = Run(*order);
  });
}

}  // namespace quorl::cli
