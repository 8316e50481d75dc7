// Where the data that comes with the program lies.
#pragma once

#include <string>

#include "platform/Files.h"

namespace quorl {

// The folder that holds demo/ and bandplans/: the one that QUORLSDR_DATA names, the installed one, or that of
// the source tree the program was built from.
std::string FindInstalledData(const Files& files);

}  // namespace quorl
