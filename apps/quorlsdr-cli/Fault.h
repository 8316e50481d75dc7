// One line on standard error for what went wrong.
#pragma once

#include <string>

#include "support/Error.h"

namespace quorl::cli {

// "quorlsdr-cli: " and `text`, control characters (a file name may hold them) replaced.
void PrintFault(const std::string& text);

// Prints the failure; the exit code.
int Stop(const Failure& failure, int exitCode);
// The same in the middle of the work: samples that can't be taken are bad input, all else went wrong while
// running.
int StopAtWork(const Failure& failure);

}  // namespace quorl::cli
