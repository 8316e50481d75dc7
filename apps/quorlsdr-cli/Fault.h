// One line on standard error for what went wrong.
#pragma once

#include <string>

namespace quorl::cli {

// "quorlsdr-cli: " and `text`, control characters (a file name may hold them) replaced.
void PrintFault(const std::string& text);

}  // namespace quorl::cli
