// quorlsdr-cli: the receiver in a terminal, on the air or over files and pipes.
#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <iostream>
#include <string>

#include "Commands.h"
#include "Fault.h"
#include "shared/Version.h"

namespace quorl::cli {
namespace {

int Run(int argc, char** argv) {
  CLI::App app(
      "QUORLSDR on the command line: receives live and from recordings, measures spectra, tunes boards, "
      "designs filters, checks band plans, lists and exports the tracks of recordings",
      "quorlsdr-cli");
  app.set_version_flag(
      "--version", [] { return VersionText("quorlsdr-cli", ""); }, "tells version, commit and libraries");
  int exitCode = ExitCode::Success;
  AddReceiveCommand(app, exitCode);
  AddFilterCommand(app, exitCode);
  AddSpectrumCommand(app, exitCode);
  AddListenCommand(app, exitCode);
  AddTuneCommand(app, exitCode);
  AddPlanCommand(app, exitCode);
  AddTracksCommand(app, exitCode);
  AddDevicesCommand(app, exitCode);
  try {
    app.parse(argc, argv);
    if (app.get_subcommands().empty())
      throw CLI::RequiredError(
          "A subcommand, receive, filter, spectrum, listen, tune, plan, tracks or devices,");
  } catch (const CLI::Success& shown) {  // help or version
    return app.exit(shown);
  } catch (const CLI::ValidationError& error) {  // of ours: says itself what is needed
    PrintFault(error.what());
    return ExitCode::Refused;
  } catch (const CLI::ParseError& error) {
    PrintFault(std::string(error.what()) + "; --help tells what is needed");
    return ExitCode::Refused;
  }
  return exitCode;
}

}  // namespace
}  // namespace quorl::cli

int main(int argc, char** argv) {
  using namespace quorl::cli;
  // A reader that went away or a limit on file sizes is a failed write, told in words like any other.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  std::ios::sync_with_stdio(false);
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    PrintFault(error.what());
    return ExitCode::Failed;
  }
}
