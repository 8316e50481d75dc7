// quorlsdr: the radio as a desktop program.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "CLI/CLI.hpp"
#include "Program.h"
#include "desktop/window/Application.h"
#include "shared/Version.h"

namespace {

bool HasDisplay() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != 0) return true;
  }
  return false;
}

int Start(int count, char** arguments) {
  quorl::ProgramOptions options;
  for (int i = 1; i < count; ++i) options.CommandLine += std::string(i > 1 ? " " : "") + arguments[i];
  CLI::App parser("QUORLSDR, a software defined radio receiver", "quorlsdr");
  parser.set_version_flag(
      "--version", [] { return quorl::VersionText("quorlsdr", std::string("Qt ") + qVersion()); },
      "tells version, commit and libraries");
  std::string word;
  parser.add_option("trace", word, "trace: shows the log from the first step, and writes it to the log file")
      ->type_name("");
  parser.add_flag("--demo", options.Demo, "a simulated board and band, with settings of their own");
  parser.add_option("--settings", options.Settings, "another settings file")->type_name("FILE");
  parser.add_option("--folder", options.Folder, "another application folder (band plans)")->type_name("DIR");
  parser.add_option("--script", options.Script, "runs the panel by a script, then ends")->type_name("FILE");
  parser.add_flag("--first-start", options.FirstStart,
                  "asks for board and devices, whatever is known of them; a script works that page");
  parser.add_flag("--virtual-time", options.VirtualTime,
                  "with --demo and --script: as fast as the machine allows");
  parser.add_flag("--verbose", options.Verbose, "a script's print tells colours, enabled and visible, too");
  parser.add_option("--output", options.Output, "WAV file of what is heard")->type_name("FILE");
  parser.add_option("--antenna", options.Antenna, "with --demo: a WAV file in the antenna's place")
      ->type_name("FILE");
  parser.add_option("--seconds", options.Seconds, "ends by itself")->type_name("S");
  parser
      .add_option("--board-error", options.BoardErrorPpm,
                  "with --demo: error of the board's clock, default 0")
      ->type_name("PPM")
      ->check(CLI::Range(-1000.0, 1000.0).description(""));
  parser.add_flag("--report", options.Report, "one line of JSON on standard error when done");
  try {
    parser.parse(count, arguments);
  } catch (const CLI::ParseError& error) {
    const int code = parser.exit(error);
    return code == 0 ? quorl::ExitCode::Success : quorl::ExitCode::Refused;
  }
  if (options.VirtualTime && (!options.Demo || options.Script.empty())) {
    std::fprintf(stderr, "quorlsdr: --virtual-time needs --demo and --script\n");
    return quorl::ExitCode::Refused;
  }
  if (options.BoardErrorPpm != 0.0 && !options.Demo) {
    std::fprintf(stderr, "quorlsdr: --board-error: only the demo's board has one; --demo is needed\n");
    return quorl::ExitCode::Refused;
  }
  if (!options.Antenna.empty() && !options.Demo) {
    std::fprintf(stderr, "quorlsdr: --antenna: a board has its own; --demo is needed\n");
    return quorl::ExitCode::Refused;
  }
  if (!HasDisplay()) {
    if (options.Script.empty()) {
      std::fprintf(stderr,
                   "quorlsdr: there is no display here; 'quorlsdr-cli listen' receives in a terminal, "
                   "--script FILE runs the panel off screen\n");
      return quorl::ExitCode::Refused;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  quorl::WatchedApplication application(count, arguments);
  quorl::PrepareApplication();
  return quorl::RunProgram(options, application);
}

}  // namespace

int main(int count, char** arguments) {
  try {
    return Start(count, arguments);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quorlsdr: %s\n", error.what());
  } catch (...) {
    std::fprintf(stderr, "quorlsdr: an unknown failure\n");
  }
  return quorl::ExitCode::Failed;
}
