// quorlsdr-cli listen: the radio on the air, in a terminal.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <iostream>
#include <memory>

#include "Commands.h"
#include "Fault.h"
#include "ListenOptions.h"
#include "ListenRecorder.h"
#include "ListenScreen.h"
#include "Options.h"
#include "RecordingBlocks.h"
#include "core/LiveRadio.h"
#include "core/SteeredRadio.h"
#include "platform/CalendarDays.h"
#include "platform/linux/system/LinuxClock.h"
#include "platform/linux/system/LinuxEventQueue.h"
#include "platform/linux/system/TerminalDialogs.h"
#include "remote/RemoteServer.h"
#include "shared/HostMachine.h"
#include "shared/JsonReport.h"
#include "support/Rounding.h"
#include "support/Text.h"

namespace quorl::cli {
namespace {

constexpr std::chrono::milliseconds kRedraw(200);

volatile std::sig_atomic_t interrupted = 0;

// The time that blocks take, and the share of it that the whole program takes from one core.
struct Measure {
  std::int64_t Blocks = 0;                   // that were wanted
  double Microseconds = 0.0, Longest = 0.0;  // of a block's reception
  std::chrono::steady_clock::time_point Begin = std::chrono::steady_clock::now();
  std::clock_t ProcessorBegin = std::clock();

  void Add(double microseconds) {
    Microseconds += microseconds;
    Longest = std::max(Longest, microseconds);
  }
};

void PrintReport(const LiveRadio& radio, const SoundStatistics& sound, const Measure& measure) {
  const auto blocks = static_cast<double>(measure.Blocks);
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - measure.Begin;
  const double processor = static_cast<double>(std::clock() - measure.ProcessorBegin) / CLOCKS_PER_SEC;
  JsonReport()
      .Add("blocks", measure.Blocks)
      .Add("seconds", blocks / BlocksPerSecond, 3)
      .Add("frequency_hz", radio.VFO().TunedFrequency() / 10.0, 1)
      .Add("oscillator_hz", radio.VFO().OscOut / 10.0, 1)
      .Add("signal_level", radio.Rx.MeanSignalLevel(), 3)
      .Add("agc_gain", radio.Rx.Vars.AGCMeterGain, 6)
      .Add("us_per_block_mean", blocks > 0 ? measure.Microseconds / blocks : 0.0, 2)
      .Add("us_per_block_max", measure.Longest, 2)
      .Add("times_real_time", blocks / BlocksPerSecond / elapsed.count(), 1)
      .Add("cpu_percent", 100.0 * processor / elapsed.count(), 1)
      .Add("captured_blocks", sound.CapturedBlocks)
      .Add("overruns", sound.Overruns)
      .Add("underruns", sound.Underruns)
      .Print();
}

// Puts the radio on the frequency that was asked for, else on that of the last time.
Failure TuneIn(const ListenOptions& options, clsVFO& vfo) {
  if (!options.FrequencyDhz) return vfo.SetTunedFrequency(vfo.TunedFrequency());
  const std::int32_t before = vfo.TunedFrequency();
  Failure failure = vfo.SetTunedFrequency(*options.FrequencyDhz);
  if (failure || vfo.TunedFrequency() == *options.FrequencyDhz) return failure;
  const std::string reach = NumberText(vfo.TunedFrequency() / 10000.0);
  static_cast<void>(vfo.SetTunedFrequency(before));
  return Error{1, "--frequency: with its DDS clock the board reaches no further than " + reach + " kHz"};
}

// Waits for the recording's begin with the radio off; false where it was interrupted.
bool WaitForStart(const ListenOptions& options, HostMachine& machine, const ListenRecorder& recorder,
                  const ListenTimes& times) {
  if (recorder.IsDue()) return true;
  if (!options.Quiet) std::cerr << "waiting until " + DateText(*times.Start) + "\n";
  while (!recorder.IsDue() && interrupted == 0) machine.Parts().Queue.Wait(kRedraw);
  return interrupted == 0;
}

// The radio goes on where nobody can connect. Naming an address is leave enough for who comes by it.
void StartRemote(const ListenOptions& options, RemoteServer& server) {
  if (!options.Remote) return;
  if (const Failure failure = server.Listen(*options.Remote)) return PrintFault(failure->Text);
  std::cerr << "remote control at " + PlaceText(server.Place()) + "\n";
}

// Receives until there is enough, the listener ends it or the sound is lost for good.
int Receive(const ListenOptions& options, HostMachine& machine, LiveRadio& radio, LinuxEventQueue& terminal,
            ListenRecorder& recorder) {
  Measure measure;
  radio.OnAudio = [&](const std::int16_t* block, std::int32_t attenuation) {
    recorder.TakeAudio(block, attenuation);
  };
  const auto record = [&] { recorder.Housekeeping(radio.VFO().TunedFrequency()); };
  radio.BeforeFilters = record;
  ListenScreen screen(radio, static_cast<float>(options.Reception.Volume));
  radio.OnBlockOut = [&] {
    measure.Add(radio.Rx.Pump.PumpMicroseconds);
    screen.ShowSoundPlays();
  };
  bool lost = false;
  machine.Parts().Sound.OnDeviceLost([&](const Error& error) {
    screen.Finish();
    PrintFault(error.Text);
    screen.ShowSoundLost();
    lost = !screen.HasKeys();
  });
  // They refer to what ends with this routine.
  const std::shared_ptr<void> deaf(nullptr, [&](void*) {
    radio.OnAudio = nullptr;
    radio.BeforeFilters = radio.OnBlockOut = [] {};
    machine.Parts().Sound.OnDeviceLost({});
  });
  radio.Housekeeping();
  if (const Failure failure = radio.Start()) {
    PrintFault(failure->Text);
    return ExitCode::Failed;
  }
  SteeredRadio steered(radio);
  RemoteServer server(machine.Parts().Network, machine.Parts().Queue, machine.Parts().Time, steered);
  StartRemote(options, server);
  const auto redraw = machine.Parts().Queue.CreateTimer([&] { screen.Draw(); });
  if (!machine.IsVirtualTime() && !options.Quiet) {
    screen.WatchKeys(terminal);
    redraw->Start(kRedraw);
  }
  const auto isDone = [&] { return recorder.IsDone() || lost || interrupted != 0 || screen.IsDone(); };
  while (!isDone()) machine.Parts().Queue.Wait(kRedraw);
  redraw->Stop();
  server.Stop();
  screen.Finish();
  radio.Stop();
  measure.Blocks = recorder.Blocks();
  if (options.Reception.Report) PrintReport(radio, machine.Parts().Sound.Statistics(), measure);
  return lost ? ExitCode::Failed : ExitCode::Success;
}

// From the first file to the last. Nothing is received where a file can't be written.
int Record(const ListenOptions& options, HostMachine& machine, LiveRadio& radio, LinuxEventQueue& terminal,
           ListenRecorder& recorder) {
  std::string misfit;
  const ListenTimes times =
      PlaceTimes(options.Start, options.End, DaysOf(machine.Parts().Time.Now()), misfit);
  Failure failure = TuneIn(options, radio.VFO());
  if (!failure && !misfit.empty()) failure = Error{1, misfit};
  if (!failure) failure = recorder.Open({radio.Rx.Vars.SDRModelNo, radio.Rx.Vars.LowSideLO});
  if (failure) {
    PrintFault(failure->Text);
    return ExitCode::Refused;
  }
  recorder.SetLimits(times, static_cast<std::int64_t>(std::ceil(options.Seconds * BlocksPerSecond)));
  if (!WaitForStart(options, machine, recorder, times)) return ExitCode::Success;
  const int exitCode = Receive(options, machine, radio, terminal, recorder);
  if (const Failure fault = recorder.Close()) {
    PrintFault(fault->Text);
    return ExitCode::Failed;
  }
  return exitCode;
}

int Listen(const ListenOptions& options, HostMachine& machine, LinuxEventQueue& terminal) {
  // In virtual time too the stop watch tells how long a block has taken.
  const LinuxClock stopWatch;
  const Machine& all = machine.Parts();
  ListenRecorder recorder(machine.Parts(), options.Files);
  Machine parts{all.Queue,    stopWatch, all.Boxes,  all.Storage, all.Beside,   all.Media,
                all.Instance, all.Sound, all.Serial, all.Printer, all.Programs, all.Network};
  LiveRadio radio(parts, machine.Settings(), recorder, [](const std::string& line) { PrintFault(line); });
  radio.Rx.Initialise();
  ApplyReceiveOptions(options.Reception, radio.Rx);
  radio.SetSoundFormat(options.ShortDelay);
  radio.SoundCard().RefreshDevices();
  radio.SoundCard().CurrentCaptureDevice = machine.CaptureDevice();
  radio.SoundCard().CurrentPlaybackDevice = machine.PlaybackDevice();
  radio.CreateTuning(InterfaceType::Serial, false);
  // The side of the oscillator is the stored one, but for the demo's board, which is made for the option. An
  // option holds for this run and isn't stored.
  clsVFO& vfo = radio.VFO();
  const bool storedSide = vfo.HiSideLO;
  if (options.Demo || options.Reception.SideNamed) vfo.HiSideLO = !options.Reception.LowSideLO;
  radio.Rx.SetLowSideLO(!vfo.HiSideLO);
  const int exitCode = Record(options, machine, radio, terminal, recorder);
  radio.SoundCard().ReleaseDevices();
  vfo.HiSideLO = storedSide;
  radio.Tuning().Save();
  radio.ReleaseTuning();
  if (exitCode == ExitCode::Refused) return exitCode;
  if (const Failure failure = machine.Settings().Save()) PrintFault(failure->Text);
  return exitCode;
}

HostMachineOptions MachineOptions(const ListenOptions& options) {
  HostMachineOptions machine;
  machine.Demo = options.Demo;
  const bool records = !options.Files.Output.empty() || !options.Files.RecordIF.empty();
  const bool ends = options.Seconds > 0.0 || options.End;
  machine.VirtualTime = options.Demo && records && options.Playback.empty() && ends && !options.Remote;
  machine.Loudspeaker = !records || !options.Playback.empty();
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

// What the options ask for that doesn't go together; empty where all does.
std::string Misfit(const ListenOptions& options) {
  if (std::string misfit = ListenRecorder::Misfit(options.Files); !misfit.empty()) return misfit;
  if (options.Start && options.Files.Output.empty() && options.Files.RecordIF.empty()) {
    return "--start: nothing is recorded; --output FILE or --record-if FILE is needed";
  }
  if (options.End && options.Seconds > 0.0) return "--seconds: --end tells how long; leave one of them out";
  if (options.Demo) {
    return options.Capture.empty() ? ""
                                   : "--capture: the demo brings its own antenna; leave --demo or this out";
  }
  if (!options.Antenna.empty()) return "--antenna: takes the place of the demo's antenna; --demo is needed";
  if (options.BoardErrorPpm != 0.0) return "--board-error: only the demo's board has one; --demo is needed";
  if (!options.Folder.empty()) return "--folder: holds the demo's stations; --demo is needed";
  if (options.Capture.empty()) {
    return "listen: --demo or --capture NAME is needed; 'quorlsdr-cli devices' lists the capture devices";
  }
  return "";
}

int Run(ListenOptions options) {
  if (const std::string misfit = Misfit(options); !misfit.empty()) {
    PrintFault(misfit);
    return ExitCode::Refused;
  }
  // An interruption ends the reception and keeps what was received so far.
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    std::signal(signal, [](int) { interrupted = 1; });
  }
  Failure failure;
  if (!options.Antenna.empty()) {
    const std::optional<Recording> own = ReadOwn(LinuxFiles(), options.Antenna, failure);
    if (own && own->Format.IF) TakeOrigin(*own->Format.IF, options.Reception);
  }
  LinuxEventQueue queue;
  TerminalDialogs boxes(std::cerr);
  std::unique_ptr<HostMachine> machine;
  if (!failure) machine = HostMachine::Create(MachineOptions(options), queue, boxes, failure);
  if (!failure) failure = machine->Settings().Load();
  if (failure) {
    PrintFault(failure->Text);
    return ExitCode::Refused;
  }
  if (options.Demo) PutDemoDefaults(machine->Settings());
  for (const std::string& notice : machine->Notices()) PrintFault(notice);
  return Listen(options, *machine, queue);
}

constexpr const char* kExamples = R"(Examples:
  quorlsdr-cli listen --demo --frequency 7050 --mode usb
  quorlsdr-cli listen --demo --frequency 7260 --if-filter track --output audio.wav --seconds 30
  quorlsdr-cli listen --capture 1 --playback 2 --frequency 6070
  quorlsdr-cli listen --demo --remote 4532
  quorlsdr-cli listen --capture 1 --frequency 6070 --start 22:00 --end 23:00 --record-if night.wav

A capture device's number comes from 'quorlsdr-cli devices'. Where the demo is recorded and --seconds or --end tells
how long, time passes as fast as the machine allows. Ctrl-C keeps what was received so far.)";

SocketPlace ParseRemote(const std::string& text) {
  if (const std::optional<SocketPlace> place = ParsePlace(text)) return *place;
  Refuse("--remote",
         "'" + text + "' is no place; PORT, ADDRESS:PORT or [ADDRESS]:PORT is needed, such as 4532");
}

void AddFileOptions(CLI::App& command, ListenOptions& options) {
  command.add_option("--output", options.Files.Output, "WAV file of what is heard")->type_name("FILE");
  command
      .add_option(
          "--record-if", options.Files.RecordIF,
          "IF recording of the captured blocks: WAV file with board, oscillator's side and tuning log")
      ->type_name("FILE");
  command.add_flag("--log", options.Files.Log, "put a log of what was tuned behind the samples of --output");
  AddText(command, "--start", "TIME", "when to begin to record: HH:MM or \"YYYY-MM-DD HH:MM\", local",
          [&options](const std::string& text) { options.Start = ParseMoment("--start", text); });
  AddText(command, "--end", "TIME", "when to end, likewise",
          [&options](const std::string& text) { options.End = ParseMoment("--end", text); });
  AddNumber(command, "--seconds", "S", 0.0, 864000.0, "how long, default until it is stopped",
            [&options](double s) { options.Seconds = s; });
}

}  // namespace

void AddListenCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<ListenOptions>();
  CLI::App* command = app.add_subcommand("listen", "Receive live: a real board, or the demo band");
  command->footer(kExamples);
  AddNumber(*command, "--frequency", "KHZ", 0.0, kHighestKhz,
            "what to listen to, default what it was the last time",
            [options](double khz) { options->FrequencyDhz = RoundHalfEven(khz * 10000.0); });
  command->add_flag("--demo", options->Demo, "a simulated board and band; no hardware is needed");
  command
      ->add_option(
          "--antenna", options->Antenna,
          "with --demo: a recording of the IF or of I/Q in the antenna's place; one of ours brings board "
          "and oscillator's side")
      ->type_name("FILE");
  command->add_option("--capture", options->Capture, "sound device that the board is connected to")
      ->type_name("NAME|N");
  command->add_option("--playback", options->Playback, "loudspeaker, default the first one")
      ->type_name("NAME|N");
  AddFileOptions(*command, *options);
  AddNumber(*command, "--board-error", "PPM", -1000.0, 1000.0,
            "with --demo: error of the board's clock, default 0",
            [options](double ppm) { options->BoardErrorPpm = ppm; });
  command->add_option("--settings", options->Settings, "another settings file")->type_name("FILE");
  command->add_option("--folder", options->Folder, "with --demo: another folder of stations")
      ->type_name("DIR");
  command->add_flag("--short-delay", options->ShortDelay,
                    "the sound follows a gesture 171 ms sooner, and bridges less where the machine is busy");
  command->add_flag("--quiet", options->Quiet, "no live line and no keys");
  AddText(*command, "--remote", "[ADDRESS:]PORT",
          "let programs that speak the Hamlib network protocol tune the radio; without an address those of "
          "this computer. There is no password: another address lets in whoever reaches it",
          [options](const std::string& text) { options->Remote = ParseRemote(text); });
  AddReceptionOptions(*command, options->Reception);
  command->callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace quorl::cli
