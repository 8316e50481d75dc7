// The subcommands of quorlsdr-cli. Each adds itself to the parser; when the parser meets it, it runs and
// leaves its exit code.
#pragma once

#include <CLI/CLI.hpp>

namespace quorl::cli {

struct ExitCode {
  static constexpr int Success = 0;
  static constexpr int Failed = 1;   // while running
  static constexpr int Refused = 2;  // bad input or usage
};

void AddReceiveCommand(CLI::App& app, int& exitCode);
void AddFilterCommand(CLI::App& app, int& exitCode);
void AddSpectrumCommand(CLI::App& app, int& exitCode);
void AddListenCommand(CLI::App& app, int& exitCode);
void AddTuneCommand(CLI::App& app, int& exitCode);
void AddPlanCommand(CLI::App& app, int& exitCode);
void AddTracksCommand(CLI::App& app, int& exitCode);
void AddDevicesCommand(CLI::App& app, int& exitCode);

}  // namespace quorl::cli
