// quorlsdr-cli listen: the radio on the air, in a terminal.
#include <algorithm>
#include <array>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <memory>

#include "Commands.h"
#include "Fault.h"
#include "ListenOptions.h"
#include "ListenScreen.h"
#include "OptionText.h"
#include "core/LiveRadio.h"
#include "platform/linux/LinuxEventQueue.h"
#include "platform/linux/TerminalDialogs.h"
#include "shared/AudioFile.h"
#include "shared/RadioMachine.h"
#include "support/Rounding.h"

namespace quorl::cli {
namespace {

constexpr double kHighestKhz = 214748.3647;
constexpr std::chrono::milliseconds kRedraw(200);

volatile std::sig_atomic_t interrupted = 0;

void PrintReport(const LiveRadio& radio, RadioMachine& machine, double seconds, std::int64_t blocks,
                 double microseconds, double longest) {
  const SoundStatistics sound = machine.Parts().Sound.Statistics();
  std::fprintf(
      stderr,
      "{\"blocks\": %lld, \"seconds\": %.3f, \"frequency_hz\": %.1f, \"oscillator_hz\": %.1f, "
      "\"signal_level\": %.3f, \"agc_gain\": %.6g, \"us_per_block_mean\": %.2f, \"us_per_block_max\": %.2f, "
      "\"captured_blocks\": %lld, \"overruns\": %lld, \"underruns\": %lld}\n",
      static_cast<long long>(blocks), seconds, radio.VFO()->TunedFrequency() / 10.0,
      radio.VFO()->OscOut / 10.0, static_cast<double>(radio.Radio.MeanSignalLevel()),
      static_cast<double>(radio.Radio.Vars.AGCMeterGain),
      blocks > 0 ? microseconds / static_cast<double>(blocks) : 0.0, longest,
      static_cast<long long>(sound.CapturedBlocks), static_cast<long long>(sound.Overruns),
      static_cast<long long>(sound.Underruns));
}

int Listen(const ListenOptions& options, RadioMachine& machine, LinuxEventQueue& terminal, AudioFile* file) {
  NoRecorder recorder;
  LiveRadio radio(machine.Parts(), recorder);
  ApplyReceiveOptions(options.Reception, radio.Radio);
  radio.CreateSoundCard();
  radio.SoundCard().CurrentCaptureDevice = machine.CaptureDevice();
  radio.SoundCard().CurrentPlaybackDevice = machine.PlaybackDevice();
  radio.CreateTuning(machine.Settings(), InterfaceType::Serial, false,
                     [](const std::string& line) { PrintFault(line); });
  clsVFO& vfo = *radio.VFO();
  vfo.HiSideLO = !options.Reception.LowSideLO;
  SetLowSideLO(radio.Radio.Vars, options.Reception.LowSideLO);
  if (const Failure failure = vfo.SetTunedFrequency(options.FrequencyDhz.value_or(vfo.TunedFrequency()))) {
    PrintFault(failure->Text);
    return ExitCode::Refused;
  }

  const auto blocksWanted = static_cast<std::int64_t>(std::ceil(options.Seconds * BlocksPerSecond));
  std::int64_t blocks = 0;
  double microseconds = 0.0, longest = 0.0;
  radio.OnAudio = [&](const std::int16_t* block, std::int32_t attenuation) {
    if (blocksWanted > 0 && blocks >= blocksWanted) return;
    ++blocks;
    if (file != nullptr) file->Take(block, attenuation);
  };
  radio.OnBlockOut = [&] {
    microseconds += radio.Radio.Pump.PumpMicroseconds;
    longest = std::max(longest, radio.Radio.Pump.PumpMicroseconds);
  };
  bool lost = false;
  machine.Parts().Sound.OnDeviceLost([&](const Error& error) {
    PrintFault(error.Text);
    lost = true;
  });

  radio.Housekeeping();
  if (const Failure failure = radio.Start()) return ExitCode::Failed;
  {
    ListenScreen screen(radio, static_cast<float>(options.Reception.Volume));
    const auto redraw = machine.Parts().Queue.CreateTimer([&] { screen.Draw(); });
    if (!machine.IsVirtualTime() && !options.Quiet) {
      screen.WatchKeys(terminal);
      redraw->Start(kRedraw);
    }
    const auto isDone = [&] {
      const bool enough = blocksWanted > 0 && blocks >= blocksWanted;
      return enough || lost || interrupted != 0 || screen.IsDone() || (file != nullptr && file->Fault());
    };
    while (!isDone()) machine.Parts().Queue.Wait(kRedraw);
    redraw->Stop();
    screen.Finish();
  }
  radio.Stop();
  if (options.Reception.Report) {
    PrintReport(radio, machine, static_cast<double>(blocks) / BlocksPerSecond, blocks, microseconds, longest);
  }
  radio.SoundCard().ReleaseDevices();
  radio.ReleaseTuning();
  if (const Failure failure = machine.Settings().Save()) PrintFault(failure->Text);
  return lost ? ExitCode::Failed : ExitCode::Success;
}

RadioMachineOptions MachineOptions(const ListenOptions& options) {
  RadioMachineOptions machine;
  machine.Demo = options.Demo;
  machine.VirtualTime = options.Demo && !options.Output.empty() && options.Seconds > 0.0;
  machine.Loudspeaker = options.Output.empty() || !options.Playback.empty();
  machine.Board.SDRModelNo = options.Reception.SDRModelNo;
  machine.Board.LowSideLO = options.Reception.LowSideLO;
  machine.Board.ErrorPpm = options.BoardErrorPpm;
  machine.Board.DataFolder = options.Folder;
  machine.Antenna = options.Antenna;
  machine.Capture = options.Capture;
  machine.Playback = options.Playback;
  machine.Settings = options.Settings;
  return machine;
}

int Run(const ListenOptions& options) {
  if (!options.Demo && options.Capture.empty()) {
    PrintFault(
        "listen: --demo or --capture NAME is needed; 'quorlsdr-cli devices' lists the capture devices");
    return ExitCode::Refused;
  }
  if (options.Demo && !options.Capture.empty()) {
    PrintFault("listen: --demo brings its own antenna, --capture does not go with it");
    return ExitCode::Refused;
  }
  Failure failure;
  std::unique_ptr<AudioFile> file;
  if (!options.Output.empty()) file = AudioFile::Create(options.Output, failure);
  LinuxEventQueue queue;
  TerminalDialogs boxes(std::cerr);
  std::unique_ptr<RadioMachine> machine;
  if (!failure) machine = RadioMachine::Create(MachineOptions(options), queue, boxes, failure);
  if (!failure) failure = machine->Settings().Load();
  if (failure) {
    PrintFault(failure->Text);
    return ExitCode::Refused;
  }
  if (options.Demo) PutDemoDefaults(machine->Settings());
  if (!machine->Notice().empty()) PrintFault(machine->Notice());
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    std::signal(signal, [](int) { interrupted = 1; });
  }
  const int exitCode = Listen(options, *machine, queue, file.get());
  if (exitCode != ExitCode::Success || !file) return exitCode;
  if (const Failure fault = file->Close()) {
    PrintFault(fault->Text);
    return ExitCode::Failed;
  }
  return ExitCode::Success;
}

double ParseNumber(const std::string& option, const std::string& text, double low, double high) {
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != 0 || !(value >= low && value <= high)) {
    Refuse(option, "'" + text + "' doesn't fit; a number from " + std::to_string(low) + " to " +
                       std::to_string(high) + " is needed");
  }
  return value;
}

}  // namespace

void AddListenCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<ListenOptions>();
  CLI::App* command = app.add_subcommand("listen", "Receive live: a real board, or the demo band");
  const auto addNumber = [command](const std::string& name, const std::string& shape, const std::string& help,
                                   double low, double high, std::function<void(double)> take) {
    command
        ->add_option_function<std::string>(
            name,
            [name, low, high, take](const std::string& text) { take(ParseNumber(name, text, low, high)); },
            help)
        ->type_name(shape);
  };
  addNumber("--frequency", "KHZ", "what to listen to, default the last one", 0.0, kHighestKhz,
            [options](double khz) { options->FrequencyDhz = RoundHalfEven(khz * 10000.0); });
  command->add_flag("--demo", options->Demo, "a simulated board and band");
  command
      ->add_option("--antenna", options->Antenna,
                   "with --demo: a recording of the IF or of I/Q in the antenna's place")
      ->type_name("FILE");
  command->add_option("--capture", options->Capture, "sound device that the board is connected to")
      ->type_name("NAME|N");
  command->add_option("--playback", options->Playback, "loudspeaker, default the first one")
      ->type_name("NAME|N");
  command->add_option("--output", options->Output, "WAV file of what is heard")->type_name("FILE");
  addNumber("--seconds", "S", "how long, default until it is stopped", 0.0, 864000.0,
            [options](double s) { options->Seconds = s; });
  addNumber("--board-error", "PPM", "error of the demo board's clock", -1000.0, 1000.0,
            [options](double ppm) { options->BoardErrorPpm = ppm; });
  command->add_option("--settings", options->Settings, "another settings file")->type_name("FILE");
  command->add_option("--folder", options->Folder, "another folder of demo stations")->type_name("DIR");
  command->add_flag("--quiet", options->Quiet, "no live line");
  AddReceptionOptions(*command, options->Reception);
  command->callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace quorl::cli
