// quorlsdr-cli receive: a recording in, audio out.
#include <chrono>
#include <iostream>
#include <memory>
#include <string>

#include "Commands.h"
#include "Fault.h"
#include "InterruptWatcher.h"
#include "OfflineReceiver.h"
#include "Progress.h"
#include "ReceiveOptions.h"
#include "RecordingBlocks.h"
#include "platform/linux/system/LinuxFiles.h"
#include "recorder/files/RawStream.h"
#include "recorder/files/WavWriter.h"

namespace quorl::cli {
namespace {

struct Output {
  std::unique_ptr<SampleWriter> Writer;
  std::string Temporary;  // what an interruption has to remove
};

Output OpenOutput(Files& files, const ReceiveOptions& options, Failure& failure) {
  if (options.Output == "-") return {std::make_unique<RawWriter>(std::cout, "standard output"), {}};
  auto file = WavWriter::Create(files, options.Output, 1, FSampling, failure);
  if (failure) return {};
  std::string temporary = file->Temporary();
  return {std::move(file), std::move(temporary)};
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

int Run(const ReceiveOptions& options) {
  const auto begin = std::chrono::steady_clock::now();
  Failure failure;
  LinuxFiles files;
  const auto blocks = RecordingBlocks::Open(files, options, failure);
  if (failure) return Stop(failure, ExitCode::Refused);
  InterruptWatcher watcher(files);
  const Output output = OpenOutput(files, options, failure);
  if (failure) return Stop(failure, ExitCode::Refused);

  watcher.Start({output.Temporary}, options.Output);
  OfflineReceiver reception(options);
  const std::int64_t frames = Carry(*blocks, *output.Writer, reception, failure);
  if (failure) return StopAtWork(failure);
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
    RefuseChannelsOfFile(*command, *options);
    exitCode = Run(*options);
  });
}

}  // namespace quorl::cli
