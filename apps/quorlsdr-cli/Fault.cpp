#include "Fault.h"

#include <iostream>

#include "Commands.h"

namespace quorl::cli {

void PrintFault(const std::string& text) {
  std::string line = "quorlsdr-cli: " + text;
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
  }
  std::cerr << line << std::endl;
}

int Stop(const Failure& failure, int exitCode) {
  PrintFault(failure->Text);
  return exitCode;
}

// Faults of the data have numbers below 0, those of the system above.
int StopAtWork(const Failure& failure) {
  return Stop(failure, failure->Code < 0 ? ExitCode::Refused : ExitCode::Failed);
}

}  // namespace quorl::cli
