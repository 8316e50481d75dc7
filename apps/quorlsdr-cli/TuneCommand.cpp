// quorlsdr-cli tune: a frequency to the board, and what went over the wire.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Commands.h"
#include "Fault.h"
#include "Options.h"
#include "config/SettingsStore.h"
#include "platform/linux/lines/LinuxPrinterPort.h"
#include "platform/linux/lines/LinuxSerialPort.h"
#include "platform/linux/system/LinuxClock.h"
#include "platform/linux/system/LinuxEventQueue.h"
#include "platform/virtual/VirtualClock.h"
#include "platform/virtual/VirtualDialogs.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualPrinterPort.h"
#include "platform/virtual/VirtualSerialPort.h"
#include "sim/SimulatedReceiver.h"
#include "support/NumberPicture.h"
#include "support/Text.h"
#include "tuning/TuningChain.h"

namespace quorl::cli {
namespace {

constexpr std::array<std::string_view, 2> kInterfaces = {"serial", "parallel"};
constexpr Range kFrequencyRange = {0, 214748364};
constexpr std::int32_t kElektor = 1;
constexpr const char* kDryPort = "/dev/null";

struct TuneOptions {
  std::int32_t SDRModelNo = 0;
  std::int32_t Interface = InterfaceType::Serial;
  std::int32_t FrequencyHz = 0;
  bool LowSideLO = false;
  std::optional<std::int32_t> IFHz;
  std::optional<std::int32_t> ClockHz;
  std::string Port;
  bool DryRun = false;
};

// One change of one line.
struct LineChange {
  std::int64_t Microsecond;
  std::string Line;
  bool High;
};

// The settings that a board of these options would have stored.
void FillSettings(const TuneOptions& options, SettingsStore& store) {
  const bool elektor = options.SDRModelNo == kElektor;
  const double clock = options.ClockHz ? *options.ClockHz
                       : elektor       ? kAd9835BoardClockHz
                                       : kAd9951BoardClockHz;
  store.SaveSetting(elektor ? "DDSAD9835" : "DDSAD9951", "ClkIn", NumberText(clock));
  const char* section = elektor ? "VFO1.ElektorDRM" : options.SDRModelNo == 0 ? "VFO1.DRT1" : "VFO1.RXIQ";
  store.SaveSetting(section, "HiSideLo", options.LowSideLO ? "False" : "True");
  if (options.IFHz) store.SaveSetting(section, "IFFrequency", NumberText(*options.IFHz));
  if (!options.Port.empty()) store.SaveSetting("DDSSerialIF", "COM1", options.Port);
}

// Tunes over the given ports; what doesn't work is a message in `boxes` or a line in `complaints`.
void Tune(const TuneOptions& options, TuningChain& chain, std::vector<std::string>& complaints) {
  if (chain.VFO()->OscType == nullptr) return;
  if (const Failure failure = chain.VFO()->SetTunedFrequency(options.FrequencyHz * 10)) {
    complaints.push_back(failure->Text);
  }
}

std::vector<LineChange> SerialChanges(const VirtualSerialPort& port) {
  static constexpr std::array<const char*, 3> kNames = {"RTS", "DTR", "BREAK"};
  std::vector<LineChange> changes;
  for (const SerialLevel& level : port.Levels()) {
    if (level.Changed)
      changes.push_back({level.Microsecond, kNames[static_cast<std::size_t>(level.Line)], level.On});
  }
  return changes;
}

std::vector<LineChange> PrinterChanges(const VirtualPrinterPort& port) {
  std::vector<LineChange> changes;
  std::uint8_t before = 0;
  for (const PrinterLevel& level : port.Levels()) {
    for (int bit = 0; bit < 3; ++bit) {
      const bool was = (before >> bit & 1) != 0, is = (level.Value >> bit & 1) != 0;
      if (was != is) changes.push_back({level.Microsecond, "D" + std::to_string(bit), is});
    }
    before = level.Value;
  }
  return changes;
}

// What the board reads off the lines: bits at rising clock edges, inverted at the port, frames between edges
// of the select line.
std::vector<std::vector<std::uint8_t>> Frames(const std::vector<LineChange>& changes, bool parallel) {
  const std::string data = parallel ? "D0" : "RTS", clock = parallel ? "D1" : "BREAK",
                    select = parallel ? "D2" : "DTR";
  std::vector<std::vector<std::uint8_t>> frames(1);
  bool dataLine = false;
  int bits = 0, value = 0;
  for (const LineChange& change : changes) {
    if (change.Line == data) dataLine = change.High;
    if (change.Line == select && !frames.back().empty()) frames.emplace_back();
    if (change.Line != clock || !change.High) continue;
    value = value * 2 + (dataLine ? 0 : 1);
    if (++bits == 8) {
      frames.back().push_back(static_cast<std::uint8_t>(value));
      bits = value = 0;
    }
  }
  if (frames.back().empty()) frames.pop_back();
  return frames;
}

// What a tuning comes to: the numbers, and each change of a line.
struct Tuned {
  double FrequencyHz = 0.0, OscillatorHz = 0.0;
  std::uint32_t Word = 0;
  std::vector<LineChange> Changes;
  std::vector<std::string> Complaints;
};

// Tunes over ports made of memory, where each line call takes a microsecond.
Tuned TuneInMemory(const TuneOptions& options) {
  constexpr std::chrono::microseconds kLineTime(1);
  VirtualClock clock;
  VirtualEventQueue queue(clock);
  VirtualSerialPort serial(clock, queue);
  serial.SetLineTime(kLineTime);
  VirtualPrinterPort printer(clock);
  printer.SetWriteTime(kLineTime);
  VirtualDialogs boxes;
  SettingsStore store;
  TuneOptions dry = options;
  dry.Port = kDryPort;
  FillSettings(dry, store);
  Tuned tuned;
  TuningChain chain({serial, printer, queue, boxes, store},
                    [&](const std::string& line) { tuned.Complaints.push_back(line); });
  chain.OpenInterface(options.Interface, false);
  chain.CreateVFO(options.SDRModelNo, options.Interface);
  Tune(options, chain, tuned.Complaints);
  tuned.FrequencyHz = chain.VFO()->TunedFrequency() / 10.0;
  tuned.OscillatorHz = chain.VFO()->OscOut / 10.0;
  tuned.Word = static_cast<std::uint32_t>(chain.Driver()->CurrentTuningWord);
  tuned.Changes =
      options.Interface == InterfaceType::Parallel ? PrinterChanges(printer) : SerialChanges(serial);
  for (const MessageRequest& message : boxes.Messages) tuned.Complaints.push_back(message.Text);
  if (tuned.Complaints.empty() && tuned.FrequencyHz != options.FrequencyHz) {
    tuned.Complaints.push_back("--frequency: with its DDS clock the board reaches no further than " +
                               NumberText(tuned.FrequencyHz) + " Hz");
  }
  return tuned;
}

// Sends on the real port; milliseconds that the frequency's frame took.
std::optional<double> SendForReal(const TuneOptions& options, int& exitCode) {
  LinuxEventQueue queue;
  LinuxSerialCalls serialCalls;
  LinuxPrinterCalls printerCalls;
  LinuxSerialPort serial(queue, serialCalls);
  LinuxPrinterPort printer(printerCalls);
  VirtualDialogs boxes;
  SettingsStore store;
  FillSettings(options, store);
  std::vector<std::string> complaints;
  TuningChain chain({serial, printer, queue, boxes, store},
                    [&](const std::string& line) { complaints.push_back(line); });
  const bool parallel = options.Interface == InterfaceType::Parallel;
  if (!chain.OpenInterface(options.Interface, false)) {
    PrintFault(parallel ? complaints.front() + " Or use --dry-run."
                        : "--port: " + chain.SerialIF().OpenFailure()->Text +
                              " 'quorlsdr-cli devices' lists the ports that exist.");
    exitCode = parallel ? ExitCode::Failed : ExitCode::Refused;
    return {};
  }
  chain.CreateVFO(options.SDRModelNo, options.Interface);
  const LinuxClock clock;
  const std::int64_t begin = clock.Microseconds();
  Tune(options, chain, complaints);
  return static_cast<double>(clock.Microseconds() - begin) / 1000.0;
}

void Print(const Tuned& tuned, const TuneOptions& options) {
  std::printf("tuned: %s\n", FormatPicture(tuned.FrequencyHz, "#,##0.0 Hz").c_str());
  std::printf("oscillator: %s\n", FormatPicture(tuned.OscillatorHz, "#,##0.0 Hz").c_str());
  std::printf("tuning word: %u (0x%08X)\n", tuned.Word, tuned.Word);
  for (const auto& frame : Frames(tuned.Changes, options.Interface == InterfaceType::Parallel)) {
    std::printf("sent:");
    for (const std::uint8_t byte : frame) std::printf(" %02X", byte);
    std::printf("\n");
  }
  if (!options.DryRun) return;
  std::printf("microsecond line level\n");
  for (const LineChange& change : tuned.Changes) {
    std::printf("%lld %s %d\n", static_cast<long long>(change.Microsecond), change.Line.c_str(),
                change.High ? 1 : 0);
  }
}

int Run(const TuneOptions& options) {
  const bool parallel = options.Interface == InterfaceType::Parallel;
  if (parallel && options.SDRModelNo != kElektor) {
    PrintFault(
        "--interface parallel: this board's AD9951 is tuned over a serial port; only model elektor has the "
        "choice");
    return ExitCode::Refused;
  }
  if (parallel && !options.Port.empty()) {
    PrintFault("--port: names a serial port; leave it or --interface parallel out");
    return ExitCode::Refused;
  }
  if (!parallel && options.Port.empty() && !options.DryRun) {
    PrintFault("--port PATH is needed, or --dry-run; 'quorlsdr-cli devices' lists the serial ports");
    return ExitCode::Refused;
  }
  const Tuned tuned = TuneInMemory(options);
  if (!tuned.Complaints.empty()) {
    PrintFault(tuned.Complaints.front());
    return ExitCode::Refused;
  }
  std::optional<double> milliseconds;
  int exitCode = ExitCode::Success;
  if (!options.DryRun) milliseconds = SendForReal(options, exitCode);
  if (exitCode != ExitCode::Success) return exitCode;
  Print(tuned, options);
  if (milliseconds) std::printf("time: %.1f ms\n", *milliseconds);
  return ExitCode::Success;
}

}  // namespace

void AddTuneCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<TuneOptions>();
  CLI::App* command = app.add_subcommand("tune", "Tune a receiver board and show what goes over the wire");
  AddChoice(*command, "--model", kModelNames, "receiver board", options->SDRModelNo)->required();
  AddText(*command, "--frequency", "HZ", "what to listen to", [options](const std::string& text) {
    options->FrequencyHz = ParseWhole("--frequency", text, kFrequencyRange);
  })->required();
  command->footer(
      "Example: quorlsdr-cli tune --model elektor --frequency 7050000 --dry-run\n\n"
      "Lines of a serial port: RTS data, BREAK (of TXD) clock, DTR select; of a printer port D0, D1 and D2.");
  command->add_flag("--low-side", options->LowSideLO, "the local oscillator lies below the signal");
  AddText(*command, "--if", "HZ", "the board's IF, default 45000000, elektor 455000",
          [options](const std::string& text) { options->IFHz = ParseWhole("--if", text, kFrequencyRange); });
  AddText(*command, "--clock", "HZ", "the DDS clock, default 360096000, elektor 50000000",
          [options](const std::string& text) {
            options->ClockHz = ParseWhole("--clock", text, {1, 429496729});
          });
  AddChoice(*command, "--interface", kInterfaces, "default serial", options->Interface);
  command->add_option("--port", options->Port, "serial device, such as /dev/ttyUSB0")->type_name("PATH");
  command->add_flag("--dry-run", options->DryRun,
                    "send nothing; list every change of a line: microsecond, line, level");
  command->callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace quorl::cli
