// The desktop program: machine, receiver frame and window, put together for one run.
#pragma once

#include <string>

#include "WatchedApplication.h"

namespace quorl {

struct ProgramOptions {
  bool Demo = false;
  bool VirtualTime = false;
  bool Verbose = false;
  bool Report = false;
  bool FirstStart = false;     // asks, whatever the settings know
  std::string CommandLine;     // as it was given, for "trace"
  std::string Settings;        // file; empty is the usual one
  std::string Folder;          // application folder; empty is the usual one
  std::string Script;          // file of commands
  std::string Antenna;         // demo: WAV file that takes the antenna's place
  std::string Output;          // WAV file of what is heard
  double BoardErrorPpm = 0.0;  // demo: of the board's clock
  double Seconds = 0.0;        // to run; 0 until the window is closed
};

struct ExitCode {
  static constexpr int Success = 0, Failed = 1, Refused = 2;
};

// Runs the program; returns its exit code.
int RunProgram(const ProgramOptions& options, WatchedApplication& application);

}  // namespace quorl
